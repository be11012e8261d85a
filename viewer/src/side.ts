/** What is known of one recording or live session, as its lines come: events, moments, and the marks of the time line. */

import { pictureOf, type PictureChange } from './differences';
import type { Event } from './events';
import { RecentLines } from './excerpt';
import { FootageClock } from './footage';
import { History, KEEP_ALL, type Limits } from './history';
import { Lanes } from './lanes';
import { momentsOf, type Lane, type Moment } from './moments';
import { parseLine } from './parse';
import { countUpTo } from './why';

/** A live session keeps its last five minutes. */
const LIVE_LIMITS: Limits = { keepMs: 300_000, keepEvents: 60_000 };

/** Lanes in which decisions say more than what is inferred from documents. */
const EXPLAINED: readonly Lane[] = ['wait', 'reframe'];

/** Moments are forgotten in batches: one by one would cost a copy each time. */
const FORGET_BATCH = 64;

/** A scene document this soon after a decision follows from it, milliseconds. */
const SAME_CHANGE = 50;

/** Told what cannot be shown. */
export interface Complaints {
  add(line: number, reason: string): void;
  notice(text: string): void;
}

export class Side {
  readonly history: History;
  readonly lanes = new Lanes();
  readonly footage = new FootageClock();
  /** Of a live session only. */
  private readonly recent = new RecentLines();
  moments: Moment[] = [];
  /** Every change of what the provider is given; of a recording only. */
  readonly pictures: PictureChange[] = [];
  /** The service gives reasons. */
  explained = false;
  /** Wall clock of t = 0, milliseconds since 1970. */
  began: number | null = null;
  /** The last decision that changed the picture. */
  private last: Moment | null = null;

  /** `name` tells it from another side; empty when there is none. */
  constructor(readonly name: string, private readonly live: boolean, private readonly complaints: Complaints) {
    this.history = new History(live ? LIVE_LIMITS : KEEP_ALL);
  }

  line(text: string, number: number): void {
    const { event, fault } = parseLine(text, this.history.latest.own ?? Number.NaN);
    if (!event) {
      this.complaints.add(number, fault);
      return;
    }
    if (event.kind === 'decision') this.preferDecisions();
    if (event.kind === 'vision') this.footage.note(event);
    if (event.kind === 'notice') this.complaints.notice(event.text);
    this.tellTime(event);
    const { before, after } = this.history.push(event);
    for (const moment of momentsOf(event, before, after)) this.addMoment(moment);
    if (this.live) {
      this.recent.add(event.t, text);
      this.forget();
    } else if (event.kind === 'scene') this.pictures.push(pictureOf(after));
  }

  /** Live lines are as old as the fastest of them, recordings say when they began. */
  private tellTime(event: Event): void {
    if (this.live) this.began = Math.min(this.began ?? Number.POSITIVE_INFINITY, Date.now() - event.t);
    else if (event.kind === 'recorded' && event.startedAt !== null) this.began = event.startedAt - event.t;
  }

  /** The lines of which an excerpt can be made, of a live session. */
  recentLines(): string[] {
    const recorded = this.began === null ? [] : [JSON.stringify({ t: 0, recorded: { startedAt: this.began } })];
    return [...recorded, ...this.recent.texts()];
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
    this.recent.forget(start);
    const gone = countUpTo(this.moments, start - 1);
    if (gone < FORGET_BATCH) return;
    this.moments.splice(0, gone);
    this.lanes.forget(start);
  }
}
