/** States in words that a person reads without knowing the code; decisions bring their own. */

import type { Layout } from './events';

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
