/** Which moments the list shows and the keys step to. */

import type { Lane, Moment } from './moments';

export interface MomentFilter {
  /** Words that must all stand in title or reason, in any case. */
  text: string;
  lane: Lane | '';
}

export const EVERY_MOMENT: MomentFilter = { text: '', lane: '' };

export function filtered(moments: readonly Moment[], { text, lane }: MomentFilter): readonly Moment[] {
  const words = text.toLowerCase().split(/\s+/).filter(Boolean);
  if (words.length === 0 && lane === '') return moments;
  return moments.filter((m) => (lane === '' || m.lane === lane) && words.every((w) => `${m.title} ${m.reason}`.toLowerCase().includes(w)));
}
