/** The time line and the lists beside it, used as a person does. */

import { readFileSync } from 'node:fs';
import { AxeBuilder } from '@axe-core/playwright';
import type { Browser, Page } from 'playwright-core';
import { afterAll, beforeAll, describe, expect, test } from 'vitest';
import { launch } from '../chromium';
import { meeting } from '../meeting';
import { serve, type Served } from '../server';
import { goTo, open, shows, WAIT } from './look';

const LENGTH = 30_000;
let browser: Browser;
let page: Page;
let served: Served;

beforeAll(async () => {
  browser = await launch();
  const recorded = JSON.stringify({ t: 0, recorded: { startedAt: new Date(2026, 2, 1, 9, 30).getTime() } });
  served = await serve({ recording: [recorded, ...meeting({ seconds: LENGTH / 1000, streams: 2 })].join('\n') });
  const context = await browser.newContext({ viewport: { width: 1440, height: 900 }, acceptDownloads: true });
  page = await context.newPage();
  await open(page, served.url);
});

afterAll(async () => {
  await browser?.close();
  await served?.close();
});

const shown = async () => {
  const node = page.locator('.window');
  return { from: Number(await node.getAttribute('data-from')), to: Number(await node.getAttribute('data-to')) };
};
const lengthShown = async () => {
  const { from, to } = await shown();
  return to - from;
};
const place = async (t: number, { from, to } = { from: 0, to: LENGTH }) => {
  const box = (await page.locator('.window').boundingBox())!;
  return { x: box.x + ((t - from) / (to - from)) * box.width, y: box.y + 5 };
};

describe('the part that is shown', () => {
  test('is made smaller by the wheel around the pointer, by keys, and whole again', async () => {
    const { x, y } = await place(10_000);
    await page.mouse.move(x, y);
    await page.mouse.wheel(0, -900);
    await expect.poll(lengthShown, WAIT).toBeLessThan(LENGTH / 2);
    const { from, to } = await shown();
    expect((10_000 - from) / (to - from)).toBeCloseTo(10_000 / LENGTH, 1);
    await page.keyboard.press('z');
    await expect.poll(lengthShown, WAIT).toBeLessThan((to - from) * 0.6);
    await page.keyboard.press('0');
    await expect.poll(lengthShown, WAIT).toBeGreaterThan(LENGTH - 100);
  });

  test('is pinched by two fingers, and moved by alt drag', async () => {
    const { y } = await place(15_000);
    const touch = await page.context().newCDPSession(page);
    const fingers = async (type: 'touchStart' | 'touchMove' | 'touchEnd', ...times: number[]) => {
      const touchPoints = await Promise.all(times.map(async (t, id) => ({ x: (await place(t)).x, y, id })));
      await touch.send('Input.dispatchTouchEvent', { type, touchPoints });
    };
    await fingers('touchStart', 12_000, 18_000);
    for (const apart of [4000, 5000, 6000]) await fingers('touchMove', 15_000 - apart, 15_000 + apart);
    await fingers('touchEnd');
    await expect.poll(lengthShown, WAIT).toBeLessThan(LENGTH * 0.6);
    await expect.poll(lengthShown, WAIT).toBeGreaterThan(LENGTH * 0.4);
    const before = await shown();
    expect((before.from + before.to) / 2).toBeCloseTo(15_000, -3.5);
    await page.keyboard.down('Alt');
    await page.mouse.move((await place(15_000)).x, y);
    await page.mouse.down();
    await page.mouse.move((await place(18_000)).x, y, { steps: 3 });
    await page.mouse.up();
    await page.keyboard.up('Alt');
    // A tenth of the line is a tenth of what is shown, and the length stays.
    await expect.poll(async () => (await shown()).from, WAIT).toBeLessThan(before.from - 1000);
    const { from, to } = await shown();
    expect(before.from - from).toBeCloseTo((before.to - before.from) / 10, -2.5);
    expect(to - from).toBeCloseTo(before.to - before.from, -1.5);
    await page.keyboard.press('0');
  });

  test('is a range that was selected, which can be saved as a recording', async () => {
    const [a, b] = [await place(6000), await place(12_000)];
    await page.keyboard.down('Shift');
    await page.mouse.move(a.x, a.y);
    await page.mouse.down();
    await page.mouse.move(b.x, b.y, { steps: 3 });
    await page.mouse.up();
    await page.keyboard.up('Shift');
    await expect.poll(() => page.locator('.range-words').innerText(), WAIT).toMatch(/^0:0[56].* to 0:1[12].*: \d+ new pictures, \d+ reframes$/);
    const download = page.waitForEvent('download');
    await page.getByRole('button', { name: 'Save as recording' }).click();
    const lines = readFileSync(await (await download).path(), 'utf8').trim().split('\n').map((l) => JSON.parse(l) as { t: number; topic?: string });
    expect(lines.filter((l) => l.topic === '/ICDOut').length).toBeGreaterThan(150);
    expect(lines.some((l) => l.topic === '/PRBOut')).toBe(false);
    await page.getByRole('button', { name: 'Zoom in', exact: true }).click();
    await expect.poll(lengthShown, WAIT).toBeLessThan(6300);
    await page.keyboard.press('Escape');
    await page.keyboard.press('0');
    await expect.poll(() => page.locator('#range').isVisible(), WAIT).toBe(false);
  });
});

