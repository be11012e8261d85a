/** The room: each camera's image plane with heads, frames, detection boundaries and off-centre bounds. */

import type { Box } from '../events';
import { imageOf, turnsOf } from '../geometry';
import { roomOf, type CameraPicture } from '../pictures';
import type { State } from '../state';
import { Canvases } from './canvases';
import { html, set } from './dom';
import type { Footage } from './footage';
import { paintFrames, paintHeads, paintImage, paintNames } from './paint';

const turned = (b: Box, turn: number): Box => ({ ...b, left: b.left + turn, right: b.right + turn });

const count = (n: number, one: string) => `${n} ${one}${n === 1 ? '' : 's'}`;

function captionOf({ camera, own, heads, frames }: CameraPicture): string {
  const name = camera.id < 0 ? 'camera' : `camera ${camera.id}`;
  return `${name}${own ? ' (own)' : ''} · ${camera.size.width} × ${camera.size.height} · ${count(heads.length, 'head')} · ${count(frames.length, 'frame')}`;
}

export function makeRoom(root: HTMLElement, resized: () => void, footage: Footage): (state: State) => void {
  const cameras = new Canvases('cameras', 'camera', resized);
  const empty = html('p', { class: 'empty' }, 'No vision result yet.');
  root.append(cameras.node, empty);
  return (state) => {
    const pictures = roomOf(state);
    empty.hidden = pictures.length > 0;
    cameras.show(pictures.length);
    pictures.forEach((picture, i) => {
      const { figure, canvas } = cameras.at(i);
      set(figure, { 'data-camera': picture.camera.id });
      cameras.caption(i, captionOf(picture));
      canvas.paint(picture.camera.size, (g, unit) => {
        const { size } = picture.camera;
        const image = imageOf(picture.camera);
        const heads = picture.heads.flatMap((h) => turnsOf(h, size, image));
        paintImage(g, picture.camera, image, heads, footage, unit);
        paintHeads(g, heads, unit);
        const frames = picture.frames.flatMap((f) =>
          turnsOf({ ...f.source, frame: f }, size, image).map(({ frame, ...source }) => {
            const turn = source.left - frame.source.left;
            return { ...frame, source, boundary: frame.boundary && turned(frame.boundary, turn), offCentre: frame.offCentre && turned(frame.offCentre, turn) };
          }),
        );
        paintFrames(g, frames, unit);
        paintNames(g, heads, unit);
      });
    });
  };
}
