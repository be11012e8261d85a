/** Why, in words: the newest reason at the chosen moment, and the moments around it as a list to jump by. */

import type { Moment } from '../moments';
import { clock } from '../words';
import { each, html, say, set } from './dom';

/** Moments shown before and after the chosen one. */
const BEFORE = 7;
const AFTER = 4;

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

/** Control messages and people counts are events, not reasons. */
export function reasonAt(moments: readonly Moment[], t: number): Moment | null {
  for (let i = countUpTo(moments, t) - 1; i >= 0; i -= 1) {
    const moment = moments[i] as Moment;
    if (moment.lane !== 'people' && moment.lane !== 'control') return moment;
  }
  return null;
}

export function makeWhy(root: HTMLElement, jump: (t: number) => void): (moments: readonly Moment[], t: number) => void {
  const when = html('p', { class: 'when' });
  const title = html('p', { class: 'title' });
  const reason = html('p', { class: 'reason' });
  const list = html('ol', { class: 'moments' });
  list.addEventListener('click', (event) => {
    const button = (event.target as Element).closest('button');
    if (button?.dataset.t) jump(Number(button.dataset.t));
  });
  root.append(when, title, reason, html('h3', {}, 'Moments'), list);
  return (moments, t) => {
    const chosen = reasonAt(moments, t);
    set(root, { 'data-t': chosen?.t ?? null, 'data-lane': chosen?.lane ?? null });
    say(when, chosen ? `${clock(chosen.t)} · ${chosen.t >= t - 40 ? 'now' : `${((t - chosen.t) / 1000).toFixed(1)} s ago`}` : '');
    say(title, chosen?.title ?? 'Nothing has changed yet');
    say(reason, chosen?.reason ?? 'The reason of a change or a wait appears here.');
    const past = countUpTo(moments, t);
    const near = moments.slice(Math.max(0, past - BEFORE), past + AFTER);
    const makeRow = () => html('li', {}, html('button', { type: 'button' }, html('time'), html('span')));
    each(list, near, makeRow, (row, moment) => {
      const button = row.firstElementChild as HTMLElement;
      const [time, name] = button.children as unknown as [HTMLElement, HTMLElement];
      set(row, { class: `lane-${moment.lane}${moment.t > t ? ' later' : ''}`, 'aria-current': moment === chosen ? 'true' : null });
      set(button, { 'data-t': moment.t, title: moment.reason });
      say(time, clock(moment.t));
      say(name, moment.title);
    });
  };
}
