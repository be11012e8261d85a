/**
 * Joins feed, history, player and views. Nothing is drawn unless something changed: at most one picture per screen
 * refresh, and texts ten times a second while time runs.
 */

import { History, KEEP_ALL, type Limits } from './history';
import { Lanes } from './lanes';
import { momentsOf, type Lane, type Moment } from './moments';
import { parseLine } from './parse';
import { Player } from './player';
import type { Feed, Info } from './sources';
import type { State } from './state';
import { Controls } from './view/controls';
import { set } from './view/dom';
import { Header } from './view/header';
import { makeNumbers } from './view/numbers';
import { makeOutput } from './view/output';
import { Problems } from './view/problems';
import { makeRoom } from './view/room';
import { Timeline } from './view/timeline';
import { makeWaits } from './view/waits';
import { makeWhy } from './view/why';
import { countUpTo } from './why';

/** A live session keeps its last five minutes. */
const LIVE_LIMITS: Limits = { keepMs: 300_000, keepEvents: 60_000 };

/** Without a message for this long, live time stands still, milliseconds. */
const LIVE_SILENCE_MS = 1000;

/** Texts change at most this often while time runs, milliseconds. */
const TEXT_PERIOD = 100;

/** Longer than this no picture takes: the page was hidden or the machine asleep, and playing waits for it. */
const LONGEST_STEP = 250;

/** Lanes in which decisions say more than what is inferred from documents. */
const EXPLAINED: readonly Lane[] = ['wait', 'reframe'];

/** Moments are forgotten in batches: one by one would cost a copy each time. */
const FORGET_BATCH = 64;

/** A scene document this soon after a decision follows from it, milliseconds. */
const SAME_CHANGE = 50;

const part = (id: string): HTMLElement => document.querySelector<HTMLElement>(`#${id}`) as HTMLElement;

export class App implements Feed {
  readonly history: History;
  readonly player: Player;
  private moments: Moment[] = [];
  private readonly lanes = new Lanes();
  private explained = false;
  /** The last decision that changed the picture. */
  private last: Moment | null = null;
  private arrived = 0;
  private drawnState: State | null = null;
  private dirty = true;
  private wanted = false;
  private lastFrame = performance.now();
  private lastTexts = 0;
  private textsLate = false;
  private inTransition = false;
  private timer: ReturnType<typeof setTimeout> | null = null;
  private readonly header: Header;
  private readonly controls: Controls;
  private readonly timeline: Timeline;
  private readonly problems = new Problems(part('problems') as HTMLDetailsElement);
  private readonly redrawn = () => this.redraw();
  private readonly drawRoom = makeRoom(part('room'), this.redrawn);
  private readonly drawOutput = makeOutput(part('output'), this.redrawn);
  private readonly drawNumbers = makeNumbers(part('numbers') as HTMLDetailsElement, this.redrawn);
  private readonly drawWaits = makeWaits(part('waits'));
  private readonly drawWhy: ReturnType<typeof makeWhy>;

  private readonly live: boolean;

  constructor(info: Info) {
    this.live = info.source === 'live';
    this.drawWhy = makeWhy(part('why'), (t) => this.jump(t), info.question);
    this.history = new History(this.live ? LIVE_LIMITS : KEEP_ALL);
    this.player = new Player(this.live);
    this.timeline = new Timeline(part('timeline'), this.lanes, (t) => this.jump(t), this.redrawn);
    this.header = new Header(info, () => {
      this.timeline.retheme();
      this.redraw();
    });
    this.controls = new Controls(part('controls'), this);
    addEventListener('hashchange', () => this.followLink());
    this.redraw();
  }

  line(text: string, number: number): void {
    const { event, fault } = parseLine(text, this.history.latest.own ?? Number.NaN);
    if (!event) {
      this.problems.add(number, fault);
      return;
    }
    if (event.kind === 'decision') this.preferDecisions();
    const { before, after } = this.history.push(event);
    for (const moment of momentsOf(event, before, after)) this.addMoment(moment);
    if (event.kind === 'notice') this.problems.notice(event.text);
    this.arrived = performance.now();
    if (this.player.live) this.forget();
    this.redraw();
  }

