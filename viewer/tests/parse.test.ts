import { describe, expect, test } from 'vitest';
import { headsOf } from '../src/geometry';
import { parseLine } from '../src/parse';
import { meeting } from './meeting';
import { eventsOf, stateOf } from './states';

const faultOf = (line: unknown) => parseLine(typeof line === 'string' ? line : JSON.stringify(line)).fault;
const on = (topic: string, payload: unknown) => ({ t: 1, topic, payload });
const stream = (rest: object) => on('/PRBOut', { streams: [{ streamid: 0, destRef: { width: 1280, height: 720 }, ...rest }] });
const rect = { xoffset: 0, yoffset: 0, width: 10, height: 10 };
const entry = { frameindex: 0, fynCamId: 0, srcRef: { width: 1280, height: 720 }, source: rect, dest: rect };

test.each([
  ['', 'is not JSON'],
  ['{"t":1', 'is not JSON'],
  ['[1]', 'is not a JSON object'],
  ['null', 'is not a JSON object'],
  [{ topic: '/ICDOut' }, '.t is not a number'],
  [{ t: 'soon' }, '.t is not a number'],
  [{ t: 1, topic: 7 }, 'topic is not a text'],
  [on('/ICDOut', 'gibberish'), '/ICDOut: the payload is not JSON'],
  [on('/ICDOut', 7), '/ICDOut: payload is not an object'],
  [on('/ICDOut', {}), 'heads is not a list'],
  [on('/ICDOut', { heads: [5] }), 'heads[0] is not an object'],
  [on('/ICDOut', { heads: Array(600).fill({}) }), 'heads has 600 elements, more than 512'],
  [on('/ICDOut', { heads: [{ fynId: 1, associatedHeads: [{ bbox: { left: 'a' } }] }] }), '.left is not a number'],
  [on('/ICDOut', { heads: [{ fynId: 1, associatedHeads: [{ bbox: { left: 1e9, top: 0, right: 0, bottom: 0 } }] }] }), 'out of range'],
  [on('/PRBOut', {}), 'streams is not a list'],
  [stream({ destRef: undefined }), 'destRef is not an object'],
  [stream({ destRef: { width: -1, height: 1 } }), 'is negative'],
  [stream({ scene: [{ ...entry, source: null }] }), 'source is not an object'],
  [stream({ layoutType: 5 }), 'layoutType is not a text'],
  [on('/TimerDebug', { currentLayout: {} }), 'currentLayout.layouts is not a list'],
  [on('/PeopleCount', { face_count: null }), 'face_count is not a number'],
  [on('/camera', {}), 'fynCamId is not a number'],
  [on('/cameraParameters/head/0', { imageWidth: 0, imageHeight: 720 }), 'camera size 0 x 720'],
  [{ t: 1, provider: 'asleep' }, 'provider "asleep" is not known'],
  [{ t: 1, decision: [] }, 'decision is not an object'],
  [{ t: 1, decision: { kind: 'pending', streamid: 'long' } }, 'decision.streamid is not a number'],
  [{ t: 1, frames: [{}] }, 'frameindex is not a number'],
  [{ t: 1, notice: {} }, 'notice is not a text'],
])('a line that cannot be shown is refused with a reason: %j', (line, reason) => {
  expect(faultOf(line)).toContain(reason);
});

test('no cut, added or changed character of a line makes reading throw', () => {
  const lines = meeting({ people: 2, seconds: 1 }).slice(0, 12);
  for (const line of lines) {
    for (let i = 0; i < line.length; i += 7) {
      for (const broken of [line.slice(0, i), `${line.slice(0, i)}[${line.slice(i)}`, `${line.slice(0, i)}null${line.slice(i + 1)}`]) {
        expect(() => parseLine(broken)).not.toThrow();
      }
    }
  }
});

test.each([
  [{ t: 3 }, { kind: 'time', t: 3 }],
  [{ t: 3, unheardOf: 1 }, { kind: 'time' }],
  [on('/ctl', 'config-change'), { kind: 'control', text: 'config-change' }],
  [on('/ctl/tracking-mode', 'Group'), { kind: 'mode', mode: 'Group' }],
  [on('/somewhere/else', { a: 1 }), { kind: 'control', topic: '/somewhere/else', text: '' }],
  [on('/PeopleCount', { face_count: 3, smallestFaceHeight: 40 }), { kind: 'people', count: 3, smallest: 40 }],
  [on('/PeopleCount', '{"face_count":3}'), { kind: 'people', count: 3 }],
  [on('/cameraParameters/head/2', { imageWidth: 100, imageHeight: 50, horizontalPeriod: 400 }), { id: 2, size: { width: 400, height: 50 } }],
  [on('/PRBOutSecondary/3', { streams: [] }), { kind: 'scene', key: 'camera 3' }],
  [{ t: 1, config: { a: 1, b: null } }, { values: [['a', '1'], ['b', 'null']] }],
  [{ t: 1, decision: { kind: 'dropped', to: 'HEAD' }, title: 'HEAD dropped', sentence: 'HEAD dropped at once' }, { decision: { kind: 'dropped', stream: 0, to: 'HEAD', title: 'HEAD dropped', sentence: 'HEAD dropped at once' } }],
])('%j is read', (line, event) => {
  expect(eventsOf([line])[0]).toMatchObject(event);
});

test('a blank entry is no frame, and a debug entry belongs to the frame before it', () => {
  const nothing = { ...entry, dest: { xoffset: 0, yoffset: 0, width: 0, height: 0 } };
  const [event] = eventsOf([stream({ scene: [nothing, entry, { debugBounds: { xoffset: 5, yoffset: 6, width: 7, height: 8 } }] })]);
  expect(event).toMatchObject({ layouts: [{ frames: [{ boundary: { left: 5, top: 6, right: 12, bottom: 14 } }] }] });
});

describe('the camera that shows a person best', () => {
  const head = (camId: number, rest: object) => ({ id: 1, camId, bbox: { left: 0, top: 0, right: 9, bottom: 9 }, ...rest });
  test.each([
    ['has the lowest rank', [head(0, { qfactor: 3, yaw: 1 }), head(1, { qfactor: 2, yaw: 50 })], 1],
    ['of equal ranks is that to which the person turns', [head(0, { yaw: 40 }), head(1, { yaw: 5 })], 1],
    ['of equal turns is the own one', [head(0, { yaw: 5 }), head(2, { yaw: 5 }), head(1, { yaw: 5 })], 2],
    ['has no rank once it names its camera', [head(0, { qfactor: 9, fynCamId: 0, yaw: 5 }), head(1, { qfactor: 2, yaw: 1 })], 0],
  ])('%s', (_name, associatedHeads, best) => {
    const line = JSON.stringify(on('/ICDOut', { heads: [{ fynId: 7, associatedHeads }] }));
    const { event } = parseLine(line, 2);
    expect(event?.kind === 'vision' && headsOf(event).filter((h) => h.best).map((h) => h.camera)).toEqual([best]);
  });
});

test('a person without a head or an id is left out, as the service does', () => {
  const state = stateOf(on('/ICDOut', { heads: [{ fynId: 1 }, { associatedHeads: [{ camId: 0 }] }, { fynId: 2, associatedHeads: [{ camId: 0 }] }] }));
  expect(state.vision?.people).toBe(1);
  expect(headsOf(state.vision).map((h) => h.person)).toEqual([2]);
});
