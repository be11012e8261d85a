/** The page of `prb tune`: each configuration as a dot between calm, fast and showing everybody, the best ones as a table. */

import type uPlot from 'uplot';
import { seriesColour } from '../palette';
import { html, say } from '../view/dom';
import { figureText, plainText, type Candidate, type Tune } from './data';
import { legend, plot } from './plot';

/** The two ways to look at the trade-off, each against the changes per minute. */
const VIEWS: { heading: string; value: (candidate: Candidate) => number | null }[] = [
  { heading: 'Latency in seconds: low and left is better', value: ({ latency }) => latency },
  { heading: 'Per cent of person-time in view: high and left is better', value: ({ inView }) => inView },
];
/** Pixels around a dot in which the pointer finds it. */
const REACH = 20;

/** The range of the values with some air around it. */
function range(values: number[]): [low: number, high: number] {
  if (values.length === 0) return [0, 1];
  const low = Math.min(...values);
  const high = Math.max(...values);
  const air = Math.max(0.05 * (high - low), 0.01 * Math.abs(high) + 0.01);
  return [Math.max(0, low - air), high + air];
}

function describe({ names }: Tune, { values, metrics }: Candidate): string {
  return `${values}: ${names.map((metric) => `${metric.label} ${figureText(metric, metrics[metric.name])} ${metric.unit}`).join(', ')}`;
}

function tradeOffs(tune: Tune, { heading, value }: (typeof VIEWS)[number]): HTMLElement {
  const shown = tune.candidates
    .map((candidate, index) => ({ candidate, index, x: candidate.changes, y: value(candidate) }))
    .filter((dot): dot is typeof dot & { y: number } => dot.y !== null)
    .sort((a, b) => a.x - b.x);
  const [left, right] = range(shown.map(({ x }) => x));
  const [low, high] = range(shown.map(({ y }) => y));
  const hint = html('p', { class: 'hint' });
  const nearest = (u: uPlot) => {
    const distances = shown.map(({ x, y }) => Math.hypot(u.valToPos(x, 'x') - (u.cursor.left ?? -REACH), u.valToPos(y, 'y') - (u.cursor.top ?? -REACH)));
    const least = Math.min(...distances);
    // The first value only opens the axis.
    return least <= REACH ? distances.indexOf(least) + 1 : null;
  };
  const figure = plot({
    heading,
    height: 360,
    x: 'changes per minute',
    y: { low, high },
    data: [
      [left, ...shown.map(({ x }) => x), right],
      [null, ...shown.map(({ y }) => y), null],
    ],
    series: [{ paths: () => null, points: { show: false } }],
    legend: false,
    pick: {
      index: nearest,
      picked: (index) => say(hint, index === null ? '' : describe(tune, shown[index - 1]?.candidate as Candidate)),
    },
    draw: (layer) => {
      const front = new Set(tune.front);
      const draw = (isDrawn: (index: number) => boolean, radius: number, colour: string, filled: boolean) => {
        for (const { index, x, y } of shown) if (isDrawn(index)) layer.dot(x, y, radius, colour, filled);
      };
      draw((index) => !front.has(index), 3.5, seriesColour('idle'), false);
      draw((index) => front.has(index), 5, seriesColour('blue'), true);
      draw((index) => index === tune.best, 8, seriesColour('orange'), false);
      draw((index) => index === tune.best, 4, seriesColour('orange'), true);
    },
  });
  figure.append(hint);
  return html('section', { class: 'panel' }, figure);
}

function frontTable({ names, candidates, front }: Tune): HTMLElement {
  const rows = front.map((index, place) => {
    const { goal, metrics, values } = candidates[index] as Candidate;
    return html(
      'tr',
      {},
      html('th', { scope: 'row' }, `front-${place + 1}.conf`),
      html('td', {}, goal === null ? '-' : plainText(goal, 3)),
      ...names.map((metric) => html('td', {}, figureText(metric, metrics[metric.name]))),
      html('td', { class: 'values' }, values),
    );
  });
  const head = ['Configuration', 'Goal', ...names.map(({ label }) => label)].map((name) => html('th', { scope: 'col' }, name));
  head.push(html('th', { scope: 'col', class: 'values' }, 'Values'));
  return html('div', { class: 'panel scroll' }, html('table', {}, html('thead', {}, html('tr', {}, ...head)), html('tbody', {}, ...rows)));
}

export function tunePage(tune: Tune): { title: string; lead: string; content: HTMLElement[] } {
  const dots: [string, string][] = [
    [seriesColour('blue'), 'best trade-offs'],
    [seriesColour('orange'), 'smallest goal'],
    [seriesColour('idle'), 'all others; rest the pointer on a dot for its values'],
  ];
  return {
    title: 'Best trade-offs',
    lead: `${tune.front.length} of ${tune.candidates.length} configurations${tune.goal ? `, goal: ${tune.goal}` : ''}`,
    content: [html('div', { class: 'plots wide' }, ...VIEWS.map((view) => tradeOffs(tune, view))), legend(dots), html('h2', {}, 'Best trade-offs'), frontTable(tune)],
  };
}