  status(text: string): void {
    this.header.status(text);
  }

  done(): void {
    this.player.t = this.history.start;
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

  get range(): { start: number; end: number } {
    return { start: this.history.start, end: this.history.end };
  }

  /** To the next or last vision result; a recording without any is left at its end or start. */
  step(direction: 1 | -1): void {
    const t = this.history.find(this.player.t, direction, (e) => e.kind === 'vision');
    this.player.playing = false;
    this.jump(t ?? (direction === 1 ? this.history.end : this.history.start));
  }

  /** To the next or last mark of the time line. */
  stepMoment(direction: 1 | -1): void {
    const upTo = countUpTo(this.moments, this.player.t);
    let target = this.moments[direction === 1 ? upTo : upTo - 1];
    for (let i = upTo - 1; direction === -1 && target && target.t >= this.player.t; i -= 1) target = this.moments[i - 1];
    this.player.playing = false;
    if (target) this.jump(target.t);
  }

  zoom(span: number | null): void {
    this.timeline.span = span;
    this.redraw();
  }

  private addMoment(moment: Moment): void {
    if (moment.inferred && this.explained && EXPLAINED.includes(moment.lane)) return;
    this.lanes.add(moment);
    // A noisy detector changes the count several times a second: it would hide all else in the list.
    if (moment.lane === 'people') return;
    const { last } = this;
    // The decision says all that this document could.
    if (moment.inferred && last?.changes && last.stream === moment.stream && moment.t - last.t <= SAME_CHANGE) return;
    if (!moment.inferred && moment.changes) this.last = moment;
    this.moments.push(moment);
  }

  private preferDecisions(): void {
    if (this.explained) return;
    this.explained = true;
    this.moments = this.moments.filter((m) => !(m.inferred && EXPLAINED.includes(m.lane)));
    this.lanes.dropInferred(EXPLAINED);
  }

  private forget(): void {
    const { start } = this.history;
    const gone = countUpTo(this.moments, start - 1);
    if (gone < FORGET_BATCH) return;
    this.moments.splice(0, gone);
    this.lanes.forget(start);
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
    const newest = this.history.end + Math.min(LIVE_SILENCE_MS, Math.max(0, now - this.arrived));
    const { player } = this;
    const t = player.t;
    player.advance(passed, this.range, newest);
    const transition = this.dirty || this.textsLate || player.t !== t ? this.draw(player.t, now) : false;
    if (player.playing || transition) this.wake();
    else if (player.following) this.wakeLater();
  }

  /** Answers whether a transition is being played. */
  private draw(t: number, now: number): boolean {
    const state = this.history.at(t);
    const { player, history } = this;
    const changed = this.dirty || state !== this.drawnState;
    if (changed) this.drawRoom(state);
    const transition = (changed || this.inTransition) && this.drawOutput(state, t);
    this.inTransition = transition;
    const all = { start: history.start, end: Math.max(history.end, player.following ? t : 0) };
    this.timeline.draw(all, t);
    if (this.textsAreDue(now)) {
      this.drawWaits(state, t);
      this.drawWhy(this.moments, t, this.live && !this.explained && this.moments.length > 0);
      this.drawNumbers(state);
      this.timeline.say(all, t);
      this.header.draw(state, history.count(t - 1000, t, (e) => e.kind === 'vision'));
      this.controls.draw(player, t);
      set(document.body, { 'data-t': Math.round(t) });
    }
    this.drawnState = state;
    this.dirty = false;
    return transition;
  }

  private textsAreDue(now: number): boolean {
    const moving = this.player.playing || this.player.following;
    this.textsLate = moving && now - this.lastTexts < TEXT_PERIOD;
    if (this.textsLate) this.wakeLater();
    else this.lastTexts = now;
    return !this.textsLate;
  }
}
