/** A row of captioned canvases, as many as there is to show; they are reused. */

import { Picture } from './canvas';
import { html, say, set } from './dom';

interface Figure {
  figure: HTMLElement;
  canvas: Picture;
  caption: HTMLElement;
}

export class Canvases {
  readonly node: HTMLElement;
  private readonly figures: Figure[] = [];

  constructor(name: string, private readonly each: string, private readonly resized: () => void) {
    this.node = html('div', { class: `pictures ${name}` });
  }

  show(count: number): void {
    set(this.node, { 'data-count': count });
    while (this.figures.length > count) this.figures.pop()?.figure.remove();
    while (this.figures.length < count) {
      const canvas = new Picture(this.resized);
      const caption = html('figcaption');
      const figure = html('figure', { class: this.each }, canvas.node, caption);
      this.figures.push({ figure, canvas, caption });
      this.node.append(figure);
    }
  }

  at(index: number): Figure {
    return this.figures[index] as Figure;
  }

  /** The caption, which also stands for the picture where that is not seen. */
  caption(index: number, text: string): void {
    const { canvas, caption } = this.at(index);
    say(caption, text);
    canvas.describe(text);
  }
}
