/** The time line on a canvas: an axis, and below it lanes of marks that stand at their times. */

import { LANES, ticks, visibleSpan, type Lanes, type Mark, type Span } from '../lanes';
import type { Lane } from '../moments';
import { layoutColour } from '../palette';
import { clock } from '../words';
import { html, set } from './dom';

const AXIS = 16;
const LANE = 20;
const GAP = 2;
const HEIGHT = AXIS + LANES.length * (LANE + GAP);

/** A click this near to a mark, in pixels, means the mark. */
const NEAR = 6;

const topOf = (index: number) => AXIS + index * (LANE + GAP);

interface Theme {
  lane: string;
  dim: string;
  text: string;
  accent: string;
  soft: string;
  warn: string;
  panel: string;
}

function themeOf(node: Element): Theme {
  const style = getComputedStyle(node);
  const of = (name: string) => style.getPropertyValue(`--${name}`).trim();
  return { lane: of('lane'), dim: of('dim'), text: of('text'), accent: of('accent'), soft: of('soft'), warn: of('warn'), panel: of('panel') };
}

export class Timeline {
  private readonly canvas = html('canvas', { height: HEIGHT, 'aria-hidden': 'true' });
  private readonly head = html('div', { class: 'playhead' });
  private readonly window: HTMLElement;
  private readonly g = this.canvas.getContext('2d') as CanvasRenderingContext2D;
  private width = 0;
  private shown: Span = { start: 0, end: 1 };
  private theme: Theme | null = null;
  private drawn = '';
  private headAt = Number.NaN;
  /** Length of the visible part in milliseconds; null shows everything. */
  span: number | null = null;

  constructor(root: HTMLElement, private readonly lanes: Lanes, private readonly jump: (t: number) => void, resized: () => void) {
    const names = html('div', { class: 'lane-names', 'aria-hidden': 'true' }, ...LANES.map(([, name]) => html('span', {}, name)));
    this.window = html('div', { class: 'window', role: 'slider', tabindex: 0, 'aria-label': 'Moment', 'aria-orientation': 'horizontal' }, this.canvas, this.head);
    root.append(names, this.window);
    this.window.addEventListener('pointerdown', (event) => {
      this.window.setPointerCapture(event.pointerId);
      this.jump(this.markAt(event)?.t ?? this.timeAt(event));
    });
    this.window.addEventListener('pointermove', (event) => {
      if (event.buttons === 1) this.jump(this.timeAt(event));
      else this.explain(event);
    });
    new ResizeObserver(([entry]) => {
      this.width = entry?.contentRect.width ?? 0;
      resized();
    }).observe(this.window);
  }

  /** Colours are asked for anew: they have changed. */
  retheme(): void {
    this.theme = null;
    this.drawn = '';
  }

  private timeAt(event: PointerEvent): number {
    const { left, width } = this.window.getBoundingClientRect();
    const part = Math.min(1, Math.max(0, (event.clientX - left) / width));
    return Math.round(this.shown.start + part * (this.shown.end - this.shown.start));
  }

  private markAt(event: PointerEvent): Mark | null {
    const index = Math.floor((event.clientY - this.window.getBoundingClientRect().top - AXIS) / (LANE + GAP));
    const lane = LANES[index]?.[0];
    const tolerance = (NEAR * (this.shown.end - this.shown.start)) / Math.max(1, this.width);
    return lane ? this.lanes.nearest(lane, this.timeAt(event), tolerance) : null;
  }

  private explain(event: PointerEvent): void {
    const mark = this.markAt(event);
    set(this.window, { title: mark ? `${clock(mark.t)} ${mark.moment.title}` : null });
  }

  draw(all: Span, t: number): void {
    if (this.width === 0) return;
    const span = visibleSpan(all, t, this.span);
    const scale = this.width / (span.end - span.start);
    // Sliding by whole pixels: between them nothing has to be drawn.
    const start = this.span === null ? span.start : Math.round(span.start * scale) / scale;
    this.shown = { start, end: start + span.end - span.start };
    const x = Math.round((t - start) * scale * 2) / 2;
    if (x !== this.headAt) {
      this.headAt = x;
      this.head.style.transform = `translateX(${x}px)`;
    }
    const now = `${this.shown.start} ${this.shown.end} ${Math.round(all.end * scale)} ${this.width} ${this.lanes.version} ${devicePixelRatio}`;
    if (now === this.drawn && this.theme) return;
    this.drawn = now;
    this.theme ??= themeOf(this.window);
    this.paint(this.theme, scale, all.end);
  }

