/** Runs the real programs: each in a process of its own that ends with the test. */

import { execFileSync, spawn, type ChildProcess } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { createServer, type AddressInfo } from 'node:net';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';

const programs = process.env.PRB_PROGRAMS ?? fileURLToPath(new URL('../../../build/release/bin', import.meta.url));

export interface Line {
  t: number;
  topic?: string;
  payload?: never;
  [key: string]: unknown;
}

/** A folder of its own and the programs that were started from it. */
export class Programs {
  readonly folder = mkdtempSync(join(tmpdir(), 'viewer-test-'));
  private readonly started: ChildProcess[] = [];

  file(name: string, content?: string): string {
    const path = join(this.folder, name);
    if (content !== undefined) writeFileSync(path, content);
    return path;
  }

  lines(name: string): Line[] {
    const text = readFileSync(this.file(name), 'utf8');
    return text.split('\n').filter(Boolean).map((line) => JSON.parse(line) as Line);
  }

  run(program: string, ...args: string[]): void {
    execFileSync(join(programs, program), args, { stdio: ['ignore', 'ignore', 'pipe'] });
  }

  start(program: string, ...args: string[]): ChildProcess {
    const path = program.includes('/') ? program : join(programs, program);
    const child = spawn(path, args, { stdio: ['ignore', 'pipe', 'pipe'] });
    this.started.push(child);
    // What nobody reads must not fill up: the program would wait.
    child.stdout?.resume();
    child.stderr?.resume();
    return child;
  }

  /** Starts `prb view` and answers the address that it prints. */
  view(...args: string[]): Promise<string> {
    const child = this.start('prb', 'view', ...args);
    return new Promise((resolve, reject) => {
      let said = '';
      let complaints = '';
      child.stderr?.on('data', (text) => (complaints += text));
      child.stdout?.on('data', (text) => {
        said += text;
        const address = /http:\S+/.exec(said)?.[0];
        if (address) resolve(address);
      });
      child.on('exit', (status) => reject(new Error(`prb view ended with ${status}: ${complaints}`)));
    });
  }

  /** A broker on a free port of this machine. `subscribed` runs what subscribes to a topic, and ends when the broker knows. */
  async broker(): Promise<{ bus: string; subscribed: (topic: string, run: () => unknown) => Promise<void> }> {
    const port = await freePort();
    const child = this.start('/usr/sbin/mosquitto', '-p', String(port), '-v');
    let said = '';
    const waiting = new Set<() => void>();
    child.stderr?.on('data', (text) => {
      said += text;
      waiting.forEach((look) => look());
    });
    const heard = (text: string) =>
      new Promise<void>((resolve, reject) => {
        const from = said.length;
        waiting.add(() => said.includes(text, from) && resolve());
        child.on('exit', (status) => reject(new Error(`the broker ended with ${status} before it said ${text}`)));
      });
    await heard('running');
    const subscribed = async (topic: string, run: () => unknown) => {
      const known = heard(`${topic}/# (QoS`);
      await run();
      await known;
    };
    return { bus: `mqtt://127.0.0.1:${port}`, subscribed };
  }

  async stop(child: ChildProcess, signal: NodeJS.Signals = 'SIGTERM'): Promise<void> {
    if (child.exitCode !== null || child.signalCode !== null) return;
    const ended = new Promise((resolve) => child.on('exit', resolve));
    child.kill(signal);
    await ended;
  }

  async end(): Promise<void> {
    // The last one first: nobody loses the bus that it is on.
    await Promise.all([...this.started].reverse().map((child) => this.stop(child)));
    rmSync(this.folder, { recursive: true, force: true });
  }
}

function freePort(): Promise<number> {
  return new Promise((resolve) => {
    const server = createServer().listen(0, '127.0.0.1', () => {
      const { port } = server.address() as AddressInfo;
      server.close(() => resolve(port));
    });
  });
}

/** Makes a meeting for figures that hang on no single picture; `mode` is the framing mode's number. */
export function simulate(programs: Programs, name: string, { people = 4, mode = 4 } = {}): string {
  const path = programs.file(name);
  const options = { seed: 15, minutes: 1, people, cameras: 2, noise: 'low', property: `vendor.talkertracking.flag=${mode}`, output: path };
  programs.run('prb', 'simulate', ...Object.entries(options).flatMap(([key, value]) => [`--${key}`, String(value)]));
  return path;
}
