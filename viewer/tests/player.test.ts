import { describe, expect, test } from 'vitest';
import { Player, SPEEDS } from '../src/player';

const RANGE = { start: 1000, end: 5000 };

function recording(t = RANGE.start): Player {
  const player = new Player(false);
  player.jump(t, RANGE);
  return player;
}

test.each([
  [1, 100, 2100],
  [0.1, 100, 2010],
  [8, 250, 4000],
  [8, 1000, 5000],
])('at speed %d, %d ms go on to %d', (speed, ms, expected) => {
  const player = recording(2000);
  player.speed = speed;
  player.toggle(RANGE);
  player.advance(ms, RANGE, RANGE.end);
  expect(player.t).toBeCloseTo(expected);
  expect(player.playing).toBe(expected < RANGE.end);
});

test('it stops at a whole millisecond, so that a link can name it', () => {
  const player = recording(2000);
  player.toggle(RANGE);
  player.advance(16.7, RANGE, RANGE.end);
  player.toggle(RANGE);
  expect(player.t).toBe(2017);
});

test('playing begins again at the start when it stands at the end', () => {
  const player = recording(RANGE.end);
  player.toggle(RANGE);
  expect([player.t, player.playing]).toEqual([RANGE.start, true]);
});

test.each([[-5, 1000], [99_999, 5000], [3000, 3000]])('a jump to %d lands at %d', (to, expected) => {
  expect(recording(to).t).toBe(expected);
});

test('speeds end with the slowest and the fastest', () => {
  const player = recording();
  for (let i = 0; i < 20; i += 1) player.faster(1);
  expect(player.speed).toBe(SPEEDS[SPEEDS.length - 1]);
  for (let i = 0; i < 20; i += 1) player.faster(-1);
  expect(player.speed).toBe(SPEEDS[0]);
});

describe('live', () => {
  const live = () => new Player(true);
  test('it follows what is newest', () => {
    const player = live();
    player.advance(16, RANGE, 5040);
    expect(player.t).toBe(5040);
  });
  test('a jump back stays there, and follow returns', () => {
    const player = live();
    player.jump(2000, RANGE);
    player.advance(16, { start: 1000, end: 5033 }, 5033);
    expect([player.t, player.following]).toEqual([2000, false]);
    player.follow();
    player.advance(16, RANGE, 5066);
    expect(player.t).toBe(5066);
  });
  test('playing on from the past ends in following', () => {
    const player = live();
    player.jump(4990, RANGE);
    player.toggle(RANGE);
    player.advance(16, RANGE, 5000);
    expect([player.following, player.playing]).toEqual([true, false]);
  });
  test('what is forgotten cannot be shown', () => {
    const player = live();
    player.jump(1000, RANGE);
    player.advance(16, { start: 3000, end: 6000 }, 6000);
    expect(player.t).toBe(3000);
  });
});
