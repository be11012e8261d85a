/** The same as the pictures, in numbers: for exact reading, and for who does not see the pictures. Written only while open. */

import type { Box } from '../events';
import { roomOf } from '../pictures';
import type { State } from '../state';
import { each, html, say, set } from './dom';

interface Row {
  [attribute: `data-${string}`]: string | number;
  cells: string[];
}

const box = (b: Box | null): string =>
  b ? `${Math.round(b.left)}, ${Math.round(b.top)} to ${Math.round(b.right)}, ${Math.round(b.bottom)}` : '–';

const FRAMES = ['frame', 'camera', 'source', 'output', 'detection boundary', 'off-centre bound'] as const;
const HEADS = ['person', 'camera', 'head', 'speaks', 'best camera'] as const;

function frameRows(state: State): Row[] {
  return roomOf(state).flatMap(({ camera, frames }) =>
    frames.map((f) => ({
      'data-stream': f.stream,
      'data-frame': f.index,
      cells: [f.label, String(camera.id), box(f.source), box(f.dest), box(f.boundary), box(f.offCentre)],
    })),
  );
}

function headRows(state: State): Row[] {
  const heads = roomOf(state).flatMap((p) => p.heads);
  return heads.map((h) => ({
    'data-person': h.person,
    'data-camera': h.camera,
    cells: [String(h.person), String(h.camera), box(h), h.speaks ? 'yes' : '', h.best ? 'yes' : ''],
  }));
}

function table(caption: string, columns: readonly string[]): { node: HTMLElement; fill: (rows: Row[]) => void } {
  const body = html('tbody');
  const head = html('thead', {}, html('tr', {}, ...columns.map((c) => html('th', { scope: 'col' }, c))));
  const node = html('div', { class: 'table', tabindex: 0, role: 'region', 'aria-label': caption }, html('table', {}, html('caption', {}, caption), head, body));
  const makeRow = () => html('tr', {}, ...columns.map(() => html('td')));
  const fill = (rows: Row[]) =>
    each(body, rows, makeRow, (row, { cells, ...attributes }) => {
      set(row, attributes);
      cells.forEach((cell, i) => say(row.children[i] as Element, cell));
    });
  return { node, fill };
}

export function makeNumbers(root: HTMLDetailsElement, opened: () => void, side: string): (state: State) => void {
  const frames = table(`${side ? `${side}: ` : ''}Frames, in pixels of their camera’s image and of the output`, FRAMES);
  const heads = table(`${side ? `${side}: ` : ''}Heads, in pixels of the camera’s image`, HEADS);
  root.append(html('summary', {}, 'Numbers'), frames.node, heads.node);
  root.addEventListener('toggle', opened);
  return (state) => {
    if (!root.open) return;
    frames.fill(frameRows(state));
    heads.fill(headRows(state));
  };
}
