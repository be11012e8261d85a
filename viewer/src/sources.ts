/** Where lines come from: a whole recording, or server-sent events. */

/** One side: the only one, or one of two that are compared. */
export interface SideInfo {
  name: string;
  /** The command line that answers questions about a moment, but for its time; empty when there is none. */
  question: string;
}

export interface Info {
  source: 'recording' | 'live';
  name: string;
  sides: SideInfo[];
  /** The names of the files that hold what cameras 0, 1, ... saw. */
  videos: string[];
}

/** Where the lines of each side of a recording are. */
const ADDRESSES = ['api/recording', 'api/beside'] as const;

export interface Feed {
  line(text: string, number: number): void;
  /** Progress or trouble, in words; empty when all is well. */
  status(text: string): void;
  done(): void;
}

export async function fetchInfo(): Promise<Info> {
  const answer = await fetch('api/info');
  if (!answer.ok) throw new Error(answer.status === 401 ? 'a token is needed: open the address that prb printed' : `the server answered ${answer.status}`);
  const { source, name = '', question = '', sides, videos = [] } = (await answer.json()) as Partial<Info & SideInfo>;
  return { source: source === 'live' ? 'live' : 'recording', name, sides: sides ?? [{ name: '', question }], videos };
}

/** Lines handled before the page may draw again. */
const BATCH = 1500;

const breathe = () => new Promise<void>((resolve) => setTimeout(resolve));

/** Gives every line of an address with its number, as it comes. */
export async function readLines(address: string, handle: (line: string, number: number) => void, batch: (lines: number) => Promise<void> = breathe): Promise<void> {
  const answer = await fetch(address);
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
      if (line.trim()) handle(line, number);
      if (number % BATCH === 0) await batch(number);
    }
    if (done) return;
  }
}

export async function recordingLines(): Promise<string[]> {
  const lines: string[] = [];
  await readLines(ADDRESSES[0], (line) => lines.push(line));
  return lines;
}

export async function readRecording(feed: Feed, side: number): Promise<void> {
  await readLines(ADDRESSES[side] ?? '', (line, number) => feed.line(line, number), async (number) => {
    feed.status(`reading, ${number} lines`);
    await breathe();
  });
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
