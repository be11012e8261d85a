/** Reads the lines of protocol.md. A line becomes one event, or a fault with a reason in words; nothing throws. */

import { HEAD_BEST, HEAD_SPEAKS } from './events';
import type { Box, Decision, Event, Frame, FrameExtra, Layout, Size, TimedLayout, VisionEvent } from './events';

export type Parsed = { event: Event; fault: null } | { event: null; fault: string };

/** Sizes that no real message reaches; beyond them a line is refused instead of drawn. */
const MOST = { people: 512, frames: 64, streams: 16, pixels: 100_000 } as const;

class Fault extends Error {}

type Obj = Record<string, unknown>;

function isObj(value: unknown): value is Obj {
  return typeof value === 'object' && value !== null && !Array.isArray(value);
}

function obj(value: unknown, where: string): Obj {
  if (!isObj(value)) throw new Fault(`${where} is not an object`);
  return value;
}

function list(value: unknown, where: string, most: number): unknown[] {
  if (!Array.isArray(value)) throw new Fault(`${where} is not a list`);
  if (value.length > most) throw new Fault(`${where} has ${value.length} elements, more than ${most}`);
  return value;
}

function num(from: Obj, key: string, where: string, missing?: number): number {
  const value = from[key] ?? missing;
  if (typeof value !== 'number' || !Number.isFinite(value)) throw new Fault(`${where}.${key} is not a number`);
  return value;
}

function pixels(from: Obj, key: string, where: string): number {
  const value = num(from, key, where);
  if (Math.abs(value) > MOST.pixels) throw new Fault(`${where}.${key} is ${value}, out of range`);
  return value;
}

function text(from: Obj, key: string, missing?: string): string {
  const value = from[key] ?? missing;
  if (typeof value !== 'string') throw new Fault(`${key} is not a text`);
  return value.length > 2000 ? `${value.slice(0, 2000)} …` : value;
}

function box(value: unknown, where: string): Box {
  const o = obj(value, where);
  return {
    left: pixels(o, 'left', where),
    top: pixels(o, 'top', where),
    right: pixels(o, 'right', where),
    bottom: pixels(o, 'bottom', where),
  };
}

function offsetBox(value: unknown, where: string): Box {
  const o = obj(value, where);
  const left = pixels(o, 'xoffset', where);
  const top = pixels(o, 'yoffset', where);
  return { left, top, right: left + pixels(o, 'width', where), bottom: top + pixels(o, 'height', where) };
}

function size(value: unknown, where: string): Size {
  const o = obj(value, where);
  const found = { width: pixels(o, 'width', where), height: pixels(o, 'height', where) };
  if (found.width < 0 || found.height < 0) throw new Fault(`${where} is negative`);
  return found;
}

/** The order in which a person's cameras show it best: quality rank, then turn of the head, then the own camera. */
function bestOf(heads: Obj[], own: number): Obj | undefined {
  const rank = (h: Obj) => (h.fynCamId === undefined && typeof h.qfactor === 'number' ? h.qfactor : 1);
  const yaw = (h: Obj) => (typeof h.yaw === 'number' ? h.yaw : 10);
  return [...heads].sort(
    (a, b) => rank(a) - rank(b) || yaw(a) - yaw(b) || Number(b.camId === own) - Number(a.camId === own),
  )[0];
}

const isSmall = (n: number) => n >= -32768 && n <= 32767;
const packed = (rows: number[]) => (rows.every(isSmall) ? Int16Array.from(rows) : Int32Array.from(rows));

function vision(t: number, payload: Obj, own: number): VisionEvent {
  const rows: number[] = [];
  let people = 0;
  list(payload.heads, 'heads', MOST.people).forEach((element, i) => {
    const where = `heads[${i}]`;
    const person = obj(element, where);
    const id = num(person, 'fynId', where, -1);
    const heads = list(person.associatedHeads ?? [], `${where}.associatedHeads`, MOST.streams).map((h) =>
      obj(h, `${where}.associatedHeads`),
    );
    // Without a head or a valid id the service drops the person, too.
    if (id < 0 || heads.length === 0) return;
    people += 1;
    const best = bestOf(heads, own);
    heads.forEach((head) => {
      const b = box(head.bbox ?? { left: 0, top: 0, right: 0, bottom: 0 }, `${where}.bbox`);
      const flags = (head.isSpeaker === true ? HEAD_SPEAKS : 0) | (head === best ? HEAD_BEST : 0);
      rows.push(id, num(head, 'camId', where, -1), b.left, b.top, b.right, b.bottom, flags);
    });
  });
  const taken = typeof payload.timestamp === 'number' ? payload.timestamp : null;
  return { kind: 'vision', t, frameNumber: num(payload, 'frameNumber', 'vision result', 0), taken, people, heads: packed(rows) };
}

