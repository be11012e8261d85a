/** Rectangles, the heads of a moment, and the cameras that are known. */

import { HEAD, HEAD_BEST, HEAD_SPEAKS, type Box, type Frame, type CameraSize, type Layout, type Size, type VisionEvent } from './events';
import type { State } from './state';

export interface HeadBox extends Box {
  person: number;
  camera: number;
  speaks: boolean;
  best: boolean;
}

export function headsOf(vision: VisionEvent | null): HeadBox[] {
  const rows = vision?.heads ?? new Int16Array();
  const found: HeadBox[] = [];
  for (let i = 0; i + HEAD.stride <= rows.length; i += HEAD.stride) {
    const at = (column: number) => rows[i + column] as number;
    found.push({
      person: at(HEAD.person),
      camera: at(HEAD.camera),
      left: at(HEAD.left),
      top: at(HEAD.top),
      right: at(HEAD.right),
      bottom: at(HEAD.bottom),
      speaks: (at(HEAD.flags) & HEAD_SPEAKS) !== 0,
      best: (at(HEAD.flags) & HEAD_BEST) !== 0,
    });
  }
  return found;
}

export const widthOf = (b: Box): number => b.right - b.left;
export const heightOf = (b: Box): number => b.bottom - b.top;
export const isEmpty = (b: Box): boolean => widthOf(b) <= 0 || heightOf(b) <= 0;

export function overlaps(a: Box, b: Box): boolean {
  return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

export function scaled(b: Box, x: number, y: number): Box {
  return { left: b.left * x, top: b.top * y, right: b.right * x, bottom: b.bottom * y };
}

/** Where `box` of a camera lands when `source` is drawn to fill `dest`. */
export function project(box: Box, source: Box, dest: Box): Box {
  const x = widthOf(dest) / widthOf(source);
  const y = heightOf(dest) / heightOf(source);
  return {
    left: dest.left + (box.left - source.left) * x,
    top: dest.top + (box.top - source.top) * y,
    right: dest.left + (box.right - source.left) * x,
    bottom: dest.top + (box.bottom - source.top) * y,
  };
}

export function between(a: Box, b: Box, part: number): Box {
  const mix = (x: number, y: number) => x + (y - x) * part;
  return { left: mix(a.left, b.left), top: mix(a.top, b.top), right: mix(a.right, b.right), bottom: mix(a.bottom, b.bottom) };
}

/** An ease moves each view from its old cut to the new one; smooth at both ends. */
export function eased(previous: Layout | null, layout: Layout, part: number): Frame[] {
  if (part >= 1 || layout.animation !== 'ease' || previous?.frames.length !== layout.frames.length) return layout.frames;
  const smooth = part * part * (3 - 2 * part);
  return layout.frames.map((frame, i) => {
    const old = previous.frames[i] as Frame;
    if (old.camera !== frame.camera) return frame;
    return { ...frame, source: between(old.source, frame.source, smooth), dest: between(old.dest, frame.dest, smooth) };
  });
}

export interface Camera {
  id: number;
  size: CameraSize;
}

/** `box` wherever it is seen in `around`: in the image of a panoramic camera it is seen again one turn further on. */
export function turnsOf<B extends Box>(box: B, { width, wraps }: CameraSize, around: Box): B[] {
  if (!wraps) return [box];
  return [0, -width, width]
    .map((turn) => ({ ...box, left: box.left + turn, right: box.right + turn }))
    .filter((turned) => overlaps(turned, around));
}

export const imageOf = ({ size }: Camera): Box => ({ left: 0, top: 0, right: size.width, bottom: size.height });

const USUAL: CameraSize = { width: 1280, height: 720, wraps: false };

function sizeOf(state: State, id: number): CameraSize {
  const told = state.cameras.get(id);
  if (told) return told;
  for (const layout of state.decided.values()) {
    const frame = layout.frames.find((f) => f.camera === id && f.srcRef.width > 0 && f.srcRef.height > 0);
    if (frame) return { ...frame.srcRef, wraps: false };
  }
  return USUAL;
}

/** The cameras that anything is known of, in ascending order. */
export function camerasOf(state: State, heads: HeadBox[]): Camera[] {
  const ids = new Set<number>(heads.map((h) => h.camera));
  for (const id of state.cameras.keys()) ids.add(id);
  const known = [...ids].filter((id) => id >= 0);
  for (const layout of state.decided.values()) {
    for (const frame of layout.frames) ids.add(resolve(frame.camera, known));
  }
  const all = [...ids].sort((a, b) => a - b);
  return (all.some((id) => id >= 0) ? all.filter((id) => id >= 0) : all).map((id) => ({ id, size: sizeOf(state, id) }));
}

/** A frame without a camera of its own (-1) is cut from the first one that is known. */
export function resolve(camera: number, known: readonly number[]): number {
  return camera >= 0 || known.length === 0 ? camera : Math.min(...known);
}

/** A frame's cut in pixels of the camera's image as it is drawn, which `srcRef` may state in another size. */
export function sourceIn(frame: Frame, size: Size): Box {
  const { width, height } = frame.srcRef;
  return width > 0 && height > 0 ? scaled(frame.source, size.width / width, size.height / height) : frame.source;
}
