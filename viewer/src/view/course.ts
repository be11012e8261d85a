/** One head over time against the bounds of its frame, across or down. Drawn only while it is open. */

import uPlot from 'uplot';
import 'uplot/dist/uPlot.min.css';
import { courseOf, peopleIn, type CoursePoint } from '../course';
import type { Box } from '../events';
import type { History } from '../history';
import type { Span } from '../lanes';
import { seriesColour } from '../palette';
import type { State } from '../state';
import { clock } from '../words';
import { html, set } from './dom';

const HEIGHT = 170;

const AXES = { across: ['left', 'right'], down: ['top', 'bottom'] } as const;
type Axis = keyof typeof AXES;

type Series = [name: string, of: (point: CoursePoint) => Box | null, colour: Parameters<typeof seriesColour>[0], dash: number[]];
const SERIES: Series[] = [
  ['head', (p) => p.head, 'blue', []],
  ['frame', (p) => p.frame, 'orange', []],
  ['detection boundary', (p) => p.boundary, 'green', [7, 4]],
  ['off-centre bound', (p) => p.offCentre, 'pink', [2, 4]],
];

export class CourseView {
  private readonly person = html('select', { 'aria-label': 'Person' });
  private readonly axis = html('select', { 'aria-label': 'Direction' });
  private readonly place = html('div', { class: 'plot' });
  private plot: uPlot | null = null;
  private drawn = '';

  constructor(private readonly root: HTMLDetailsElement, private readonly changed: () => void) {
    this.axis.append(...Object.keys(AXES).map((name) => html('option', { value: name }, name)));
    root.append(html('summary', {}, 'One head over time'), html('p', {}, 'person ', this.person, ' ', this.axis), this.place);
    for (const node of [this.person, this.axis]) node.addEventListener('change', changed);
    root.addEventListener('toggle', changed);
  }

  draw(history: History, state: State, t: number, span: Span): void {
    if (!this.root.open) return;
    this.offer(peopleIn(state));
    const now = `${this.person.value} ${this.axis.value} ${span.start} ${span.end} ${this.place.clientWidth} ${getComputedStyle(this.root).colorScheme}`;
    if (now !== this.drawn && this.person.value) {
      this.drawn = now;
      this.make(courseOf(history, Number(this.person.value), span));
    }
    this.plot?.setCursor({ left: this.plot.valToPos(t / 1000, 'x'), top: 0 });
  }

  /** Who is there can be chosen; who was chosen stays so, there or not. */
  private offer(people: number[]): void {
    const chosen = this.person.value;
    const wanted = [...new Set([...people.map(String), ...(chosen ? [chosen] : [])])];
    if (wanted.join() === [...this.person.options].map((o) => o.value).join()) return;
    this.person.replaceChildren(...wanted.map((id) => html('option', { value: id, selected: id === chosen }, id)));
    this.changed();
  }

  private make(points: CoursePoint[]): void {
    const [low, high] = AXES[this.axis.value as Axis];
    const columns = SERIES.flatMap(([, of]) => [low, high].map((side) => points.map((p) => of(p)?.[side] ?? null)));
    const style = getComputedStyle(this.root);
    const colour = (name: string) => style.getPropertyValue(`--${name}`).trim();
    const axis: uPlot.Axis = { stroke: colour('dim'), grid: { stroke: colour('line'), width: 1 }, ticks: { stroke: colour('line') } };
    this.plot?.destroy();
    this.plot = new uPlot(
      {
        width: Math.max(200, this.place.clientWidth),
        height: HEIGHT,
        scales: { x: { time: false }, y: this.axis.value === 'down' ? { dir: -1 } : {} },
        axes: [{ ...axis, values: (_u, splits) => splits.map((s) => clock(s * 1000).replace(/\.000$/, '')) }, { ...axis, size: 44 }],
        series: [
          { label: 'time', value: (_u, s) => (s == null ? '' : clock(s * 1000)) },
          ...SERIES.flatMap(([name, , of, dash]) => [low, high].map((side): uPlot.Series => ({ label: `${name} ${side}`, stroke: seriesColour(of), width: name === 'head' ? 2.5 : 1.5, dash, points: { show: false } }))),
        ],
      },
      [points.map((p) => p.t / 1000), ...columns],
      this.place,
    );
    set(this.place, { 'data-points': points.filter((p) => p.head).length });
  }
}