test('what is so at a time is told where the pointer rests, stream by stream', async () => {
  const { x, y } = await place(3000);
  await page.mouse.move(x, y + 20);
  await expect.poll(() => page.locator('.hint').innerText(), WAIT).toMatch(/^0:0[23]\.\d+ · stream 0 GROUP · stream 1 GROUP · 4 people/);
  expect((await page.locator('.lane-names span').allInnerTexts()).slice(0, 2)).toEqual(['stream 0', 'stream 1']);
});

test('moments are searched, and the keys step among those that are found', async () => {
  await goTo(page, 0);
  await page.keyboard.press('/');
  await page.keyboard.type('framed ANEW');
  await expect.poll(() => page.locator('.found').innerText(), WAIT).toMatch(/^[1-9]\d* found$/);
  for (const name of await page.locator('.moments li').allInnerTexts()) expect(name).toMatch(/reframed/);
  const first = Number(await page.locator('.moments button').first().getAttribute('data-t'));
  await page.locator('.moments button').first().press('Shift+ArrowRight');
  await shows(page, first);
  await page.locator('.moments input').fill('');
});

test('one head is plotted against the bounds of its frame', async () => {
  await goTo(page, 8000);
  await page.locator('.course summary').click();
  await expect.poll(async () => Number(await page.locator('.course .plot').getAttribute('data-points')), WAIT).toBeGreaterThan(250);
  await page.getByLabel('Person', { exact: true }).selectOption('2');
  await page.locator('.course summary').click();
});

test('the wall clock stands beside the time of the recording', async () => {
  await goTo(page, 5000);
  await expect.poll(() => page.locator('.wall').innerText(), WAIT).toBe('2026-03-01 09:30:05');
});

test('waits and reasons are seen without scrolling', async () => {
  await goTo(page, 11_000);
  const footer = (await page.locator('footer').boundingBox())!.y;
  for (const panel of ['.waits', '.why']) {
    const box = (await page.locator(panel).boundingBox())!;
    expect(box.y + box.height, panel).toBeLessThanOrEqual(footer);
  }
});

test.each(['light', 'dark'] as const)('%s: who does not see or point is told everything', async (colorScheme) => {
  await page.emulateMedia({ colorScheme });
  await page.locator('.course, .numbers').evaluateAll((nodes) => nodes.forEach((n) => ((n as HTMLDetailsElement).open = true)));
  await page.keyboard.press('i');
  const { violations } = await new AxeBuilder({ page }).analyze();
  expect(violations.map((v) => `${v.id}: ${v.nodes.map((n) => n.target).join(' ')}`)).toEqual([]);
});
