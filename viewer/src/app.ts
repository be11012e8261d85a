/** Joins feed, history, player and views. One picture is drawn per screen refresh, and only when something changed. */

import { History, KEEP_ALL, type Limits } from './history';
import { momentsOf, type Lane, type Moment } from './moments';
import { parseLine } from './parse';
import { Player } from './player';
import type { Feed, Info } from './sources';
import type { State } from './state';
import { Controls } from './view/controls';
import { Header } from './view/header';
import { makeOutput } from './view/output';
import { planeDefinitions } from './view/plane';
import { Problems } from './view/problems';
import { makeRoom } from './view/room';
import { Timeline } from './view/timeline';
import { makeWaits } from './view/waits';
import { countUpTo, makeWhy } from './view/why';

/** A live session keeps its last ten minutes. */
const LIVE_LIMITS: Limits = { keepMs: 600_000, keepEvents: 120_000 };

/** Without a message for this long, live time stands still, milliseconds. */
const LIVE_SILENCE_MS = 1000;

/** Lanes in which decisions say more than what is inferred from documents. */
const EXPLAINED: readonly Lane[] = ['wait', 'reframe'];

const part = (id: string): HTMLElement => document.querySelector<HTMLElement>(`#${id}`) as HTMLElement;

export class App implements Feed {
  readonly history: History;
  readonly player: Player;
  moments: Moment[] = [];
  private explained = false;
  private arrived = 0;
  private drawnAt = Number.NaN;
  private drawnState: State | null = null;
  private dirty = true;
  private lastFrame = performance.now();
  private readonly header: Header;
  private readonly controls: Controls;
  private readonly timeline: Timeline;
  private readonly problems = new Problems(part('problems') as HTMLDetailsElement);
  private readonly drawRoom = makeRoom(part('room'));
  private readonly drawOutput = makeOutput(part('output'));
  private readonly drawWaits = makeWaits(part('waits'));
  private readonly drawWhy = makeWhy(part('why'), (t) => this.jump(t));

  constructor(info: Info) {
    const live = info.source === 'live';
    this.history = new History(live ? LIVE_LIMITS : KEEP_ALL);
    this.player = new Player(live);
    document.body.append(planeDefinitions());
    this.header = new Header(info);
    this.timeline = new Timeline(part('timeline'), (t) => this.jump(t));
    this.controls = new Controls(part('controls'), this);
    addEventListener('hashchange', () => this.followLink());
    addEventListener('resize', () => this.redraw());
    requestAnimationFrame((now) => this.frame(now));
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
    this.arrived = performance.now();
    if (this.player.live) this.forget();
    this.dirty = true;
  }

  status(text: string): void {
    this.header.status(text);
  }

  done(): void {
    this.player.t = this.history.start;
    this.followLink();
    this.redraw();
  }

  redraw(): void {
    this.dirty = true;
  }

  jump(t: number): void {
    this.player.jump(t, this.range);
    this.redraw();
    this.controls.linkTo(this.player.t);
  }

  get range(): { start: number; end: number } {
    return { start: this.history.start, end: this.history.end };
  }

  /** To the next or last vision result; a recording without any is stepped event by event. */
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
    if (target) this.jump(target.t);
  }

  zoom(span: number | null): void {
    this.timeline.span = span;
    this.redraw();
  }

  private addMoment(moment: Moment): void {
    if (moment.inferred && this.explained && EXPLAINED.includes(moment.lane)) return;
    this.moments.push(moment);
    this.timeline.add(moment);
  }

  private preferDecisions(): void {
    if (this.explained) return;
    this.explained = true;
    this.moments = this.moments.filter((m) => !(m.inferred && EXPLAINED.includes(m.lane)));
    this.timeline.dropInferred(EXPLAINED);
  }

  private forget(): void {
    const { start } = this.history;
    const gone = countUpTo(this.moments, start - 1);
    // One by one would cost a copy each time.
    if (gone < 64) return;
    this.moments.splice(0, gone);
    this.timeline.forget(start);
  }

  private followLink(): void {
    const wanted = /[#&]t=(\d+)/.exec(location.hash)?.[1];
    if (wanted !== undefined) {
      this.player.jump(Number(wanted), this.range);
      this.redraw();
    }
  }

  private frame(now: number): void {
    const passed = Math.min(250, now - this.lastFrame);
    this.lastFrame = now;
    const newest = this.history.end + Math.min(LIVE_SILENCE_MS, Math.max(0, now - this.arrived));
    this.player.advance(passed, this.range, newest);
    if (this.dirty || this.player.t !== this.drawnAt) this.draw(this.player.t);
    requestAnimationFrame((next) => this.frame(next));
  }

  private draw(t: number): void {
    const state = this.history.at(t);
    if (state !== this.drawnState) this.drawRoom(state);
    this.drawOutput(state, t);
    this.drawWaits(state, t);
    this.drawWhy(this.moments, t);
    this.timeline.draw({ start: this.history.start, end: Math.max(this.history.end, this.player.following ? t : 0) }, t);
    this.header.draw(state, t);
    this.controls.draw(this.player, t);
    this.drawnAt = t;
    this.drawnState = state;
    this.dirty = false;
    document.body.dataset.t = String(Math.round(t));
  }
}
