/** The output: each stream's picture as the provider composes it, with its transition. */

import { outputOf, type StreamPicture } from '../pictures';
import type { State } from '../state';
import { clock, layoutWords, seconds } from '../words';
import { Canvases } from './canvases';
import { html, say, set } from './dom';
import type { Footage } from './footage';
import { paintTiles } from './paint';

/** The picture that fades is composed here before it is laid over the new one. */
const fading = document.createElement('canvas');

function captionOf({ shown, size, played }: StreamPicture): string {
  const { layout, label } = shown;
  const people = `${layout.faceCount} ${layout.faceCount === 1 ? 'person' : 'people'}`;
  const speaker = layout.speaker >= 0 ? ` · person ${layout.speaker} speaks` : '';
  const duration = layout.duration > 0 ? ` ${seconds(layout.duration)}` : '';
  const how = `${layout.animation}${duration}${played < 1 ? ` (${Math.floor(played * 100)} %)` : ''}`;
  return `${label}: ${layout.type}, ${layoutWords(layout.type)} · ${people}${speaker} · ${size.width} × ${size.height} · ${how}`;
}

function paint(g: CanvasRenderingContext2D, picture: StreamPicture, footage: Footage, unit: number): void {
  const { size, tiles, played } = picture;
  paintTiles(g, size, tiles, footage, unit);
  if (picture.fading.length === 0) return;
  const { canvas } = g;
  if (fading.width !== canvas.width || fading.height !== canvas.height) {
    fading.width = canvas.width;
    fading.height = canvas.height;
  }
  const f = fading.getContext('2d', { alpha: false }) as CanvasRenderingContext2D;
  f.setTransform(g.getTransform());
  paintTiles(f, size, picture.fading, footage, unit);
  g.globalAlpha = 1 - played;
  g.drawImage(fading, 0, 0, size.width, size.height);
  g.globalAlpha = 1;
}

function noteOn({ service, debugOnly }: State, pictures: number): string {
  if (service && service.state !== 'up') return `The service ${service.state === 'down' ? 'has ended' : 'was lost'} at ${clock(service.since)}; nothing below goes on.`;
  if (pictures === 0) return 'No scene document yet.';
  return debugOnly ? 'The newest layout went out as a debug document only: the picture stays.' : '';
}

/** Answers whether a transition is being played. */
export function makeOutput(root: HTMLElement, resized: () => void, footage: Footage): (state: State, t: number) => boolean {
  const streams = new Canvases('streams', 'stream', resized);
  const note = html('p', { class: 'empty' });
  root.append(note, streams.node);
  return (state, t) => {
    const pictures = outputOf(state, t);
    const words = noteOn(state, pictures.length);
    note.hidden = !words;
    say(note, words);
    streams.show(pictures.length);
    pictures.forEach((picture, i) => {
      const { figure, canvas } = streams.at(i);
      const { key, layout } = picture.shown;
      set(figure, { 'data-stream': key, 'data-type': layout.type, 'data-animation': layout.animation, 'data-played': picture.played.toFixed(2) });
      streams.caption(i, captionOf(picture));
      canvas.paint(picture.size, (g, unit) => paint(g, picture, footage, unit));
    });
    return pictures.some((p) => p.played < 1);
  };
}
