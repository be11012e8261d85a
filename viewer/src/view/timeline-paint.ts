/** Draws the rows of the time line. Many marks in little room become a profile of how many there are, never a solid bar. */

import type { Difference } from '../differences';
import { ticks, type Lanes, type Mark, type Span } from '../lanes';
import { layoutColour } from '../palette';
import { AXIS, heightOf, type Row, type Track } from '../rows';
import { clock } from '../words';

/** Marks that are nearer to each other than this, in pixels, are counted instead of drawn one by one. */
const COLUMN = 5;

export interface Theme {
  lane: string;
  dim: string;
  text: string;
  accent: string;
  warn: string;
}

export function themeOf(node: Element): Theme {
  const style = getComputedStyle(node);
  const of = (name: string) => style.getPropertyValue(`--${name}`).trim();
  return { lane: of('lane'), dim: of('dim'), text: of('text'), accent: of('accent'), warn: of('warn') };
}

export interface Shown {
  tracks: readonly Track[];
  rows: readonly Row[];
  differences: readonly Difference[];
  /** What is shown, where all ends, and the range that is selected. */
  span: Span;
  end: number;
  range: Span | null;
}

export class TimelinePaint {
  private readonly g: CanvasRenderingContext2D;
  private scale = 1;

  constructor(private readonly canvas: HTMLCanvasElement) {
    this.g = canvas.getContext('2d') as CanvasRenderingContext2D;
  }

  paint(shown: Shown, theme: Theme, width: number): void {
    const { g, canvas } = this;
    const height = heightOf(shown.rows);
    const fine = Math.min(2, devicePixelRatio || 1);
    if (canvas.width !== Math.round(width * fine) || canvas.height !== Math.round(height * fine)) {
      canvas.width = Math.round(width * fine);
      canvas.height = Math.round(height * fine);
    }
    this.scale = width / (shown.span.end - shown.span.start);
    g.setTransform(fine, 0, 0, fine, 0, 0);
    g.clearRect(0, 0, width, height);
    g.font = `600 11.5px system-ui, 'DejaVu Sans', sans-serif`;
    g.textBaseline = 'middle';
    this.axis(shown.span, theme, width);
    for (const row of shown.rows) {
      g.fillStyle = theme.lane;
      g.fillRect(0, row.top, width, row.height);
      this.row(row, shown, theme, width);
    }
    if (shown.range) this.range(shown, theme, height);
  }

  private axis(span: Span, theme: Theme, width: number): void {
    const { g } = this;
    g.fillStyle = theme.dim;
    for (const t of ticks(span, width / 90)) {
      const x = (t - span.start) * this.scale;
      g.fillRect(x, 0, 1, AXIS - 3);
      g.fillText(span.end - span.start < 5000 ? clock(t) : clock(t).replace(/\.\d+$/, ''), x + 4, AXIS / 2 - 1);
    }
  }

  private row(row: Row, { tracks, differences, span, end }: Shown, theme: Theme, width: number): void {
    if (row.kind === 'difference') {
      this.g.fillStyle = theme.warn;
      for (const d of differences) {
        const left = (d.start - span.start) * this.scale;
        this.g.fillRect(left, row.top, Math.max(3, (d.end - d.start) * this.scale - 1), row.height);
      }
      return;
    }
    const { lanes } = tracks[row.track] as Track;
    const marks = lanes.within(row.kind, span.start, span.end).filter((m) => row.kind !== 'layout' || m.moment.stream === row.stream);
    if (row.kind === 'layout') this.layouts(row, marks, span, end, width);
    else if (marks.length * COLUMN * 2 > width) this.profile(row, marks, lanes, span, theme);
    else for (const mark of marks) this.mark(row, mark, lanes, theme, span, end);
  }

