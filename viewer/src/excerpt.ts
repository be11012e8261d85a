/** A part of a recording as a recording of its own: the messages and settings of its time, and first what was in force when it begins. */

import type { Span } from './lanes';

type Line = Record<string, unknown> & { t: number };

/** What the service says; its input is all else. */
const SAID: ReadonlySet<unknown> = new Set(['/PRBOut', '/PRBOutDebug', '/TimerDebug', '/PeopleCount', '/PRBDecisions', '/ForwardMessage', '/ctl-passthru-remote']);
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
