import { describe, expect, test } from 'vitest';
import { Lanes, LANES, ticks, visibleSpan } from '../src/lanes';
import { meeting } from './meeting';
import { momentsIn } from './states';

function lanesOf(lines: (string | object)[]): Lanes {
  const lanes = new Lanes();
  for (const moment of momentsIn(lines)) lanes.add(moment);
  return lanes;
}

const people = (t: number, n: number) => ({ t, topic: '/PeopleCount', payload: { face_count: n } });
const decision = (t: number, kind: string, stream = 0) => ({ t, decision: { kind, streamid: stream, from: 'HEAD', to: 'GROUP' } });

test.each([
  ['a people count lasts until the next one', [people(0, 2), people(500, 3)], 'people', [[0, 500], [500, null]]],
  ['a wait lasts until it ends', [decision(0, 'pending'), decision(70, 'dropped')], 'wait', [[0, 70], [70, 70]]],
  ['a wait of one stream does not end that of another', [decision(0, 'pending', 0), decision(50, 'pending', 1), decision(70, 'adopted', 1)], 'wait', [[0, null], [50, 70], [70, 70]]],
  ['a reframe does not last', [decision(5, 'reframed')], 'reframe', [[5, 5]]],
] as const)('%s', (_name, lines, lane, expected) => {
  expect(lanesOf([...lines]).of(lane).map((m) => [m.t, m.end])).toEqual(expected);
});

describe('the marks that a span touches', () => {
  const lanes = lanesOf(meeting({ seconds: 60, streams: 2 }));
  test.each([[0, 60_000], [0, 1], [7000, 8000], [5999, 6001], [59_000, 90_000], [-9, -1]])('from %d to %d', (start, end) => {
    for (const lane of LANES) {
      const expected = lanes.of(lane).filter((m) => m.t <= end && (m.t >= start || m.end === null || m.end > start));
      expect(lanes.within(lane, start, end)).toEqual(expected);
    }
  });
});

test.each([[100, 30, 90], [94, 3, null], [105, 30, 110], [1e9, 10, null]])('the mark near %d (at most %d away) is at %s', (t, tolerance, expected) => {
  expect(lanesOf([decision(90, 'reframed'), decision(110, 'reframed')]).nearest('reframe', t, tolerance)?.t ?? null).toBe(expected);
});

test('forgetting keeps what still lasts', () => {
  const lanes = lanesOf([people(0, 2), people(500, 3), decision(100, 'reframed'), decision(200, 'pending')]);
  lanes.forget(400);
  expect(LANES.map((lane) => lanes.of(lane).map((m) => m.t))).toEqual([[], [200], [], [0, 500], []]);
});

test('what was only inferred goes when there are decisions', () => {
  const lanes = lanesOf(meeting({ seconds: 13 }));
  const before = lanes.of('wait').length;
  lanes.dropInferred(['wait', 'reframe']);
  expect(lanes.of('wait').length).toBeLessThan(before);
  expect([...lanes.of('wait'), ...lanes.of('reframe')].some((m) => m.moment.inferred)).toBe(false);
  expect(lanes.of('layout').every((m) => m.moment.inferred)).toBe(true);
});

test.each([
  ['everything', 5000, null, [0, 10_000]],
  ['the beginning', 0, 2000, [0, 2000]],
  ['before and a little after the moment', 5000, 2000, [3600, 5600]],
  ['the end', 10_000, 2000, [8000, 10_000]],
  ['no more than there is', 5000, 99_999, [0, 10_000]],
])('the time line shows %s', (_name, t, length, expected) => {
  expect(Object.values(visibleSpan({ start: 0, end: 10_000 }, t, length))).toEqual(expected);
});

test('times on the axis are round and not too many', () => {
  expect(ticks({ start: 900, end: 10_900 }, 6)).toEqual([2000, 4000, 6000, 8000, 10_000]);
  for (const length of [10, 1000, 33_000, 7_000_000, 90_000_000]) expect(ticks({ start: 0, end: length }, 8).length).toBeLessThanOrEqual(9);
});
