/** Reads a page as a person does: what is written, and what is drawn. */

import type { Locator, Page } from 'playwright-core';
import { expect } from 'vitest';

/** Generous: a busy machine is no fault. */
export const WAIT = { timeout: 20_000, interval: 50 };

export type Colour = [number, number, number];

export const colourOf = (hex: string): Colour => [1, 3, 5].map((i) => Number.parseInt(hex.slice(i, i + 2), 16)) as Colour;

/** The colours at points of an image of `size`, as they are drawn on the canvas. */
export function coloursAt(canvas: Locator, size: { width: number; height: number }, points: [number, number][]): Promise<Colour[]> {
  return canvas.evaluate(
    (node, { size, points }) => {
      const { width, height } = node as HTMLCanvasElement;
      const g = (node as HTMLCanvasElement).getContext('2d') as CanvasRenderingContext2D;
      return points.map(([x, y]) => {
        const at = (value: number, most: number, pixels: number) => Math.min(pixels - 1, Math.max(0, Math.round((value / most) * pixels)));
        return [...g.getImageData(at(x, size.width, width), at(y, size.height, height), 1, 1).data.slice(0, 3)] as Colour;
      });
    },
    { size, points },
  );
}

/** All pixels of a canvas, row by row, as red, green, blue and opacity. */
export async function pixelsOf(canvas: Locator): Promise<Uint8Array> {
  // One text: a list of so many numbers takes seconds to hand over.
  const coded = await canvas.evaluate((node) => {
    const { width, height } = node as HTMLCanvasElement;
    const g = (node as HTMLCanvasElement).getContext('2d') as CanvasRenderingContext2D;
    return btoa(Array.from(g.getImageData(0, 0, width, height).data, (v) => String.fromCharCode(v)).join(''));
  });
  return Buffer.from(coded, 'base64');
}

export const far = (a: Colour, b: Colour): number => Math.max(...a.map((v, i) => Math.abs(v - (b[i] as number))));

export const timeOf = async (page: Page): Promise<number> => Number(await page.locator('body').getAttribute('data-t'));

/** Opens the page and waits until a recording has been read. */
export async function open(page: Page, address: string, t?: number): Promise<void> {
  await page.goto(t === undefined ? address : `${address}#t=${t}`);
  await page.locator('body[data-read]').waitFor();
  if (t !== undefined) await shows(page, t);
}

export const shows = (page: Page, t: number) => expect.poll(() => timeOf(page), WAIT).toBe(t);

/** Jumps as a link does. */
export async function goTo(page: Page, t: number): Promise<void> {
  await page.evaluate((to) => {
    location.hash = `#t=${to}`;
  }, t);
  await shows(page, t);
}

/** The cells of a table's rows, with the row's own marks. */
export const rowsOf = (page: Page, selector: string): Promise<Record<string, string | undefined>[]> =>
  page.locator(selector).evaluateAll((rows) =>
    rows.map((row) => ({
      ...(row as HTMLElement).dataset,
      ...Object.fromEntries([...row.children].map((cell, i) => [`cell${i}`, cell.textContent ?? ''])),
    })),
  );
