/** Where lines come from: a whole recording, or server-sent events. */

export interface Info {
  source: 'recording' | 'live';
  name: string;
  /** The command line that answers questions about a moment, but for its time; empty when there is none. */
  question: string;
}

export interface Feed {
  line(text: string, number: number): void;
  /** Progress or trouble, in words; empty when all is well. */
  status(text: string): void;
  done(): void;
}

export async function fetchInfo(): Promise<Info> {
  const answer = await fetch('api/info');
  if (!answer.ok) throw new Error(answer.status === 401 ? 'a token is needed: open the address that prb printed' : `the server answered ${answer.status}`);
  const info = (await answer.json()) as Partial<Info>;
  return { source: info.source === 'live' ? 'live' : 'recording', name: info.name ?? '', question: info.question ?? '' };
}

/** Lines handled before the page may draw again. */
const BATCH = 1500;

const breathe = () => new Promise((resolve) => setTimeout(resolve));

export async function readRecording(feed: Feed): Promise<void> {
  const answer = await fetch('api/recording');
  if (!answer.ok || !answer.body) throw new Error(`the server answered ${answer.status}`);
  const reader = answer.body.pipeThrough(new TextDecoderStream()).getReader();
  let rest = '';
  let number = 0;
  for (;;) {
    const { value, done } = await reader.read();
    const lines = (rest + (value ?? '')).split('\n');
    rest = done ? '' : (lines.pop() ?? '');
    for (const line of lines) {
      number += 1;
      if (line.trim()) feed.line(line, number);
      if (number % BATCH === 0) {
        feed.status(`reading, ${number} lines`);
        await breathe();
      }
    }
    if (done) break;
  }
  feed.status('');
  feed.done();
}

/** The browser connects again by itself; the server then begins with what is current. */
export function followEvents(feed: Feed): EventSource {
  const events = new EventSource('api/events');
  let number = 0;
  events.onopen = () => feed.status('');
  events.onmessage = (event: MessageEvent<string>) => {
    number += 1;
    feed.line(event.data, number);
  };
  events.onerror = () => feed.status('connection lost, trying again');
  return events;
}
