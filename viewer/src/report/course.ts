/** The course of one recording: what each stream shows, who is in view, how fast events are answered. */

import uPlot from 'uplot';
import { layoutColour, seriesColour, type SeriesColour } from '../palette';
import { html, say } from '../view/dom';
import { clock } from '../words';
import { shellWord, type Course } from './data';
import { legend, plot, themed, toldSeries } from './plot';
import { peopleColumns, stays } from './shapes';

const LAYOUTS: Record<string, string> = {
  HEAD: 'single heads',
  PROXIMITY: 'neighbours',
  LARGE_PROXIMITY: 'neighbours',
  SUBSET_SPEAKER: 'speakers',
  GROUP: 'group',
  PARTIAL_GROUP: 'part of the group',
};
const EVENT_COLOURS: SeriesColour[] = ['blue', 'pink', 'green', 'orange'];

/** Told the time under the pointer. */
type Point = (t: number | null) => void;

const nameOf = (layout: string) => LAYOUTS[layout] ?? 'room';

function pictures(course: Course, sync: string, point: Point): HTMLElement {
  const streams = [...stays(course)];
  const seconds = Math.max(1, Math.ceil(course.length / 1000));
  const times = Array.from({ length: seconds + 1 }, (_, second) => Math.min(second, course.length / 1000 || 1));
  const figure = plot({
    heading: 'On screen',
    height: 44 + 26 * Math.max(1, streams.length),
    x: 'time',
    y: { high: Math.max(1, streams.length), hasMarks: false },
    data: [times, ...streams.map(() => times.map(() => null))],
    series: streams.map(([stream, ofStream]) =>
      toldSeries(`stream ${stream}`, 'idle', (_index, t) => nameOf(ofStream.find((stay) => t >= stay.from && t < stay.to)?.layout ?? '')),
    ),
    sync,
    point,
    draw: (layer) =>
      streams.forEach(([, ofStream], index) => {
        const row = streams.length - 1 - index;
        for (const { from, to, layout, reframes } of ofStream) {
          layer.box(from, row + 0.12, to, row + 0.88, layoutColour(layout));
          layer.box(from, row, from, row + 1, themed('--text'));
          for (const t of reframes) layer.box(t, row + 0.3, t, row + 0.7, themed('--text'));
        }
      }),
  });
  const shown = new Map(streams.flatMap(([, ofStream]) => ofStream.map(({ layout }) => [nameOf(layout), layoutColour(layout)])));
  figure.append(legend([...[...shown].map(([name, colour]): [string, string] => [colour, name]), [themed('--text'), 'long stroke: new layout, short: reframe']]));
  return figure;
}

function people(course: Course, sync: string, point: Point): HTMLElement {
  const { starts, counts } = peopleColumns(course);
  const [inView = [], cut = [], off = []] = counts;
  const upTo = (rows: number[][]) => starts.map((_, index) => rows.reduce((sum, row) => sum + (row[Math.min(index, row.length - 1)] ?? 0), 0));
  const tops = [upTo([inView, cut, off]), upTo([inView, cut]), upTo([inView])];
  const stepped = uPlot.paths.stepped?.({ align: 1 });
  const area = (label: string, colour: SeriesColour, row: number[]): uPlot.Series => ({
    label,
    fill: seriesColour(colour),
    stroke: seriesColour(colour),
    width: 0,
    ...(stepped ? { paths: stepped } : {}),
    points: { show: false },
    value: (_u, _value, _series, index) => (index == null ? '' : (row[index] ?? 0).toFixed(1)),
  });
  return plot({
    heading: 'People in the room',
    height: 150,
    x: 'time',
    y: { high: Math.max(1, ...(tops[0] ?? [])) * 1.05 },
    data: [starts, ...tops],
    series: [area('off screen', 'off', off), area('partly cut', 'cut', cut), area('fully in view', 'inView', inView)],
    sync,
    point,
  });
}

function answers({ events, length }: Course, kinds: string[], sync: string, point: Point): HTMLElement {
  const times = [...new Set([0, ...events.map(([t]) => t), length])].sort((a, b) => a - b);
  const longest = Math.max(1, ...events.map(([, , latency]) => latency / 1000));
  const text = (latency: number) => (latency < 0 ? 'no answer' : `${(latency / 1000).toFixed(1)} s`);
  return plot({
    heading: 'Seconds until the picture answers an event (hollow: no answer)',
    height: 150,
    x: 'time',
    y: { high: longest * 1.25 },
    data: [times.map((t) => t / 1000), ...kinds.map(() => times.map(() => null))],
    series: kinds.map((kind, number) =>
      toldSeries(kind, EVENT_COLOURS[number] ?? 'idle', (index) =>
        events.filter(([t, of]) => t === times[index] && of === number).map(([, , latency]) => text(latency)).join(', '),
      ),
    ),
    sync,
    point,
    draw: (layer) => {
      for (const [t, kind, latency] of events) {
        const isAnswered = latency >= 0;
        layer.dot(t / 1000, isAnswered ? latency / 1000 : longest * 1.15, 4, seriesColour(EVENT_COLOURS[kind] ?? 'idle'), isAnswered);
      }
    },
  });
}

/** A click on a dot or bar tells how to see that moment, for the page cannot know where a viewer runs. */
function opener(recording: string, plots: HTMLElement[], timeAt: () => number | null): HTMLElement {
  const command = html('code', {}, `prb view ${shellWord(recording)}`);
  for (const each of plots) {
    each.addEventListener('click', () => {
      const t = timeAt();
      if (t !== null) say(command, `prb view ${shellWord(recording)} --at ${clock(Math.round(t * 1000))}`);
    });
  }
  const beside = html('code', {}, `prb view ${shellWord(recording)} --config A.conf --config B.conf`);
  return html('p', { class: 'open' }, 'A click on a moment names the command that shows it: ', command, '; two settings side by side: ', beside);
}

/** `sync` tells the recordings apart. */
export function coursePlots(recording: string, course: Course, kinds: string[], sync: string): HTMLElement[] {
  let pointed: number | null = null;
  const point = (t: number | null) => (pointed = t);
  const plots = [pictures(course, sync, point), people(course, sync, point)];
  if (course.events.length > 0) plots.push(answers(course, kinds, sync, point));
  return [...plots, opener(recording, plots, () => pointed)];
}
