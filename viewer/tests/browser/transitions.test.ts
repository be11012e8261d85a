/** Transitions of a real service: speaker framing dissolves, and eases when it is configured so. */

import type { Browser, Page } from 'playwright-core';
import { afterAll, beforeAll, expect, test } from 'vitest';
import { launch } from '../chromium';
import { goTo, open, pixelsOf } from './look';
import { Programs } from './prb';
import { stage, TALK } from './staged';

const programs = new Programs();
let browser: Browser;
let page: Page;

beforeAll(async () => {
  stage(programs, 'meeting.jsonl', TALK, { mode: 2, seconds: 45 });
  browser = await launch();
  page = await browser.newPage({ viewport: { width: 420, height: 700 } });
});

afterAll(async () => {
  await browser?.close();
  await programs.end();
});

/** The last transition of a kind: from one speaker to another with whoever spoke before. */
function transition(effects: string, animation: string): { t: number; duration: number } {
  const found = programs
    .lines(effects)
    .filter(({ topic }) => topic === '/PRBOut')
    .map(({ t, payload }) => ({ t, ...(payload as unknown as { streams: [{ animation: string; duration: number }] }).streams[0] }));
  return found.filter((picture) => picture.animation === animation).pop()!;
}

const difference = (a: Uint8Array, b: Uint8Array) => a.reduce((sum, v, i) => sum + Math.abs(v - (b[i] as number)), 0) / a.length;

const played = () => page.locator('.stream').getAttribute('data-played');

async function pictureAt(t: number): Promise<Uint8Array> {
  await goTo(page, t);
  return pixelsOf(page.locator('.stream canvas'));
}

test.each([
  ['dissolve', 0],
  ['ease', 1],
] as const)('%s is played', async (animation, ease) => {
  const config = programs.file(`${animation}.conf`, `persist.feature.animation.enableEase=${ease}\n`);
  const recording = programs.file('meeting.jsonl');
  programs.run('prb', 'replay', recording, '--config', config, '-o', programs.file(`${animation}.jsonl`));
  const { t, duration } = transition(`${animation}.jsonl`, animation);
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
