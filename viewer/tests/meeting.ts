/**
 * A small made-up meeting in the documented forms: vision results of two cameras and what a service would answer. It
 * knows what every picture must show, so that tests compare what is drawn against it.
 */

export const CAMERAS = [0, 1] as const;
export const PERIOD = 33;

export interface MeetingOptions {
  people?: number;
  seconds?: number;
  /** How the layouts are entered. */
  animation?: 'cut' | 'dissolve' | 'ease';
  streams?: number;
}

interface Rect {
  left: number;
  top: number;
  right: number;
  bottom: number;
}

const offsets = (r: Rect) => ({ xoffset: r.left, yoffset: r.top, width: r.right - r.left, height: r.bottom - r.top });

/** Where person `id` of `people` sits in the picture of `camera` at `t`; people sway, person 0 walks. */
export function headAt(id: number, people: number, camera: number, t: number): Rect {
  const place = camera === 0 ? id : people - 1 - id;
  const size = camera === 0 ? 62 - 18 * (id % 2) : 46;
  const walk = id === 0 ? 60 * Math.sin(t / 2600) : 6 * Math.sin(t / 700 + id);
  const x = 190 + (900 / Math.max(1, people - 1)) * place + walk;
  const y = 300 + (id % 2 ? -46 : 0) + 4 * Math.sin(t / 900 + id) + camera * 24;
  const left = Math.round(x - size / 2);
  const top = Math.round(y - size * 0.65);
  return { left, top, right: left + size, bottom: top + Math.round(size * 1.3) };
}

export function speakerAt(people: number, t: number): number {
  return Math.floor(t / 4000) % people;
}

function vision(people: number, frameNumber: number, t: number): unknown {
  const heads = Array.from({ length: people }, (_, id) => ({
    fynId: id,
    associatedHeads: CAMERAS.map((camId) => ({
      id,
      camId,
      bbox: headAt(id, people, camId, t),
      yaw: camId === id % 2 ? 5 : 40,
      isSpeaker: id === speakerAt(people, t),
    })),
  }));
  return { timestamp: 1_700_000_000_000 + t, frameNumber, heads };
}

/** One tile per person, side by side, or everybody in one frame. */
export function tiles(people: number, type: string, t: number): { camera: number; source: Rect; dest: Rect; heads: number[] }[] {
  const ids = Array.from({ length: people }, (_, id) => id);
  if (type === 'GROUP') {
    const boxes = ids.map((id) => headAt(id, people, 0, t));
    const left = Math.max(0, Math.min(...boxes.map((b) => b.left)) - 110);
    const right = Math.min(1280, Math.max(...boxes.map((b) => b.right)) + 110);
    const height = Math.round(((right - left) * 9) / 16);
    const top = Math.max(0, Math.min(720 - height, 300 - Math.round(height * 0.4)));
    return [{ camera: 0, source: { left, top, right, bottom: top + height }, dest: { left: 0, top: 0, right: 1280, bottom: 720 }, heads: ids }];
  }
  const width = Math.floor(1280 / people);
  return ids.map((id) => {
    const camera = id % 2;
    const box = headAt(id, people, camera, t);
    const high = Math.round((box.bottom - box.top) * 4);
    const wide = Math.round((high * width) / 720);
    const left = Math.max(0, Math.round((box.left + box.right - wide) / 2));
    const top = Math.max(0, box.top - Math.round(high * 0.28));
    return {
      camera,
      source: { left, top, right: left + wide, bottom: top + high },
      dest: { left: id * width, top: 0, right: (id + 1) * width, bottom: 720 },
      heads: [id],
    };
  });
}

export function scene(type: string, people: number, t: number, options: { frameNumber?: number; sceneNumber?: number; animation?: string; streams?: number } = {}): unknown {
  const { frameNumber = 0, sceneNumber = 1, animation = 'cut', streams = 1 } = options;
  const duration = { cut: 0, dissolve: 90, ease: 120 }[animation] ?? 0;
  const stream = (streamid: number) => ({
    streamid,
    isVirtualCamera: 'true',
    frameNumber,
    sceneNumber,
    adjustmentFrame: 0,
    TrackingMode: streams > 1 ? 'MultiStream' : 'PeopleFraming',
    layoutType: type,
    animation,
    duration,
    timestamp: 1_700_000_000_000 + t,
    destRef: { height: 720, width: 1280 },
    facecount: people,
    activespeaker: speakerAt(people, t),
    relativepos: streamid,
    scene: tiles(people, streamid > 0 ? 'GROUP' : type, t).map((tile, frameindex) => ({
      cameraid: tile.camera,
      fynCamId: tile.camera,
      srcRef: { width: 1280, height: 720 },
      source: offsets(tile.source),
      dest: offsets(tile.dest),
      frameindex,
    })),
  });
  return { version: 1, streams: Array.from({ length: streams }, (_, i) => stream(i)) };
}

interface Pending {
  type: string;
  remaining: number;
}

