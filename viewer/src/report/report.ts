/** The page of `prb report`: key figures, the course of each recording, distributions, all figures. */

import uPlot from 'uplot';
import { seriesColour } from '../palette';
import { html } from '../view/dom';
import { coursePlots } from './course';
import { clockText, figureText, plainText, type Distribution, type Figures, type MetricName, type Report } from './data';
import { plot } from './plot';
import { cumulative, histogram, percentile } from './shapes';

/** The figures that say most. */
const KEY_METRICS = [
  'in_view_percent',
  'changes_per_minute',
  'latency_s',
  'flickers_per_minute',
  'head_size_percent',
  'head_room_percent',
  'thirds_deviation_percent',
  'speaker_framed_percent',
];
const TENTHS = 10;
const MS = 1000;

const card = (...content: Node[]) => html('section', { class: 'panel' }, ...content);

/** Undefined for a figure that was not asked for. */
const valueOf = (figures: Figures, { name }: MetricName) => ({ ...figures.timing, ...figures.metrics })[name];

/** Without the folder and the usual ending. */
export const shortName = (path: string) => path.replace(/^.*\//, '').replace(/\.jsonl$/, '');

function keyFigures({ names, overall }: Report): HTMLElement {
  const cards = KEY_METRICS.flatMap((key) => names.filter(({ name }) => name === key)).map((metric) =>
    card(html('b', {}, figureText(metric, valueOf(overall, metric)), ' ', html('small', {}, metric.unit)), html('span', {}, metric.label)),
  );
  return html('div', { class: 'cards' }, ...cards);
}

function bars(heading: string, distribution: Distribution, x: string, share = '% of the time'): HTMLElement {
  const { edges, shares } = histogram(distribution, TENTHS);
  const median = percentile(distribution, 50) / TENTHS;
  const paths = uPlot.paths.bars?.({ size: [0.92, Infinity], align: 1 });
  return plot({
    heading,
    height: 220,
    x,
    y: { high: Math.max(...shares) * 1.1 },
    data: [edges, [...shares, null]],
    series: [
      {
        label: share,
        stroke: seriesColour('blue'),
        fill: seriesColour('blue'),
        width: 0,
        ...(paths ? { paths } : {}),
        points: { show: false },
        value: (_u, value) => value?.toFixed(1) ?? '',
      },
    ],
    draw: (layer) => layer.mark(median, seriesColour('orange'), `median ${plainText(median, 1)}`),
  });
}

function curve(heading: string, distribution: Distribution): HTMLElement {
  const { values, shares } = cumulative(distribution, MS);
  const median = percentile(distribution, 50) / MS;
  const paths = uPlot.paths.stepped?.({ align: 1 });
  return plot({
    heading,
    height: 220,
    x: 's',
    y: { high: 104 },
    data: [values, shares],
    series: [
      {
        label: '% not above',
        stroke: seriesColour('blue'),
        width: 2,
        ...(paths ? { paths } : {}),
        points: { show: false },
        value: (_u, value) => value?.toFixed(1) ?? '',
      },
    ],
    draw: (layer) => layer.mark(median, seriesColour('orange'), `median ${plainText(median, 1)} s`),
  });
}

function distributionPlots({ distributions: d, events }: Report): HTMLElement {
  const plots: [Distribution | undefined, (distribution: Distribution) => HTMLElement][] = [
    [d.headSize, (of) => bars('Head size in the output', of, "% of the output's height")],
    [d.headRoom, (of) => bars('Head room', of, "% of the frame's height")],
    [d.thirds, (of) => bars('Off the rule of thirds', of, "% of the frame's height")],
    [d.betweenChanges, (of) => curve('Time between changes, % shorter', of)],
    ...d.answers.map((answers, kind): (typeof plots)[number] => [answers, (of) => curve(`Answers to ${events[kind] ?? ''}, % faster`, of)]),
    [d.decisionTime, (of) => bars('Decision time', of, 'us', '% of the vision results')],
  ];
  return html('div', { class: 'plots' }, ...plots.flatMap(([of, make]) => (of && of.length > 0 ? [card(make(of))] : [])));
}

function table(head: string[], rows: [name: string, ...cells: string[]][], kind = ''): HTMLElement {
  const body = rows.map(([name, ...cells]) => html('tr', {}, html('th', { scope: 'row' }, name), ...cells.map((cell) => html('td', { class: kind || null }, cell))));
  const heads = html('tr', {}, ...head.map((name) => html('th', { scope: 'col' }, name)));
  return html('div', { class: 'scroll' }, html('table', {}, html('thead', {}, heads), html('tbody', {}, ...body)));
}

function waitTable({ overall }: Report): HTMLElement {
  const rows = overall.waits.map((wait): [string, ...string[]] => [
    wait.key,
    String(wait.ran_out),
    String(wait.dropped),
    wait.running_s.toFixed(1),
    wait.off_screen_s.toFixed(1),
  ]);
  return card(table(['Wait', 'Ran out', 'Dropped', 'Seconds in it', 'Somebody off screen, s'], rows));
}

function settingsOf({ mode, settings }: Report['recordings'][number]): HTMLElement {
  const changed = Object.entries(settings).map(([key, value]) => `${key}=${value}`);
  return html('p', { class: 'settings' }, `Mode ${mode || 'unknown'}; ${changed.length > 0 ? `not the default: ${changed.join(', ')}` : 'all settings are the default'}`);
}

function definitionTable({ names, definitions }: Report): HTMLElement {
  const plain = (text: string) => text.replaceAll('`', '');
  const rows = names.map(({ name, label }): [string, ...string[]] => [label, name, plain(definitions[name] ?? '')]);
  return html('details', { class: 'panel' }, html('summary', {}, 'What the figures mean'), table(['Figure', 'Name', 'Definition'], rows, 'words'));
}

function figureTable({ names, overall, recordings }: Report): HTMLElement {
  const columns: [string, Figures][] = [['All', overall]];
  if (recordings.length > 1) columns.push(...recordings.map((each): [string, Figures] => [shortName(each.recording), each]));
  const rows = names
    .filter((metric) => valueOf(overall, metric) !== undefined)
    .map((metric) =>
      html(
        'tr',
        {},
        html('th', { scope: 'row' }, metric.label),
        html('td', { class: 'unit' }, metric.unit),
        ...columns.map(([, figures]) => html('td', {}, figureText(metric, valueOf(figures, metric)))),
      ),
    );
  const head = html('tr', {}, ...['Metric', '', ...columns.map(([name]) => name)].map((name) => html('th', { scope: 'col' }, name)));
  return card(html('div', { class: 'scroll' }, html('table', {}, html('thead', {}, head), html('tbody', {}, ...rows))));
}

export function reportPage(report: Report): { title: string; lead: string; content: HTMLElement[] } {
  const { recordings, overall, events, version, madeAt, isTooFew } = report;
  const count = `${recordings.length} ${recordings.length === 1 ? 'recording' : 'recordings'}`;
  return {
    title: 'Framing report',
    lead:
      `${count}${isTooFew ? ' (too few to say anything about other meetings)' : ''}, ${clockText(overall.minutes * 60)} of meeting, ` +
      `${overall.visionResults} vision results, measured against ${overall.against}; prb ${version}, ${new Date(madeAt).toISOString().slice(0, 10)}`,
    content: [
      keyFigures(report),
      html('h2', {}, 'Course'),
      ...recordings.map((each, index) =>
        card(html('h3', {}, shortName(each.recording)), settingsOf(each), ...coursePlots(each.recording, each.course, events, `recording ${index}`)),
      ),
      html('h2', {}, 'What each wait did'),
      waitTable(report),
      html('h2', {}, 'Distributions'),
      distributionPlots(report),
      html('h2', {}, 'All figures'),
      figureTable(report),
      definitionTable(report),
    ],
  };
}
