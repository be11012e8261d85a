/** The rows of the time line: a row for each stream's layouts, and one for each other kind of marks; of two sides those of both. */

import type { Lanes } from './lanes';
import type { Lane } from './moments';

export interface Track {
  /** Empty when there is only one. */
  name: string;
  lanes: Lanes;
}

export interface Row {
  kind: Lane | 'difference';
  track: number;
  stream: number;
  name: string;
  top: number;
  height: number;
}

export const AXIS = 16;
const GAP = 2;
const HEIGHT = 17;
/** Many streams take lower rows, so that the time line leaves room for the pictures. */
const LOW = 9;
const MANY = 6;

/** What is said of people and by control messages is the same for both sides. */
const SHARED: readonly Lane[] = ['people', 'control'];
const NAMES: Record<Lane, string> = { layout: 'Layout', wait: 'Waits', reframe: 'Reframes', people: 'People', control: 'Control' };

export function rowsOf(tracks: readonly Track[]): Row[] {
  const rows: Row[] = [];
  let top = AXIS;
  const add = (kind: Row['kind'], track: number, stream: number, name: string, height = HEIGHT) => {
    rows.push({ kind, track, stream, name, top, height });
    top += height + GAP;
  };
  const sides = tracks.length > 1;
  if (sides) add('difference', 0, 0, 'Differences');
  for (const kind of Object.keys(NAMES) as Lane[]) {
    tracks.forEach(({ lanes }, track) => {
      const side = sides ? `${'AB'[track]} ` : '';
      if (SHARED.includes(kind) && track > 0) return;
      if (kind !== 'layout') return add(kind, track, 0, `${SHARED.includes(kind) ? '' : side}${NAMES[kind]}`);
      for (let stream = 0; stream < lanes.streams; stream += 1) {
        add(kind, track, stream, `${side}${lanes.streams > 1 ? `stream ${stream}` : NAMES[kind]}`, lanes.streams > MANY ? LOW : HEIGHT);
      }
      return undefined;
    });
  }
  return rows;
}

export const heightOf = (rows: readonly Row[]): number => Math.max(AXIS, ...rows.map((r) => r.top + r.height + GAP));
