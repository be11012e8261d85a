/** The pages that prb writes, opened as files: nothing is fetched, the figures are those of the JSON, and every plot is drawn. */

import { readFileSync } from 'node:fs';
import type { Browser, Page } from 'playwright-core';
import { afterAll, beforeAll, describe, expect, test } from 'vitest';
import { launch } from '../chromium';
import { pixelsOf } from './look';
import { Programs, simulate } from './prb';

const programs = new Programs();
let browser: Browser;
let requested: string[];
let faults: string[];

async function open(name: string, options: Parameters<Browser['newPage']>[0] = {}): Promise<Page> {
  const page = await browser.newPage(options);
  requested = [];
  faults = [];
  page.on('request', (request) => requested.push(request.url()));
  page.on('pageerror', (fault) => faults.push(String(fault)));
  await page.goto(`file://${programs.file(name)}`);
  return page;
}

async function expectDrawnAndAlone(page: Page): Promise<void> {
  for (const canvas of await page.locator('canvas').all()) {
    const pixels = await pixelsOf(canvas);
    const colours = new Set<number>();
    for (let at = 0; at < pixels.length; at += 4) if ((pixels[at + 3] ?? 0) === 255) colours.add(((pixels[at] ?? 0) << 16) | ((pixels[at + 1] ?? 0) << 8) | (pixels[at + 2] ?? 0));
    // Letters, axes, and what is shown.
    expect(colours.size).toBeGreaterThan(2);
  }
  expect(requested.filter((url) => !/^(file|data):/.test(url))).toEqual([]);
  expect(faults).toEqual([]);
  expect(await page.evaluate(() => document.documentElement.scrollWidth - innerWidth)).toBeLessThanOrEqual(0);
}

beforeAll(async () => {
  browser = await launch();
  const hostile = simulate(programs, '<script>alert(1)<.jsonl');
  const other = simulate(programs, 'other.jsonl', { people: 2, mode: 2 });
  programs.run('prb', 'report', hostile, other, '--html', programs.file('report.html'), '--json', programs.file('report.json'));
  const search = ['--key', 'persist.fdtimers.groupframe.outside=0..8000:4000', '--goal', 'latency_s', '--results', programs.file('tune.jsonl')];
  programs.run('prb', 'tune', other, ...search, '--html', programs.file('tune.html'));
});

afterAll(async () => {
  await browser?.close();
  await programs.end();
});

describe.each([
  ['a phone', { viewport: { width: 360, height: 740 }, colorScheme: 'dark' as const }],
  ['a screen', { viewport: { width: 1400, height: 1000 }, colorScheme: 'light' as const }],
])('on %s', (_name, options) => {
  test('the report shows the figures of the JSON', async () => {
    const page = await open('report.html', options);
    const { overall, recordings } = JSON.parse(readFileSync(programs.file('report.json'), 'utf8'));
    expect(await page.locator('section h3').allTextContents()).toEqual(['<script>alert(1)<', 'other']);
    const row = page.locator('tr', { hasText: 'Person-time fully in view' }).first().locator('td:not(.unit)');
    const expected = [overall, ...recordings].map(({ metrics }) => metrics.in_view_percent.toFixed(1));
    expect(await row.allTextContents()).toEqual(expected);
    expect(await page.locator('canvas').count()).toBeGreaterThanOrEqual(8);
    await page.locator('.u-over').first().click({ position: { x: 40, y: 20 } });
    expect(await page.locator('.open code').first().textContent()).toMatch(/^prb view '.*alert.*' --at \d+:\d\d\.\d{3}$/);
    await expectDrawnAndAlone(page);
    await page.close();
  });

  test('the trade-offs name a configuration where the pointer rests', async () => {
    const page = await open('tune.html', options);
    expect(await page.locator('#lead').textContent()).toMatch(/ of 3 configurations, goal: latency_s$/);
    await expectDrawnAndAlone(page);
    const plot = page.locator('.u-over').first();
    const box = (await plot.boundingBox())!;
    const hint = page.locator('.hint').first();
    for (let x = 5; x < box.width && !(await hint.textContent()); x += 15)
      for (let y = 5; y < box.height && !(await hint.textContent()); y += 15) await plot.hover({ position: { x, y } });
    expect(await hint.textContent()).toMatch(/^persist\.fdtimers\.groupframe\.outside=\d+: All changes /);
    await page.close();
  });
});

test('another theme draws the plots anew', async () => {
  const page = await open('report.html', { colorScheme: 'light' });
  const canvas = page.locator('canvas').first();
  const light = await pixelsOf(canvas);
  await page.emulateMedia({ colorScheme: 'dark' });
  await expect.poll(async () => Buffer.compare(await pixelsOf(page.locator('canvas').first()), light)).not.toBe(0);
  await page.close();
});
