/** Where in a camera's video file the frames of vision results are. */

import type { VisionEvent } from './events';

interface NumberedFrame {
  number: number;
  /** Milliseconds since 1970, or since the file began. */
  taken: number;
}

/** Frame 1 is the file's first; who comes later counts back from the frames that it has seen. */
export class FootageClock {
  private first: NumberedFrame | null = null;
  private last: NumberedFrame | null = null;

  note({ frameNumber: number, taken }: VisionEvent): void {
    if (taken === null) return;
    // Whoever sees has begun again.
    if (this.first === null || this.last === null || number <= this.last.number) this.first = { number, taken };
    this.last = { number, taken };
  }

  /** Seconds from the beginning of the file to the middle of the frame; null while nothing tells. */
  at(vision: VisionEvent | null): number | null {
    const { first, last } = this;
    if (!vision || vision.taken === null || !first || !last) return null;
    const before = Math.max(0, first.number - 1);
    const frames = last.number - first.number;
    if (before > 0 && frames === 0) return null;
    const interval = frames > 0 ? (last.taken - first.taken) / frames : 0;
    return Math.max(0, (vision.taken - first.taken + (before + 0.5) * interval) / 1000);
  }
}