  private layouts(row: Row, marks: Mark[], span: Span, end: number, width: number): void {
    let last = Number.NEGATIVE_INFINITY;
    for (const mark of marks) {
      const left = Math.max(-2, (mark.t - span.start) * this.scale);
      const wide = Math.max(1, Math.min(width, ((mark.end ?? end) - span.start) * this.scale) - left);
      if (wide <= 2 && left < last + 1) continue;
      last = left;
      this.g.fillStyle = layoutColour(mark.moment.value);
      this.g.fillRect(left, row.top, Math.max(1, wide - 1), row.height);
      if (row.height >= 10) this.label(mark.moment.value, Math.max(0, left), row, wide, '#10151c');
    }
  }

  private profile({ kind, top, height }: Row, marks: Mark[], lanes: Lanes, span: Span, theme: Theme): void {
    const columns = new Map<number, number[]>();
    for (const { t, moment } of marks) {
      const column = Math.floor(((t - span.start) * this.scale) / COLUMN);
      const values = columns.get(column) ?? [];
      values.push(kind === 'people' ? Number(moment.value) : 1);
      columns.set(column, values);
    }
    // Of people counts the mean, of all else how many.
    const sum = (values: number[]) => values.reduce((a, b) => a + b, 0);
    const sizes = new Map([...columns].map(([column, values]) => [column, kind === 'people' ? sum(values) / values.length : values.length]));
    const most = kind === 'people' ? lanes.mostPeople : Math.max(4, ...sizes.values());
    this.g.fillStyle = kind === 'control' ? theme.warn : theme.accent;
    this.g.globalAlpha = kind === 'people' ? 0.28 : 0.75;
    let last = 0;
    for (let column = 0; column * COLUMN < (span.end - span.start) * this.scale; column += 1) {
      // A number of people lasts until the next one.
      const size: number = sizes.get(column) ?? (kind === 'people' ? last : 0);
      last = size;
      if (size === 0) continue;
      const high = Math.max(2, (height - 1) * Math.min(1, size / most));
      this.g.fillRect(column * COLUMN, top + height - high, COLUMN - 1, high);
    }
    this.g.globalAlpha = 1;
  }

  private mark(row: Row, { moment, t, end: until }: Mark, lanes: Lanes, theme: Theme, span: Span, end: number): void {
    const { g } = this;
    const { top, height } = row;
    const left = Math.max(-2, (t - span.start) * this.scale);
    const width = Math.max(2, ((until ?? end) - span.start) * this.scale - left);
    if (row.kind === 'people') {
      const high = (height - 2) * Math.min(1, Number(moment.value) / lanes.mostPeople);
      g.fillStyle = theme.accent;
      g.globalAlpha = 0.28;
      g.fillRect(left, top + height - high, width, high);
      g.globalAlpha = 1;
      this.label(moment.value, Math.max(0, left), row, width, theme.text);
      return;
    }
    g.fillStyle = row.kind === 'control' ? theme.warn : theme.accent;
    if (until === t) {
      g.fillRect(left, top + 1, row.kind === 'wait' ? 2 : 4, height - 2);
      return;
    }
    g.fillRect(left, top, 2, height);
    g.globalAlpha = 0.45;
    g.fillRect(left, top + 5, width, height - 10);
    g.globalAlpha = 1;
  }

  private label(words: string, x: number, { top, height }: Row, width: number, colour: string): void {
    if (this.g.measureText(words).width > width - 8) return;
    this.g.fillStyle = colour;
    this.g.fillText(words, x + 5, top + height / 2 + 0.5);
  }

  private range({ range, span }: Shown, theme: Theme, height: number): void {
    const { start, end } = range as Span;
    const left = (start - span.start) * this.scale;
    const width = Math.max(1, (end - start) * this.scale);
    this.g.fillStyle = theme.text;
    this.g.globalAlpha = 0.16;
    this.g.fillRect(left, 0, width, height);
    this.g.globalAlpha = 1;
    for (const x of [left, left + width]) this.g.fillRect(x - 0.5, 0, 1, height);
  }
}
