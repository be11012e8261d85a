/** Recordings of people who are placed by hand, so that the pictures in them hang on nothing but the service's own rules. */

import type { Line, Programs } from './prb';

const CAMERAS = [0, 1] as const;
const PERIOD = 33;

interface Person {
  id: number;
  x: number;
  y: number;
  speaks?: boolean;
}

/** Who is where at a time, in pixels of camera 0. */
type Script = (t: number) => Person[];

const SEATS: Person[] = [200, 520, 820, 1100].map((x, id) => ({ id, x, y: 280 + 10 * id }));

/** Two people, four, then two of whom one has moved (a group), then three others (the group is framed anew, then tiles). */
export const VISITORS: Script = (t) => {
  if (t < 14_000) return SEATS.slice(0, 2);
  if (t < 28_000) return SEATS;
  if (t < 40_000) return SEATS.slice(0, 2).map((p) => (p.id === 0 ? { ...p, x: p.x + 120 } : p));
  return SEATS.slice(1);
};

/** The first speaks, then the last, then both in turn and the second. */
export const TALK: Script = (t) => {
  const speaker = [0, 1, 3, 2, 0][Math.floor(t / 10_000)];
  return SEATS.map((p) => ({ ...p, speaks: p.id === speaker && t % 10_000 < 8500 }));
};

function headIn(camera: number, { id, x, y, speaks = false }: Person): object {
  const size = camera === 0 ? 64 : 46;
  const left = (camera === 0 ? x : 1280 - x) - size / 2;
  const top = y + 24 * camera - 40;
  const bbox = { left, top, right: left + size, bottom: top + Math.round(size * 1.3) };
  return { id, camId: camera, fynCamId: camera, bbox, yaw: camera === id % 2 ? 5 : 40, pitch: 0, isSpeaker: speaks };
}

/** Writes a recording of two cameras; `mode` is the framing mode's number: 4 shows people in tiles, 2 who speaks. */
export function stage(programs: Programs, name: string, script: Script, { mode = 4, seconds = 60 } = {}): string {
  const put = (t: number, topic: string, payload: object): Line => ({ t, topic, payload: payload as never });
  const lines: Line[] = [
    { t: 0, property: { 'vendor.talkertracking.flag': String(mode) } },
    put(0, '/camera', { fynCamId: 0 }),
    put(0, '/cameras', CAMERAS.map((id) => ({ isAttached: true, ids: { fynCamId: id, uid: `camera-${id}` }, caps: { hasIcd: true } }))),
    ...CAMERAS.map((id) => put(0, `/cameraParameters/head/${id}`, { imageWidth: 1280, imageHeight: 720 })),
    { t: 0, provider: 'up' },
  ];
  for (let frameNumber = 0; frameNumber * PERIOD < seconds * 1000; frameNumber += 1) {
    const t = frameNumber * PERIOD;
    const heads = script(t).map((person) => ({ fynId: person.id, associatedHeads: CAMERAS.map((camera) => headIn(camera, person)) }));
    lines.push(put(t, '/ICDOut', { timestamp: 1_700_000_000_000 + t, frameNumber, heads }));
  }
  return programs.file(name, lines.map((line) => JSON.stringify(line)).join('\n'));
}
