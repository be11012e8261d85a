/** The chosen moment: it follows live data, plays a recording, or stands still. */

export const SPEEDS = [0.1, 0.25, 0.5, 1, 2, 4, 8] as const;

export interface Range {
  start: number;
  end: number;
}

export class Player {
  t = 0;
  playing = false;
  speed = 1;
  /** Follows the newest event instead of playing on its own. */
  following: boolean;

  constructor(readonly live: boolean) {
    this.following = live;
  }

  /** Goes on by `ms` of real time; `newest` is where live data stands by now. */
  advance(ms: number, range: Range, newest: number): void {
    if (this.following) {
      this.t = newest;
      return;
    }
    if (this.playing) this.t += ms * this.speed;
    if (this.t >= range.end && this.playing) {
      if (this.live) this.following = true;
      this.playing = false;
    }
    this.t = Math.min(Math.max(this.t, range.start), Math.max(range.start, range.end));
  }

  jump(t: number, range: Range): void {
    this.following = false;
    this.t = Math.min(Math.max(t, range.start), range.end);
  }

  toggle(range: Range): void {
    if (this.following || this.playing) {
      this.following = false;
      this.playing = false;
      // Whole milliseconds, so that a link to the moment names just this picture.
      this.t = Math.round(this.t);
      return;
    }
    if (this.t >= range.end) this.t = range.start;
    this.playing = true;
  }

  follow(): void {
    if (!this.live) return;
    this.following = true;
    this.playing = false;
  }

  faster(step: 1 | -1): void {
    const at = SPEEDS.findIndex((s) => s === this.speed);
    this.speed = SPEEDS[Math.min(SPEEDS.length - 1, Math.max(0, at + step))] ?? 1;
  }
}
