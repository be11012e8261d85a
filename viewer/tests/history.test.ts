import { describe, expect, test } from 'vitest';
import { History } from '../src/history';
import { EMPTY, reduce } from '../src/state';
import { meeting, PERIOD } from './meeting';
import { eventsOf } from './states';

const events = () => eventsOf(meeting({ people: 3, seconds: 15 }));

function filled(limits?: { keepMs: number; keepEvents: number }): History {
  const history = new History(limits);
  for (const event of events()) history.push(event);
  return history;
}

test('at any time, in any order, the state is that of all events up to then', () => {
  const history = filled();
  const all = events();
  const { end } = history;
  for (const t of [end, 0, PERIOD, 7000, 7001, 6999, 3 * PERIOD, end - 1, end + 500, 14_000, 14_010, 14_000, -5]) {
    expect(history.at(t)).toEqual(all.filter((e) => e.t <= t).reduce(reduce, EMPTY));
  }
});

test('what happens within one time is told apart from the next', () => {
  const history = filled();
  const vision = (t: number) => history.at(t).vision?.t;
  expect([vision(PERIOD - 1), vision(PERIOD), vision(2 * PERIOD - 1)]).toEqual([0, PERIOD, PERIOD]);
});

test.each([
  [100, 1, 132],
  [132, 1, 165],
  [132, -1, 99],
  [-10, 1, 0],
  [0, -1, null],
  [99_999, 1, null],
  [99_999, -1, 14_982],
] as const)('from %d the nearest vision result in direction %d is at %s', (t, direction, expected) => {
  expect(filled().find(t, direction, (e) => e.kind === 'vision')).toBe(expected);
});

test('time does not run backwards', () => {
  const history = filled();
  const { end } = history;
  history.push({ kind: 'mode', t: 3, mode: 'Late' });
  expect([history.end, history.latest.mode, history.at(4).mode]).toEqual([end, 'Late', '']);
});

describe('limits', () => {
  test.each([
    ['time', { keepMs: 5000, keepEvents: 1e9 }],
    ['number', { keepMs: 1e9, keepEvents: 500 }],
  ])('of %s make it forget, and what is kept stays right', (_name, limits) => {
    const whole = filled();
    const history = filled(limits);
    expect(history.length).toBeLessThan(whole.length / 2);
    expect(history.start).toBeGreaterThan(5000);
    for (let t = history.start; t <= history.end; t += 501) expect(history.at(t)).toEqual(whole.at(t));
  });
});
