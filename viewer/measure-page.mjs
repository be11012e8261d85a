/**
 * Opens the page in a browser for some minutes and prints what it costs: heap and DOM nodes (after a garbage collection), memory and
 * processor time of the process that shows it, and the share of time in which its main thread was busy (or waited to be served).
 *
 * usage: node measure-page.mjs ADDRESS MINUTES [SECONDS BETWEEN TWO LINES]
 */

import { readFileSync } from 'node:fs';
import { chromium } from 'playwright-core';

const [address, minutes, period = '30'] = process.argv.slice(2);
if (!address || !(Number(minutes) > 0)) {
  console.error('usage: node measure-page.mjs ADDRESS MINUTES [SECONDS BETWEEN TWO LINES]');
  process.exit(2);
}

const browser = await chromium.launch({
  executablePath: process.env.CHROMIUM ?? '/usr/bin/chromium',
  args: ['--no-sandbox', '--disable-gpu', '--no-first-run', '--disable-background-networking', '--disable-component-update', '--disable-sync'],
});
const page = await browser.newPage({ viewport: { width: 1400, height: 1000 } });
await page.goto(address);
const session = await page.context().newCDPSession(page);
await session.send('Performance.enable');

const system = await browser.newBrowserCDPSession();

/** The process that shows the page: the one that has worked most. */
async function renderer() {
  const { processInfo } = await system.send('SystemInfo.getProcessInfo');
  const [process] = processInfo.filter((p) => p.type === 'renderer').sort((a, b) => b.cpuTime - a.cpuTime);
  const resident = /^VmRSS:\s+(\d+)/m.exec(readFileSync(`/proc/${process.id}/status`, 'utf8'));
  return { cpu: process.cpuTime, memory: Number(resident?.[1]) / 1000 };
}

async function sample() {
  await session.send('HeapProfiler.collectGarbage');
  const { metrics } = await session.send('Performance.getMetrics');
  const of = (name) => metrics.find((m) => m.name === name)?.value ?? Number.NaN;
  const shares = { task: 'TaskDuration', script: 'ScriptDuration', style: 'RecalcStyleDuration', layout: 'LayoutDuration' };
  return {
    at: performance.now(),
    process: await renderer(),
    heap: of('JSHeapUsedSize'),
    nodes: of('Nodes'),
    listeners: of('JSEventListeners'),
    used: Object.fromEntries(Object.entries(shares).map(([name, metric]) => [name, of(metric)])),
  };
}

const started = await sample();
let before = started;
const line = (title, from, to) => {
  const passed = (to.at - from.at) / 1000;
  const shares = Object.keys(to.used).map((name) => `${name} ${((100 * (to.used[name] - from.used[name])) / passed).toFixed(1)} %`);
  const cpu = ((100 * (to.process.cpu - from.process.cpu)) / passed).toFixed(1);
  const process = `process ${to.process.memory.toFixed(0)} MB, ${cpu} % of a core`;
  console.log(`${title} ${((to.at - started.at) / 1000).toFixed(0)} s: ${process}; heap ${(to.heap / 1e6).toFixed(2)} MB, ${to.nodes} nodes, ${to.listeners} listeners; ${shares.join(', ')}`);
};
while (before.at - started.at < Number(minutes) * 60_000) {
  await new Promise((resolve) => setTimeout(resolve, Number(period) * 1000));
  const now = await sample();
  line('after', before, now);
  before = now;
}
line('over all', started, before);
console.log(`shown up to ${await page.locator('body').getAttribute('data-t')} ms`);
await browser.close();
