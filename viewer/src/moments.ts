/** The moments worth a mark on the time line, found while events come in. */

import type { Event, Layout, ServiceState } from './events';
import type { State } from './state';
import { sceneWords } from './words';

export type Lane = 'layout' | 'wait' | 'reframe' | 'people' | 'control';

export interface Moment {
  t: number;
  lane: Lane;
  stream: number;
  title: string;
  reason: string;
  /** Layout type or people count: what colours or sizes the mark. */
  value: string;
  /** Decisions explain; what is only inferred from documents stands back when there are decisions. */
  inferred: boolean;
  /** It changed the picture, or a wait. */
  changes: boolean;
  waits: boolean;
  /** A wait begins, which the next moment of its lane and stream ends. */
  begins: boolean;
}

const SERVICE: Record<ServiceState, string> = {
  up: 'The service is there.',
  down: 'The service has ended.',
  lost: 'The service has gone without a word: it crashed, or its machine or network did.',
};

const DECISION_LANES: Record<string, Lane> = {
  pending: 'wait',
  dropped: 'wait',
  adopted: 'wait',
  reframeWait: 'reframe',
  reframeCancelled: 'reframe',
  reframed: 'reframe',
  feedPriority: 'reframe',
  secondary: 'wait',
  reset: 'control',
};

const BEGINS: ReadonlySet<string> = new Set(['pending', 'reframeWait']);

/** Decisions by which another picture is shown. */
const CHANGES: ReadonlySet<string> = new Set(['adopted', 'reframed', 'feedPriority', 'secondary', 'reset']);

function samePicture(a: Layout | undefined, b: Layout): boolean {
  return a !== undefined && a.type === b.type && a.frames.length === b.frames.length;
}

function sceneMoments(event: Extract<Event, { kind: 'scene' }>, before: State): Moment[] {
  if (event.debug || event.key !== '') return [];
  return event.layouts.map((layout) => {
    const old = before.decided.get(layout.stream);
    return {
      t: event.t,
      stream: layout.stream,
      lane: samePicture(old, layout) ? ('reframe' as const) : ('layout' as const),
      ...sceneWords(old, layout),
      value: layout.type,
      inferred: true,
      changes: true,
      waits: false,
      begins: false,
    };
  }).filter((m) => m.title !== 'sent again');
}

function timerMoments(event: Extract<Event, { kind: 'timers' }>, before: State, after: State): Moment[] {
  return after.waits.flatMap((now) => {
    const was = before.waits.find((w) => w.stream === now.stream)?.pending ?? null;
    const base = { t: event.t, stream: now.stream, lane: 'wait' as const, inferred: true, changes: false, waits: true, begins: false };
    if (now.pending && now.pending.type !== was?.type) {
      const reason = `A change from ${now.type} to ${now.pending.type} is waiting.`;
      return [{ ...base, begins: true, title: `${now.pending.type} pending`, reason, value: now.pending.type }];
    }
    if (was && !now.pending && now.type !== was.type) {
      return [{ ...base, title: `${was.type} dropped`, reason: `The pending ${was.type} was dropped; ${now.type} stays.`, value: now.type }];
    }
    return [];
  });
}

/** The marks that `event` makes, with the states before and after it. Among several streams, each is named. */
export function momentsOf(event: Event, before: State, after: State): Moment[] {
  const moments = marksOf(event, before, after);
  if (after.decided.size < 2 || event.kind === 'people') return moments;
  return moments.map((m) => (m.lane === 'control' ? m : { ...m, title: `stream ${m.stream}: ${m.title}` }));
}

function marksOf(event: Event, before: State, after: State): Moment[] {
  const control = (title: string, reason: string): Moment[] => [
    { t: event.t, lane: 'control', stream: 0, title, reason, value: '', inferred: false, changes: false, waits: false, begins: false },
  ];
  switch (event.kind) {
    case 'scene':
      return sceneMoments(event, before);
    case 'timers':
      return timerMoments(event, before, after);
    case 'decision': {
      const { decision } = event;
      const lane = DECISION_LANES[decision.kind] ?? 'wait';
      const changes = CHANGES.has(decision.kind);
      return [{ t: event.t, lane, stream: decision.stream, title: decision.title, reason: decision.sentence, value: decision.to, inferred: false, changes, waits: !changes, begins: BEGINS.has(decision.kind) }];
    }
    case 'people':
      if (event.count === before.people?.count) return [];
      return [{
        t: event.t,
        lane: 'people',
        stream: 0,
        title: `${event.count} ${event.count === 1 ? 'person' : 'people'}`,
        reason: `The people count is ${event.count}; the smallest head is ${event.smallest} pixels high.`,
        value: String(event.count),
        inferred: false,
        changes: false,
        waits: false,
        begins: false,
      }];
    case 'mode':
      return control(event.mode, `The framing mode is ${event.mode}.`);
    case 'control':
      return control(event.text || event.topic, `Message on ${event.topic}${event.text ? `: ${event.text}` : ''}.`);
    case 'settings':
      return control(`${event.what} set`, event.values.map(([k, v]) => `${k} = ${v}`).join(', '));
    case 'provider':
      return control(`provider ${event.state}`, `The camera provider: ${event.state}.`);
    case 'service':
      return event.state === before.service?.state ? [] : control(`service ${event.state}`, SERVICE[event.state]);
    case 'notice':
      return control('notice', event.text);
    default:
      return [];
  }
}
