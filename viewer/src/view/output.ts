/** The output: each stream's picture as the provider composes it, with its transition. */

import type { Box, Frame } from '../events';
import { camerasOf, eased, headsOf, heightOf, isEmpty, overlaps, project, resolve, widthOf, COLOURS, type HeadBox } from '../geometry';
import { transitionAt, type Shown, type State } from '../state';
import { layoutWords, seconds } from '../words';
import { each, html, keepUnit, say, set, svg, variable } from './dom';
import { planeId } from './plane';

interface Tile {
  frame: Frame;
  camera: number;
  colour: number;
  heads: HeadBox[];
}

const sized = (b: Box) => ({ x: b.left, y: b.top, width: Math.max(0, widthOf(b)), height: Math.max(0, heightOf(b)) });

function makeTile(): SVGGElement {
  const inside = svg('svg', { preserveAspectRatio: 'none', class: 'cut' }, svg('use'));
  const overlay = svg('svg', { class: 'names' });
  return svg('g', {}, inside, overlay, svg('rect', { class: 'edge' }));
}

function drawTile(node: SVGGElement, { frame, camera, colour, heads }: Tile): void {
  const [inside, overlay, edge] = node.children as unknown as [SVGElement, SVGElement, SVGElement];
  const { source, dest } = frame;
  set(node, { class: `tile colour-${colour}`, 'data-frame': frame.index, 'data-camera': camera });
  set(inside, { ...sized(dest), viewBox: `${source.left} ${source.top} ${Math.max(1, widthOf(source))} ${Math.max(1, heightOf(source))}` });
  set(inside.firstElementChild as Element, { href: `#${planeId(camera)}` });
  set(edge, sized(dest));
  const frameOfTile = sized(dest);
  set(overlay, { ...frameOfTile, viewBox: `${dest.left} ${dest.top} ${frameOfTile.width} ${frameOfTile.height}` });
  const seen = heads.filter((h) => h.camera === camera && !isEmpty(source) && overlaps(h, source));
  each(overlay, seen, () => svg('g', {}, svg('rect'), svg('text')), (group, head) => {
    const [outline, label] = group.children as unknown as [SVGElement, SVGElement];
    const placed = project(head, source, dest);
    set(group, { class: `head-box${head.speaks ? ' speaks' : ''}`, 'data-person': head.person });
    set(outline, sized(placed));
    set(label, { x: (placed.left + placed.right) / 2, y: placed.top });
    say(label, `${head.person}${head.speaks ? ' )))' : ''}`);
  });
}

function makeStream(): HTMLElement {
  const picture = svg('svg', { class: 'picture', role: 'img' }, svg('rect', { class: 'black' }), svg('g', { class: 'from' }), svg('g', { class: 'to' }));
  keepUnit(picture);
  const caption = html('figcaption', {}, html('strong'), html('span'), html('span', { class: 'transition' }));
  return html('figure', { class: 'stream' }, picture, caption);
}

/** How long the name of a transition stays in the caption after it was played, milliseconds. */
const TRANSITION_NOTE_MS = 1500;

function drawCaption(caption: Element, shown: Shown, t: number): void {
  const [name, about, note] = caption.children as unknown as [HTMLElement, HTMLElement, HTMLElement];
  const { layout } = shown;
  say(name, `${shown.label}: ${layout.type}`);
  const people = `${layout.faceCount} ${layout.faceCount === 1 ? 'person' : 'people'}`;
  const speaker = layout.speaker >= 0 ? ` · person ${layout.speaker} speaks` : '';
  say(about, `${layoutWords(layout.type)} · ${people}${speaker} · ${layout.size.width} × ${layout.size.height}`);
  const fresh = t - shown.since < TRANSITION_NOTE_MS + layout.duration;
  say(note, `${layout.animation}${layout.duration > 0 ? ` ${seconds(layout.duration)}` : ''}`);
  set(note, { 'data-fresh': fresh });
  variable(note, '--played', transitionAt(shown, t));
}

export function makeOutput(root: HTMLElement): (state: State, t: number) => void {
  const list = html('div', { class: 'streams' });
  const note = html('p', { class: 'empty' });
  root.append(list, note);
  return (state, t) => {
    const heads = headsOf(state.vision);
    const known = camerasOf(state, heads).map((c) => c.id);
    const all = [...state.shown.values()].sort((a, b) => a.key.localeCompare(b.key));
    note.hidden = all.length > 0 && !state.debugOnly;
    say(note, all.length === 0 ? 'No scene document yet.' : 'The newest layout went out as a debug document only: the picture stays.');
    set(list, { 'data-count': all.length });
    let colour = 0;
    const tilesOf = (frames: Frame[]): Tile[] =>
      frames.map((frame, i) => ({ frame, camera: resolve(frame.camera, known), colour: (colour + i) % COLOURS, heads }));
    each(list, all, makeStream, (node, shown) => {
      const [picture, caption] = node.children as unknown as [SVGSVGElement, HTMLElement];
      const [black, from, to] = picture.children as unknown as [SVGElement, SVGGElement, SVGGElement];
      const { layout, previous } = shown;
      const { width, height } = layout.size;
      const part = transitionAt(shown, t);
      const dissolving = layout.animation === 'dissolve' && part < 1 && previous !== null;
      set(node, { 'data-stream': shown.key, 'data-type': layout.type, 'data-animation': layout.animation });
      set(picture, { viewBox: `0 0 ${width || 1} ${height || 1}`, 'aria-label': `${shown.label}: ${layoutWords(layout.type)}`, 'data-played': part.toFixed(2) });
      set(black, { width, height });
      each(from, dissolving ? tilesOf(previous.frames) : [], makeTile, drawTile);
      each(to, tilesOf(eased(previous, layout, part)), makeTile, drawTile);
      variable(to, 'opacity', dissolving ? part : 1);
      colour += layout.frames.length;
      drawCaption(caption, shown, t);
    });
  };
}
