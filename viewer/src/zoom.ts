/** Which part of all times the time line shows. */

import { visibleSpan, type Span } from './lanes';

/** Nobody needs less, milliseconds. */
const SHORTEST = 500;

export class Zoom {
  /** Milliseconds that are shown; null shows everything. */
  length: number | null = null;
  /** Where it was moved to; null follows the chosen moment. */
  private start: number | null = null;
  private lastT = Number.NaN;

  /** What is shown while `t` is the moment. A moment that moves out of sight is followed. */
  spanAt(all: Span, t: number): Span {
    const { length } = this;
    const moved = t !== this.lastT && !Number.isNaN(this.lastT);
    this.lastT = t;
    if (length === null || length >= all.end - all.start) return visibleSpan(all, t, null);
    if (this.start !== null && moved && (t < this.start || t > this.start + length)) this.start = null;
    if (this.start === null) return visibleSpan(all, t, length);
    const start = Math.min(Math.max(all.start, this.start), Math.max(all.start, all.end - length));
    return { start, end: start + length };
  }

  show(length: number | null): void {
    this.length = length;
    this.start = null;
  }

  showSpan({ start, end }: Span): void {
    this.length = Math.max(SHORTEST, end - start);
    this.start = start;
  }

  /** The time `at` stays where it is while what is `shown` gets `factor` times as long. Answers what is shown then. */
  by(factor: number, at: number, shown: Span, all: Span): Span {
    const length = Math.max(SHORTEST, (shown.end - shown.start) * factor);
    if (length >= all.end - all.start) {
      this.show(null);
      return all;
    }
    const start = at - ((at - shown.start) / (shown.end - shown.start)) * length;
    this.showSpan({ start, end: start + length });
    return { start, end: start + length };
  }

  /** Answers what is shown then. */
  pan(ms: number, shown: Span): Span {
    if (this.length === null) return shown;
    this.start = shown.start + ms;
    return { start: this.start, end: shown.end + ms };
  }
}
