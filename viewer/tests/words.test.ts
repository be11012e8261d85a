import { describe, expect, test } from 'vitest';
import { momentsIn } from './states';
import { clock, seconds } from '../src/words';
import { reasonsAt } from '../src/why';
import { meeting, scene } from './meeting';

test.each([
  [0, '0 ms'], [999, '999 ms'], [1000, '1 s'], [1500, '1.5 s'], [61_000, '61 s'],
])('%d ms read %s', (ms, text) => expect(seconds(ms)).toBe(text));

test.each([
  [0, '0:00.000'], [61_007, '1:01.007'], [3_600_000, '1:00:00.000'], [-4, '0:00.000'],
])('%d ms on the clock are %s', (ms, text) => expect(clock(ms)).toBe(text));

const decision = (rest: object) => ({ t: 5, decision: { streamid: 0, from: 'HEAD', to: 'GROUP', ...rest } });

test('a decision brings its own words', () => {
  const moments = momentsIn([{ ...decision({ kind: 'adopted' }), title: 'new picture', sentence: 'new picture HEAD -> GROUP' }, decision({ kind: 'whim' })]);
  expect(moments.map((m) => [m.title, m.reason])).toEqual([['new picture', 'new picture HEAD -> GROUP'], ['whim', '']]);
});

describe('why', () => {
  const told = (t: number, kind: string) => ({ t, decision: { kind, streamid: 0, to: 'GROUP' } });
  const pending = told(10, 'pending');
  const dropped = told(20, 'dropped');
  const adopted = told(30, 'adopted');
  const waiting = told(40, 'reframeWait');
  const reframed = told(50, 'reframed');
  const people = { t: 60, topic: '/PeopleCount', payload: { face_count: 3 } };
  const later = (t: number, line: { t: number; decision: object }) => ({ ...line, t });
  test.each([
    ['before anything', [pending], 5, null, null],
    ['while something waits', [pending], 10, null, 'pending'],
    ['once it was dropped', [pending, dropped], 25, null, 'dropped'],
    ['once it was adopted, nothing waits', [pending, adopted], 35, 'adopted', null],
    ['a frame waits after that', [adopted, waiting], 45, 'adopted', 'reframeWait'],
    ['a reframe ends its own wait', [adopted, waiting, reframed], 55, 'reframed', null],
    ['a reframe leaves a layout waiting', [adopted, later(35, pending), waiting, reframed], 55, 'reframed', 'pending'],
    ['a new layout ends the wait of a frame', [later(1, waiting), adopted], 35, 'adopted', null],
    ['a people count is no reason', [adopted, people], 65, 'adopted', null],
    ['what comes later does not count', [adopted, waiting, reframed], 42, 'adopted', 'reframeWait'],
  ])('%s', (_name, lines, t, picture, wait) => {
    const reasons = reasonsAt(momentsIn(lines), t);
    expect([reasons.picture?.title ?? null, reasons.wait?.title ?? null]).toEqual([picture, wait]);
  });
});

test('a people count that is told again is no moment', () => {
  const count = (t: number, n: number) => ({ t, topic: '/PeopleCount', payload: { face_count: n } });
  expect(momentsIn([count(0, 2), count(10, 2), count(20, 1), count(30, 1)]).map((m) => m.title)).toEqual(['2 people', '1 person']);
});

test('among several streams each moment names its own', () => {
  const layouts = { t: 1, topic: '/PRBOut', payload: scene('GROUP', 2, 0, { streams: 2 }) };
  const moment = momentsIn([layouts, decision({ kind: 'adopted', streamid: 1 })]).pop();
  expect(moment?.title).toBe('stream 1: adopted');
});

describe('a recording without decisions', () => {
  const titles = (lines: (string | object)[], lane: string) => momentsIn(lines).filter((m) => m.lane === lane).map((m) => m.title);
  const plain = meeting({ seconds: 13 }).filter((line) => !line.includes('"decision"'));
  test('tells layouts and reframes by the documents', () => {
    expect(titles(plain, 'layout')).toEqual(['GROUP', 'GROUP → HEAD', 'HEAD → GROUP']);
    expect(titles(plain, 'reframe')).toEqual(['reframed', 'reframed']);
    expect(titles(plain, 'wait')).toEqual(['HEAD pending', 'GROUP pending']);
  });
  test('tells a wait that came to nothing', () => {
    const timers = (t: number, pending: string[]) => ({
      t, topic: '/TimerDebug', payload: {
        currentLayout: { layouts: [{ layoutType: 'HEAD', layoutTimer: 0, frames: [] }] },
        nextLayout: { layouts: pending.map((layoutType) => ({ layoutType, layoutTimer: 900, frames: [] })) },
      },
    });
    expect(titles([timers(0, []), timers(10, ['GROUP']), timers(20, ['GROUP']), timers(30, [])], 'wait')).toEqual(['GROUP pending', 'GROUP dropped']);
  });
});
