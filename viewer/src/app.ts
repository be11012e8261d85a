/**
 * Joins feeds, sides, player and views. Nothing is drawn unless something changed: at most one picture per screen
 * refresh, and texts ten times a second while time runs.
 */

import { differencesOf, nextDifference } from './differences';
import { EVERY_MOMENT, filtered, type MomentFilter } from './filter';
import type { Span } from './lanes';
import type { Moment } from './moments';
import { Player } from './player';
import { Side } from './side';
import { recordingLines, type Feed, type Info } from './sources';
import { Controls } from './view/controls';
import { set } from './view/dom';
import { Footage } from './view/footage';
import { Header } from './view/header';
import { Problems } from './view/problems';
import { RangeBar } from './view/range';
import { SideView } from './view/side';
import { Timeline } from './view/timeline';
import { countUpTo } from './why';

/** Without a message for this long, live time stands still, milliseconds. */
const LIVE_SILENCE_MS = 1000;

/** Texts change at most this often while time runs, milliseconds. */
const TEXT_PERIOD = 100;

/** Longer than this no picture takes: the page was hidden or the machine asleep, and playing waits for it. */
const LONGEST_STEP = 250;

const part = (id: string): HTMLElement => document.querySelector<HTMLElement>(`#${id}`) as HTMLElement;

export class App {
  readonly player: Player;
  private readonly sides: Side[];
  private readonly views: SideView[];
  private readonly footage: Footage;
  private filter: MomentFilter = EVERY_MOMENT;
  private reading: number;
  private arrived = 0;
  private dirty = true;
  private wanted = false;
  private lastFrame = performance.now();
  private lastTexts = 0;
  private textsLate = false;
  private timer: ReturnType<typeof setTimeout> | null = null;
  private readonly header: Header;
  private readonly controls: Controls;
  private readonly timeline: Timeline;
  private readonly rangeBar: RangeBar;

  constructor(info: Info) {
    const live = info.source === 'live';
    const problems = new Problems(part('problems') as HTMLDetailsElement);
    this.sides = info.sides.map(({ name }) => new Side(name, live, problems));
    this.reading = this.sides.length;
    this.player = new Player(live);
    this.footage = new Footage(info.videos, () => this.redraw(), (text) => problems.notice(text));
    this.views = SideView.make(info.sides, {
      live,
      footage: this.footage,
      jump: (t) => this.jump(t),
      redraw: () => this.redraw(),
      filter: (filter) => {
        this.filter = filter;
        this.redraw();
      },
    });
    this.timeline = new Timeline(part('timeline'), this.sides, { jump: (t) => this.jump(t), select: (range) => this.select(range), redraw: () => this.redraw() });
    this.header = new Header(info, () => {
      this.timeline.retheme();
      this.redraw();
    });
    this.rangeBar = new RangeBar(part('range'), info.name, {
      zoom: (range) => this.zoomTo(range),
      clear: () => this.select(null),
      lines: async () => (live ? this.sides[0]!.recentLines() : recordingLines()),
    });
    this.controls = new Controls(part('controls'), this, this.sides.length > 1);
    addEventListener('hashchange', () => this.followLink());
    this.redraw();
  }

  /** What reads the lines of a side is told here. */
  feed(index: number): Feed {
    const side = this.sides[index] as Side;
    return {
      line: (text, number) => {
        side.line(text, number);
        this.arrived = performance.now();
        this.redraw();
      },
      status: (text) => this.header.status(text),
      done: () => this.done(),
    };
  }

  private done(): void {
    this.reading -= 1;
    if (this.reading > 0) return;
    const [a, b] = this.sides;
    if (a && b) this.timeline.differences = differencesOf(a.pictures, b.pictures, this.range.end);
    this.controls.found(this.timeline.differences);
    this.player.t = this.range.start;
    set(document.body, { 'data-read': true });
    this.followLink();
    this.redraw();
  }

  redraw(): void {
    this.dirty = true;
    this.wake();
  }

  jump(t: number): void {
    this.player.jump(t, this.range);
    this.redraw();
    this.controls.linkTo(this.player.t);
  }

  get range(): Span {
    const all = this.sides.map((s) => s.history).filter((h) => h.length > 0);
    return all.length === 0 ? { start: 0, end: 0 } : { start: Math.min(...all.map((h) => h.start)), end: Math.max(...all.map((h) => h.end)) };
  }

  /** To the next or last vision result; a recording without any is left at its end or start. */
  step(direction: 1 | -1): void {
    const t = (this.sides[0] as Side).history.find(this.player.t, direction, (e) => e.kind === 'vision');
    this.player.playing = false;
    this.jump(t ?? (direction === 1 ? this.range.end : this.range.start));
  }

