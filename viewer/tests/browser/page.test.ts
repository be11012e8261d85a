/** The page with made-up lines: small screens, keyboard, themes, and faults. */

import type { Browser, Page } from 'playwright-core';
import { afterAll, afterEach, beforeAll, describe, expect, test } from 'vitest';
import { launch } from '../chromium';
import { meeting } from '../meeting';
import { serve, type Served } from '../server';
import { frameColour, TONES } from '../../src/palette';
import { colourOf, coloursAt, far, goTo, open, shows, type Colour } from './look';

let browser: Browser;
let page: Page;
const served: Served[] = [];

beforeAll(async () => {
  browser = await launch();
});

afterAll(async () => {
  await browser?.close();
  for (const server of served) await server.close();
});

async function pageWith(lines: readonly string[], options: Parameters<Browser['newPage']>[0] = {}): Promise<Page> {
  const server = await serve({ recording: lines.join('\n') });
  served.push(server);
  page = await browser.newPage(options);
  await open(page, server.url);
  return page;
}

afterEach(() => page.close());

describe.each([
  ['a phone', { width: 360, height: 740 }],
  ['a phone held sideways', { width: 740, height: 360 }],
  ['a tablet', { width: 768, height: 1024 }],
  ['a wide screen', { width: 2560, height: 1300 }],
])('on %s', (_name, viewport) => {
  test('nothing is cut off, and what is pressed is large enough', async () => {
    const page = await pageWith(meeting({ people: 16, seconds: 8, streams: 3 }), { viewport });
    await goTo(page, 7000);
    const { wide, small, outside } = await page.evaluate(() => {
      const pressed = [...document.querySelectorAll<HTMLElement>('button, select')].filter((b) => b.checkVisibility());
      const boxes = pressed.map((b) => ({ name: b.getAttribute('aria-label') ?? b.innerText, box: b.getBoundingClientRect() }));
      return {
        wide: document.documentElement.scrollWidth - innerWidth,
        small: boxes.filter(({ box }) => box.height < 24 || box.width < 24).map((b) => b.name),
        outside: boxes.filter(({ box }) => box.left < 0 || box.right > innerWidth).map((b) => b.name),
      };
    });
    expect({ wide: Math.max(0, wide), small, outside }).toEqual({ wide: 0, small: [], outside: [] });
    for (const canvas of await page.locator('canvas').all()) {
      const box = await canvas.boundingBox();
      expect(box!.width).toBeGreaterThan(90);
      expect(box!.x + box!.width).toBeLessThanOrEqual(viewport.width);
    }
  });
});

describe('by keyboard alone', () => {
  test('everything that can be pressed is reached, has a name and shows that it is reached', async () => {
    const page = await pageWith(meeting({ seconds: 13 }));
    await goTo(page, 12_500);
    const reached = new Set<string>();
    for (let i = 0; i < 60; i += 1) {
      await page.keyboard.press('Tab');
      const focus = await page.evaluate(() => {
        const node = document.activeElement as HTMLElement;
        if (node === document.body) return null;
        const style = getComputedStyle(node);
        return { name: node.getAttribute('aria-label') ?? node.innerText.trim(), outlined: style.outlineStyle !== 'none' && Number.parseFloat(style.outlineWidth) >= 2 };
      });
      if (!focus) break;
      expect(focus.name).not.toBe('');
      expect(focus).toMatchObject({ outlined: true });
      reached.add(focus.name);
    }
    for (const name of ['Skip to the controls', 'Theme: auto', 'Numbers', 'Moment', 'Play (space)', 'Speed', 'Length of the time line', 'Copy link to this moment']) expect(reached).toContain(name);
  });

  test('a moment of the list is jumped to with enter', async () => {
    const page = await pageWith(meeting({ seconds: 13 }));
    await goTo(page, 9000);
    const first = page.locator('.moments button').first();
    const t = Number(await first.getAttribute('data-t'));
    await first.focus();
    await page.keyboard.press('Enter');
    await shows(page, t);
  });

  test('the pictures and the moment are said in words', async () => {
    const page = await pageWith(meeting({ seconds: 13, people: 4 }));
    await goTo(page, 6500);
    expect(await page.getByRole('img', { name: 'camera 0 (own) · 1280 × 720 · 4 heads · 2 frames' }).count()).toBe(1);
    expect(await page.getByRole('img', { name: /^stream 0: HEAD, one tile per person · 4 people/ }).count()).toBe(1);
    expect(await page.getByRole('slider', { name: 'Moment' }).getAttribute('aria-valuetext')).toBe('0:06.500');
  });
});