  /** The moment in words, for who does not see it. */
  say(all: Span, t: number): void {
    set(this.window, {
      'aria-valuemin': Math.round(all.start),
      'aria-valuemax': Math.round(all.end),
      'aria-valuenow': Math.round(t),
      'aria-valuetext': clock(t),
    });
  }

  private paint(theme: Theme, scale: number, end: number): void {
    const { g, canvas, width } = this;
    const fine = Math.min(2, devicePixelRatio || 1);
    const pixels = Math.round(width * fine);
    if (canvas.width !== pixels || canvas.height !== Math.round(HEIGHT * fine)) {
      canvas.width = pixels;
      canvas.height = Math.round(HEIGHT * fine);
    }
    g.setTransform(fine, 0, 0, fine, 0, 0);
    g.clearRect(0, 0, width, HEIGHT);
    g.font = `600 11.5px system-ui, 'DejaVu Sans', sans-serif`;
    g.textBaseline = 'middle';
    this.paintAxis(theme, scale);
    LANES.forEach(([lane], index) => {
      g.fillStyle = theme.lane;
      g.fillRect(0, topOf(index), width, LANE);
      this.paintLane(lane, topOf(index), theme, scale, end);
    });
  }

  private paintAxis(theme: Theme, scale: number): void {
    const { g, shown } = this;
    g.fillStyle = theme.dim;
    for (const t of ticks(shown, this.width / 90)) {
      const x = (t - shown.start) * scale;
      g.fillRect(x, 0, 1, AXIS - 3);
      g.fillText(shown.end - shown.start < 5000 ? clock(t) : clock(t).replace(/\.\d+$/, ''), x + 4, AXIS / 2 - 1);
    }
  }

  private paintLane(lane: Lane, top: number, theme: Theme, scale: number, end: number): void {
    const { g, shown } = this;
    let last = Number.NEGATIVE_INFINITY;
    for (const mark of this.lanes.within(lane, shown.start, shown.end)) {
      const left = Math.max(-2, (mark.t - shown.start) * scale);
      const right = Math.min(this.width, ((mark.end ?? end) - shown.start) * scale);
      const width = Math.max(right - left, mark.end === mark.t ? 4 : 2);
      // Where many marks meet in one pixel one of them is enough.
      if (width <= 4 && left < last + 1) continue;
      last = left;
      this.paintMark(mark, left, top, width, theme);
    }
    g.globalAlpha = 1;
  }

  private paintMark({ moment }: Mark, left: number, top: number, width: number, theme: Theme): void {
    const { g, lanes } = this;
    const label = (words: string, x: number, y: number, colour: string) => {
      if (g.measureText(words).width > width - 8) return;
      g.fillStyle = colour;
      g.fillText(words, x + 5, y);
    };
    switch (moment.lane) {
      case 'layout': {
        const row = LANE / lanes.streams;
        const y = top + row * moment.stream;
        g.fillStyle = layoutColour(moment.value);
        g.fillRect(left, y, Math.max(1, width - 1), row);
        if (row >= 10) label(moment.value, Math.max(0, left), y + row / 2, '#10151c');
        return;
      }
      case 'wait':
        g.fillStyle = theme.accent;
        g.fillRect(left, top, Math.min(width, 2), LANE);
        g.globalAlpha = 0.45;
        g.fillRect(left, top + 5, width, LANE - 10);
        g.globalAlpha = 1;
        return;
      case 'people': {
        const high = (LANE - 2) * Math.min(1, Number(moment.value) / lanes.mostPeople);
        g.fillStyle = theme.accent;
        g.globalAlpha = 0.28;
        g.fillRect(left, top + LANE - high, width, high);
        g.globalAlpha = 1;
        label(moment.value, Math.max(0, left), top + LANE / 2, theme.text);
        return;
      }
      default:
        g.fillStyle = moment.lane === 'control' ? theme.warn : theme.accent;
        g.fillRect(left, top + 1, 4, LANE - 2);
    }
  }
}
