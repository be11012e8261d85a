/** What the lines of protocol.md say, as the page keeps it. */

/** Pixels of one camera image, or of the output picture. */
export interface Box {
  left: number;
  top: number;
  right: number;
  bottom: number;
}

export interface Size {
  width: number;
  height: number;
}

/** The image of a panoramic camera goes on at its left edge where it ends at the right. */
export interface CameraSize extends Size {
  wraps: boolean;
}

/** As the service's bus client says it: `lost` is one that went without a word. */
export type ServiceState = 'up' | 'down' | 'lost';

/** One view: `source` of camera `camera` (of size `srcRef`) goes to `dest` of the output picture. */
export interface Frame {
  index: number;
  camera: number;
  srcRef: Size;
  source: Box;
  dest: Box;
  /** The detection boundary; only documents with debug bounds carry it. */
  boundary: Box | null;
}

/** What one output stream shows. */
export interface Layout {
  stream: number;
  type: string;
  mode: string;
  animation: string;
  /** Of the transition into this layout, milliseconds. */
  duration: number;
  frameNumber: number;
  sceneNumber: number;
  faceCount: number;
  /** Id of the person who speaks, -1 when there is none. */
  speaker: number;
  size: Size;
  frames: Frame[];
}

export interface TimedFrame {
  index: number;
  type: string;
  headPosition: string;
  /** Milliseconds that remain, 0 when nothing waits. */
  remaining: number;
}

export interface TimedLayout {
  stream: number;
  type: string;
  remaining: number;
  frames: TimedFrame[];
}

/** A frame's further state, for drawing. */
export interface FrameExtra {
  stream: number;
  index: number;
  boundary: Box | null;
  offCenterBound: Box | null;
  headPosition: string | null;
  heads: number[];
}

/** Why something happened or did not, in the words of prb. */
export interface Decision {
  stream: number;
  kind: string;
  to: string;
  /** A few words, for the time line and lists. */
  title: string;
  sentence: string;
}

/** Columns of a row of `VisionEvent.heads`. */
export const HEAD = { person: 0, camera: 1, left: 2, top: 3, right: 4, bottom: 5, flags: 6, stride: 7 } as const;
export const HEAD_SPEAKS = 1;
export const HEAD_BEST = 2;

/** Rows of `HEAD.stride` numbers, small ones when they fit: minutes of thirty results a second stay in memory. */
export type HeadRows = Int16Array | Int32Array;

export interface VisionEvent {
  kind: 'vision';
  t: number;
  frameNumber: number;
  /** When the frame was taken, milliseconds on the clock of whoever saw it; null when it is not said. */
  taken: number | null;
  people: number;
  heads: HeadRows;
}

export type Event =
  | VisionEvent
  | { kind: 'scene'; t: number; key: string; debug: boolean; layouts: Layout[] }
  | { kind: 'timers'; t: number; current: TimedLayout[]; next: TimedLayout[] }
  | { kind: 'people'; t: number; count: number; smallest: number }
  | { kind: 'mode'; t: number; mode: string }
  | { kind: 'control'; t: number; topic: string; text: string }
  | { kind: 'camera'; t: number; id: number; size: CameraSize }
  | { kind: 'identity'; t: number; id: number }
  | { kind: 'settings'; t: number; what: 'property' | 'config'; values: [string, string][] }
  | { kind: 'provider'; t: number; state: 'up' | 'announced' | 'down' | 'fail' }
  | { kind: 'decision'; t: number; decision: Decision }
  | { kind: 'frames'; t: number; frames: FrameExtra[] }
  | { kind: 'service'; t: number; state: ServiceState; provider: boolean | null }
  | { kind: 'recorded'; t: number; startedAt: number | null }
  | { kind: 'notice'; t: number; text: string }
  | { kind: 'time'; t: number };

