/** What the plots show, computed of the figures. */

import type { Course, Distribution } from './data';

const BARS = 40;
/** Columns of the people in the room: more would be narrower than what a screen shows. */
const COLUMNS = 500;

/** The smallest value that at least `percent` of the weight does not exceed. */
export function percentile(distribution: Distribution, percent: number): number {
  const total = distribution.reduce((sum, [, weight]) => sum + weight, 0);
  let sum = 0;
  for (const [value, weight] of distribution) {
    sum += weight;
    if (sum * 100 >= total * percent) return value;
  }
  return 0;
}

/** Per cent of the weight in bars of equal width, from their left edges; the last edge ends the last bar. */
export function histogram(distribution: Distribution, unit: number): { edges: number[]; shares: number[] } {
  const total = distribution.reduce((sum, [, weight]) => sum + weight, 0);
  const low = (distribution[0]?.[0] ?? 0) / unit;
  // The longest tail would squeeze everything else together.
  const high = percentile(distribution, 99) / unit;
  const step = Math.max(1 / unit, (high - low) / BARS);
  const shares = new Array<number>(Math.floor((high - low) / step) + 1).fill(0);
  for (const [value, weight] of distribution) {
    const bar = Math.min(Math.floor((value / unit - low) / step), shares.length - 1);
    shares[bar] = (shares[bar] ?? 0) + (100 * weight) / total;
  }
  return { edges: Array.from({ length: shares.length + 1 }, (_, bar) => low + bar * step), shares };
}

/** Per cent of the weight that is not above each value: where it rises early, most values are small. */
export function cumulative(distribution: Distribution, unit: number): { values: number[]; shares: number[] } {
  const total = distribution.reduce((sum, [, weight]) => sum + weight, 0);
  const values = [0];
  const shares = [0];
  let sum = 0;
  for (const [value, weight] of distribution) {
    sum += weight;
    values.push(value / unit);
    shares.push((100 * sum) / total);
  }
  values.push(((distribution[distribution.length - 1]?.[0] ?? 0) / unit) * 1.05);
  shares.push(100);
  return { values, shares };
}

export interface Stay {
  /** Seconds. */
  from: number;
  to: number;
  layout: string;
  reframes: number[];
}

/** How long each stream shows each layout, by stream. */
export function stays({ changes, length }: Course): Map<number, Stay[]> {
  const streams = new Map<number, Stay[]>();
  for (const [t, stream, layout, isLayout] of changes) {
    const known = streams.get(stream) ?? [];
    streams.set(stream, known);
    const last = known[known.length - 1];
    if (last && !isLayout) {
      last.reframes.push(t / 1000);
      continue;
    }
    if (last) last.to = t / 1000;
    known.push({ from: t / 1000, to: length / 1000, layout, reframes: [] });
  }
  return new Map([...streams].sort(([a], [b]) => a - b));
}

/** People in view, partly cut and off screen, on average over each column; `starts` are seconds, with the end of the last. */
export function peopleColumns({ buckets, bucketMs, length }: Course): { starts: number[]; counts: number[][] } {
  const step = Math.floor(buckets.length / COLUMNS) + 1;
  const columnMs = step * bucketMs;
  const counts: number[][] = [[], [], []];
  const starts: number[] = [];
  buckets.forEach((bucket, index) => {
    const column = Math.floor(index / step);
    starts[column] = (column * columnMs) / 1000;
    bucket.forEach((time, kind) => {
      const row = counts[kind] as number[];
      row[column] = (row[column] ?? 0) + time / columnMs;
    });
  });
  starts.push(length / 1000);
  return { starts, counts };
}
