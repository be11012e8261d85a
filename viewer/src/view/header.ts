/** The top line: what is shown, and the figures of the moment. */

import type { Info } from '../sources';
import { headsOf } from '../geometry';
import type { State } from '../state';
import { html, say, set } from './dom';
import { themeButton } from './theme';

export class Header {
  private readonly figures = new Map<string, HTMLElement>();

  constructor(info: Info, rethemed: () => void) {
    const root = document.querySelector('#figures') as HTMLElement;
    say(document.querySelector('#source') as HTMLElement, info.source === 'live' ? `live${info.name ? ` · ${info.name}` : ''}` : info.name || 'recording');
    set(document.body, { 'data-source': info.source });
    document.title = `${info.name || info.source} · prb view`;
    for (const name of ['mode', 'people', 'speaking', 'vision', 'provider', ...(info.source === 'live' ? ['service'] : [])]) {
      const value = html('dd');
      this.figures.set(name, value);
      root.append(html('div', {}, html('dt', {}, name), value));
    }
    themeButton(rethemed);
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
      service: state.service?.state ?? '–',
    };
    for (const [name, node] of this.figures) say(node, values[name] ?? '–');
  }
}