function timers(type: string, people: number, pending: Pending | null, position: string, frameTimer: number): unknown {
  const frames = tiles(people, type, 0).map((_, frameindex) => ({
    frameindex,
    stream: 0,
    frameType: type,
    headPosition: frameindex === 0 ? position : 'CENTER',
    frameTimer: frameindex === 0 ? frameTimer : 0,
  }));
  const layout = (layoutType: string, layoutTimer: number, inside: unknown[]) => ({ isVirtualCamera: 'true', layoutType, layoutTimer, frames: inside });
  return {
    currentLayout: { layouts: [layout(type, 0, frames)] },
    nextLayout: { layouts: pending ? [layout(pending.type, pending.remaining, [])] : [] },
  };
}

function bounds(type: string, people: number, t: number, position: string): unknown {
  return tiles(people, type, t).map((tile, frameindex) => {
    const { source } = tile;
    const boxes = tile.heads.map((id) => headAt(id, people, tile.camera, t));
    const wide = source.right - source.left;
    return {
      stream: 0,
      frameindex,
      detectionBoundary: {
        left: Math.min(...boxes.map((b) => b.left)) - 18,
        top: Math.min(...boxes.map((b) => b.top)) - 18,
        right: Math.max(...boxes.map((b) => b.right)) + 18,
        bottom: Math.max(...boxes.map((b) => b.bottom)) + 18,
      },
      offCenterBound: { left: source.left + Math.round(wide / 8), top: source.top + 10, right: source.right - Math.round(wide / 8), bottom: source.bottom - 10 },
      headPosition: frameindex === 0 ? position : 'CENTER',
      heads: tile.heads,
    };
  });
}

/** What the layout changes of the meeting wait for. */
const KEY = 'persist.fdtimers.layoutchange.gftoother';

/** The lines of a meeting of which the picture changes between GROUP and HEAD every six seconds. */
export function meeting(options: MeetingOptions = {}): string[] {
  const { people = 4, seconds = 20, animation = 'dissolve', streams = 1 } = options;
  const lines: string[] = [];
  const put = (t: number, rest: object) => lines.push(JSON.stringify({ t, ...rest }));
  const decide = (t: number, kind: string, to: string, sentence: string) => put(t, { decision: { streamid: 0, kind, to }, title: `${kind} ${to}`, sentence });
  const send = (type: string, t: number, frameNumber: number, how: string) =>
    put(t, { topic: '/PRBOut', payload: scene(type, people, t, { frameNumber, sceneNumber: frameNumber, animation: how, streams }) });
  put(0, { topic: '/camera', payload: { fynCamId: 0 } });
  for (const id of CAMERAS) put(0, { topic: `/cameraParameters/head/${id}`, payload: { imageWidth: 1280, imageHeight: 720 } });
  put(0, { provider: 'up' });
  let type = 'NONE';
  let pending: { type: string; since: number } | null = null;
  let waiting: number | null = null;
  for (let frame = 0; frame * PERIOD < seconds * 1000; frame += 1) {
    const t = frame * PERIOD;
    put(t, { topic: '/ICDOut', payload: vision(people, frame, t) });
    if (frame === 0) {
      put(t, { topic: '/PeopleCount', payload: { face_count: people, smallestFaceHeight: 57 } });
      decide(t, 'adopted', 'GROUP', 'new picture NONE -> GROUP, there was no picture yet, at once');
      type = 'GROUP';
      send(type, t, frame, 'cut');
      continue;
    }
    const phase = t % 6000;
    if (phase >= 4000 && !pending) {
      pending = { type: type === 'GROUP' ? 'HEAD' : 'GROUP', since: t };
      decide(t, 'pending', pending.type, `${type} -> ${pending.type} waits 2.0 s (${KEY}), the difference is the kind of layout`);
    }
    if (pending && phase < 4000) {
      decide(t, 'adopted', pending.type, `new picture ${type} -> ${pending.type}, the difference is the kind of layout, after 2.0 s (${KEY} 2000 ms)`);
      type = pending.type;
      pending = null;
      waiting = null;
      send(type, t, frame, animation);
    }
    if (phase >= 1000 && phase < 2500 && waiting === null) {
      waiting = t;
      decide(t, 'reframeWait', type, 'frame 0 waits 1.5 s, the head is on the edge of the frame');
    }
    if (waiting !== null && phase >= 2500) {
      decide(t, 'reframed', type, 'frame 0 framed anew, the head is on the edge of the frame, after 1.5 s');
      waiting = null;
      send(type, t, frame, animation === 'dissolve' ? 'ease' : animation);
    }
    const position = waiting === null ? 'CENTER' : 'HEAD_ON_EDGE';
    put(t, { topic: '/TimerDebug', payload: timers(type, people, pending && { type: pending.type, remaining: 2000 - (t - pending.since) }, position, waiting === null ? 0 : 1500 - (t - waiting)) });
    if (frame % 5 === 0) put(t, { frames: bounds(type, people, t, position) });
    if (frame === 200) put(t, { topic: '/ctl', payload: 'config-change' });
  }
  return lines;
}
