/** One camera's picture as far as it is known: a plain room with a figure for each head. Room and tiles share it. */

import { heightOf, widthOf, type Camera, type HeadBox } from '../geometry';
import { each, set, svg } from './dom';

/** Muted tones that leave the frame colours alone; people keep theirs. */
const TONES = 8;

export const planeId = (camera: number): string => `plane-${camera}`;

/** Colours used by every plane; stands once in the document. */
export function planeDefinitions(): SVGSVGElement {
  const wall = svg('linearGradient', { id: 'wall', x1: 0, y1: 0, x2: 0, y2: 1 });
  wall.append(
    svg('stop', { offset: 0, class: 'wall-top' }),
    svg('stop', { offset: 0.72, class: 'wall-low' }),
    svg('stop', { offset: 0.721, class: 'floor-far' }),
    svg('stop', { offset: 1, class: 'floor-near' }),
  );
  return svg('svg', { class: 'definitions', 'aria-hidden': 'true', width: 0, height: 0 }, svg('defs', {}, wall));
}

function panels(width: number, height: number): string {
  let path = '';
  for (let i = 1; i < 8; i += 1) path += `M${(width * i) / 8} 0V${height * 0.72}`;
  for (let i = 1; i < 4; i += 1) path += `M0 ${(height * 0.72 * i) / 4}H${width}`;
  for (let i = -8; i <= 16; i += 1) path += `M${(width * i) / 8} ${height}L${width / 2 + (width * (i - 4)) / 16} ${height * 0.72}`;
  return path;
}

function figure(): SVGGElement {
  return svg('g', {}, svg('ellipse', { class: 'body' }), svg('ellipse', { class: 'head' }));
}

function drawFigure(node: SVGGElement, head: HeadBox): void {
  const [body, face] = node.children as unknown as [SVGElement, SVGElement];
  const w = Math.max(1, widthOf(head));
  const h = Math.max(1, heightOf(head));
  const x = head.left + w / 2;
  set(node, { class: `figure tone-${head.person % TONES}${head.speaks ? ' speaks' : ''}` });
  set(body, { cx: x, cy: head.bottom + h * 0.78, rx: w * 1.05, ry: h * 0.82 });
  set(face, { cx: x, cy: head.top + h / 2, rx: w * 0.4, ry: h * 0.48 });
}

/** Makes or updates the group that `<use>` refers to. */
export function drawPlane(group: SVGGElement, camera: Camera, heads: HeadBox[]): void {
  const { width, height } = camera.size;
  if (group.childElementCount === 0) {
    group.append(svg('rect', { fill: 'url(#wall)' }), svg('path', { class: 'panels' }), svg('g', { class: 'figures' }));
  }
  const [back, lines, figures] = group.children as unknown as [SVGElement, SVGElement, SVGElement];
  set(group, { id: planeId(camera.id) });
  if (back.getAttribute('width') !== String(width) || back.getAttribute('height') !== String(height)) {
    set(back, { width, height });
    set(lines, { d: panels(width, height) });
  }
  // Who is nearer, lower in the picture, stands in front.
  const order = [...heads].sort((a, b) => a.bottom - b.bottom || a.person - b.person);
  each(figures, order, figure, drawFigure);
}