function frames(scene: unknown, where: string): Frame[] {
  const found: Frame[] = [];
  list(scene, where, 2 * MOST.frames).forEach((element, i) => {
    const at = `${where}[${i}]`;
    const o = obj(element, at);
    const last = found[found.length - 1];
    if (o.debugBounds !== undefined) {
      if (last) last.boundary = offsetBox(o.debugBounds, `${at}.debugBounds`);
      return;
    }
    found.push({
      index: num(o, 'frameindex', at),
      camera: num(o, 'fynCamId', at),
      srcRef: size(o.srcRef, `${at}.srcRef`),
      source: offsetBox(o.source, `${at}.source`),
      dest: offsetBox(o.dest, `${at}.dest`),
      boundary: null,
    });
  });
  // A stream that has nothing to show carries one blank entry.
  return found.filter((f) => f.dest.right > f.dest.left && f.dest.bottom > f.dest.top);
}

function layouts(payload: Obj): Layout[] {
  return list(payload.streams, 'streams', MOST.streams).map((element, i) => {
    const where = `streams[${i}]`;
    const o = obj(element, where);
    return {
      stream: num(o, 'streamid', where),
      type: text(o, 'layoutType', 'NONE'),
      mode: text(o, 'TrackingMode', ''),
      animation: text(o, 'animation', 'cut'),
      duration: num(o, 'duration', where, 0),
      frameNumber: num(o, 'frameNumber', where, 0),
      sceneNumber: num(o, 'sceneNumber', where, 0),
      faceCount: num(o, 'facecount', where, 0),
      speaker: num(o, 'activespeaker', where, -1),
      size: size(o.destRef, `${where}.destRef`),
      frames: frames(o.scene ?? [], `${where}.scene`),
    };
  });
}

function timedLayouts(half: unknown, where: string): TimedLayout[] {
  const o = obj(half, where);
  return list(o.layouts, `${where}.layouts`, MOST.streams).map((element, i) => {
    const layout = obj(element, `${where}.layouts[${i}]`);
    const inside = list(layout.frames ?? [], `${where}.frames`, MOST.frames).map((f) => obj(f, `${where}.frames`));
    return {
      stream: inside[0] ? num(inside[0], 'stream', where, i) : i,
      type: text(layout, 'layoutType', 'NONE'),
      remaining: num(layout, 'layoutTimer', where, 0),
      frames: inside.map((f) => ({
        index: num(f, 'frameindex', where),
        type: text(f, 'frameType', ''),
        headPosition: text(f, 'headPosition', 'CENTER'),
        remaining: num(f, 'frameTimer', where, 0),
      })),
    };
  });
}

function decision(line: Obj): Decision {
  const o = obj(line.decision, 'decision');
  const kind = text(o, 'kind');
  return {
    stream: num(o, 'streamid', 'decision', 0),
    kind,
    to: text(o, 'to', ''),
    title: text(line, 'title', kind),
    sentence: text(line, 'sentence', ''),
  };
}

function extras(value: unknown): FrameExtra[] {
  return list(value, 'frames', MOST.frames * MOST.streams).map((element, i) => {
    const where = `frames[${i}]`;
    const o = obj(element, where);
    const maybe = (key: string) => (o[key] === undefined || o[key] === null ? null : box(o[key], `${where}.${key}`));
    return {
      stream: num(o, 'stream', where, 0),
      index: num(o, 'frameindex', where),
      boundary: maybe('detectionBoundary'),
      offCenterBound: maybe('offCenterBound'),
      headPosition: o.headPosition === undefined ? null : text(o, 'headPosition'),
      heads: list(o.heads ?? [], `${where}.heads`, MOST.people).map(Number),
    };
  });
}

function json(payload: unknown): Obj {
  if (typeof payload !== 'string') return obj(payload, 'payload');
  try {
    return obj(JSON.parse(payload), 'payload');
  } catch (error) {
    throw error instanceof Fault ? error : new Fault('the payload is not JSON');
  }
}

function camera(t: number, topic: string, payload: Obj): Event {
  const last = Number(topic.split('/')[3]);
  const height = pixels(payload, 'imageHeight', 'payload');
  const period = typeof payload.horizontalPeriod === 'number' ? pixels(payload, 'horizontalPeriod', 'payload') : 0;
  const width = period || pixels(payload, 'imageWidth', 'payload');
  if (width <= 0 || height <= 0) throw new Fault(`camera size ${width} x ${height}`);
  return { kind: 'camera', t, id: Number.isInteger(last) ? last : Number.NaN, size: { width, height, wraps: period > 0 } };
}

