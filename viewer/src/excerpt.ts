/** A part of a recording as a recording of its own: the messages and settings of its time, and first what was in force when it begins. */

import type { Span } from './lanes';

type Line = Record<string, unknown> & { t: number };

/** What the service says; its input is all else. */
const SAID: ReadonlySet<unknown> = new Set(['/PRBOut', '/PRBOutDebug', '/TimerDebug', '/PeopleCount', '/PRBDecisions', '/PRBStatus', '/ForwardMessage', '/ctl-passthru-remote']);
const INPUT = ['topic', 'property', 'config', 'provider'] as const;
/** Topics whose last message counts until the next one. */
const LASTING = ['/camera', '/cameras', '/cameraParameters', '/ctl/tracking-mode'];

const isInput = (line: Line) => INPUT.some((key) => key in line) && !SAID.has(line.topic);
const lasts = (topic: string) => LASTING.some((name) => topic === name || topic.startsWith(`${name}/`));

/** `lines` are those of protocol.md; those that cannot be read are left out. */
export function excerptOf(lines: Iterable<string>, { start, end }: Span): string[] {
  const property: Record<string, unknown> = {};
  const before = new Map<string, object>();
  const during: object[] = [];
  for (const text of lines) {
    let line: Line;
    try {
      line = JSON.parse(text) as Line;
    } catch {
      continue;
    }
    if (line.recorded) before.set('recorded', { recorded: { ...line.recorded, startedAt: Number((line.recorded as Line).startedAt ?? 0) + start - line.t } });
    if (!isInput(line) || line.t > end) continue;
    if (line.t >= start) during.push({ ...line, t: line.t - start });
    else if (line.property) Object.assign(property, line.property);
    else if (line.config) before.set('config', { config: line.config });
    else if (line.provider) before.set('provider', { provider: line.provider === 'down' ? 'down' : 'up' });
    else if (lasts(String(line.topic))) before.set(String(line.topic), { topic: line.topic, payload: line.payload });
  }
  const { recorded, ...rest } = Object.fromEntries(before);
  const beginning = [recorded, Object.keys(property).length > 0 ? { property } : null, ...Object.values(rest)].filter(Boolean);
  return [...beginning.map((line) => ({ t: 0, ...line })), ...during].map((line) => JSON.stringify(line));
}

/** Lines that are forgotten go in batches: one by one would cost a copy each time. */
const BATCH = 512;

/** The newest lines of a live session, and of those before what still counts. */
export class RecentLines {
  private lines: { t: number; text: string }[] = [];
  private readonly lasting = new Map<string, string>();

  add(t: number, text: string): void {
    this.lines.push({ t, text });
  }

  /** All before `start` but what is in force then. */
  forget(start: number): void {
    if ((this.lines[BATCH]?.t ?? start) >= start) return;
    for (const { text } of this.lines.splice(0, BATCH)) {
      const { topic } = JSON.parse(text) as Line;
      if (typeof topic === 'string' && lasts(topic)) this.lasting.set(topic, text);
    }
  }

  /** In their order. */
  texts(): string[] {
    return [...this.lasting.values(), ...this.lines.map((line) => line.text)];
  }
}
