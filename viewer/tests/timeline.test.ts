import { describe, expect, test } from 'vitest';
import { excerptOf, RecentLines } from '../src/excerpt';
import { filtered } from '../src/filter';
import { Lanes } from '../src/lanes';
import { rowsOf } from '../src/rows';
import { Zoom } from '../src/zoom';
import { meeting } from './meeting';
import { momentsIn } from './states';

const ALL = { start: 0, end: 60_000 };

describe('zooming', () => {
  test('keeps the time under the pointer where it is, and ends with everything', () => {
    const zoom = new Zoom();
    zoom.by(0.5, 15_000, ALL, ALL);
    const half = zoom.spanAt(ALL, 0);
    expect(half).toEqual({ start: 7500, end: 37_500 });
    zoom.by(0.5, 30_000, half, ALL);
    const quarter = zoom.spanAt(ALL, 0);
    expect((30_000 - quarter.start) / 15_000).toBe((30_000 - half.start) / 30_000);
    zoom.by(100, 30_000, quarter, ALL);
    expect(zoom.spanAt(ALL, 0)).toEqual(ALL);
  });
  test('what was moved to stays, until the moment moves out of it', () => {
    const zoom = new Zoom();
    zoom.showSpan({ start: 20_000, end: 30_000 });
    for (const t of [0, 0]) expect(zoom.spanAt(ALL, t).start).toBe(20_000);
    zoom.spanAt(ALL, 25_000);
    const followed = zoom.spanAt(ALL, 31_000);
    expect(followed.start).toBeLessThan(31_000);
    expect(followed.end).toBeGreaterThan(31_000);
    zoom.pan(-1e9, followed);
    expect(zoom.spanAt(ALL, 31_000)).toEqual({ start: 0, end: 10_000 });
  });
});

test('an excerpt begins with what was in force and holds only what goes to the service', () => {
  const lines = [
    { t: 0, recorded: { by: 'x', startedAt: 1000 } },
    { t: 0, property: { a: '1', b: '1' } },
    { t: 0, topic: '/camera', payload: { fynCamId: 0 } },
    { t: 0, topic: '/camera', payload: { fynCamId: 1 } },
    { t: 0, topic: '/ctl', payload: 'reset-layouts' },
    { t: 5, provider: 'fail' },
    { t: 50, property: { b: '2' } },
    { t: 60, topic: '/ICDOut', payload: { heads: [] } },
    { t: 100, topic: '/ICDOut', payload: { heads: [] } },
    { t: 100, topic: '/PRBOut', payload: {} },
    { t: 110, decision: {} },
    { t: 150, topic: '/ctl', payload: 'config-change' },
    { t: 201, topic: '/ICDOut', payload: { heads: [] } },
  ];
  const found = excerptOf([...lines.map((l) => JSON.stringify(l)), 'broken'], { start: 100, end: 200 }).map((l) => JSON.parse(l));
  expect(found).toEqual([
    { t: 0, recorded: { by: 'x', startedAt: 1100 } },
    { t: 0, property: { a: '1', b: '2' } },
    { t: 0, topic: '/camera', payload: { fynCamId: 1 } },
    { t: 0, provider: 'up' },
    { t: 0, topic: '/ICDOut', payload: { heads: [] } },
    { t: 50, topic: '/ctl', payload: 'config-change' },
  ]);
});

test('of a live session that goes on for long, what is in force is kept with the newest lines', () => {
  const recent = new RecentLines();
  const put = (t: number, topic: string, payload: object) => recent.add(t, JSON.stringify({ t, topic, payload }));
  put(0, '/camera', { fynCamId: 0 });
  put(0, '/camera', { fynCamId: 1 });
  for (let t = 0; t < 2000; t += 1) put(t, '/ICDOut', { heads: [] });
  for (let i = 0; i < 10; i += 1) recent.forget(1500);
  const found = excerptOf(recent.texts(), { start: 1600, end: 1700 });
  expect(found[0]).toBe('{"t":0,"topic":"/camera","payload":{"fynCamId":1}}');
  expect(found.length).toBe(1 + 101);
  expect(recent.texts().length).toBeLessThan(1100);
});

test.each([
  ['', '', 13],
  ['', 'reframe', 6],
  ['HEAD adopted', '', 3],
  ['layoutchange.gftoother', 'wait', 6],
  ['nobody says this', '', 0],
] as const)('searching for "%s" of kind "%s" finds %d moments', (text, lane, count) => {
  const moments = momentsIn(meeting({ seconds: 19 })).filter((m) => !m.inferred && m.lane !== 'people' && m.lane !== 'control');
  expect(filtered(moments, { text, lane }).length).toBe(count);
});

test('every stream has a row, two sides have theirs, and many streams take less room', () => {
  const lanesOf = (streams: number) => Object.assign(new Lanes(), { streams });
  const one = rowsOf([{ name: '', lanes: lanesOf(3) }]);
  expect(one.map((r) => r.name)).toEqual(['stream 0', 'stream 1', 'stream 2', 'Waits', 'Reframes', 'People', 'Control']);
  const two = rowsOf([{ name: 'a', lanes: lanesOf(1) }, { name: 'b', lanes: lanesOf(1) }]);
  expect(two.map((r) => r.name)).toEqual(['Differences', 'A Layout', 'B Layout', 'A Waits', 'B Waits', 'A Reframes', 'B Reframes', 'People', 'Control']);
  const many = rowsOf([{ name: '', lanes: lanesOf(17) }]);
  expect(many[1]!.top - many[0]!.top).toBeLessThan(one[1]!.top - one[0]!.top);
});
