/** Play, pause, speed, steps, zoom and the link that names the moment; the same by keyboard. */

import { SPEEDS, type Player } from '../player';
import { clock } from '../words';
import { html, say, set } from './dom';

export interface Actions {
  readonly player: Player;
  readonly range: { start: number; end: number };
  jump(t: number): void;
  step(direction: 1 | -1): void;
  stepMoment(direction: 1 | -1): void;
  zoom(span: number | null): void;
  redraw(): void;
}

const SPANS: [string, number | null][] = [
  ['all', null],
  ['10 min', 600_000],
  ['2 min', 120_000],
  ['30 s', 30_000],
  ['10 s', 10_000],
];

/** What a live session begins with. */
const LIVE_SPAN = '2 min';

function button(label: string, title: string, act: () => void): HTMLButtonElement {
  const node = html('button', { type: 'button', title, 'aria-label': title }, label);
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
  private readonly copied = html('span', { class: 'copied', role: 'status' });

  constructor(root: HTMLElement, private readonly actions: Actions) {
    const { player } = actions;
    this.play = button('▶', 'Play (space)', () => this.toggle());
    this.speed = choice('Speed', SPEEDS.map((s) => `${s}×`), '1×', (value) => {
      player.speed = Number.parseFloat(value);
    });
    this.live = button('Live', 'Follow live (L)', () => this.follow());
    this.live.hidden = !player.live;
    const span = choice('Length of the time line', SPANS.map(([name]) => name), player.live ? LIVE_SPAN : 'all', (value) =>
      actions.zoom(SPANS.find(([name]) => name === value)?.[1] ?? null),
    );
    if (player.live) actions.zoom(SPANS.find(([name]) => name === LIVE_SPAN)?.[1] ?? null);
    root.append(
      button('⏮', 'Last moment (shift and left)', () => actions.stepMoment(-1)),
      button('◀', 'One vision result back (left)', () => actions.step(-1)),
      this.play,
      button('▶|', 'One vision result on (right)', () => actions.step(1)),
      button('⏭', 'Next moment (shift and right)', () => actions.stepMoment(1)),
      this.live,
      this.time,
      html('label', {}, 'speed ', this.speed),
      html('label', {}, 'show ', span),
      button('Copy link', 'Copy a link to this moment', () => void this.copy()),
      this.copied,
    );
    addEventListener('keydown', (event) => this.key(event));
  }

  draw(player: Player, t: number): void {
    const moving = player.following || player.playing;
    say(this.play, moving ? '⏸' : '▶');
    set(this.play, { 'aria-label': moving ? 'Pause (space)' : 'Play (space)', title: moving ? 'Pause (space)' : 'Play (space)' });
    set(this.live, { 'aria-pressed': String(player.following) });
    say(this.time, `${clock(t)} / ${clock(this.actions.range.end)}`);
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
    if (event.ctrlKey || event.altKey || event.metaKey || target.closest('select, input, textarea, summary')) return;
    const press = (act: () => void) => {
      event.preventDefault();
      act();
    };
    const { actions } = this;
    switch (event.key) {
      case ' ':
        // On a button, space presses it.
        return target.closest('button') ? undefined : press(() => this.toggle());
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
      case 'l':
      case 'L':
        return press(() => this.follow());
      default:
        return undefined;
    }
  }
}
