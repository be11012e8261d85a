/**
 * All events of a recording, or the last minutes of a live session, and the state at any of their moments. States
 * are rebuilt from checkpoints, so memory follows the number of events kept and nothing else.
 */

import type { Event } from './events';
import { EMPTY, reduce, type State } from './state';

/** Events from one checkpoint to the next: what a jump has to replay at most. */
const CHUNK = 128;

interface Chunk {
  /** The state before the chunk's first event. */
  before: State;
  events: Event[];
}

export interface Limits {
  /** Older events are forgotten, milliseconds. */
  keepMs: number;
  keepEvents: number;
}

export const KEEP_ALL: Limits = { keepMs: Number.POSITIVE_INFINITY, keepEvents: Number.POSITIVE_INFINITY };

export class History {
  private chunks: Chunk[] = [];
  private last: State = EMPTY;
  private kept = 0;
  private cached: { chunk: Chunk; used: number; state: State } | null = null;

  constructor(private readonly limits: Limits = KEEP_ALL) {}

  get length(): number {
    return this.kept;
  }

  get start(): number {
    return this.chunks[0]?.events[0]?.t ?? 0;
  }

  get end(): number {
    return this.last.t;
  }

  get latest(): State {
    return this.last;
  }

  /** Times never run backwards: an event that would is moved to the newest time. Returns the state before and after. */
  push(event: Event): { before: State; after: State } {
    const before = this.last;
    if (event.t < before.t) event.t = before.t;
    let chunk = this.chunks[this.chunks.length - 1];
    if (!chunk || chunk.events.length >= CHUNK) {
      chunk = { before, events: [] };
      this.chunks.push(chunk);
    }
    chunk.events.push(event);
    this.kept += 1;
    this.last = reduce(before, event);
    this.forget();
    return { before, after: this.last };
  }

  /** The state after every event up to and including `t`. */
  at(t: number): State {
    if (t >= this.end) return this.last;
    const index = this.chunkBefore(t);
    const chunk = this.chunks[index];
    if (!chunk) return EMPTY;
    let used = 0;
    let state = chunk.before;
    // Playing asks for one moment after the other: go on from the last one.
    if (this.cached?.chunk === chunk && this.cached.state.t <= t) ({ used, state } = this.cached);
    while (used < chunk.events.length) {
      const event = chunk.events[used] as Event;
      if (event.t > t) break;
      state = reduce(state, event);
      used += 1;
    }
    this.cached = { chunk, used, state };
    return state;
  }

  /** The time of the next (direction 1) or last (-1) event for which `wanted` holds; null when there is none. */
  find(t: number, direction: 1 | -1, wanted: (event: Event) => boolean): number | null {
    const first = Math.max(0, this.chunkBefore(t));
    for (let c = first; c >= 0 && c < this.chunks.length; c += direction) {
      const events = (this.chunks[c] as Chunk).events;
      const from = direction === 1 ? 0 : events.length - 1;
      for (let i = from; i >= 0 && i < events.length; i += direction) {
        const event = events[i] as Event;
        if ((event.t - t) * direction > 0 && wanted(event)) return event.t;
      }
    }
    return null;
  }

  /** How many events between `from` (not included) and `to` (included) are `wanted`. */
  count(from: number, to: number, wanted: (event: Event) => boolean): number {
    let found = 0;
    for (let c = Math.max(0, this.chunkBefore(from)); c < this.chunks.length; c += 1) {
      const { events } = this.chunks[c] as Chunk;
      if ((events[0] as Event).t > to) break;
      for (const event of events) if (event.t > from && event.t <= to && wanted(event)) found += 1;
    }
    return found;
  }

  /** The last chunk whose first event is not after `t`, -1 when there is none. */
  private chunkBefore(t: number): number {
    let low = 0;
    let high = this.chunks.length;
    while (low < high) {
      const middle = (low + high) >> 1;
      if (((this.chunks[middle] as Chunk).events[0] as Event).t <= t) low = middle + 1;
      else high = middle;
    }
    return low - 1;
  }

  private forget(): void {
    let first = this.chunks[0];
    while (first && this.chunks.length > 1) {
      const newest = (first.events[first.events.length - 1] as Event).t;
      if (newest >= this.end - this.limits.keepMs && this.kept <= this.limits.keepEvents) return;
      this.chunks.shift();
      this.kept -= first.events.length;
      first = this.chunks[0];
    }
  }
}
