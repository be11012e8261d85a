/** Where one head is, and where the bounds of its frame are, over a stretch of time. */

import type { Box } from './events';
import { headsOf, isEmpty, overlaps } from './geometry';
import type { History } from './history';
import type { Span } from './lanes';
import { roomOf, type RoomFrame } from './pictures';
import type { State } from './state';

/** One picture of the plot: null where there is none. */
export interface CoursePoint {
  t: number;
  head: Box | null;
  frame: Box | null;
  boundary: Box | null;
  offCentre: Box | null;
}

/** Finer than a screen shows nothing needs to be. */
const POINTS = 300;

export const peopleIn = (state: State): number[] => [...new Set(headsOf(state.vision).map((h) => h.person))].sort((a, b) => a - b);

function pointAt(state: State, t: number, person: number): CoursePoint {
  const rooms = roomOf(state);
  const named = state.extras.find((e) => e.heads.includes(person));
  const isTheirs = (f: RoomFrame, head: Box) => (named ? f.stream === named.stream && f.index === named.index : overlaps(f.source, head));
  for (const { heads, frames } of rooms) {
    const head = heads.find((h) => h.person === person);
    const frame = head && frames.find((f) => isTheirs(f, head) && !isEmpty(f.source));
    if (head && frame) return { t, head, frame: frame.source, boundary: frame.boundary, offCentre: frame.offCentre };
  }
  const head = rooms.flatMap((r) => r.heads).find((h) => h.person === person && h.best) ?? null;
  return { t, head, frame: null, boundary: null, offCentre: null };
}

export function courseOf(history: History, person: number, { start, end }: Span): CoursePoint[] {
  const step = Math.max(1, (end - start) / POINTS);
  const points: CoursePoint[] = [];
  for (let t = start; t <= end; t += step) points.push(pointAt(history.at(t), t, person));
  return points;
}
