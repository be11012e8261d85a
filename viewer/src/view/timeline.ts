/**
 * The time line: lanes of marks that stand at their times; the track slides below a window. Marks are placed by style
 * variables, so zooming changes one number.
 */

import type { Lane, Moment } from '../moments';
import { clock } from '../words';
import { html, set, variable } from './dom';

const LANES: [Lane, string][] = [
  ['layout', 'Layouts'],
  ['wait', 'Waits'],
  ['reframe', 'Reframes'],
  ['people', 'People'],
  ['control', 'Control'],
];

/** In these lanes a mark lasts until the next one of its stream. */
const LASTING: ReadonlySet<Lane> = new Set<Lane>(['layout', 'people']);

export interface Span {
  start: number;
  end: number;
}

export class Timeline {
  private readonly track = html('div', { class: 'track' });
  private readonly lanes = new Map<Lane, HTMLElement>();
  private readonly head = html('div', { class: 'playhead' });
  private readonly window: HTMLElement;
  private readonly open = new Map<string, { node: HTMLElement; t: number; lasting: boolean }>();
  private base: number | null = null;
  private shown: Span = { start: 0, end: 1 };
  private mostPeople = 1;
  /** Length of the visible part in milliseconds; null shows everything. */
  span: number | null = null;

  constructor(root: HTMLElement, private readonly jump: (t: number) => void) {
    const names = html('div', { class: 'lane-names', 'aria-hidden': 'true' });
    for (const [lane, name] of LANES) {
      const node = html('div', { class: `lane lane-${lane}` });
      this.lanes.set(lane, node);
      this.track.append(node);
      names.append(html('span', {}, name));
    }
    this.track.append(this.head);
    this.window = html('div', {
      class: 'window',
      role: 'slider',
      tabindex: 0,
      'aria-label': 'Moment',
      'aria-orientation': 'horizontal',
    }, this.track);
    root.append(names, this.window);
    this.window.addEventListener('pointerdown', (event) => this.drag(event));
    this.window.addEventListener('pointermove', (event) => {
      if (event.buttons === 1) this.drag(event);
    });
  }

  private drag(event: PointerEvent): void {
    const { left, width } = this.window.getBoundingClientRect();
    const mark = event.type === 'pointerdown' ? (event.target as HTMLElement).closest<HTMLElement>('.mark') : null;
    if (event.type === 'pointerdown') this.window.setPointerCapture(event.pointerId);
    // A click on a narrow mark means that very moment.
    if (mark && mark.offsetWidth < 16) return this.jump(Number(mark.dataset.t));
    const part = Math.min(1, Math.max(0, (event.clientX - left) / width));
    this.jump(Math.round(this.shown.start + part * (this.shown.end - this.shown.start)));
  }

  add(moment: Moment): void {
    this.base ??= moment.t;
    const node = html('div', { class: `mark value-${moment.value.toLowerCase()}`, title: `${clock(moment.t)} ${moment.title}`, 'data-t': moment.t });
    variable(node, '--t', moment.t - this.base);
    this.close(moment);
    if (LASTING.has(moment.lane)) {
      node.append(html('span', {}, moment.lane === 'layout' ? moment.value : moment.title));
      set(node, { 'data-lasting': true });
      this.open.set(`${moment.lane}${moment.stream}`, { node, t: moment.t, lasting: true });
    } else if (moment.lane === 'wait' && moment.title.endsWith('pending')) {
      set(node, { 'data-lasting': true });
      this.open.set(`wait${moment.stream}`, { node, t: moment.t, lasting: true });
    }
    if (moment.lane === 'layout') this.stack(node, moment.stream);
    if (moment.lane === 'people') {
      variable(node, '--count', Number(moment.value));
      this.mostPeople = Math.max(this.mostPeople, Number(moment.value));
      variable(this.track, '--most', this.mostPeople);
    }
    this.lanes.get(moment.lane)?.append(node);
  }

  private close({ lane, stream, t }: Moment): void {
    const key = `${lane}${stream}`;
    const open = this.open.get(key);
    if (!open) return;
    variable(open.node, '--d', t - open.t);
    this.open.delete(key);
  }

  private rows = 1;

  private stack(node: HTMLElement, stream: number): void {
    this.rows = Math.max(this.rows, stream + 1);
    variable(node, '--row', stream);
    variable(this.track, '--rows', this.rows);
  }

  /** What decisions explain better is taken away. */
  dropInferred(lanes: readonly Lane[]): void {
    for (const lane of lanes) {
      this.lanes.get(lane)?.replaceChildren();
      for (const key of [...this.open.keys()]) if (key.startsWith(lane)) this.open.delete(key);
    }
  }

  /** Forgets marks that ended before `start`. */
  forget(start: number): void {
    for (const lane of this.lanes.values()) {
      let first = lane.firstElementChild as HTMLElement | null;
      let next = first?.nextElementSibling as HTMLElement | null;
      while (first && next && Number(next.dataset.t) < start) {
        first.remove();
        first = next;
        next = first.nextElementSibling as HTMLElement | null;
      }
    }
  }

  draw(all: Span, t: number): void {
    this.base ??= all.start;
    const whole = Math.max(1, all.end - all.start);
    const length = Math.min(this.span ?? whole, Math.max(whole, 1000));
    const start = Math.min(Math.max(all.start, t - length * 0.7), Math.max(all.start, all.end - length));
    this.shown = { start, end: start + length };
    const width = this.window.clientWidth || 1;
    const scale = width / length;
    variable(this.track, '--scale', scale.toPrecision(8));
    variable(this.track, '--from', Math.round((start - this.base) * scale));
    variable(this.head, '--t', t - this.base);
    for (const { node, t: from } of this.open.values()) variable(node, '--d', Math.max(0, all.end - from));
    set(this.window, { 'aria-valuemin': all.start, 'aria-valuemax': all.end, 'aria-valuenow': Math.round(t), 'aria-valuetext': clock(t) });
  }
}
