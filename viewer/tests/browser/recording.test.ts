/** The page with a recording that the real prb serves. */

import type { Browser, Page } from 'playwright-core';
import { afterAll, beforeAll, describe, expect, test } from 'vitest';
import { frameColour } from '../../src/palette';
import { clock } from '../../src/words';
import { launch } from '../chromium';
import { colourOf, coloursAt, far, goTo, open, rowsOf, shows, timeOf, WAIT, type Colour } from './look';
import { Programs, type Line } from './prb';
import { stage, VISITORS } from './staged';

interface Entry {
  frameindex: number;
  fynCamId: number;
  source: Offsets;
  dest: Offsets;
}

interface Offsets {
  xoffset: number;
  yoffset: number;
  width: number;
  height: number;
}

interface Scene {
  streams: { streamid: number; layoutType: string; facecount: number; scene: Entry[] }[];
}

interface Decision {
  kind: string;
  to: string;
  key?: string;
  waitMs: number;
}

const IMAGE = { width: 1280, height: 720 };
const written = (o: Offsets) => `${o.xoffset}, ${o.yoffset} to ${o.xoffset + o.width}, ${o.yoffset + o.height}`;

const programs = new Programs();
let browser: Browser;
let page: Page;
let address: string;
let inputs: Line[];
let effects: Line[];
const faults: string[] = [];

beforeAll(async () => {
  const recording = stage(programs, 'meeting.jsonl', VISITORS);
  programs.run('prb', 'replay', recording, '--decisions', '-o', programs.file('effects.jsonl'));
  inputs = programs.lines('meeting.jsonl');
  effects = programs.lines('effects.jsonl');
  address = await programs.view(recording);
  browser = await launch();
  page = await browser.newPage({ viewport: { width: 1400, height: 1000 } });
  page.on('pageerror', (error) => faults.push(error.message));
  page.on('console', (message) => message.type() === 'error' && faults.push(message.text()));
  await open(page, address);
  await page.locator('.numbers summary').click();
});

afterAll(async () => {
  await browser?.close();
  await programs.end();
  expect(faults).toEqual([]);
});

/** The documents that the provider was handed, the last one of each time. */
function scenes(): { t: number; scene: Scene }[] {
  const found = new Map<number, Scene>();
  for (const { t, topic, payload } of effects) if (topic === '/PRBOut') found.set(t, payload as unknown as Scene);
  return [...found].map(([t, scene]) => ({ t, scene }));
}

const decisions = (kind: string) =>
  effects.filter((e) => (e.decision as Decision | undefined)?.kind === kind).map((e) => ({ ...(e.decision as Decision), t: e.t }));

