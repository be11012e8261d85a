import { defineConfig } from 'vite';
import { viteSingleFile } from 'vite-plugin-singlefile';

// The page of reports: one file that holds its script and style, because it is handed on and opened without a server.
export default defineConfig({
  publicDir: false,
  plugins: [viteSingleFile()],
  build: { outDir: 'page', emptyOutDir: false, target: 'es2022', rollupOptions: { input: 'report.html' } },
});
