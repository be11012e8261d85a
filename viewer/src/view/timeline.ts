/** The time line: a canvas of rows with marks, what the pointer does to it, and what lies under the pointer. */

import type { Difference } from '../differences';
import { type Mark, type Span } from '../lanes';
import { heightOf, rowsOf, type Row, type Track } from '../rows';
import { clock } from '../words';
import { Zoom } from '../zoom';
import { each, html, say, set, variable } from './dom';
import { TimelinePaint, themeOf, type Theme } from './timeline-paint';

/** A click this near to a mark, in pixels, means the mark. */
const NEAR = 6;

/** How much one step of a wheel zooms. */
const WHEEL = 1.0015;

/** What zooming by a key or a button does. */
export const NEARER = 0.5;

export interface TimelineActions {
  jump(t: number): void;
  select(range: Span | null): void;
  redraw(): void;
}

interface Pointer {
  x: number;
  y: number;
}

export class Timeline {
  readonly zoom = new Zoom();
  differences: readonly Difference[] = [];
  range: Span | null = null;
  private readonly canvas = html('canvas', { 'aria-hidden': 'true' });
  private readonly head = html('div', { class: 'playhead' });
  private readonly hint = html('div', { class: 'hint', hidden: true });
  private readonly names = html('div', { class: 'lane-names', 'aria-hidden': 'true' });
  private readonly window = html('div', { class: 'window', role: 'slider', tabindex: 0, 'aria-label': 'Moment', 'aria-orientation': 'horizontal' }, this.canvas, this.head);
  private readonly painter = new TimelinePaint(this.canvas);
  private readonly pointers = new Map<number, Pointer>();
  /** Where a selection began. */
  private anchor: number | null = null;
  private rows: Row[] = [];
  private width = 0;
  private all: Span = { start: 0, end: 1 };
  private shown: Span = { start: 0, end: 1 };
  private theme: Theme | null = null;
  private drawn = '';
  private headAt = Number.NaN;

  constructor(root: HTMLElement, private readonly tracks: readonly Track[], private readonly actions: TimelineActions) {
    root.append(this.names, html('div', { class: 'track' }, this.window, this.hint));
    const { window: node } = this;
    node.addEventListener('pointerdown', (event) => this.press(event));
    node.addEventListener('pointermove', (event) => this.move(event));
    for (const kind of ['pointerup', 'pointercancel'] as const) {
      node.addEventListener(kind, (event) => {
        this.pointers.delete(event.pointerId);
        this.anchor = null;
      });
    }
    node.addEventListener('pointerleave', () => set(this.hint, { hidden: true }));
    node.addEventListener('wheel', (event) => this.wheel(event), { passive: false });
    new ResizeObserver(([entry]) => {
      this.width = entry?.contentRect.width ?? 0;
      actions.redraw();
    }).observe(node);
  }

  /** Colours are asked for anew: they have changed. */
  retheme(): void {
    this.theme = null;
  }

  zoomBy(factor: number, at: number): void {
    // Two fingers move twice before the next picture.
    this.shown = this.zoom.by(factor, at, this.shown, this.all);
    this.actions.redraw();
  }

  private timeAt(x: number): number {
    const { left, width } = this.window.getBoundingClientRect();
    const part = Math.min(1, Math.max(0, (x - left) / width));
    return Math.round(this.shown.start + part * (this.shown.end - this.shown.start));
  }

  private press(event: PointerEvent): void {
    this.window.setPointerCapture(event.pointerId);
    this.pointers.set(event.pointerId, { x: event.clientX, y: event.clientY });
    if (this.pointers.size > 1) return;
    if (event.shiftKey) this.anchor = this.timeAt(event.clientX);
    else this.actions.jump(this.markAt(event)?.t ?? this.differenceAt(event)?.start ?? this.timeAt(event.clientX));
  }

  private move(event: PointerEvent): void {
    const before = this.pointers.get(event.pointerId);
    if (!before) {
      this.tell(event);
      return;
    }
    const now = { x: event.clientX, y: event.clientY };
    const other = [...this.pointers].find(([id]) => id !== event.pointerId)?.[1];
    this.pointers.set(event.pointerId, now);
    const t = this.timeAt(now.x);
    if (other) this.pinch(before, now, other);
    else if (this.anchor !== null) this.actions.select({ start: Math.min(this.anchor, t), end: Math.max(this.anchor, t) });
    else if (event.altKey) this.pan(before.x - now.x);
    else this.actions.jump(t);
  }

  private pinch(before: Pointer, now: Pointer, other: Pointer): void {
    const wide = (p: Pointer) => Math.max(20, Math.abs(p.x - other.x));
    this.zoomBy(wide(before) / wide(now), this.timeAt((now.x + other.x) / 2));
    this.pan((before.x - now.x) / 2);
  }

