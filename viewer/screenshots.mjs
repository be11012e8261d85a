/**
 * Makes the pictures of the viewer in docs/images from simulated meetings. The same sources give the same pictures, as far as the
 * browser's version allows.
 *
 * usage: node screenshots.mjs [FOLDER]     (default docs/images; programs from PRB_PROGRAMS or build/release/bin)
 */

import { execFileSync, spawn } from 'node:child_process';
import { copyFileSync, mkdirSync, mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { chromium } from 'playwright-core';

const root = fileURLToPath(new URL('..', import.meta.url));
const prb = join(process.env.PRB_PROGRAMS ?? join(root, 'build/release/bin'), 'prb');
const configuration = join(root, 'conf/recommended.conf');
const target = process.argv[2] ?? join(root, 'docs/images');

/** Each is taken while something waits, or soon after a layout was adopted, in one of the given type with at least so many frames. */
const PICTURES = [
  { name: 'viewer-people', seed: 3, after: 'adopted', people: 4, seats: 'table', late: 1, mode: 4, layout: 'HEAD', frames: 4, colorScheme: 'light', viewport: { width: 1200, height: 960 } },
  { name: 'viewer-group', seed: 1, people: 6, late: 3, mode: 1, layout: 'GROUP', frames: 1, colorScheme: 'light', viewport: { width: 1200, height: 960 } },
  { name: 'viewer-speaker', seed: 6, after: 'adopted', people: 5, late: 0, mode: 2, layout: 'SUBSET_SPEAKER', frames: 1, colorScheme: 'dark', viewport: { width: 1200, height: 960 } },
  { name: 'viewer-phone', seed: 2, people: 5, late: 2, mode: 4, layout: 'HEAD', frames: 3, colorScheme: 'dark', viewport: { width: 390, height: 844 } },
];

/** Long enough to be seen, short enough to still be waiting, milliseconds. */
const LATER = 600;

function linesOf(path) {
  return readFileSync(path, 'utf8').split('\n').filter(Boolean).map((line) => JSON.parse(line));
}

/** The first time at which the wanted layout is on air and the wanted has happened a while ago, and nothing since. */
function momentOf(effects, { layout, frames, after }) {
  const kinds = after ? [after] : ['pending', 'reframeWait'];
  const decisions = effects.filter((e) => e.decision);
  const pictures = effects.filter((e) => e.topic === '/PRBOut');
  for (const { t, decision } of decisions) {
    const shown = pictures.filter((p) => p.t <= t).pop()?.payload.streams[0];
    const fits = shown?.layoutType === layout && shown.scene.length >= frames;
    const quiet = !decisions.some((d) => d.t > t && d.t <= t + LATER);
    if (fits && quiet && kinds.includes(decision.kind) && decision.waitMs > LATER) return t + LATER;
  }
  throw new Error(`the meeting has no moment with ${layout} of ${frames} frames`);
}

async function addressOf(viewer) {
  for await (const text of viewer.stdout) {
    const address = /http:\S+/.exec(String(text))?.[0];
    if (address) return address;
  }
  throw new Error('prb view ended');
}

async function take(browser, folder, picture) {
  const recording = join(folder, 'meeting.jsonl');
  const effects = join(folder, 'effects.jsonl');
  const { seed, people, seats = 'row', late, mode } = picture;
  const meeting = { seed, people, seats, 'come-late': late, minutes: 3, errors: 'none', property: `vendor.talkertracking.flag=${mode}`, output: recording };
  execFileSync(prb, ['simulate', '--force', ...Object.entries(meeting).flatMap(([key, value]) => [`--${key}`, String(value)])]);
  execFileSync(prb, ['replay', recording, '--config', configuration, '--decisions', '--force', '-o', effects], { stdio: 'ignore' });
  const t = momentOf(linesOf(effects), picture);
  const viewer = spawn(prb, ['view', 'meeting.jsonl', '--config', 'recommended.conf'], { cwd: folder, stdio: ['ignore', 'pipe', 'ignore'] });
  try {
    const page = await browser.newPage({ viewport: picture.viewport, colorScheme: picture.colorScheme });
    await page.goto(`${await addressOf(viewer)}#t=${t}`);
    await page.locator(`body[data-read][data-t="${t}"]`).waitFor();
    await page.screenshot({ path: join(target, `${picture.name}.png`), animations: 'disabled' });
    console.log(`${picture.name}.png: ${picture.layout} at ${t} ms`);
    await page.close();
  } finally {
    viewer.kill();
  }
}

mkdirSync(target, { recursive: true });
const folder = mkdtempSync(join(tmpdir(), 'viewer-pictures-'));
// The page shows the name that the command is given.
copyFileSync(configuration, join(folder, 'recommended.conf'));
const browser = await chromium.launch({
  executablePath: process.env.CHROMIUM ?? '/usr/bin/chromium',
  args: ['--no-sandbox', '--disable-gpu', '--no-first-run', '--disable-background-networking', '--disable-component-update', '--disable-sync'],
});
try {
  for (const picture of PICTURES) await take(browser, folder, picture);
} finally {
  await browser.close();
  rmSync(folder, { recursive: true });
}
