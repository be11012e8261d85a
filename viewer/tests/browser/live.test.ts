/** The page with a real broker, a real service and a meeting that is played to them. */

import type { ChildProcess } from 'node:child_process';
import { readFileSync } from 'node:fs';
import type { Browser, Page } from 'playwright-core';
import { afterAll, beforeAll, expect, test } from 'vitest';
import { launch } from '../chromium';
import { rowsOf, timeOf, WAIT } from './look';
import { Programs, type Line } from './prb';
import { stage, VISITORS } from './staged';

const programs = new Programs();
let browser: Browser;
let page: Page;
let bus: string;
let recorder: ChildProcess;
let service: ChildProcess;
const faults: string[] = [];

/** Messages that nobody can read, in the middle of the meeting. */
const BAD: Line[] = [
  { t: 2000, topic: '/ICDOut', payload: 'gibberish' as never },
  { t: 2100, topic: '/ICDOut', payload: { heads: [{ fynId: 1, associatedHeads: [{ bbox: 'here' }] }] } as never },
  { t: 2200, topic: '/PeopleCount', payload: [] as never },
];

beforeAll(async () => {
  stage(programs, 'good.jsonl', VISITORS, { seconds: 4 });
  const lines = [...programs.lines('good.jsonl'), ...BAD].sort((a, b) => a.t - b.t);
  programs.file('meeting.jsonl', lines.map((l) => JSON.stringify(l)).join('\n'));
  const broker = await programs.broker();
  const { subscribed } = broker;
  bus = broker.bus;
  const properties = programs.file('properties.db');
  programs.run('prb', 'prop', '--properties', properties, 'set', 'vendor.talkertracking.flag', '4');
  programs.run('prb', 'prop', '--properties', properties, 'set', 'vendor.fyndebug.decisions', '1');
  await subscribed('/cameraParameters/head', () => (service = programs.start('productionrulesd', '--bus', bus, '--properties', properties, '--log', 'stderr')));
  await subscribed('/ctl-passthru-remote', () => (recorder = programs.start('prb', 'record', '--bus', bus, '--outputs', '-o', programs.file('heard.jsonl'))));
  browser = await launch();
  page = await browser.newPage({ viewport: { width: 1400, height: 1000 } });
  page.on('pageerror', (error) => faults.push(error.message));
  await subscribed('/PRBDecisions', async () => page.goto(await programs.view('--bus', bus)));
  await page.locator('.numbers summary').click();
});

afterAll(async () => {
  await browser?.close();
  await programs.end();
});

test('before anything comes the page says so', async () => {
  expect(await page.locator('.room .empty').innerText()).toBe('No vision result yet.');
  expect(await page.locator('.output .empty').innerText()).toBe('No scene document yet.');
});

test('the page follows the meeting', async () => {
  const player = programs.start('prb', 'play', programs.file('meeting.jsonl'), '--bus', bus);
  await expect.poll(() => page.locator('.camera').count(), WAIT).toBe(2);
  await expect.poll(() => page.locator('.stream').getAttribute('data-type'), WAIT).toBe('HEAD');
  await expect.poll(() => page.locator('#figures').innerText(), WAIT).toMatch(/PeopleFraming/);
  await expect.poll(() => page.locator('.why-picture').innerText(), WAIT).toMatch(/new picture .*-> HEAD/s);
  if (player.exitCode === null) await new Promise((resolve) => player.on('exit', resolve));
});

test('what cannot be shown is said, and the rest goes on', async () => {
  await expect.poll(() => page.locator('#problems summary').innerText(), WAIT).toContain(`${BAD.length} lines not shown`);
  await page.locator('#problems summary').click();
  const said = (await page.locator('#problems li').allInnerTexts()).join('\n');
  for (const reason of ['/ICDOut: the payload is not JSON', '.bbox is not an object', '/PeopleCount: payload is not an object']) expect(said).toContain(reason);
  await page.locator('#problems summary').click();
});

test('what is shown in the end is the last scene document that went over the bus', async () => {
  await programs.stop(recorder);
  const last = programs.lines('heard.jsonl').filter((l) => l.topic === '/PRBOut').pop();
  const [stream] = (last?.payload as unknown as { streams: [{ layoutType: string; scene: { frameindex: number; source: Record<string, number> }[] }] }).streams;
  await expect.poll(() => page.locator('.stream').getAttribute('data-type'), WAIT).toBe(stream.layoutType);
  const expected = stream.scene.map(({ frameindex, source: { xoffset: x, yoffset: y, width: w, height: h } }) => [
    String(frameindex), `${x}, ${y} to ${x! + w!}, ${y! + h!}`,
  ]);
  await expect.poll(async () => (await rowsOf(page, '.numbers tr[data-frame]')).map((r) => [r.frame, r.cell2]).sort(), WAIT).toEqual(expected.sort());
});

test('the past can be looked at while it goes on, and left again', async () => {
  await page.getByRole('button', { name: /^Last moment/ }).click();
  const follows = () => page.getByRole('button', { name: 'Follow live (L)' }).getAttribute('aria-pressed');
  await expect.poll(follows, WAIT).toBe('false');
  const t = await timeOf(page);
  await expect.poll(() => page.url(), WAIT).toContain('#t=');
  await page.keyboard.press('l');
  await expect.poll(() => timeOf(page), WAIT).toBeGreaterThan(t);
  expect(await follows()).toBe('true');
});

test('what has happened can be saved as a recording', async () => {
  for (const key of ['Home', 'i', 'End', 'o']) await page.keyboard.press(key);
  const download = page.waitForEvent('download');
  await page.getByRole('button', { name: 'Save as recording' }).click();
  const path = await (await download).path();
  programs.run('prb', 'replay', path, '--property', 'vendor.talkertracking.flag=4', '-o', programs.file('again.jsonl'));
  expect(programs.lines('again.jsonl').some((l) => l.topic === '/PRBOut')).toBe(true);
  const lines = readFileSync(path, 'utf8').trim().split('\n').map((l) => JSON.parse(l) as Line & { recorded?: { startedAt: number } });
  expect(Math.abs(Date.now() - lines[0]!.recorded!.startedAt)).toBeLessThan(600_000);
  const topics = new Set(lines.map((l) => l.topic));
  for (const topic of ['/ICDOut', '/camera', '/cameraParameters/head/1']) expect(topics).toContain(topic);
  for (const topic of ['/PRBOut', '/PRBStatus', '/PRBDecisions']) expect(topics).not.toContain(topic);
  await page.keyboard.press('Escape');
  await page.keyboard.press('l');
});

test('a service that has died looks dead', async () => {
  const stateShown = () => page.locator('body').getAttribute('data-service');
  await expect.poll(stateShown, WAIT).toBe('up');
  await programs.stop(service, 'SIGKILL');
  await expect.poll(stateShown, WAIT).toBe('lost');
  expect(await page.locator('.output .empty').innerText()).toMatch(/^The service was lost at /);
  expect(await page.locator('.streams').evaluate((node) => getComputedStyle(node).filter)).toContain('grayscale');
});

test('a viewer that is gone is said, and nothing else breaks', async () => {
  await programs.end();
  await expect.poll(() => page.locator('#status').innerText(), WAIT).toContain('connection lost');
  expect(faults).toEqual([]);
});
