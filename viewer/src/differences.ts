/** Where two courses of pictures differ. */

import type { Box } from './events';
import type { State } from './state';

export interface PictureChange {
  t: number;
  /** Layout types, for people. */
  types: string;
  /** All that a provider composes; equal texts are equal pictures. */
  picture: string;
}

export interface Difference {
  start: number;
  end: number;
  words: string;
}

/** Nobody sees a difference that is gone after this, milliseconds; a recording's times are not finer, either. */
const SEEN = 100;

export function pictureOf({ t, shown }: State): PictureChange {
  const streams = [...shown.values()].sort((a, b) => (a.key < b.key ? -1 : 1));
  const sides = ({ left, top, right, bottom }: Box) => [left, top, right, bottom];
  const picture = streams.map(({ key, layout }) => [key, layout.type, layout.frames.map((f) => [f.camera, sides(f.source), sides(f.dest)])]);
  return { t, types: streams.map((s) => s.layout.type).join(', '), picture: JSON.stringify(picture) };
}

/** Both courses are in order of time; `end` is that of the longer one. */
export function differencesOf(a: readonly PictureChange[], b: readonly PictureChange[], end: number): Difference[] {
  const found: Difference[] = [];
  let i = 0;
  let j = 0;
  let open: Difference | null = null;
  const close = (t: number) => {
    if (open && t - open.start >= SEEN) found.push({ ...open, end: t });
    open = null;
  };
  while (i < a.length || j < b.length) {
    const t = Math.min(a[i]?.t ?? Number.POSITIVE_INFINITY, b[j]?.t ?? Number.POSITIVE_INFINITY);
    while (a[i] && (a[i] as PictureChange).t <= t) i += 1;
    while (b[j] && (b[j] as PictureChange).t <= t) j += 1;
    const [left, right] = [a[i - 1], b[j - 1]];
    if (left?.picture === right?.picture) {
      close(t);
      continue;
    }
    const words = left?.types === right?.types ? `${left?.types}, cut in another way` : `${left?.types || 'nothing'} beside ${right?.types || 'nothing'}`;
    if (open && (open as Difference).words !== words) close(t);
    open ??= { start: t, end, words };
  }
  close(end);
  return found;
}

/** The first difference that begins after `t`, or the last one that begins before it. */
export function nextDifference(differences: readonly Difference[], t: number, direction: 1 | -1): Difference | undefined {
  if (direction === 1) return differences.find((d) => d.start > t);
  return differences.filter((d) => d.start < t).pop();
}
