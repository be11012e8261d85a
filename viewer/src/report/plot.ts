/** One way to make a plot: axes in the colours of the theme, a width that follows the page, and a layer for what is neither line nor bar. */

import uPlot from 'uplot';
import 'uplot/dist/uPlot.min.css';
import { seriesColour, type SeriesColour } from '../palette';
import { html } from '../view/dom';
import { clockText } from './data';

const TIME_STEPS = [1, 5, 15, 30, 60, 300, 900, 1800, 3600, 7200, 18000];

/** The colour that the theme gives a CSS variable. */
export function themed(variable: string): string {
  return getComputedStyle(document.documentElement).getPropertyValue(variable).trim();
}

/** Draws in values of the axes. */
export class Layer {
  private readonly g: CanvasRenderingContext2D;

  constructor(private readonly u: uPlot) {
    this.g = u.ctx;
  }

  x(value: number): number {
    return this.u.valToPos(value, 'x', true);
  }
  y(value: number): number {
    return this.u.valToPos(value, 'y', true);
  }

  box(left: number, bottom: number, right: number, top: number, colour: string): void {
    this.g.fillStyle = colour;
    const width = Math.max(uPlot.pxRatio, this.x(right) - this.x(left));
    this.g.fillRect(this.x(left), this.y(top), width, this.y(bottom) - this.y(top));
  }

  dot(x: number, y: number, radius: number, colour: string, filled: boolean): void {
    this.g.beginPath();
    this.g.arc(this.x(x), this.y(y), radius * uPlot.pxRatio, 0, 2 * Math.PI);
    this.g.fillStyle = filled ? colour : themed('--panel');
    this.g.strokeStyle = colour;
    this.g.lineWidth = 1.5 * uPlot.pxRatio;
    this.g.fill();
    this.g.stroke();
  }

  /** A stroke through the height of the plot. */
  mark(x: number, colour: string, label: string): void {
    const { g } = this;
    const { left, top, width, height } = this.u.bbox;
    const at = this.x(x);
    g.strokeStyle = colour;
    g.lineWidth = 1.5 * uPlot.pxRatio;
    g.setLineDash([4 * uPlot.pxRatio, 3 * uPlot.pxRatio]);
    g.beginPath();
    g.moveTo(at, top);
    g.lineTo(at, top + height);
    g.stroke();
    const atEnd = at > left + width * 0.7;
    g.font = `${12 * uPlot.pxRatio}px system-ui, sans-serif`;
    g.textAlign = atEnd ? 'right' : 'left';
    g.textBaseline = 'top';
    g.fillStyle = themed('--text');
    g.fillText(label, at + (atEnd ? -5 : 5) * uPlot.pxRatio, top + 2 * uPlot.pxRatio);
  }
}

export interface PlotOptions {
  heading: string;
  height: number;
  /** What the values of x are; 'time' for seconds of the meeting. */
  x: string;
  /** From 0 unless `low` is given. */
  y: { low?: number; high: number; hasMarks?: boolean };
  /** x, ascending over all of the axis, and a row per series. */
  data: uPlot.AlignedData;
  series: uPlot.Series[];
  /** Drawn over the series. */
  draw?: (layer: Layer) => void;
  /** Plots with the same key share the pointer and what is zoomed. */
  sync?: string;
  /** Drawn below; or how the pointer finds its value and who is told. */
  legend?: boolean;
  /** Told the value of x under the pointer. */
  point?: (x: number | null) => void;
  pick?: { index: (u: uPlot) => number | null; picked: (index: number | null) => void };
}

/** A series that is drawn in the layer and whose values `text` tells in the legend. */
export function toldSeries(label: string, colour: SeriesColour, text: (index: number, x: number) => string): uPlot.Series {
  return {
    label,
    stroke: seriesColour(colour),
    paths: () => null,
    points: { show: false },
    value: (u, _value, _series, index) => (index == null ? '' : text(index, u.posToVal(u.cursor.left ?? 0, 'x'))),
  };
}

function optionsOf({ x, y, series, draw, sync, legend = true, point, pick, height }: PlotOptions): uPlot.Options {
  const isTime = x === 'time';
  const axis: uPlot.Axis = {
    stroke: themed('--dim'),
    font: '12px system-ui, sans-serif',
    labelFont: '12px system-ui, sans-serif',
    grid: { stroke: themed('--line'), width: 1 },
    ticks: { stroke: themed('--line'), width: 1, size: 4 },
  };
  const text = (value: number) => (isTime ? clockText(value) : String(value));
  return {
    width: 300,
    height,
    padding: [8, 24, 0, 0],
    scales: { x: { time: false }, y: { range: [y.low ?? 0, y.high] } },
    axes: [
      {
        ...axis,
        grid: { show: false },
        size: 28,
        ...(isTime ? { incrs: TIME_STEPS, values: (_u: uPlot, splits: number[]) => splits.map(text) } : { label: x, labelSize: 18 }),
      },
      // The width stays without marks, so that plots under each other share their times.
      { ...axis, size: 44, ...(y.hasMarks === false ? { grid: { show: false }, ticks: { show: false }, values: () => [] } : {}) },
    ],
    series: [{ label: x, value: (_u, value) => (value == null ? '' : isTime ? text(value) : String(Number(value.toFixed(2)))) }, ...series],
    legend: { show: legend },
    cursor: {
      y: false,
      points: { show: false },
      ...(sync ? { sync: { key: sync, setSeries: false } } : {}),
      ...(pick ? { dataIdx: (u: uPlot) => pick.index(u) as number } : {}),
    },
    hooks: {
      draw: [
        (u) => {
          u.ctx.save();
          u.ctx.beginPath();
          u.ctx.rect(u.bbox.left, u.bbox.top, u.bbox.width, u.bbox.height);
          u.ctx.clip();
          draw?.(new Layer(u));
          u.ctx.restore();
        },
      ],
      ...(pick ? { setCursor: [(u) => pick.picked(pick.index(u))] } : {}),
      ...(point ? { setCursor: [(u) => point(u.cursor.left != null && u.cursor.left >= 0 ? u.posToVal(u.cursor.left, 'x') : null)] } : {}),
    },
  };
}

export function plot(options: PlotOptions): HTMLElement {
  const target = html('div', { role: 'img', 'aria-label': options.heading });
  const figure = html('figure', { class: 'plot' }, html('figcaption', {}, options.heading), target);
  const u = new uPlot(optionsOf(options), options.data, target);
  new ResizeObserver(([entry]) => {
    const width = Math.floor(entry?.contentRect.width ?? 0);
    if (width > 0 && width !== u.width) u.setSize({ width, height: options.height });
  }).observe(target);
  return figure;
}

/** Colours and what they stand for. */
export function legend(rows: [colour: string, label: string][]): HTMLElement {
  return html('p', { class: 'legend' }, ...rows.map(([colour, label]) => html('span', { style: `--c: ${colour}` }, label)));
}
