/** Debian's Chromium, quiet and without any network of its own, also where shared memory is small. */

import { chromium, type Browser } from 'playwright-core';

export function launch(): Promise<Browser> {
  return chromium.launch({
    executablePath: process.env.CHROMIUM ?? '/usr/bin/chromium',
    headless: true,
    args: ['--no-sandbox', '--disable-dev-shm-usage', '--disable-gpu', '--disable-quic', '--no-first-run', '--disable-background-networking', '--disable-component-update', '--disable-sync', '--enable-precise-memory-info'],
  });
}
