/** The top line: what is shown, and the figures of the moment. */

import type { Info } from '../sources';
import type { State } from '../state';
import { html, say, set } from './dom';

const THEMES = ['auto', 'light', 'dark'] as const;

export class Header {
  private readonly figures = new Map<string, HTMLElement>();
  private results: number[] = [];
  private lastResult = Number.NaN;

  constructor(info: Info) {
    const root = document.querySelector('#figures') as HTMLElement;
    say(document.querySelector('#source') as HTMLElement, info.source === 'live' ? `live${info.name ? ` · ${info.name}` : ''}` : info.name || 'recording');
    set(document.body, { 'data-source': info.source });
    document.title = `${info.name || info.source} · prb view`;
    for (const name of ['mode', 'people', 'speaking', 'vision', 'provider']) {
      const value = html('dd');
      this.figures.set(name, value);
      root.append(html('div', {}, html('dt', {}, name), value));
    }
    this.theme();
  }

  status(text: string): void {
    say(document.querySelector('#status') as HTMLElement, text);
  }

  draw(state: State, t: number): void {
    this.rate(state.vision?.t ?? Number.NaN, t);
    const mode = [...state.decided.values()][0]?.mode || state.mode;
    const speakers = new Set<number>();
    const rows = state.vision?.heads ?? new Int32Array();
    for (let i = 0; i < rows.length; i += 7) if ((rows[i + 6] as number) & 1) speakers.add(rows[i] as number);
    const values: Record<string, string> = {
      mode: mode || '–',
      people: state.people ? String(state.people.count) : String(state.vision?.people ?? '–'),
      speaking: [...speakers].join(', ') || '–',
      vision: this.results.length > 1 ? `${this.results.length - 1}/s` : '–',
      provider: state.provider ?? '–',
    };
    for (const [name, node] of this.figures) say(node, values[name] ?? '–');
  }

  /** Vision results in the last second of the time shown. */
  private rate(result: number, t: number): void {
    if (result < this.lastResult) this.results = [];
    if (result !== this.lastResult && !Number.isNaN(result)) this.results.push(result);
    this.lastResult = result;
    this.results = this.results.filter((r) => r > t - 1034 && r <= t);
  }

  private theme(): void {
    const button = document.querySelector('#theme') as HTMLButtonElement;
    const apply = (theme: string) => {
      set(document.documentElement, { 'data-theme': theme === 'auto' ? null : theme });
      say(button, `Theme: ${theme}`);
    };
    let theme: string = localStorage.getItem('theme') ?? 'auto';
    apply(theme);
    button.addEventListener('click', () => {
      theme = THEMES[(THEMES.indexOf(theme as (typeof THEMES)[number]) + 1) % THEMES.length] ?? 'auto';
      localStorage.setItem('theme', theme);
      apply(theme);
    });
  }
}
