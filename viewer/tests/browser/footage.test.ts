/**
 * The cameras' own video under the boxes. colours.webm is red, green, blue and yellow, half a second each at ten frames a second,
 * 64 x 48 with white above and below the middle, which alone is the camera's image.
 */

import { fileURLToPath } from 'node:url';
import type { Browser, Page } from 'playwright-core';
import { afterAll, beforeAll, expect, test } from 'vitest';
import { launch } from '../chromium';
import { coloursAt, far, goTo, open, WAIT, type Colour } from './look';
import { Programs } from './prb';

const IMAGE = { width: 1280, height: 720 };
const VIDEO = fileURLToPath(new URL('colours.webm', import.meta.url));
const RED: Colour = [255, 0, 0];
const GREEN: Colour = [0, 255, 0];
const BLUE: Colour = [0, 0, 255];
const YELLOW: Colour = [255, 255, 0];
/** What a lossy video may be off. */
const NEAR = 60;

const programs = new Programs();
let browser: Browser;
let page: Page;

beforeAll(async () => {
  browser = await launch();
  page = await browser.newPage();
});

afterAll(async () => {
  await browser?.close();
  await programs.end();
});

/** A recording of the video's frames from `first` on, with one person at the left. */
function recording(first: number): string {
  const lines = Array.from({ length: 21 - first }, (_, i) => {
    const heads = [{ fynId: 1, associatedHeads: [{ id: 1, camId: 0, bbox: { left: 100, top: 100, right: 200, bottom: 220 } }] }];
    return { t: 100 * i, topic: '/ICDOut', payload: { timestamp: 1_700_000_000_000 + 100 * (first + i), frameNumber: first + i, heads } };
  });
  return programs.file(`from-${first}.jsonl`, [{ t: 0, provider: 'up' }, ...lines].map((line) => JSON.stringify(line)).join('\n'));
}

/** The largest difference to `colour` in the upper right corner and the middle of room and output. */
async function farFrom(colour: Colour): Promise<number> {
  const seen = await Promise.all(['.cameras canvas', '.streams canvas'].map((canvas) => coloursAt(page.locator(canvas).first(), IMAGE, [[1200, 30], [640, 360]])));
  return Math.max(...seen.flat().map((at) => far(at, colour)));
}

test.each([
  { first: 1, moments: [[0, RED], [400, RED], [500, GREEN], [1200, BLUE], [1900, YELLOW], [700, GREEN]] as [number, Colour][] },
  { first: 8, moments: [[0, GREEN], [200, GREEN], [300, BLUE], [1200, YELLOW]] as [number, Colour][] },
])('from frame $first on, the frame of the vision result is shown, the middle of it', async ({ first, moments }) => {
  await open(page, await programs.view(recording(first), '--video', VIDEO));
  for (const [t, colour] of moments) {
    await goTo(page, t);
    await expect.poll(() => farFrom(colour), { ...WAIT, message: `at ${t}` }).toBeLessThan(NEAR);
  }
  await page.keyboard.press('Home');
  await page.keyboard.press(' ');
  await expect.poll(() => farFrom(YELLOW), WAIT).toBeLessThan(NEAR);
});

test('a video that no browser plays is told, and the room is drawn', async () => {
  await open(page, await programs.view(recording(1), '--video', programs.file('room.avi', 'no video')));
  await expect.poll(() => page.locator('#problems').textContent(), WAIT).toMatch(/room\.avi cannot be played by this browser .*ffmpeg -i room\.avi/);
  expect(await farFrom(RED)).toBeGreaterThan(NEAR);
});