  private wheel(event: WheelEvent): void {
    event.preventDefault();
    const sideways = event.shiftKey ? event.deltaY : event.deltaX;
    if (Math.abs(sideways) > Math.abs(event.shiftKey ? event.deltaX : event.deltaY)) this.pan(sideways);
    else this.zoomBy(WHEEL ** event.deltaY, this.timeAt(event.clientX));
  }

  private pan(pixels: number): void {
    this.shown = this.zoom.pan((pixels * (this.shown.end - this.shown.start)) / Math.max(1, this.width), this.shown);
    this.actions.redraw();
  }

  private rowAt(event: PointerEvent): Row | undefined {
    const y = event.clientY - this.window.getBoundingClientRect().top;
    return this.rows.find((r) => y >= r.top && y < r.top + r.height);
  }

  private markAt(event: PointerEvent): Mark | null {
    const row = this.rowAt(event);
    if (!row || row.kind === 'difference') return null;
    const tolerance = (NEAR * (this.shown.end - this.shown.start)) / Math.max(1, this.width);
    return this.tracks[row.track]?.lanes.nearest(row.kind, this.timeAt(event.clientX), tolerance) ?? null;
  }

  private differenceAt(event: PointerEvent): Difference | undefined {
    const t = this.timeAt(event.clientX);
    return this.rowAt(event)?.kind === 'difference' ? this.differences.find((d) => t >= d.start && t <= d.end) : undefined;
  }

  /** What is so at the time under the pointer, and the mark that is near it. */
  private tell(event: PointerEvent): void {
    const t = this.timeAt(event.clientX);
    const layouts = this.rows.filter((r) => r.kind === 'layout').map(({ track, stream, name }) => {
      const mark = this.tracks[track]?.lanes.covering('layout', stream, t);
      return mark ? `${name === 'Layout' ? '' : `${name} `}${mark.moment.value}` : '';
    });
    const people = this.tracks[0]?.lanes.covering('people', 0, t)?.moment.title ?? '';
    const mark = this.markAt(event);
    const words = [clock(t), ...layouts, people, this.differenceAt(event)?.words ?? '', mark ? `at ${clock(mark.t)}: ${mark.moment.title}` : ''];
    say(this.hint, words.filter(Boolean).join(' · '));
    set(this.hint, { hidden: false });
    const { left, width } = this.window.getBoundingClientRect();
    const x = Math.min(Math.max(0, event.clientX - left + 12), Math.max(0, width - this.hint.offsetWidth));
    this.hint.style.transform = `translateX(${Math.round(x)}px)`;
  }

  draw(all: Span, t: number): void {
    if (this.width === 0) return;
    this.all = all;
    const span = this.zoom.spanAt(all, t);
    const scale = this.width / (span.end - span.start);
    // Sliding by whole pixels: between them nothing has to be drawn.
    const start = this.zoom.length === null ? span.start : Math.round(span.start * scale) / scale;
    this.shown = { start, end: start + span.end - span.start };
    const x = Math.round((t - start) * scale * 2) / 2;
    if (x !== this.headAt) {
      this.headAt = x;
      this.head.style.transform = `translateX(${x}px)`;
    }
    const versions = this.tracks.map((track) => track.lanes.version).join();
    const { range } = this;
    const now = `${this.shown.start} ${this.shown.end} ${Math.round(all.end * scale)} ${this.width} ${versions} ${devicePixelRatio} ${this.differences.length} ${range?.start} ${range?.end}`;
    if (now === this.drawn && this.theme) return;
    this.drawn = now;
    this.arrange();
    this.theme ??= themeOf(this.window);
    this.painter.paint({ tracks: this.tracks, rows: this.rows, differences: this.differences, span: this.shown, end: all.end, range }, this.theme, this.width);
  }

  private arrange(): void {
    const rows = rowsOf(this.tracks);
    if (JSON.stringify(rows) === JSON.stringify(this.rows)) return;
    this.rows = rows;
    variable(this.window, '--height', `${heightOf(rows)}px`);
    each(this.names, rows, () => html('span'), (node, row) => {
      say(node, row.name);
      variable(node, '--height', `${row.height}px`);
    });
  }

  /** The moment in words, for who does not see it. */
  say(all: Span, t: number): void {
    set(this.window, {
      'aria-valuemin': Math.round(all.start),
      'aria-valuemax': Math.round(all.end),
      'aria-valuenow': Math.round(t),
      'aria-valuetext': clock(t),
      'data-from': Math.round(this.shown.start),
      'data-to': Math.round(this.shown.end),
    });
  }
}
