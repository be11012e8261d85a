/** What prb writes into the page. Times in milliseconds, sizes in tenths of a per cent; null is a figure that nothing was measured for. */

export interface MetricName {
  name: string;
  label: string;
  unit: string;
  digits: number;
}

export type Values = Record<string, number | null>;

/** How much of the weight each value has, ascending. */
export type Distribution = [value: number, weight: number][];

export interface Course {
  length: number;
  bucketMs: number;
  /** The first picture of each stream and every change; not `isLayout` is a reframe. */
  changes: [t: number, stream: number, layout: string, isLayout: boolean][];
  /** `kind` counts in `events` of the report; `latency` is -1 for an event without an answer. */
  events: [t: number, kind: number, latency: number][];
  buckets: [inView: number, cut: number, off: number][];
}

export interface Figures {
  minutes: number;
  /** By what it is known who was there and spoke. */
  against: string;
  visionResults: number;
  metrics: Values;
  timing?: Values;
  /** The wait that a shorter one would gain most of comes first. */
  waits: Wait[];
}

/** What the waits of one configuration key did. */
export interface Wait {
  key: string;
  ran_out: number;
  dropped: number;
  running_s: number;
  off_screen_s: number;
}

export interface Report {
  page: 'report';
  version: string;
  /** Milliseconds since 1970. */
  madeAt: number;
  /** Too few recordings to say anything about other meetings. */
  isTooFew: boolean;
  /** What each metric means, by its name. */
  definitions: Record<string, string>;
  names: MetricName[];
  /** The kinds of events. */
  events: string[];
  overall: Figures;
  /** With the settings that are not the default. */
  recordings: (Figures & { recording: string; mode: string; settings: Record<string, string>; course: Course })[];
  distributions: {
    headSize: Distribution;
    headRoom: Distribution;
    thirds: Distribution;
    betweenChanges: Distribution;
    /** One per kind of events. */
    answers: Distribution[];
    /** Tenths of a microsecond. */
    decisionTime?: Distribution;
  };
}

export interface Candidate {
  /** KEY=VALUE ... */
  values: string;
  goal: number | null;
  changes: number;
  /** Null where nothing was answered. */
  latency: number | null;
  inView: number;
  metrics: Values;
}

export interface Tune {
  page: 'tune';
  goal: string;
  names: MetricName[];
  candidates: Candidate[];
  /** Indices of the best trade-offs, and of the candidate with the smallest goal. */
  front: number[];
  best: number | null;
}

export function figureText({ digits }: MetricName, value: number | null | undefined): string {
  return value == null ? '-' : value.toFixed(digits);
}

/** "1:05" or "1:02:03". */
export function clockText(seconds: number): string {
  const whole = Math.max(0, Math.floor(seconds));
  const parts = [Math.floor(whole / 60) % 60, whole % 60];
  if (whole >= 3600) parts.unshift(Math.floor(whole / 3600));
  return parts.map((part, index) => String(part).padStart(index ? 2 : 1, '0')).join(':');
}

/** One word for a shell. */
export const shellWord = (text: string) => (/^[\w@%+=:,./-]+$/.test(text) ? text : `'${text.replaceAll("'", "'\\''")}'`);

/** With up to `digits` digits after the point. */
export function plainText(value: number, digits: number): string {
  return String(Number(value.toFixed(digits)));
}
