/** What is known at one moment, and how one event changes it. States are never changed, only followed by new ones. */

import type { CameraSize, Decision, Event, FrameExtra, Layout, ServiceState, TimedLayout, VisionEvent } from './events';

/** What one output stream shows since `since`; `previous` is what the transition comes from. */
export interface Shown {
  /** Tells streams and the documents for other cameras apart. */
  key: string;
  label: string;
  layout: Layout;
  previous: Layout | null;
  since: number;
}

export interface Wait {
  /** Milliseconds that remained at `at`, and the whole wait as far as it is known. */
  remaining: number;
  total: number;
  at: number;
}

export interface FrameWait extends Wait {
  index: number;
  type: string;
  headPosition: string;
}

/** The waits of one stream: its pending layout, if any, and its frames. */
export interface StreamWaits {
  stream: number;
  type: string;
  pending: (Wait & { type: string }) | null;
  frames: FrameWait[];
}

export interface State {
  t: number;
  vision: VisionEvent | null;
  /** What the provider was given, by key. */
  shown: ReadonlyMap<string, Shown>;
  /** The newest layouts of the device itself, debug documents included: what the room shows. */
  decided: ReadonlyMap<number, Layout>;
  debugOnly: boolean;
  waits: readonly StreamWaits[];
  people: { count: number; smallest: number } | null;
  mode: string;
  cameras: ReadonlyMap<number, CameraSize>;
  own: number | null;
  provider: 'up' | 'announced' | 'down' | 'fail' | null;
  /** Since when the service is up or gone; null while it has not said so. */
  service: { state: ServiceState; since: number } | null;
  extras: readonly FrameExtra[];
  decision: { t: number; decision: Decision } | null;
}

export const EMPTY: State = {
  t: 0,
  vision: null,
  shown: new Map(),
  decided: new Map(),
  debugOnly: false,
  waits: [],
  people: null,
  mode: '',
  cameras: new Map(),
  own: null,
  provider: null,
  service: null,
  extras: [],
  decision: null,
};

type SceneEvent = Extract<Event, { kind: 'scene' }>;

function applyScene(state: State, event: SceneEvent): State {
  const decided = new Map(event.key === '' ? event.layouts.map((l): [number, Layout] => [l.stream, l]) : state.decided);
  if (event.debug) {
    // A debug document never reaches the provider: its picture stays.
    return { ...state, decided, debugOnly: true };
  }
  const shown = new Map([...state.shown].filter(([, s]) => s.key.startsWith(`${event.key}/`) === false));
  for (const layout of event.layouts) {
    const key = `${event.key}/${layout.stream}`;
    const stream = `stream ${layout.stream}`;
    shown.set(key, {
      key,
      label: event.key ? `${event.key}, ${stream}` : stream,
      layout,
      previous: state.shown.get(key)?.layout ?? null,
      since: event.t,
    });
  }
  return { ...state, shown, decided, debugOnly: event.key === '' ? false : state.debugOnly };
}

/** The same wait as before keeps its whole length; a new or restarted one begins with what remains. */
function follow(before: Wait | undefined, remaining: number, at: number): Wait {
  const expected = before ? before.remaining - (at - before.at) : -1;
  const restarted = before === undefined || remaining > Math.max(0, expected) + 50;
  return { remaining, at, total: restarted ? remaining : before.total };
}

function waitsOf(state: State, at: number, current: TimedLayout[], next: TimedLayout[]): StreamWaits[] {
  return current.map((layout, i) => {
    const before = state.waits.find((w) => w.stream === layout.stream);
    const pending = next.length === current.length ? next[i] : next.find((n) => n.stream === layout.stream);
    const pendingBefore = before?.pending?.type === pending?.type ? before?.pending : undefined;
    return {
      stream: layout.stream,
      type: layout.type,
      pending: pending ? { type: pending.type, ...follow(pendingBefore ?? undefined, pending.remaining, at) } : null,
      frames: layout.frames.map((f) => {
        const same = before?.frames.find((b) => b.index === f.index && b.headPosition === f.headPosition);
        return { index: f.index, type: f.type, headPosition: f.headPosition, ...follow(same, f.remaining, at) };
      }),
    };
  });
}

function change(state: State, event: Event): State {
  switch (event.kind) {
    case 'vision':
      return { ...state, vision: event };
    case 'scene':
      return applyScene(state, event);
    case 'timers':
      return { ...state, waits: waitsOf(state, event.t, event.current, event.next) };
    case 'people':
      return { ...state, people: event };
    case 'mode':
      return { ...state, mode: event.mode };
    case 'camera': {
      const id = Number.isNaN(event.id) ? (state.own ?? -1) : event.id;
      return { ...state, cameras: new Map(state.cameras).set(id, event.size) };
    }
    case 'identity':
      return { ...state, own: event.id };
    case 'provider':
      return { ...state, provider: event.state };
    case 'service': {
      const provider = event.provider === null ? state.provider : event.provider ? 'up' : 'down';
      const since = state.service?.state === event.state ? state.service.since : event.t;
      return { ...state, provider, service: { state: event.state, since } };
    }
    case 'frames':
      return { ...state, extras: event.frames };
    case 'decision':
      return { ...state, decision: { t: event.t, decision: event.decision } };
    default:
      return state;
  }
}

export function reduce(state: State, event: Event): State {
  return { ...change(state, event), t: Math.max(state.t, event.t) };
}

/** Milliseconds of a wait that remain at `t`. */
export function remainingAt(wait: Wait, t: number): number {
  return Math.max(0, wait.remaining - Math.max(0, t - wait.at));
}

/** How much of the transition into a layout has been played at `t`, 0 to 1. */
export function transitionAt(shown: Shown, t: number): number {
  const { animation, duration } = shown.layout;
  if (animation === 'cut' || duration <= 0 || !shown.previous) return 1;
  return Math.min(1, Math.max(0, (t - shown.since) / duration));
}
