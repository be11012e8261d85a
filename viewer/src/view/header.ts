/** The top line: what is shown, and the figures of the moment. */

import type { Info } from '../sources';
import { headsOf } from '../geometry';
import type { State } from '../state';
import { html, say, set } from './dom';

const THEMES = ['auto', 'light', 'dark'] as const;

export class Header {
  private readonly figures = new Map<string, HTMLElement>();

  constructor(info: Info, private readonly rethemed: () => void) {
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

  /** `rate` is the number of vision results in the last second. */
  draw(state: State, rate: number): void {
    const mode = [...state.decided.values()][0]?.mode || state.mode;
    const speakers = new Set(headsOf(state.vision).filter((h) => h.speaks).map((h) => h.person));
    const values: Record<string, string> = {
      mode: mode || '–',
      people: state.people ? String(state.people.count) : String(state.vision?.people ?? '–'),
      speaking: [...speakers].join(', ') || '–',
      vision: rate > 0 ? `${rate}/s` : '–',
      provider: state.provider ?? '–',
    };
    for (const [name, node] of this.figures) say(node, values[name] ?? '–');
  }

  private theme(): void {
    const button = document.querySelector('#theme') as HTMLButtonElement;
    const apply = (theme: string) => {
      set(document.documentElement, { 'data-theme': theme === 'auto' ? null : theme });
      say(button, `Theme: ${theme}`);
      this.rethemed();
    };
    let theme: string = localStorage.getItem('theme') ?? 'auto';
    apply(theme);
    matchMedia('(prefers-color-scheme: dark)').addEventListener('change', () => this.rethemed());
    button.addEventListener('click', () => {
      theme = THEMES[(THEMES.indexOf(theme as (typeof THEMES)[number]) + 1) % THEMES.length] ?? 'auto';
      localStorage.setItem('theme', theme);
      apply(theme);
    });
  }
}
