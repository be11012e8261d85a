/** Play, pause, speed, steps, zoom and the link that names the moment; the same by keyboard. */

import type { Difference } from '../differences';
import { SPEEDS, type Player } from '../player';
import { clock, seconds } from '../words';
import { html, icon, say, set } from './dom';
import { NEARER } from './timeline';

export interface Actions {
  readonly player: Player;
  readonly range: { start: number; end: number };
  jump(t: number): void;
  step(direction: 1 | -1): void;
  stepMoment(direction: 1 | -1): void;
  stepDifference(direction: 1 | -1): void;
  /** The length of what the time line shows, milliseconds; null for everything. */
  zoom(length: number | null): void;
  zoomBy(factor: number): void;
  /** One end of the selected range is here; null for no range. */
  mark(end: 'start' | 'end' | null): void;
  search(): void;
  redraw(): void;
}

/** Keys that belong to what has the focus. */
const TYPING = 'select, input, textarea';

const SPANS: [string, number | null][] = [
  ['all', null],
  ['10 min', 600_000],
  ['2 min', 120_000],
  ['30 s', 30_000],
  ['10 s', 10_000],
];

/** What a live session begins with. */
const LIVE_SPAN = '2 min';

const ICONS = {
  play: 'M7 4v16l13-8z',
  pause: 'M6 4h4v16H6zM14 4h4v16h-4z',
  back: 'M16 4v16L5 12z',
  on: 'M8 4v16l11-8z',
  last: 'M5 4h3v16H5zM20 4v16L9 12z',
  next: 'M16 4h3v16h-3zM4 4v16l11-8z',
} as const;

type Icon = keyof typeof ICONS;

function button(label: string | Icon, title: string, act: () => void): HTMLButtonElement {
  const sign = label in ICONS ? icon(ICONS[label as Icon]) : label;
  const node = html('button', { type: 'button', title, 'aria-label': title }, sign);
  node.addEventListener('click', act);
  return node;
}

function choice(label: string, options: readonly string[], chosen: string, act: (value: string) => void): HTMLSelectElement {
  const node = html('select', { 'aria-label': label, title: label });
  for (const option of options) node.append(html('option', { value: option, selected: option === chosen }, option));
  node.addEventListener('change', () => act(node.value));
  return node;
}

export class Controls {
  private readonly play: HTMLButtonElement;
  private readonly speed: HTMLSelectElement;
  private readonly live: HTMLButtonElement;
  private readonly time = html('output', { class: 'time' });
  private readonly wall = html('span', { class: 'wall', title: 'Wall clock' });
  private readonly differences = html('span', { class: 'differences' });
  private readonly zoomed = html('option', { value: '', hidden: true }, 'zoomed');
  private readonly length: HTMLSelectElement;
  private readonly copied = html('span', { class: 'copied', role: 'status' });

  /** `compares` two sides. */
  constructor(root: HTMLElement, private readonly actions: Actions, compares: boolean) {
    const { player } = actions;
    this.play = button('play', 'Play (space)', () => this.toggle());
    this.speed = choice('Speed', SPEEDS.map((s) => `${s}×`), '1×', (value) => {
      player.speed = Number.parseFloat(value);
    });
    this.live = button('Live', 'Follow live (L)', () => this.follow());
    this.live.hidden = !player.live;
    this.length = choice('Length of the time line', SPANS.map(([name]) => name), player.live ? LIVE_SPAN : 'all', (value) =>
      actions.zoom(SPANS.find(([name]) => name === value)?.[1] ?? null),
    );
    this.length.append(this.zoomed);
    if (player.live) actions.zoom(SPANS.find(([name]) => name === LIVE_SPAN)?.[1] ?? null);
    root.append(
      button('last', 'Last moment (shift and left)', () => actions.stepMoment(-1)),
      button('back', 'One vision result back (left)', () => actions.step(-1)),
      this.play,
      button('on', 'One vision result on (right)', () => actions.step(1)),
      button('next', 'Next moment (shift and right)', () => actions.stepMoment(1)),
      this.live,
      this.time,
      this.wall,
      ...(compares ? [button('⟨ differs', 'Last difference (shift and D)', () => actions.stepDifference(-1)), button('differs ⟩', 'Next difference (D)', () => actions.stepDifference(1)), this.differences] : []),
      html('label', {}, 'speed ', this.speed),
      html('label', {}, 'show ', this.length),
      button('Copy link', 'Copy link to this moment', () => void this.copy()),
      this.copied,
    );
    addEventListener('keydown', (event) => this.key(event));
  }

