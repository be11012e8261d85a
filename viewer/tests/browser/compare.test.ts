/** Two sides of one page: two settings, or what was recorded beside what a replay makes of it. */

import type { Browser, Page } from 'playwright-core';
import { afterAll, beforeAll, expect, test } from 'vitest';
import { launch } from '../chromium';
import { goTo, open, shows } from './look';
import { Programs, type Line } from './prb';
import { stage, VISITORS } from './staged';

const programs = new Programs();
let browser: Browser;
let page: Page;
let meeting: string;

const replayed = (name: string, ...settings: string[]) => {
  programs.run('prb', 'replay', meeting, ...settings, '-o', programs.file(name));
  return programs.lines(name).filter((l) => l.topic === '/PRBOut');
};
const typeOf = (line: Line) => (line.payload as unknown as { streams: [{ layoutType: string }] }).streams[0].layoutType;
const typesShown = () => page.locator('.stream').evaluateAll((nodes) => nodes.map((n) => (n as HTMLElement).dataset.type));

beforeAll(async () => {
  meeting = stage(programs, 'meeting.jsonl', VISITORS);
  browser = await launch();
  page = await browser.newPage({ viewport: { width: 1440, height: 900 } });
});

afterAll(async () => {
  await browser?.close();
  await programs.end();
});

test('two settings run in step, and the differences are stepped through', async () => {
  const slow = programs.file('slow.conf', '');
  const quick = programs.file('quick.conf', 'persist.fdtimers.layoutchange.headcountchange=0\npersist.pf.fdtimers.layoutchange.gftoother=2000\n');
  await open(page, await programs.view(meeting, '--config', slow, '--config', quick));
  expect(await page.locator('.side-name').allInnerTexts()).toEqual([`A: ${slow}`, `B: ${quick}`]);
  const [a, b] = [replayed('a.jsonl', '--config', slow), replayed('b.jsonl', '--config', quick)];
  const on = (lines: Line[], t: number) => typeOf(lines.filter((l) => l.t <= t).pop()!);
  for (const t of [5000, 29_000, 36_000, 50_000]) {
    await goTo(page, t);
    expect(await typesShown()).toEqual([on(a, t), on(b, t)]);
  }
  // With its wait of 0 the second side changes first; when the first follows they are the same again.
  const counted = a.find((l) => l.t > 14_000)!.t;
  const first = b.find((l) => l.t > 14_000)!.t;
  expect(first).toBeLessThan(counted - 1000);
  await goTo(page, 0);
  await page.keyboard.press('d');
  await shows(page, first);
  await page.getByRole('button', { name: 'Next difference (D)' }).click();
  const second = Number(/#t=(\d+)/.exec(page.url())?.[1]);
  expect(second).toBeGreaterThan(counted);
  await page.keyboard.press('Shift+D');
  await shows(page, first);
  expect(await page.locator('.differences').innerText()).toMatch(/^\d+ differences, /);
});

test('what was recorded stands beside its replay', async () => {
  const heard = replayed('heard.jsonl').map((l) => (l.t > 40_000 ? { ...l, t: l.t + 1000 } : l));
  const lines = [...programs.lines('meeting.jsonl'), ...heard].sort((x, y) => x.t - y.t);
  const recording = programs.file('recorded.jsonl', lines.map((l) => JSON.stringify(l)).join('\n'));
  await open(page, await programs.view(recording, '--recorded'));
  expect(await page.locator('.side-name').allInnerTexts()).toEqual(['A: recorded', 'B: replayed']);
  const late = heard.filter((l) => l.t > 40_000);
  expect(await page.locator('.differences').innerText()).toBe(`${late.length} differences, ${late.length} s`);
  await open(page, await programs.view(recording, '--beside', recording));
  expect(await page.locator('.differences').innerText()).toBe('no difference');
});
