/** What the pictures of a moment show, before anything is drawn: the room camera by camera, the output stream by stream. */

import type { Box, Frame, Size } from './events';
import { camerasOf, eased, headsOf, isEmpty, overlaps, resolve, sourceIn, turnsOf, widthOf, heightOf, type Camera, type HeadBox } from './geometry';
import { FRAME_COLOURS } from './palette';
import { transitionAt, type Shown, type State } from './state';

/** A frame's number over all streams: it chooses the colour, and the dashes when the colours begin again. */
export type FrameNumbers = ReadonlyMap<string, number>;

const keyOf = (stream: number, index: number) => `${stream}/${index}`;

export function frameNumbers(state: State): FrameNumbers {
  const layouts = [...state.decided.values()].sort((a, b) => a.stream - b.stream);
  return new Map(layouts.flatMap((l) => l.frames.map((f) => keyOf(l.stream, f.index))).map((key, number) => [key, number]));
}

export function numberOf(numbers: FrameNumbers, stream: number, index: number): number {
  return numbers.get(keyOf(stream, index)) ?? Math.max(0, index);
}

/** True for frames that take a colour for the second, fourth, ... time. */
export const isDashed = (number: number): boolean => Math.floor(number / FRAME_COLOURS.length) % 2 === 1;

export interface RoomFrame {
  stream: number;
  index: number;
  number: number;
  label: string;
  source: Box;
  dest: Box;
  boundary: Box | null;
  offCentre: Box | null;
}

export interface CameraPicture {
  camera: Camera;
  own: boolean;
  heads: HeadBox[];
  frames: RoomFrame[];
}

/** Frames without a size or a bound are left out, as are empty bounds. */
export function roomOf(state: State): CameraPicture[] {
  const heads = headsOf(state.vision);
  const cameras = camerasOf(state, heads);
  const known = cameras.map((c) => c.id);
  const numbers = frameNumbers(state);
  const layouts = [...state.decided.values()].sort((a, b) => a.stream - b.stream);
  const shown = (box: Box | null | undefined): Box | null => (box && !isEmpty(box) ? box : null);
  return cameras.map((camera) => ({
    camera,
    own: camera.id === state.own,
    heads: heads.filter((h) => h.camera === camera.id),
    frames: layouts.flatMap((layout) =>
      layout.frames
        .filter((f) => resolve(f.camera, known) === camera.id)
        .map((frame) => {
          const extra = state.extras.find((e) => e.stream === layout.stream && e.index === frame.index);
          return {
            stream: layout.stream,
            index: frame.index,
            number: numberOf(numbers, layout.stream, frame.index),
            label: layouts.length > 1 ? `${layout.stream}·${frame.index}` : String(frame.index),
            source: sourceIn(frame, camera.size),
            dest: frame.dest,
            boundary: shown(extra?.boundary ?? frame.boundary),
            offCentre: shown(extra?.offCenterBound),
          };
        }),
    ),
  }));
}

export interface Tile {
  index: number;
  number: number;
  camera: Camera;
  source: Box;
  dest: Box;
  /** Whose figures reach into the tile. */
  figures: HeadBox[];
  /** Whose heads are in the tile. */
  heads: HeadBox[];
}

export interface StreamPicture {
  shown: Shown;
  size: Size;
  /** Part of the transition that has been played, 0 to 1. */
  played: number;
  tiles: Tile[];
  /** The picture that dissolves into this one, empty when none does. */
  fading: Tile[];
}

/** A figure reaches beyond its head: shoulders to both sides and a body below. */
export function figureOf(head: HeadBox): Box {
  const wide = widthOf(head);
  return { left: head.left - wide * 0.6, top: head.top, right: head.right + wide * 0.6, bottom: head.bottom + heightOf(head) * 1.7 };
}

export function outputOf(state: State, t: number): StreamPicture[] {
  const heads = headsOf(state.vision);
  const cameras = camerasOf(state, heads);
  const known = cameras.map((c) => c.id);
  const numbers = frameNumbers(state);
  const tilesOf = (stream: number, frames: readonly Frame[]): Tile[] =>
    frames
      .filter((f) => !isEmpty(f.source) && !isEmpty(f.dest))
      .map((frame) => {
        const id = resolve(frame.camera, known);
        const camera = cameras.find((c) => c.id === id) ?? { id, size: { ...frame.srcRef, wraps: false } };
        const source = sourceIn(frame, camera.size);
        const seen = heads.filter((h) => h.camera === id).flatMap((h) => turnsOf(h, camera.size, source));
        return {
          index: frame.index,
          number: numberOf(numbers, stream, frame.index),
          camera,
          source,
          dest: frame.dest,
          figures: seen.filter((h) => overlaps(figureOf(h), source)),
          heads: seen.filter((h) => overlaps(h, source)),
        };
      });
  return [...state.shown.values()]
    .sort((a, b) => a.key.localeCompare(b.key, 'en', { numeric: true }))
    .map((shown) => {
      const { layout, previous } = shown;
      const played = transitionAt(shown, t);
      const dissolves = layout.animation === 'dissolve' && played < 1 && previous !== null;
      return {
        shown,
        size: { width: layout.size.width || 1280, height: layout.size.height || 720 },
        played,
        tiles: tilesOf(layout.stream, eased(previous, layout, played)),
        fading: dissolves ? tilesOf(layout.stream, previous.frames) : [],
      };
    });
}
