/** One picture on a canvas that follows its size on screen. Whoever draws counts in pixels of the image. */

import type { Size } from '../events';
import { html, set } from './dom';

/** Finer than two device pixels per pixel nobody sees. */
const FINEST = 2;

export type Draw = (g: CanvasRenderingContext2D, unit: number) => void;

export class Picture {
  readonly node = html('canvas', { class: 'picture', role: 'img' });
  private readonly g = this.node.getContext('2d', { alpha: false }) as CanvasRenderingContext2D;
  private width = 0;
  private aspect = '';

  constructor(resized: () => void) {
    new ResizeObserver(([entry]) => {
      this.width = entry?.contentRect.width ?? 0;
      resized();
    }).observe(this.node);
  }

  /** `draw` is told how many image pixels are one pixel of the page. */
  paint(size: Size, draw: Draw): void {
    const aspect = (size.width / size.height).toFixed(4);
    if (aspect !== this.aspect) {
      this.aspect = aspect;
      this.node.style.setProperty('--aspect', aspect);
    }
    if (this.width === 0) return;
    const width = Math.round(this.width * Math.min(FINEST, devicePixelRatio || 1));
    const height = Math.round((width * size.height) / size.width);
    if (this.node.width !== width || this.node.height !== height) {
      this.node.width = width;
      this.node.height = height;
    }
    const { g } = this;
    g.setTransform(width / size.width, 0, 0, height / size.height, 0, 0);
    g.globalAlpha = 1;
    draw(g, size.width / this.width);
  }

  /** The picture in words, for who does not see it. */
  describe(text: string): void {
    set(this.node, { 'aria-label': text });
  }
}
