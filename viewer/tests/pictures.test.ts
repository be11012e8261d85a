import { describe, expect, test } from 'vitest';
import type { Layout } from '../src/events';
import { headsOf } from '../src/geometry';
import { FRAME_COLOURS, frameColour } from '../src/palette';
import { isDashed, outputOf, roomOf } from '../src/pictures';
import { remainingAt, transitionAt, type Shown } from '../src/state';
import { headAt, meeting, scene, speakerAt, tiles } from './meeting';
import { stateOf } from './states';

const upTo = (t: number, options: Parameters<typeof meeting>[0]) =>
  stateOf(...meeting({ seconds: 20, ...options }).filter((line) => (JSON.parse(line) as { t: number }).t <= t));

test.each([500, 6500, 9000, 13_000])('at %d ms the room shows heads, speaker and cuts where they are', (t) => {
  const state = upTo(t, { people: 4 });
  const at = state.vision?.t as number;
  const cameras = roomOf(state);
  expect(cameras.map((c) => [c.camera.id, c.own])).toEqual([[0, true], [1, false]]);
  for (const { camera, heads } of cameras) {
    expect(heads).toHaveLength(4);
    for (const head of heads) {
      expect(head).toMatchObject(headAt(head.person, 4, camera.id, at));
      expect([head.speaks, head.best]).toEqual([head.person === speakerAt(4, at), camera.id === head.person % 2]);
    }
  }
  const layout = state.decided.get(0) as Layout;
  const cut = tiles(4, layout.type, state.shown.get('/0')?.since as number);
  for (const [index, tile] of cut.entries()) {
    const drawn = cameras.find((c) => c.camera.id === tile.camera)?.frames.find((f) => f.index === index);
    expect(drawn).toMatchObject({ source: tile.source, dest: tile.dest, number: index });
    expect(drawn?.boundary).not.toBeNull();
    expect(drawn?.offCentre).not.toBeNull();
  }
  expect(cameras.flatMap((c) => c.frames)).toHaveLength(cut.length);
});

test('frames of several streams have colours of their own, and a picture for another camera the same ones', () => {
  const line = (topic: string, streams: number) => ({ t: 1, topic, payload: scene('HEAD', 3, 0, { streams }) });
  const vision = meeting({ people: 3, seconds: 1 }).slice(1, 5);
  const state = stateOf(...vision, line('/PRBOut', 2), line('/PRBOutSecondary/1', 1));
  expect(roomOf(state).flatMap((c) => c.frames).map((f) => [f.label, f.number]).sort()).toEqual([['0·0', 0], ['0·1', 1], ['0·2', 2], ['1·0', 3]]);
  expect(outputOf(state, 1).map((p) => [p.shown.label, p.tiles.map((t) => t.number)])).toEqual([
    ['stream 0', [0, 1, 2]], ['stream 1', [3]], ['camera 1, stream 0', [0, 1, 2]],
  ]);
});

test('frames beyond the colours are told apart by dashes', () => {
  const looks = Array.from({ length: 2 * FRAME_COLOURS.length }, (_, n) => `${frameColour(n)}${isDashed(n)}`);
  expect(new Set(looks).size).toBe(looks.length);
});

describe('the output', () => {
  test('shows in each tile whose head is in it', () => {
    const [picture] = outputOf(upTo(6100, { people: 4 }), 9999);
    expect(picture?.tiles.map((t) => t.index)).toEqual([0, 1, 2, 3]);
    for (const tile of picture?.tiles ?? []) expect(tile.heads.map((h) => h.person)).toContain(tile.index);
  });
  test.each([
    ['cut', 30, 1, 0],
    ['dissolve', 30, 1 / 3, 1],
    ['dissolve', 90, 1, 0],
    ['ease', 30, 0.25, 0],
    ['ease', 120, 1, 0],
  ] as const)('after %s, %d ms on, has been played to %d', (animation, ms, played, fading) => {
    const state = upTo(6050, { animation, people: 2 });
    const since = state.shown.get('/0')?.since as number;
    const [picture] = outputOf(state, since + ms);
    expect(picture?.played).toBeCloseTo(played);
    expect(picture?.fading).toHaveLength(fading);
  });
  test('a debug document does not change it', () => {
    const debug = { t: 2, topic: '/PRBOutDebug', payload: scene('HEAD', 3, 0) };
    const state = stateOf({ t: 1, topic: '/PRBOut', payload: scene('GROUP', 3, 0) }, debug);
    expect(outputOf(state, 2).map((p) => p.shown.layout.type)).toEqual(['GROUP']);
    expect(state.decided.get(0)?.type).toBe('HEAD');
  });
  test('the first picture has nothing to come from', () => {
    const shown = { previous: null, since: 0, layout: { animation: 'ease', duration: 100 } } as Shown;
    expect(transitionAt(shown, 10)).toBe(1);
  });
  test('a stream that is gone is not shown any more', () => {
    const state = stateOf({ t: 1, topic: '/PRBOut', payload: scene('GROUP', 3, 0, { streams: 2 }) }, { t: 2, topic: '/PRBOut', payload: scene('GROUP', 3, 0) });
    expect(outputOf(state, 2)).toHaveLength(1);
  });
});

describe('waits', () => {
  const timers = (t: number, remaining: number, pending: string, frameTimer: number) => ({
    t, topic: '/TimerDebug', payload: {
      currentLayout: { layouts: [{ layoutType: 'HEAD', layoutTimer: 0, frames: [{ frameindex: 0, stream: 0, headPosition: 'HEAD_ON_EDGE', frameTimer }] }] },
      nextLayout: { layouts: [{ layoutType: pending, layoutTimer: remaining, frames: [] }] },
    },
  });
  test('run down between documents, never below nothing', () => {
    const wait = stateOf(timers(100, 2000, 'GROUP', 0)).waits[0]?.pending;
    expect([100, 600, 2100, 9999].map((t) => remainingAt(wait as NonNullable<typeof wait>, t))).toEqual([2000, 1500, 0, 0]);
  });
  test.each([
    ['goes on', timers(600, 1500, 'GROUP', 0), 2000],
    ['goes on although a document is late', timers(600, 1530, 'GROUP', 0), 2000],
    ['begins again', timers(600, 2000, 'GROUP', 0), 2000],
    ['is another one', timers(600, 1200, 'PROXIMITY', 0), 1200],
  ])('keep their whole length: it %s', (_name, second, total) => {
    expect(stateOf(timers(100, 2000, 'GROUP', 0), second).waits[0]?.pending?.total).toBe(total);
  });
  test('of a frame are kept by its head position', () => {
    const state = stateOf(timers(0, 0, 'GROUP', 1500), timers(500, 0, 'GROUP', 1000));
    expect(state.waits[0]?.frames[0]).toMatchObject({ headPosition: 'HEAD_ON_EDGE', remaining: 1000, total: 1500, at: 500 });
  });
});

test('a head that speaks is told by its flag alone', () => {
  const heads = headsOf(upTo(100, { people: 3 }).vision);
  expect(heads.filter((h) => h.speaks).map((h) => h.person)).toEqual([0, 0]);
});
