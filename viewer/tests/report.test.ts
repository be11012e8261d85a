/** What the plots of the report page show. */

import { describe, expect, test } from 'vitest';
import { clockText, shellWord, type Course, type Distribution } from '../src/report/data';
import { cumulative, histogram, peopleColumns, percentile, stays } from '../src/report/shapes';

const course = (part: Partial<Course>): Course => ({ length: 10_000, bucketMs: 1000, changes: [], events: [], buckets: [], ...part });

test.each([
  [[[5, 1]], 50, 5],
  [[[1, 1], [2, 1]], 50, 1],
  [[[1, 49], [2, 51]], 50, 2],
  [[[1, 99], [900, 1]], 99, 1],
  [[], 50, 0],
] as [Distribution, number, number][])('of %j at most %d %% lie below %d', (distribution, percent, expected) => {
  expect(percentile(distribution, percent)).toBe(expected);
});

describe('a histogram', () => {
  test.each([
    ['one value', [[37, 4]]],
    ['a long tail', [[0, 990], [40, 5], [1_000_000, 5]]],
    ['many values', Array.from({ length: 500 }, (_, value): [number, number] => [value, 1 + (value % 7)])],
  ] as [string, Distribution][])('of %s shares out everything between its edges', (_name, distribution) => {
    const { edges, shares } = histogram(distribution, 10);
    expect(edges.length).toBe(shares.length + 1);
    expect(shares.length).toBeLessThanOrEqual(41);
    expect(shares.reduce((a, b) => a + b, 0)).toBeCloseTo(100);
    expect(edges[0]).toBeCloseTo((distribution[0]?.[0] ?? 0) / 10);
    expect([...edges].sort((a, b) => a - b)).toEqual(edges);
  });
});

test('a curve rises from nothing to all', () => {
  expect(cumulative([[1000, 1], [3000, 3]], 1000)).toEqual({ values: [0, 1, 3, 3.1500000000000004], shares: [0, 25, 100, 100] });
});

test('a layout stays until the next one of its stream; its reframes are its own', () => {
  const changes: Course['changes'] = [[0, 1, 'GROUP', true], [500, 0, 'ROOM', true], [2000, 1, 'GROUP', false], [3000, 1, 'HEAD', true]];
  expect([...stays(course({ changes }))]).toEqual([
    [0, [{ from: 0.5, to: 10, layout: 'ROOM', reframes: [] }]],
    [1, [{ from: 0, to: 3, layout: 'GROUP', reframes: [2] }, { from: 3, to: 10, layout: 'HEAD', reframes: [] }]],
  ]);
});

test.each([[1, 1], [499, 499], [500, 250], [28_800, 497]])('people in %d seconds make %d columns', (seconds, columns) => {
  const { starts, counts } = peopleColumns(course({ length: seconds * 1000, buckets: Array.from({ length: seconds }, () => [2000, 1000, 0]) }));
  expect(starts.length).toBe(columns + 1);
  expect(counts.map((row) => row.length)).toEqual([columns, columns, columns]);
  expect(counts.map((row) => row[0]?.toFixed(3))).toEqual(['2.000', '1.000', '0.000']);
});

test.each([[0, '0:00'], [59.9, '0:59'], [61, '1:01'], [3600, '1:00:00'], [36_061, '10:01:01'], [-1, '0:00']])('%d seconds are %s', (seconds, text) => {
  expect(clockText(seconds)).toBe(text);
});

test.each([['meetings/a-1.jsonl', 'meetings/a-1.jsonl'], ["it's; rm", "'it'\\''s; rm'"]])('a shell takes %s as %s', (text, word) => {
  expect(shellWord(text)).toBe(word);
});
