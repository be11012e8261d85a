/** What the page could not show: which line, and why; and what the server has to say. */

import type { Complaints } from '../side';
import { html, say, type Attributes } from './dom';

/** Reasons kept; beyond them only the number grows. */
const KEPT = 100;

export class Problems implements Complaints {
  private lines = 0;
  private notices = 0;
  private readonly summary = html('summary');
  private readonly list = html('ol');

  constructor(private readonly root: HTMLDetailsElement) {
    root.hidden = true;
    root.append(this.summary, this.list);
  }

  add(line: number, reason: string): void {
    this.lines += 1;
    this.put(`line ${line}: ${reason}`, { 'data-line': line });
  }

  /** What the server says that it could not pass on, or only in part. */
  notice(text: string): void {
    this.notices += 1;
    this.put(text, { class: 'notice' });
  }

  private put(text: string, attributes: Attributes): void {
    this.root.hidden = false;
    const counted = (n: number, one: string, rest: string) => (n > 0 ? [`${n} ${one}${n === 1 ? '' : 's'}${rest}`] : []);
    say(this.summary, [...counted(this.lines, 'line', ' not shown'), ...counted(this.notices, 'notice', '')].join(', '));
    if (this.list.childElementCount >= KEPT) this.list.firstElementChild?.remove();
    this.list.append(html('li', attributes, text));
  }
}