describe('what is drawn is what the scene documents say', () => {
  test('the meeting has pictures of several kinds', () => {
    const streams = scenes().map(({ scene }) => scene.streams[0]);
    expect(new Set(streams.map((s) => s?.layoutType)).size).toBeGreaterThan(1);
    expect(Math.max(...streams.map((s) => s?.scene.length ?? 0))).toBeGreaterThan(1);
  });

  test('frame by frame, in numbers and in colours', async () => {
    const all = scenes();
    const skins: boolean[] = [];
    for (const [i, { t, scene }] of all.entries()) {
      // Shown for as long as it is on air; just before the next one any transition has been played.
      await goTo(page, (all[i + 1]?.t ?? inputs[inputs.length - 1]!.t) - 1);
      expect(await timeOf(page)).toBeGreaterThanOrEqual(t);
      const [stream] = scene.streams;
      const entries = (stream as Scene['streams'][0]).scene;
      const rows = await rowsOf(page, '.numbers tr[data-frame]');
      const sorted = [...rows].sort((a, b) => Number(a.frame) - Number(b.frame));
      expect(sorted.map((r) => [Number(r.frame), r.cell2, r.cell3])).toEqual(
        entries.map((e) => [e.frameindex, written(e.source), written(e.dest)]),
      );
      expect(await page.locator('.stream').getAttribute('data-type')).toBe(stream?.layoutType);
      await expectEdges(entries);
      for (const seen of await headsInTiles(entries)) skins.push(seen[0] > seen[2]);
    }
    // Skin is warmer than walls and clothes. A few heads are hidden by who is nearer.
    expect(skins.length).toBeGreaterThan(5);
    expect(skins.filter(Boolean).length / skins.length).toBeGreaterThan(0.8);
  });

  /** The colours in the middle of the heads that the tiles show. */
  async function headsInTiles(entries: Entry[]): Promise<Colour[]> {
    const heads = (await rowsOf(page, '.numbers tr[data-person]')).map((row) => {
      const [left, top, right, bottom] = row.cell2!.match(/-?\d+/g)!.map(Number) as [number, number, number, number];
      return { camera: Number(row.camera), x: (left + right) / 2, y: (top + bottom) / 2 };
    });
    const points = entries.flatMap(({ fynCamId, source, dest }) =>
      heads
        .filter((h) => h.camera === Math.max(0, fynCamId))
        .map((h) => ({ x: (h.x - source.xoffset) / source.width, y: (h.y - source.yoffset) / source.height }))
        .filter(({ x, y }) => x > 0.02 && x < 0.98 && y > 0.02 && y < 0.98)
        .map(({ x, y }): [number, number] => [dest.xoffset + x * dest.width, dest.yoffset + y * dest.height]),
    );
    return coloursAt(page.locator('.stream canvas'), IMAGE, points);
  }

  /** The left edge of each cut in the room and of each tile in the output has the frame's colour, where no other frame is near. */
  async function expectEdges(entries: Entry[]): Promise<void> {
    for (const { frameindex, fynCamId, source, dest } of entries) {
      const colour = colourOf(frameColour(frameindex));
      const room = page.locator(`.camera[data-camera="${Math.max(0, fynCamId)}"] canvas`);
      const points: [number, number][] = [0.35, 0.5, 0.65, 0.8].map((part) => [source.xoffset, source.yoffset + part * source.height]);
      const drawn = await coloursAt(room, IMAGE, points.map(([x, y]) => [Math.min(x, 1279), y]));
      expect(Math.min(...drawn.map((c) => far(c, colour)))).toBeLessThan(60);
      const tile = await coloursAt(page.locator('.stream canvas'), IMAGE, [[dest.xoffset + 2, dest.yoffset + dest.height / 3]]);
      expect(far(tile[0]!, colour)).toBeLessThan(60);
    }
  }

  test('heads stand where the vision result says, in every camera', async () => {
    const results = inputs.filter((line) => line.topic === '/ICDOut');
    for (const part of [0.1, 0.4, 0.7]) {
      const { t, payload } = results[Math.floor(part * results.length)] as Line;
      await goTo(page, t);
      type Head = { camId: number; bbox: Record<string, number>; isSpeaker: boolean };
      const { heads } = payload as unknown as { heads: { fynId: number; associatedHeads: Head[] }[] };
      const expected = heads.flatMap((p) =>
        p.associatedHeads.map((h) => [p.fynId, h.camId, `${h.bbox.left}, ${h.bbox.top} to ${h.bbox.right}, ${h.bbox.bottom}`, h.isSpeaker ? 'yes' : '']),
      );
      const order = (rows: unknown[][]) => [...rows].sort((a, b) => String(a).localeCompare(String(b)));
      const rows = await rowsOf(page, '.numbers tr[data-person]');
      expect(order(rows.map((r) => [Number(r.person), Number(r.camera), r.cell2, r.cell3]))).toEqual(order(expected));
      const best = rows.filter((r) => r.cell4 === 'yes').map((r) => r.person);
      expect([...best].sort()).toEqual([...new Set(rows.map((r) => r.person))].sort());
      // The middle of each head is drawn in a skin tone, not in the room's grey-blue.
      for (const row of rows.filter((r) => r.camera === '1')) {
        const [l, top, r, b] = (row.cell2 as string).match(/-?\d+/g)!.map(Number) as [number, number, number, number];
        const [skin] = await coloursAt(page.locator('.camera[data-camera="1"] canvas'), IMAGE, [[(l + r) / 2, (top + b) / 2]]);
        expect(skin![0]).toBeGreaterThan(skin![2]);
      }
    }
  });
});

describe('stepping', () => {
  test('goes from vision result to vision result, by key and by button', async () => {
    const times = inputs.filter((line) => line.topic === '/ICDOut').map((line) => line.t);
    const at = 300;
    await goTo(page, times[at]!);
    for (const [keys, index] of [['ArrowRight', 301], ['ArrowRight', 302], ['ArrowLeft', 301]] as const) {
      await page.keyboard.press(keys);
      await shows(page, times[index]!);
    }
    await page.getByRole('button', { name: /^One vision result back/ }).click();
    await shows(page, times[300]!);
    await page.getByRole('button', { name: /^One vision result on/ }).click();
    await shows(page, times[301]!);
  });

  test('goes from moment to moment', async () => {
    await page.keyboard.press('Home');
    await shows(page, 0);
    const [adopted] = decisions('adopted').filter((d) => d.t > 0);
    let last = -1;
    while (last < adopted!.t) {
      await page.keyboard.press('Shift+ArrowRight');
      await expect.poll(() => timeOf(page), WAIT).toBeGreaterThan(last);
      last = await timeOf(page);
    }
    expect(last).toBe(adopted!.t);
    await page.keyboard.press('Shift+ArrowLeft');
    await expect.poll(() => timeOf(page), WAIT).toBeLessThan(last);
  });
});

