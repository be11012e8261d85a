/** Colours of what is drawn on canvas. Frame colours were searched for so that they are told apart with any
 * colour vision; each frame also carries its number. */

export const FRAME_COLOURS = ['#cf9e00', '#6087ff', '#05ffb5', '#fffa00', '#9587bd', '#e06b55', '#c0ecff'] as const;

/** Muted tones of people, head and body, that leave the frame colours alone. */
export const TONES = [
  ['#d9c3ae', '#6f7f95'],
  ['#c9a88d', '#8a7a72'],
  ['#e2cdb9', '#5e7d78'],
  ['#a98467', '#77708f'],
  ['#dcbf9f', '#8d8a6b'],
  ['#8f6b53', '#586a84'],
  ['#d0b196', '#8b6f7d'],
  ['#bf9a7c', '#64745e'],
] as const;

export const ROOM = {
  wallTop: '#3a4656',
  wallLow: '#46546a',
  floorFar: '#39414e',
  floorNear: '#272d37',
  lines: 'rgb(255 255 255 / 7%)',
  outline: '#0b0f14',
  text: '#ffffff',
} as const;

/** Time lines: each kind of layout. */
const LAYOUT_COLOURS: Record<string, string> = {
  HEAD: '#8ecbf0',
  PROXIMITY: '#7fd9bd',
  LARGE_PROXIMITY: '#7fd9bd',
  GROUP: '#f2c25c',
  PARTIAL_GROUP: '#f6dca3',
  SUBSET_SPEAKER: '#e6b3d3',
};

export const layoutColour = (type: string): string => LAYOUT_COLOURS[type] ?? '#b8c2d0';

export const frameColour = (number: number): string => FRAME_COLOURS[number % FRAME_COLOURS.length] as string;

/** Lines and bars of plots, for light and for dark; people with any colour vision tell them apart (Okabe and Ito). */
const SERIES = {
  blue: ['#0072b2', '#56b4e9'],
  orange: ['#d55e00', '#ff8b3d'],
  green: ['#009e73', '#2cc79b'],
  pink: ['#cc79a7', '#e39ac4'],
  inView: ['#56b4e9', '#3b93c9'],
  cut: ['#e69f00', '#e69f00'],
  off: ['#9a4a1c', '#c96f3a'],
  idle: ['#8d979e', '#7b868f'],
} as const;

export type SeriesColour = keyof typeof SERIES;

/** In the theme of the page. */
export const seriesColour = (name: SeriesColour): string => SERIES[name][getComputedStyle(document.documentElement).colorScheme === 'dark' ? 1 : 0];