test.each(['light', 'dark'] as const)('%s: texts stand out from what is behind them', async (colorScheme) => {
  const page = await pageWith(meeting({ seconds: 13 }), { colorScheme });
  await goTo(page, 10_500);
  const weak = await page.evaluate(() => {
    const numbers = (colour: string) => (colour.match(/[\d.]+/g) ?? []).map(Number);
    const light = (colour: number[]) => {
      const [r, g, b] = colour.slice(0, 3).map((v) => (v / 255 <= 0.04045 ? v / 255 / 12.92 : ((v / 255 + 0.055) / 1.055) ** 2.4)) as [number, number, number];
      return 0.2126 * r + 0.7152 * g + 0.0722 * b;
    };
    const behind = (node: Element | null): number[] => {
      for (let at = node; at; at = at.parentElement) {
        const colour = numbers(getComputedStyle(at).backgroundColor);
        if (colour.length === 3 || (colour[3] ?? 0) > 0.5) return colour;
      }
      return [255, 255, 255];
    };
    const found: string[] = [];
    for (const node of document.querySelectorAll<HTMLElement>('body *')) {
      const own = [...node.childNodes].some((n) => n instanceof Text && n.data.trim());
      if (!own || node.offsetParent === null || node.closest('.later, .skip')) continue;
      const [a, b] = [light(numbers(getComputedStyle(node).color)), light(behind(node))].sort((x, y) => y - x) as [number, number];
      if ((a + 0.05) / (b + 0.05) < 4.5) found.push(`${node.className || node.id || node.tagName}: ${((a + 0.05) / (b + 0.05)).toFixed(2)}`);
    }
    return found;
  });
  expect(weak).toEqual([]);
});

test('what crosses the seam of a panoramic camera is drawn at both ends of its image and whole in its tile', async () => {
  const size = { width: 2560, height: 720 };
  const bbox = { left: 2520, top: 200, right: 2600, bottom: 300 };
  const put = (topic: string, payload: object) => JSON.stringify({ t: 0, topic, payload });
  const view = { frameindex: 0, fynCamId: 0, srcRef: size, source: { xoffset: 2400, yoffset: 150, width: 320, height: 180 }, dest: { xoffset: 0, yoffset: 0, width: 1280, height: 720 } };
  const page = await pageWith([
    put('/cameraParameters/head/0', { imageWidth: 1280, imageHeight: 720, horizontalPeriod: 2560 }),
    put('/ICDOut', { timestamp: 0, frameNumber: 1, heads: [{ fynId: 0, associatedHeads: [{ id: 0, camId: 0, bbox }] }] }),
    put('/PRBOut', { streams: [{ streamid: 0, layoutType: 'HEAD', destRef: { width: 1280, height: 720 }, scene: [view] }] }),
  ]);
  const [skin, cloth] = TONES[0]!.map(colourOf) as [Colour, Colour];
  const frame = colourOf(frameColour(0));
  const room = await coloursAt(page.locator('.cameras canvas'), size, [[2400, 310], [160, 310], [2550, 250], [10, 250]]);
  const tile = await coloursAt(page.locator('.streams canvas'), { width: 1280, height: 720 }, [[640, 400], [600, 700], [680, 700]]);
  const wanted = [frame, frame, skin, skin, skin, cloth, cloth];
  expect([...room, ...tile].map((colour, i) => far(colour, wanted[i]!) < 40)).toEqual(wanted.map(() => true));
});

test('the theme is chosen and remembered', async () => {
  const page = await pageWith(meeting({ seconds: 2 }));
  const theme = () => page.evaluate(() => document.documentElement.dataset.theme);
  await page.getByRole('button', { name: 'Theme: auto' }).click();
  await page.getByRole('button', { name: 'Theme: light' }).click();
  expect(await theme()).toBe('dark');
  await page.reload();
  await page.locator('body[data-read]').waitFor();
  expect(await theme()).toBe('dark');
});

test('nothing of a message becomes part of the document but its text', async () => {
  const evil = '<img src=x onerror="document.title=1">';
  const lines = meeting({ seconds: 1 });
  lines.push(JSON.stringify({ t: 2000, decision: { kind: 'adopted', to: evil }, title: evil, sentence: evil }), JSON.stringify({ t: 2000, topic: '/ctl', payload: evil }), JSON.stringify({ t: 2000, notice: evil }));
  const page = await pageWith(lines);
  await goTo(page, 2000);
  expect(await page.locator('.why-picture').innerText()).toContain(evil);
  expect(await page.locator('img').count()).toBe(0);
});

test.each([
  ['an empty recording', []],
  ['a recording of nothing that can be shown', ['nonsense', '{}']],
  ['one with a single time', ['{"t":5}']],
])('%s leaves a page that can be used', async (_name, lines) => {
  const page = await pageWith(lines);
  expect(await page.locator('.room .empty').innerText()).toBe('No vision result yet.');
  for (const key of ['ArrowRight', 'ArrowLeft', ' ', 'Home', 'End', 'Shift+ArrowRight']) await page.keyboard.press(key);
  expect(await page.locator('.time').innerText()).toMatch(/^0:00/);
});