  /** What two sides differ in. */
  found(differences: readonly Difference[]): void {
    const all = differences.reduce((sum, d) => sum + d.end - d.start, 0);
    const count = `${differences.length} difference${differences.length === 1 ? '' : 's'}`;
    say(this.differences, differences.length === 0 ? 'no difference' : `${count}, ${seconds(all)}`);
  }

  /** `began` is the wall clock of t = 0, `length` that of the time line. */
  draw(player: Player, t: number, began: number | null, length: number | null): void {
    const moving = player.following || player.playing;
    set(this.play.querySelector('path') as Element, { d: moving ? ICONS.pause : ICONS.play });
    set(this.play, { 'aria-label': moving ? 'Pause (space)' : 'Play (space)', title: moving ? 'Pause (space)' : 'Play (space)' });
    set(this.live, { 'aria-pressed': String(player.following) });
    say(this.time, `${clock(t)} / ${clock(this.actions.range.end)}`);
    say(this.wall, began === null ? '' : new Date(began + t).toLocaleString('sv'));
    const named = SPANS.find(([, span]) => span === length)?.[0] ?? '';
    if (this.length.value !== named) this.length.value = named;
    const speed = `${player.speed}×`;
    if (this.speed.value !== speed) this.speed.value = speed;
  }

  /** The address names the moment, so that it can be passed on. */
  linkTo(t: number): void {
    history.replaceState(null, '', `#t=${Math.round(t)}`);
  }

  private toggle(): void {
    this.actions.player.toggle(this.actions.range);
    if (!this.actions.player.playing) this.linkTo(this.actions.player.t);
    this.actions.redraw();
  }

  private follow(): void {
    this.actions.player.follow();
    this.actions.redraw();
  }

  private async copy(): Promise<void> {
    this.linkTo(this.actions.player.t);
    try {
      await navigator.clipboard.writeText(location.href);
      say(this.copied, 'copied');
    } catch {
      say(this.copied, 'see the address line');
    }
    setTimeout(() => say(this.copied, ''), 2000);
  }

  private key(event: KeyboardEvent): void {
    const target = event.target as HTMLElement;
    if (event.ctrlKey || event.altKey || event.metaKey || target.closest(TYPING)) return;
    const press = (act: () => void) => {
      event.preventDefault();
      act();
    };
    const { actions } = this;
    switch (event.key) {
      case ' ':
        // What can be pressed, space presses.
        return target.closest('button, summary') ? undefined : press(() => this.toggle());
      case 'ArrowRight':
        return press(() => (event.shiftKey ? actions.stepMoment(1) : actions.step(1)));
      case 'ArrowLeft':
        return press(() => (event.shiftKey ? actions.stepMoment(-1) : actions.step(-1)));
      case 'Home':
        return press(() => actions.jump(actions.range.start));
      case 'End':
        return press(() => actions.jump(actions.range.end));
      case '+':
      case '-':
        return press(() => {
          actions.player.faster(event.key === '+' ? 1 : -1);
          actions.redraw();
        });
      case 'd':
      case 'D':
        return press(() => actions.stepDifference(event.shiftKey ? -1 : 1));
      case 'z':
      case 'Z':
        return press(() => actions.zoomBy(event.shiftKey ? 1 / NEARER : NEARER));
      case '0':
        return press(() => actions.zoom(null));
      case 'i':
      case 'o':
        return press(() => actions.mark(event.key === 'i' ? 'start' : 'end'));
      case 'Escape':
        return press(() => actions.mark(null));
      case '/':
        return press(() => actions.search());
      case 'l':
      case 'L':
        return press(() => this.follow());
      default:
        return undefined;
    }
  }
}
