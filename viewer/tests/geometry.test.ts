import { describe, expect, test } from 'vitest';
import type { Frame, Layout } from '../src/events';
import { between, camerasOf, eased, headsOf, overlaps, project, resolve, sourceIn } from '../src/geometry';
import { stateOf } from './states';

const box = (left: number, top: number, right: number, bottom: number) => ({ left, top, right, bottom });
const frame = (camera: number, source = box(0, 0, 640, 360), dest = box(0, 0, 1280, 720)): Frame => ({
  index: 0, camera, srcRef: { width: 1280, height: 720 }, source, dest, boundary: null,
});
const layout = (animation: string, ...frames: Frame[]) => ({ animation, frames }) as Layout;

test.each([
  ['the whole source', box(100, 50, 740, 410), box(640, 10, 1280, 730)],
  ['its upper left quarter', box(100, 50, 420, 230), box(640, 10, 960, 370)],
  ['what lies outside stays outside', box(0, 50, 100, 410), box(540, 10, 640, 730)],
])('a box of the camera lands in the output: %s', (_name, from, to) => {
  expect(project(from, box(100, 50, 740, 410), box(640, 10, 1280, 730))).toEqual(to);
});

test('boxes that only touch do not overlap', () => {
  expect(overlaps(box(0, 0, 10, 10), box(10, 0, 20, 10))).toBe(false);
  expect(overlaps(box(0, 0, 10, 10), box(9, 9, 20, 20))).toBe(true);
});

describe('an ease', () => {
  const old = layout('cut', frame(0, box(0, 0, 640, 360)));
  const next = (camera = 0, animation = 'ease') => layout(animation, frame(camera, box(200, 100, 840, 460)));
  test.each([
    ['begins with the old cut', old, next(), 0, box(0, 0, 640, 360)],
    ['is half way in the middle', old, next(), 0.5, box(100, 50, 740, 410)],
    ['ends with the new cut', old, next(), 1, box(200, 100, 840, 460)],
    ['does not move from one camera to another', old, next(1), 0.5, box(200, 100, 840, 460)],
    ['is none when frames came or went', layout('cut', frame(0), frame(0)), next(), 0.5, box(200, 100, 840, 460)],
    ['is none at the first picture', null, next(), 0.5, box(200, 100, 840, 460)],
    ['is none for a cut', old, next(0, 'cut'), 0.5, box(200, 100, 840, 460)],
  ])('%s', (_name, from, to, part, source) => {
    expect(eased(from, to, part)[0]?.source).toEqual(source);
  });
  test('its middle is between the boxes', () => {
    expect(between(box(0, 0, 2, 2), box(10, 20, 30, 40), 0.5)).toEqual(box(5, 10, 16, 21));
  });
});

test.each([
  ['its own', 2, [1, 2], 2],
  ['the first known one when it has none', -1, [3, 1], 1],
  ['none when none is known', -1, [], -1],
])('a frame is cut from %s', (_name, camera, known, expected) => {
  expect(resolve(camera, known)).toBe(expected);
});

test('a source that is stated in another size is scaled to the image', () => {
  expect(sourceIn(frame(0, box(320, 180, 640, 360)), { width: 2560, height: 1440 })).toEqual(box(640, 360, 1280, 720));
  expect(sourceIn({ ...frame(0), srcRef: { width: 0, height: 0 } }, { width: 640, height: 360 })).toEqual(box(0, 0, 640, 360));
});

describe('cameras', () => {
  const head = (camId: number, left = 0) => ({ id: 1, camId, bbox: { left, top: 0, right: left + 10, bottom: 10 } });
  const vision = (...heads: object[]) => ({ t: 0, topic: '/ICDOut', payload: { heads: [{ fynId: 4, associatedHeads: heads }] } });
  const size = (id: number, imageWidth: number) => ({ t: 0, topic: `/cameraParameters/head/${id}`, payload: { imageWidth, imageHeight: 720 } });
  test.each([
    ['those that are told', [size(1, 1920), size(0, 640)], [[0, 640], [1, 1920]]],
    ['those that see someone', [vision(head(3), head(1))], [[1, 1280], [3, 1280]]],
    ['the nameless one alone', [vision(head(-1))], [[-1, 1280]]],
    ['not the nameless one beside others', [vision(head(-1), head(2))], [[2, 1280]]],
  ])('are %s', (_name, lines, expected) => {
    const state = stateOf(...lines);
    expect(camerasOf(state, headsOf(state.vision)).map((c) => [c.id, c.size.width])).toEqual(expected);
  });
  test('heads keep coordinates that do not fit into small numbers', () => {
    const heads = headsOf(stateOf(vision(head(0, 40_000), head(1, 2))).vision);
    expect(heads.map((h) => [h.person, h.camera, h.left, h.right])).toEqual([[4, 0, 40_000, 40_010], [4, 1, 2, 12]]);
  });
});
