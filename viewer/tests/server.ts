/** Serves the built page with given lines, on a free loopback port, in the ways that prb does. */

import { readFile } from 'node:fs/promises';
import { createServer, type ServerResponse } from 'node:http';
import type { AddressInfo } from 'node:net';

const TYPES: Record<string, string> = { html: 'text/html', js: 'text/javascript', css: 'text/css', svg: 'image/svg+xml' };
const page = new URL('../page/', import.meta.url);

export interface Served {
  url: string;
  /** Live only: sends a line to every page that listens. */
  send(line: string): void;
  close(): Promise<void>;
}

export async function serve(content: { recording: string } | { live: string }): Promise<Served> {
  const listeners = new Set<ServerResponse>();
  const live = 'live' in content;
  const server = createServer((request, response) => {
    response.setHeader('content-security-policy', "default-src 'self'");
    const path = (request.url ?? '/').split('?')[0] ?? '/';
    if (path === '/api/info') {
      response.end(JSON.stringify(live ? { source: 'live', name: content.live } : { source: 'recording', name: 'meeting.jsonl' }));
    } else if (path === '/api/recording' && !live) {
      response.end(content.recording);
    } else if (path === '/api/events' && live) {
      response.writeHead(200, { 'content-type': 'text/event-stream' }).write(':\n\n');
      listeners.add(response);
      response.on('close', () => listeners.delete(response));
    } else {
      const name = path === '/' ? 'index.html' : path.slice(1);
      readFile(new URL(name, page)).then(
        (body) => response.writeHead(200, { 'content-type': TYPES[name.split('.').pop() ?? ''] ?? 'text/plain' }).end(body),
        () => response.writeHead(404).end(),
      );
    }
  });
  await new Promise<void>((resolve) => server.listen(0, '127.0.0.1', resolve));
  return {
    url: `http://127.0.0.1:${(server.address() as AddressInfo).port}/`,
    send: (line) => listeners.forEach((l) => l.write(`data: ${line}\n\n`)),
    close: () =>
      new Promise((resolve) => {
        server.closeAllConnections();
        server.close(() => resolve());
      }),
  };
}
