/** Transitions of a real service: speaker framing dissolves, and eases when it is configured so. */

import type { Browser, Page } from 'playwright-core';
import { afterAll, beforeAll, expect, test } from 'vitest';
import { launch } from '../chromium';
import { goTo, open, pixelsOf } from './look';
import { Programs, simulate } from './prb';

const programs = new Programs();
let browser: Browser;
let page: Page;

beforeAll(async () => {
  simulate(programs, 'meeting.jsonl', { people: 5, mode: 2 });
  browser = await launch();
  page = await browser.newPage({ viewport: { width: 420, height: 700 } });
});

afterAll(async () => {
  await browser?.close();
  await programs.end();
});

interface Stream {
  animation: string;
  duration: number;
  scene: { fynCamId: number }[];
}

/** When a transition of `duration` begins between pictures that `fit`. */
function transition(effects: string, animation: string, fit: (old: Stream, now: Stream) => boolean): { t: number; duration: number } {
  let old: Stream | null = null;
  for (const { t, topic, payload } of programs.lines(effects)) {
    if (topic !== '/PRBOut') continue;
    const [now] = (payload as unknown as { streams: [Stream] }).streams;
    if (now.animation === animation && old && fit(old, now)) return { t, duration: now.duration };
    old = now;
  }
  throw new Error(`the meeting has no such ${animation}`);
}

const difference = (a: Uint8Array, b: Uint8Array) => a.reduce((sum, v, i) => sum + Math.abs(v - (b[i] as number)), 0) / a.length;

const played = () => page.locator('.stream').getAttribute('data-played');

async function pictureAt(t: number): Promise<Uint8Array> {
  await goTo(page, t);
  return pixelsOf(page.locator('.stream canvas'));
}

test.each([
  ['dissolve', 0, () => true],
  ['ease', 1, (old: Stream, now: Stream) => old.scene.length === now.scene.length && old.scene.every((e, i) => e.fynCamId === now.scene[i]?.fynCamId)],
] as const)('%s is played', async (animation, ease, fit) => {
  const config = programs.file(`${animation}.conf`, `persist.feature.animation.enableEase=${ease}\n`);
  const recording = programs.file('meeting.jsonl');
  programs.run('prb', 'replay', recording, '--config', config, '-o', programs.file('effects.jsonl'));
  const { t, duration } = transition('effects.jsonl', animation, fit);
  await open(page, await programs.view(recording, '--config', config));
  const before = await pictureAt(t - 1);
  expect(await played()).toBe('1.00');
  const beginning = await pictureAt(t);
  expect(await played()).toBe('0.00');
  const middle = await pictureAt(t + duration / 2);
  expect(await played()).toBe('0.50');
  const after = await pictureAt(t + duration);
  expect(await played()).toBe('1.00');
  const whole = difference(before, after);
  expect(whole).toBeGreaterThan(4);
  expect(difference(before, beginning)).toBeLessThan(whole / 3);
  expect(Math.min(difference(before, middle), difference(middle, after))).toBeGreaterThan(whole / 5);
  if (animation === 'dissolve') {
    const mixed = before.map((v, i) => (v + (after[i] as number)) / 2);
    expect(difference(middle, mixed)).toBeLessThan(whole / 5);
  }
});
