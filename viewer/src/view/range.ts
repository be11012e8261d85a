/** The selected range: how long it is, what happens in it, and what can be done with it. */

import { excerptOf } from '../excerpt';
import type { Span } from '../lanes';
import type { Moment } from '../moments';
import { clock, seconds } from '../words';
import { html, say, set } from './dom';

export interface RangeActions {
  zoom(range: Span): void;
  clear(): void;
  /** What an excerpt is made of. */
  lines(): Promise<string[]>;
}

export class RangeBar {
  private readonly words = html('span', { class: 'range-words' });
  private range: Span | null = null;

  constructor(private readonly root: HTMLElement, private readonly name: string, private readonly actions: RangeActions) {
    const button = (label: string, title: string, act: (range: Span) => void) => {
      const node = html('button', { type: 'button', title }, label);
      node.addEventListener('click', () => this.range && act(this.range));
      return node;
    };
    const save = button('Save as recording', 'A recording of this range, with the settings and cameras in force when it begins', (range) => void this.save(range));
    root.append(this.words, button('Zoom in', 'The time line shows this range', actions.zoom), save, button('Clear', 'No range (Esc)', actions.clear));
  }

  draw(range: Span | null, moments: readonly Moment[]): void {
    this.range = range;
    set(this.root, { hidden: range === null });
    if (!range) return;
    const inside = moments.filter((m) => m.t >= range.start && m.t < range.end && m.changes);
    const reframes = inside.filter((m) => m.lane === 'reframe').length;
    say(this.words, `${clock(range.start)} to ${clock(range.end)}, ${seconds(range.end - range.start)}: ${inside.length - reframes} new pictures, ${reframes} reframes`);
  }

  private async save(range: Span): Promise<void> {
    const address = URL.createObjectURL(new Blob([excerptOf(await this.actions.lines(), range).join('\n'), '\n'], { type: 'application/jsonl' }));
    const base = this.name.replace(/^.*\//, '').replace(/\.jsonl(\.\w+)?$/, '');
    html('a', { href: address, download: `${base}-${clock(range.start).replace(':', '.')}.jsonl` }).click();
    URL.revokeObjectURL(address);
  }
}
