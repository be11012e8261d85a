/** The moments around the chosen one, as a list to jump by, of all or of those that are searched for. */

import { EVERY_MOMENT, type MomentFilter } from '../filter';
import type { Moment } from '../moments';
import { countUpTo } from '../why';
import { clock } from '../words';
import { each, html, say, set } from './dom';

/** Moments shown before and after the chosen one. */
const BEFORE = 4;
const AFTER = 3;

const KINDS: [MomentFilter['lane'], string][] = [
  ['', 'all'],
  ['layout', 'layouts'],
  ['wait', 'waits and new pictures'],
  ['reframe', 'reframes'],
  ['control', 'control'],
];

export class MomentList {
  private readonly words = html('input', { type: 'search', placeholder: 'Search', 'aria-label': 'Search moments (/)' });
  private readonly kind = html('select', { 'aria-label': 'Kind of moments' });
  private readonly found = html('span', { class: 'found', role: 'status' });
  private readonly list = html('ol');
  private filter = EVERY_MOMENT;

  constructor(root: HTMLElement, actions: { jump: (t: number) => void; filter: (filter: MomentFilter) => void }) {
    this.kind.append(...KINDS.map(([value, name]) => html('option', { value }, name)));
    const changed = () => {
      this.filter = { text: this.words.value, lane: this.kind.value as MomentFilter['lane'] };
      actions.filter(this.filter);
    };
    this.words.addEventListener('input', changed);
    this.kind.addEventListener('change', changed);
    this.list.addEventListener('click', (event) => {
      const button = (event.target as Element).closest('button');
      if (button?.dataset.t) actions.jump(Number(button.dataset.t));
    });
    root.append(html('div', { class: 'filter' }, this.words, this.kind, this.found), this.list);
  }

  search(): void {
    this.words.focus();
  }

  /** `moments` are those that the filter leaves. */
  draw(moments: readonly Moment[], t: number): void {
    const past = countUpTo(moments, t);
    const first = Math.max(0, Math.min(past - BEFORE, moments.length - BEFORE - AFTER));
    const near = moments.slice(first, first + BEFORE + AFTER);
    const current = moments[past - 1];
    say(this.found, this.filter.text || this.filter.lane ? `${moments.length} found` : '');
    const makeRow = () => html('li', {}, html('button', { type: 'button' }, html('time'), html('span')));
    each(this.list, near, makeRow, (row, moment) => {
      const button = row.firstElementChild as HTMLElement;
      const [time, name] = button.children as unknown as [HTMLElement, HTMLElement];
      set(row, { class: moment.t > t ? 'later' : null, 'aria-current': moment === current ? 'true' : null });
      set(button, { 'data-t': moment.t, title: moment.reason });
      say(time, clock(moment.t));
      say(name, moment.title);
    });
  }
}
