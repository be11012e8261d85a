/** Decisions and states in words that a person reads without knowing the code. */

import type { Decision, Layout } from './events';

const LAYOUTS: Record<string, string> = {
  HEAD: 'one tile per person',
  PROXIMITY: 'people close together',
  GROUP: 'the whole group',
  PARTIAL_GROUP: 'part of the group',
  SUBSET_SPEAKER: 'the speakers',
  ROOM: 'the whole room',
  NONE: 'nothing',
};

const POSITIONS: Record<string, string> = {
  CENTER: 'well placed',
  HEAD_ON_EDGE: 'on the edge of the frame',
  HEAD_OFF_CENTER: 'off centre',
  HEAD_OUTSIDE: 'outside the frame',
  HEAD_LEFT: 'gone',
  GROUP_MOVE_CLOSE: 'group moved closer together',
  GROUP_HEAD_LEFT: 'someone left the group',
  GROUP_HEAD_ON_EDGE: 'someone on the edge of the group frame',
  GROUP_HEAD_OUTSIDE: 'someone outside the group frame',
};

export function layoutWords(type: string): string {
  return LAYOUTS[type] ?? type;
}

export function positionWords(position: string): string {
  return POSITIONS[position] ?? position;
}

export function seconds(ms: number): string {
  return ms < 1000 ? `${Math.round(ms)} ms` : `${(ms / 1000).toFixed(ms % 1000 === 0 ? 0 : 1)} s`;
}

/** m:ss.mmm, with hours when there are any. */
export function clock(ms: number): string {
  const whole = Math.max(0, Math.floor(ms));
  const pad = (n: number, width = 2) => String(n).padStart(width, '0');
  const hours = Math.floor(whole / 3_600_000);
  const minutes = Math.floor(whole / 60_000) % 60;
  const rest = `${pad(Math.floor(whole / 1000) % 60)}.${pad(whole % 1000, 3)}`;
  return hours ? `${hours}:${pad(minutes)}:${rest}` : `${minutes}:${rest}`;
}

export interface Sentence {
  /** A few words, for the time line and lists. */
  title: string;
  /** Whole sentences. */
  reason: string;
}

function stop(text: string): string {
  return text ? `${text.charAt(0).toUpperCase()}${text.slice(1)}${/[.!?]$/.test(text) ? '' : '.'}` : '';
}

function wait(d: Decision): string {
  const timer = d.timer ? ` (${d.timer})` : '';
  const begins = d.waitedMs === 0 && (d.kind === 'pending' || d.kind === 'reframeWait');
  if (d.waitedMs !== null && d.waitMs !== null && d.waitMs > 0 && !begins) return `It waited ${seconds(d.waitedMs)} of ${seconds(d.waitMs)}${timer}.`;
  if (d.waitMs === null && d.waitedMs !== null) return `It waited ${seconds(d.waitedMs)}${timer}.`;
  if (d.waitMs !== null) return d.waitMs > 0 ? `The wait is ${seconds(d.waitMs)}${timer}.` : `There is no wait${timer}.`;
  return d.timer ? `Timer: ${d.timer}.` : '';
}

const frameName = (d: Decision) => (d.frame === null ? 'A frame' : `Frame ${d.frame}`);
const differs = (d: Decision) => (d.differs ? `What differs: ${stop(d.differs)}` : '');
const rule = (d: Decision) => (d.reason ? `Rule: ${stop(d.reason)}` : '');
/** What ended a wait: the engine says it when it is anything but a scene that went back. */
const cancelled = (d: Decision) => (d.differs ? stop(d.differs) : `The room fits ${d.from || 'what is shown'} again, or calls for something else.`);
const place = (d: Decision) => positionWords(d.headPosition || 'CENTER');

/** One row per kind of decision. */
const KINDS: Record<string, (d: Decision) => { title: string; parts: string[] }> = {
  pending: (d) => ({
    title: `${d.to} pending`,
    parts: [`A change from ${d.from || 'nothing'} to ${d.to} (${layoutWords(d.to)}) is waiting.`, differs(d), rule(d), wait(d)],
  }),
  dropped: (d) => ({
    title: `${d.to} dropped`,
    parts: [`The pending ${d.to} was dropped; ${d.from || 'the picture'} stays.`, cancelled(d), rule(d), wait(d)],
  }),
  adopted: (d) => ({
    title: d.from && d.from !== d.to ? `${d.from} → ${d.to}` : `${d.to} adopted`,
    parts: [
      d.from && d.from !== d.to
        ? `The picture changed from ${d.from} (${layoutWords(d.from)}) to ${d.to} (${layoutWords(d.to)}).`
        : `A new ${d.to} layout (${layoutWords(d.to)}) was adopted.`,
      differs(d),
      rule(d),
      wait(d),
    ],
  }),
  reframeWait: (d) => ({
    title: `frame ${d.frame ?? ''}: ${place(d)}`,
    parts: [`${frameName(d)}: ${place(d)} (${d.headPosition}).`, 'It is reframed if this lasts.', wait(d)],
  }),
  reframeCancelled: (d) => ({
    title: `frame ${d.frame ?? ''}: reframe cancelled`,
    parts: [`${frameName(d)} needs no reframe any more: its subject is back in place.`, d.differs ? stop(d.differs) : '', wait(d)],
  }),
  reframed: (d) => ({
    title: `frame ${d.frame ?? ''} reframed`,
    parts: [`${frameName(d)} was cut anew: ${place(d)} (${d.headPosition}).`, d.differs ? stop(d.differs) : '', wait(d)],
  }),
  feedPriority: (d) => ({
    title: `frame ${d.frame ?? ''}: better camera`,
    parts: [`${frameName(d)}: another camera shows the person better.`, differs(d), wait(d)],
  }),
  secondary: (d) => ({
    title: `${d.to} from the primary`,
    parts: [`The primary device sent the layout ${d.to} (${layoutWords(d.to)}).`, d.differs ? stop(d.differs) : ''],
  }),
  reset: (d) => ({ title: 'layouts reset', parts: ['The layouts were reset: framing starts anew.', d.differs ? stop(d.differs) : ''] }),
};

export function decisionWords(d: Decision): Sentence {
  const known = KINDS[d.kind];
  if (!known) return { title: d.kind, reason: [`Decision "${d.kind}".`, differs(d), rule(d), wait(d)].filter(Boolean).join(' ') };
  const { title, parts } = known(d);
  return { title, reason: parts.filter(Boolean).join(' ') };
}

/** What a new scene document changed, for recordings that carry no decisions. */
export function sceneWords(before: Layout | undefined, after: Layout): Sentence {
  const people = `${after.faceCount} ${after.faceCount === 1 ? 'person' : 'people'}, ${after.frames.length} ${after.frames.length === 1 ? 'frame' : 'frames'}`;
  const played = after.animation === 'cut' ? 'a cut' : `a ${after.animation} of ${seconds(after.duration)}`;
  if (!before || before.type !== after.type || before.frames.length !== after.frames.length) {
    const from = before ? `${before.type} → ` : '';
    return { title: `${from}${after.type}`, reason: `The picture shows ${layoutWords(after.type)} (${people}), by ${played}.` };
  }
  const moved = after.frames.filter((f, i) => JSON.stringify(f.source) !== JSON.stringify(before.frames[i]?.source)).length;
  const what = moved === 0 ? 'The same picture was sent again' : `${moved} of ${after.frames.length} frames were cut anew`;
  return { title: moved ? 'reframed' : 'sent again', reason: `${what} (${people}), by ${played}.` };
}
