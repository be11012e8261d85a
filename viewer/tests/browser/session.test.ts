/** A live page that is left open: what it keeps is bounded. */

import { expect, test } from 'vitest';
import { launch } from '../chromium';
import { meeting } from '../meeting';
import { serve } from '../server';
import { WAIT } from './look';

test('twelve minutes of sixteen people leave no more behind than six', async () => {
  const server = await serve({ live: 'test' });
  const browser = await launch();
  const page = await browser.newPage();
  await page.goto(server.url);
  const once = meeting({ people: 16, seconds: 60 });
  const session = await page.context().newCDPSession(page);
  await session.send('Performance.enable');
  let minute = 0;
  const listening = () => page.locator('#status').innerText();
  await expect.poll(listening, WAIT).toBe('');
  async function hear(minutes: number): Promise<{ nodes: number; heap: number; start: number }> {
    for (const until = minute + minutes; minute < until; minute += 1) {
      for (const line of once) server.send(line.replace(/^\{"t":(\d+)/, (_all, t: string) => `{"t":${Number(t) + minute * 60_000}`));
      const end = minute * 60_000 + 59_000;
      await expect.poll(async () => Number(await page.locator('.window').getAttribute('aria-valuemax')), { timeout: 60_000, interval: 50 }).toBeGreaterThan(end);
    }
    await session.send('HeapProfiler.collectGarbage');
    const { metrics } = await session.send('Performance.getMetrics');
    const of = (name: string) => metrics.find((m) => m.name === name)!.value;
    return { nodes: of('Nodes'), heap: of('JSHeapUsedSize'), start: Number(await page.locator('.window').getAttribute('aria-valuemin')) };
  }
  const six = await hear(6);
  const twelve = await hear(6);
  expect(twelve.start).toBeGreaterThan(6 * 60_000);
  expect(twelve.nodes).toBeLessThan(six.nodes * 1.1);
  expect(twelve.heap).toBeLessThan(six.heap * 1.15);
  await browser.close();
  await server.close();
}, 180_000);
