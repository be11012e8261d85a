/** Which moments explain what is seen at a time. */

import type { Moment } from './moments';

/** Number of moments not after `t`; they are in order of time. */
export function countUpTo(moments: readonly Moment[], t: number): number {
  let low = 0;
  let high = moments.length;
  while (low < high) {
    const middle = (low + high) >> 1;
    if ((moments[middle] as Moment).t <= t) low = middle + 1;
    else high = middle;
  }
  return low;
}

export interface Reasons {
  /** What last changed the picture. */
  picture: Moment | null;
  /** What last happened to a wait that no change of the picture has ended. */
  wait: Moment | null;
}

/** Control messages and people counts are events, not reasons; a decision says more than the document that follows from it. */
export function reasonsAt(moments: readonly Moment[], t: number): Reasons {
  let picture: Moment | null = null;
  let wait: Moment | null = null;
  /** Waits of these lanes and streams have ended since; a new layout ends those for reframes, too. */
  const ended = new Set<string>();
  for (let i = countUpTo(moments, t) - 1; i >= 0; i -= 1) {
    const moment = moments[i] as Moment;
    if (moment.changes) {
      if (!picture || (picture.inferred && !moment.inferred && moment.t === picture.t)) picture = moment;
      ended.add(`${moment.lane}${moment.stream}`);
      if (moment.lane !== 'reframe') ended.add(`reframe${moment.stream}`).add(`wait${moment.stream}`);
    } else if (moment.waits && !ended.has(`${moment.lane}${moment.stream}`)) {
      wait ??= moment;
    }
    if (picture && moment.t < picture.t && (wait || picture.lane !== 'reframe')) break;
  }
  return { picture, wait };
}
