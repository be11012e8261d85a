/** The room: each camera's image plane with heads, frames, detection boundaries and off-centre bounds. */

import type { Box, FrameExtra } from '../events';
import { camerasOf, headsOf, heightOf, isEmpty, numbered, resolve, widthOf, type Camera, type HeadBox, type NumberedFrame } from '../geometry';
import type { State } from '../state';
import { each, html, keepUnit, say, set, svg } from './dom';
import { drawPlane } from './plane';

const rectangle = (b: Box) => ({ x: b.left, y: b.top, width: Math.max(0, widthOf(b)), height: Math.max(0, heightOf(b)) });

function makeCamera(): HTMLElement {
  const picture = svg('svg', { class: 'picture', role: 'img' });
  for (const name of ['plane', 'heads', 'frames']) picture.append(svg('g', { class: name }));
  keepUnit(picture);
  return html('figure', { class: 'camera' }, picture, html('figcaption'));
}

function makeHead(): SVGGElement {
  return svg('g', {}, svg('rect'), svg('text'));
}

function drawHead(node: SVGGElement, head: HeadBox): void {
  const [outline, label] = node.children as unknown as [SVGElement, SVGElement];
  set(node, {
    class: `head-box${head.speaks ? ' speaks' : ''}${head.best ? ' best' : ''}`,
    'data-person': head.person,
    'data-speaks': head.speaks,
    'data-best': head.best,
  });
  set(outline, rectangle(head));
  set(label, { x: (head.left + head.right) / 2, y: head.top });
  say(label, `${head.person}${head.best ? '★' : ''}${head.speaks ? ' )))' : ''}`);
}

interface DrawnFrame extends NumberedFrame {
  extra: FrameExtra | undefined;
}

function makeFrame(): SVGGElement {
  return svg('g', {}, svg('rect', { class: 'boundary' }), svg('rect', { class: 'off-centre' }), svg('rect', { class: 'source' }), svg('text'));
}

function drawFrame(node: SVGGElement, { frame, layout, colour, label, extra }: DrawnFrame): void {
  const [boundary, offCentre, source, text] = node.children as unknown as [SVGElement, SVGElement, SVGElement, SVGElement];
  set(node, { class: `frame colour-${colour}`, 'data-stream': layout.stream, 'data-frame': frame.index });
  set(source, rectangle(frame.source));
  const detection = extra?.boundary ?? frame.boundary;
  set(boundary, { ...rectangle(detection ?? frame.source), hidden: !detection || isEmpty(detection) });
  const bound = extra?.offCenterBound ?? null;
  set(offCentre, { ...rectangle(bound ?? frame.source), hidden: !bound || isEmpty(bound) });
  // Labels of neighbouring frames do not meet: they hang from the top left corner, later ones a line lower.
  set(text, { x: frame.source.left, y: frame.source.top });
  say(text, label);
}

function captionOf(camera: Camera, heads: HeadBox[], frames: DrawnFrame[], own: number | null): string {
  const name = camera.id < 0 ? 'camera' : `camera ${camera.id}`;
  const people = `${heads.length} ${heads.length === 1 ? 'head' : 'heads'}`;
  const cut = `${frames.length} ${frames.length === 1 ? 'frame' : 'frames'}`;
  return `${name}${camera.id === own ? ' (own)' : ''} · ${camera.size.width} × ${camera.size.height} · ${people} · ${cut}`;
}

export function makeRoom(root: HTMLElement): (state: State) => void {
  const list = html('div', { class: 'cameras' });
  const empty = html('p', { class: 'empty' }, 'No vision result yet.');
  root.append(list, empty);
  return (state) => {
    const heads = headsOf(state.vision);
    const cameras = camerasOf(state, heads);
    const known = cameras.map((c) => c.id);
    const frames = numbered(state.decided.values()).map((f) => ({
      ...f,
      extra: state.extras.find((e) => e.stream === f.layout.stream && e.index === f.frame.index),
    }));
    empty.hidden = cameras.length > 0;
    set(list, { 'data-count': cameras.length });
    each(list, cameras, makeCamera, (node, camera) => {
      const [picture, caption] = node.children as unknown as [SVGSVGElement, HTMLElement];
      const [plane, boxes, cuts] = picture.children as unknown as [SVGGElement, SVGGElement, SVGGElement];
      const seen = heads.filter((h) => h.camera === camera.id);
      const cut = frames.filter((f) => resolve(f.frame.camera, known) === camera.id);
      set(node, { 'data-camera': camera.id });
      const text = captionOf(camera, seen, cut, state.own);
      set(picture, { viewBox: `0 0 ${camera.size.width} ${camera.size.height}`, 'aria-label': text });
      say(caption, text);
      drawPlane(plane, camera, seen);
      each(boxes, seen, makeHead, drawHead);
      each(cuts, cut, makeFrame, drawFrame);
    });
  };
}