function service(t: number, payload: Obj): Event {
  const { state, provider } = payload;
  if (state !== 'up' && state !== 'down' && state !== 'lost') throw new Fault(`the service is "${String(state)}", which is not known`);
  return { kind: 'service', t, state, provider: typeof provider === 'boolean' ? provider : null };
}

/** First match wins; a topic also covers everything beneath it. */
const READERS: [string, (t: number, topic: string, payload: unknown, own: number) => Event][] = [
  ['/ICDOut', (t, _topic, p, own) => vision(t, json(p), own)],
  ['/PRBOutSecondary', (t, topic, p) => ({ kind: 'scene', t, key: `camera ${topic.split('/')[2]}`, debug: false, layouts: layouts(json(p)) })],
  ['/PRBOutDebug', (t, _topic, p) => ({ kind: 'scene', t, key: '', debug: true, layouts: layouts(json(p)) })],
  ['/PRBOut', (t, _topic, p) => ({ kind: 'scene', t, key: '', debug: false, layouts: layouts(json(p)) })],
  ['/TimerDebug', (t, _topic, p) => {
    const o = json(p);
    return { kind: 'timers', t, current: timedLayouts(o.currentLayout, 'currentLayout'), next: timedLayouts(o.nextLayout, 'nextLayout') };
  }],
  ['/PRBStatus', (t, _topic, p) => service(t, json(p))],
  ['/PeopleCount', (t, _topic, p) => {
    const o = json(p);
    return { kind: 'people', t, count: num(o, 'face_count', 'payload'), smallest: num(o, 'smallestFaceHeight', 'payload', 0) };
  }],
  ['/ctl/tracking-mode', (t, _topic, p) => ({ kind: 'mode', t, mode: String(p) })],
  ['/ctl', (t, topic, p) => ({ kind: 'control', t, topic, text: typeof p === 'string' ? p : '' })],
  ['/cameraParameters', (t, topic, p) => camera(t, topic, json(p))],
  ['/camera', (t, _topic, p) => ({ kind: 'identity', t, id: num(json(p), 'fynCamId', 'payload') })],
];

function message(t: number, topic: string, payload: unknown, own: number): Event {
  const reader = READERS.find(([name]) => topic === name || topic.startsWith(`${name}/`));
  if (reader) return reader[1](t, topic, payload, own);
  return { kind: 'control', t, topic, text: typeof payload === 'string' ? payload : '' };
}

function settings(t: number, what: 'property' | 'config', value: unknown): Event {
  const values = Object.entries(obj(value, what)).map(([k, v]): [string, string] => [k, String(v)]);
  return { kind: 'settings', t, what, values };
}

function provider(t: number, line: Obj): Event {
  const state = line.provider;
  if (state === 'up' || state === 'announced' || state === 'down' || state === 'fail') {
    return { kind: 'provider', t, state };
  }
  if (state === 'setSceneJson') return { kind: 'time', t }; // The same document stands in the /PRBOut line beside it.
  throw new Fault(`provider "${String(state)}" is not known`);
}

function read(line: Obj, own: number): Event {
  const t = num(line, 't', 'the line');
  if (line.topic !== undefined) return message(t, text(line, 'topic'), line.payload, own);
  if (line.decision !== undefined) return { kind: 'decision', t, decision: decision(line) };
  if (line.frames !== undefined) return { kind: 'frames', t, frames: extras(line.frames) };
  if (line.property !== undefined) return settings(t, 'property', line.property);
  if (line.config !== undefined) return settings(t, 'config', line.config);
  if (line.provider !== undefined) return provider(t, line);
  if (isObj(line.recorded)) return { kind: 'recorded', t, startedAt: typeof line.recorded.startedAt === 'number' ? line.recorded.startedAt : null };
  if (line.notice !== undefined) return { kind: 'notice', t, text: text(line, 'notice') };
  return { kind: 'time', t };
}

/** Reads one line. `own` is the device's own camera id, which wins ties between cameras (NaN when not known). */
export function parseLine(line: string, own = Number.NaN): Parsed {
  let value: unknown;
  try {
    value = JSON.parse(line);
  } catch {
    return { event: null, fault: 'is not JSON' };
  }
  if (!isObj(value)) return { event: null, fault: 'is not a JSON object' };
  try {
    return { event: read(value, own), fault: null };
  } catch (error) {
    if (!(error instanceof Fault)) throw error;
    const topic = typeof value.topic === 'string' ? `${value.topic}: ` : '';
    return { event: null, fault: topic + error.message };
  }
}
