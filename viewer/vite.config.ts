import { defineConfig } from 'vitest/config';

// Stable file names: the built page is checked in and embedded into prb, so a change should show as a change.
export default defineConfig({
  base: './',
  build: {
    outDir: 'page',
    target: 'es2022',
    modulePreload: false,
    rollupOptions: {
      output: { entryFileNames: 'viewer.js', assetFileNames: 'viewer.[ext]' },
    },
  },
  test: {
    projects: [
      { test: { name: 'model', include: ['tests/*.test.ts'] } },
      {
        test: {
          name: 'browser',
          include: ['tests/browser/*.test.ts'],
          testTimeout: 60_000,
          hookTimeout: 60_000,
        },
      },
    ],
  },
});