  /** To the next or last moment of the lists. */
  stepMoment(direction: 1 | -1): void {
    const times = this.moments().flatMap((moments) => {
      let at = direction === 1 ? countUpTo(moments, this.player.t) : countUpTo(moments, this.player.t) - 1;
      while (direction === -1 && (moments[at]?.t ?? -1) >= this.player.t) at -= 1;
      return moments[at]?.t ?? [];
    });
    this.player.playing = false;
    if (times.length > 0) this.jump(direction === 1 ? Math.min(...times) : Math.max(...times));
  }

  stepDifference(direction: 1 | -1): void {
    const found = nextDifference(this.timeline.differences, this.player.t, direction);
    this.player.playing = false;
    if (found) this.jump(found.start);
  }

  zoom(length: number | null): void {
    this.timeline.zoom.show(length);
    this.redraw();
  }

  zoomBy(factor: number): void {
    this.timeline.zoomBy(factor, this.player.t);
  }

  /** One end of the selected range, or null for both, is moved to the moment. */
  mark(end: 'start' | 'end' | null): void {
    if (end === null) return this.select(null);
    const t = Math.round(this.player.t);
    const { start, end: last } = this.timeline.range ?? { ...this.range };
    return this.select(end === 'start' ? { start: t, end: Math.max(t, last) } : { start: Math.min(t, start), end: t });
  }

  search(): void {
    this.views[0]?.search();
  }

  private select(range: Span | null): void {
    this.timeline.range = range;
    this.redraw();
  }

  private zoomTo(range: Span): void {
    this.timeline.zoom.showSpan(range);
    this.redraw();
  }

  private moments(): (readonly Moment[])[] {
    return this.sides.map((s) => filtered(s.moments, this.filter));
  }

  private followLink(): void {
    const wanted = /[#&]t=(\d+)/.exec(location.hash)?.[1];
    if (wanted !== undefined) {
      this.player.jump(Number(wanted), this.range);
      this.redraw();
    }
  }

  /** Asks for one picture; a hidden page is asked for none until it is seen again. */
  private wake(): void {
    if (this.wanted) return;
    this.wanted = true;
    requestAnimationFrame((now) => this.frame(now));
  }

  private wakeLater(): void {
    this.timer ??= setTimeout(() => {
      this.timer = null;
      this.wake();
    }, TEXT_PERIOD);
  }

  private frame(now: number): void {
    this.wanted = false;
    const passed = Math.min(LONGEST_STEP, Math.max(0, now - this.lastFrame));
    this.lastFrame = now;
    const { player, range } = this;
    const t = player.t;
    player.advance(passed, range, range.end + Math.min(LIVE_SILENCE_MS, Math.max(0, now - this.arrived)));
    const transition = this.dirty || this.textsLate || player.t !== t ? this.draw(player.t, now) : false;
    if (player.playing || transition) this.wake();
    else if (player.following) this.wakeLater();
  }

  /** Answers whether a transition is being played. */
  private draw(t: number, now: number): boolean {
    const { player } = this;
    const states = this.sides.map((s) => s.history.at(t));
    this.footage.follow(this.sides[0]!.footage.at(states[0]!.vision), player.following ? 1 : player.playing ? player.speed : 0);
    const transitions = this.views.map((view, i) => view.drawPictures(states[i]!, t, this.dirty));
    const all = { start: this.range.start, end: Math.max(this.range.end, player.following ? t : 0) };
    this.timeline.draw(all, t);
    if (this.textsAreDue(now)) {
      const moments = this.moments();
      this.views.forEach((view, i) => view.drawTexts(this.sides[i]!, states[i]!, moments[i]!, t, this.timeline.range ?? all));
      this.timeline.say(all, t);
      const { history, began } = this.sides[0]!;
      this.header.draw(states[0]!, history.count(t - 1000, t, (e) => e.kind === 'vision'));
      this.controls.draw(player, t, began, this.timeline.zoom.length);
      this.rangeBar.draw(this.timeline.range, this.sides[0]!.moments);
      set(document.body, { 'data-t': Math.round(t), 'data-service': states[0]!.service?.state ?? null });
    }
    this.dirty = false;
    return transitions.includes(true);
  }

  private textsAreDue(now: number): boolean {
    const moving = this.player.playing || this.player.following;
    this.textsLate = moving && now - this.lastTexts < TEXT_PERIOD;
    if (this.textsLate) this.wakeLater();
    else this.lastTexts = now;
    return !this.textsLate;
  }
}
