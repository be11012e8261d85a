/** What the page could not show: which line, and why. */

import { html, say, set } from './dom';

/** Reasons kept; beyond them only the number grows. */
const KEPT = 100;

export class Problems {
  private count = 0;
  private readonly summary = html('summary');
  private readonly list = html('ol');

  constructor(private readonly root: HTMLDetailsElement) {
    root.hidden = true;
    root.append(this.summary, this.list);
  }

  add(line: number, reason: string): void {
    this.count += 1;
    this.root.hidden = false;
    say(this.summary, `${this.count} ${this.count === 1 ? 'line' : 'lines'} not shown`);
    if (this.list.childElementCount >= KEPT) this.list.firstElementChild?.remove();
    const row = html('li', {}, `line ${line}: ${reason}`);
    set(row, { 'data-line': line });
    this.list.append(row);
  }
}
