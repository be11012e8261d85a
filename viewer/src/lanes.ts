/** The time line's marks, lane by lane, in order of time. */

import type { Lane, Moment } from './moments';


export const LANES: readonly Lane[] = ['layout', 'wait', 'reframe', 'people', 'control'];

export interface Mark {
  moment: Moment;
  t: number;
  /** When it ended; null while it lasts; `t` for a mark that does not last. */
  end: number | null;
}

/** In these lanes a mark lasts until the next one of its stream. */
const LASTING: ReadonlySet<Lane> = new Set<Lane>(['layout', 'people']);

/** How far back a lasting mark is looked for that reaches into the visible part. */
const MOST_BACK = 2000;

const lasts = ({ lane, begins }: Moment) => LASTING.has(lane) || begins;

export class Lanes {
  private marks = new Map<Lane, Mark[]>(LANES.map((lane) => [lane, []]));
  private readonly open = new Map<string, Mark>();
  /** Changes with every change of the marks. */
  version = 0;
  mostPeople = 1;
  streams = 1;

  add(moment: Moment): void {
    this.version += 1;
    const key = `${moment.lane}${moment.stream}`;
    this.close(key, moment.t);
    // A new picture ends the waits for reframes of the old one.
    if (moment.changes && moment.lane === 'wait') this.close(`reframe${moment.stream}`, moment.t);
    const mark: Mark = { moment, t: moment.t, end: lasts(moment) ? null : moment.t };
    if (mark.end === null) this.open.set(key, mark);
    if (moment.lane === 'layout') this.streams = Math.max(this.streams, moment.stream + 1);
    if (moment.lane === 'people') this.mostPeople = Math.max(this.mostPeople, Number(moment.value) || 0);
    this.of(moment.lane).push(mark);
  }

  private close(key: string, t: number): void {
    const mark = this.open.get(key);
    if (mark) mark.end = t;
    this.open.delete(key);
  }

  of(lane: Lane): Mark[] {
    return this.marks.get(lane) as Mark[];
  }

  /** What decisions explain better is taken away. */
  dropInferred(lanes: readonly Lane[]): void {
    this.version += 1;
    for (const lane of lanes) {
      this.marks.set(lane, this.of(lane).filter((m) => !m.moment.inferred));
      for (const [key, mark] of [...this.open]) if (mark.moment.lane === lane && mark.moment.inferred) this.open.delete(key);
    }
  }

  /** Forgets marks that ended before `start`. */
  forget(start: number): void {
    this.version += 1;
    for (const lane of LANES) {
      const kept = this.of(lane).filter((m) => m.end === null || m.end >= start);
      this.marks.set(lane, kept);
    }
  }

  /** Number of marks in `lane` that begin before `t`. */
  private countBefore(lane: Lane, t: number): number {
    const marks = this.of(lane);
    let low = 0;
    let high = marks.length;
    while (low < high) {
      const middle = (low + high) >> 1;
      if ((marks[middle] as Mark).t < t) low = middle + 1;
      else high = middle;
    }
    return low;
  }

  /** Marks that touch the span from `start` to `end`, in order. */
  within(lane: Lane, start: number, end: number): Mark[] {
    const marks = this.of(lane);
    const first = this.countBefore(lane, start);
    const reaching = marks.slice(Math.max(0, first - MOST_BACK), first).filter((m) => m.end === null || m.end > start);
    const found = reaching;
    for (let i = first; i < marks.length && (marks[i] as Mark).t <= end; i += 1) found.push(marks[i] as Mark);
    return found;
  }

  /** The mark of a stream that lasts at `t`. */
  covering(lane: Lane, stream: number, t: number): Mark | null {
    return this.within(lane, t, t).filter((m) => m.moment.stream === stream && (m.end === null || m.end > t)).pop() ?? null;
  }

  /** The mark nearest to `t`, at most `tolerance` milliseconds away. */
  nearest(lane: Lane, t: number, tolerance: number): Mark | null {
    const marks = this.of(lane);
    const next = this.countBefore(lane, t);
    const candidates = [marks[next - 1], marks[next]].filter((m): m is Mark => m !== undefined && Math.abs(m.t - t) <= tolerance);
    return candidates.sort((a, b) => Math.abs(a.t - t) - Math.abs(b.t - t))[0] ?? null;
  }
}

export interface Span {
  start: number;
  end: number;
}

/** The part of `all` that is visible at `t`, `length` milliseconds long (null: everything). */
export function visibleSpan(all: Span, t: number, length: number | null): Span {
  const whole = Math.max(1000, all.end - all.start);
  const shown = Math.min(length ?? whole, whole);
  const start = Math.min(Math.max(all.start, t - shown * 0.7), Math.max(all.start, all.end - shown));
  return { start, end: start + shown };
}

const STEPS = [100, 200, 500, 1000, 2000, 5000, 10_000, 15_000, 30_000, 60_000, 120_000, 300_000, 600_000, 1_800_000, 3_600_000];

/** Round times between which at most `most` fit into the span. */
export function ticks({ start, end }: Span, most: number): number[] {
  const least = (end - start) / Math.max(1, most);
  const step = STEPS.find((s) => s >= least) ?? Math.ceil(least / 3_600_000) * 3_600_000;
  const found: number[] = [];
  for (let t = Math.ceil(start / step) * step; t <= end; t += step) found.push(t);
  return found;
}