describe('playing', () => {
  test('goes on by itself, faster when asked, and stands still when paused', async () => {
    await goTo(page, 10_000);
    await page.keyboard.press('+');
    await expect.poll(() => page.getByLabel('Speed', { exact: true }).inputValue(), WAIT).toBe('2×');
    await page.getByLabel('Speed', { exact: true }).selectOption('8×');
    await page.locator('body').click({ position: { x: 5, y: 60 } });
    await page.keyboard.press(' ');
    await expect.poll(() => timeOf(page), WAIT).toBeGreaterThan(12_000);
    await page.getByRole('button', { name: 'Pause (space)' }).click();
    await page.getByRole('button', { name: 'Play (space)' }).waitFor();
    const t = Number(/#t=(\d+)/.exec(page.url())?.[1]);
    await shows(page, t);
    expect((await page.locator('.time').innerText()).split(' ')[0]).toBe(clock(await timeOf(page)));
  });
});

describe('the time line', () => {
  test('jumps to where it is clicked', async () => {
    const box = (await page.locator('.window').boundingBox())!;
    await page.mouse.click(box.x + box.width / 2, box.y + 5);
    await expect.poll(async () => Math.abs((await timeOf(page)) - 30_000), WAIT).toBeLessThan(1000);
  });
  test('jumps to the very moment of a mark that is clicked nearly', async () => {
    const { t } = decisions('adopted').filter((d) => d.t > 5000)[0]!;
    const box = (await page.locator('.window').boundingBox())!;
    const end = inputs[inputs.length - 1]!.t;
    await page.mouse.click(box.x + (box.width * t) / end + 2, box.y + 16 + 11);
    await shows(page, t);
  });
});

test('a link opens the moment that it names', async () => {
  const other = await browser.newPage();
  await open(other, address, 8000);
  expect(await other.locator('.time').innerText()).toMatch(/^0:08\.000/);
  await other.close();
});

test('why the picture changed is said in words, with timer and wait', async () => {
  const adopted = decisions('adopted').filter((d) => d.key);
  expect(adopted.length).toBeGreaterThan(1);
  for (const { t, to, key } of adopted) {
    await goTo(page, t);
    const said = await page.locator('.why-picture').innerText();
    for (const words of [to, key!, 'the difference is', 'after']) expect(said).toContain(words);
  }
  const { t, key } = decisions('reframed')[0]!;
  await goTo(page, t);
  expect(await page.locator('.why-picture').innerText()).toContain(key!);
});

test('a wait is shown with what remains of it', async () => {
  const next = (t: number) => effects.find((e) => e.t > t && e.decision)!.t;
  const { t, to, waitMs } = decisions('pending').find((d) => d.waitMs >= 2000 && next(d.t) > d.t + 500)!;
  await goTo(page, t + 400);
  const pending = page.locator('.pending');
  expect(await pending.getAttribute('data-pending')).toBe(to);
  expect(Math.abs(Number(await pending.locator('.left').getAttribute('data-remaining')) - (waitMs - 400))).toBeLessThanOrEqual(40);
  expect(await page.locator('.why-wait').innerText()).toContain(`${to} waits`);
  const reframe = decisions('reframeWait').find((d) => next(d.t) > d.t + 100);
  if (reframe) {
    await goTo(page, reframe.t + 50);
    const row = page.locator(`.waits li[data-position="${(reframe as unknown as { headPosition: string }).headPosition}"]`).first();
    expect(Math.abs(Number(await row.locator('.left').getAttribute('data-remaining')) - (reframe.waitMs - 50))).toBeLessThanOrEqual(40);
  }
});

test('a recording with faults: the page says what it could not show and shows the rest', async () => {
  const lines = inputs.slice(0, 400).map((line) => JSON.stringify(line));
  lines[100] = lines[100]!.slice(0, 50);
  lines[200] = '{"t":"soon"}';
  lines[300] = JSON.stringify({ t: inputs[300]!.t, topic: '/ICDOut', payload: 'gibberish' });
  const view = new Programs();
  const other = await browser.newPage();
  try {
    await open(other, await view.view(view.file('broken.jsonl', lines.join('\n'))));
    const problems = other.locator('#problems');
    await expect.poll(() => problems.locator('summary').innerText(), WAIT).toBe('1 line not shown, 2 notices');
    await problems.locator('summary').click();
    const said = await problems.locator('li').allInnerTexts();
    expect(said.join('\n')).toMatch(/broken\.jsonl:101: .*left out/);
    expect(said.join('\n')).toMatch(/broken\.jsonl:201: /);
    expect(said.join('\n')).toContain('/ICDOut: the payload is not JSON');
    await other.keyboard.press('Escape');
    await goTo(other, inputs[399]!.t);
    expect(await other.locator('.camera').count()).toBe(2);
  } finally {
    await other.close();
    await view.end();
  }
});

