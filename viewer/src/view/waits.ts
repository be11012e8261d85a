/** The waits: each stream's pending layout and each frame's head position, with what remains of them. */

import { frameColour } from '../palette';
import { frameNumbers, numberOf } from '../pictures';
import { remainingAt, type FrameWait, type State, type StreamWaits, type Wait } from '../state';
import { layoutWords, positionWords, seconds } from '../words';
import { each, html, say, set, variable } from './dom';

function drawBar(bar: HTMLElement, wait: Wait | null, t: number): number {
  const remaining = wait ? remainingAt(wait, t) : 0;
  const part = wait && wait.total > 0 ? Math.min(1, Math.max(0, 1 - remaining / wait.total)) : 0;
  const fill = bar.firstElementChild as HTMLElement;
  const scale = `scaleX(${part.toFixed(3)})`;
  if (fill.style.transform !== scale) fill.style.transform = scale;
  set(bar, { hidden: remaining <= 0, 'aria-valuenow': Math.round(part * 100) });
  return remaining;
}

function makeBar(): HTMLElement {
  const attributes = { class: 'bar', role: 'progressbar', 'aria-valuemin': 0, 'aria-valuemax': 100, 'aria-label': 'part of the wait that has passed' };
  return html('span', attributes, html('span', { class: 'fill' }));
}

function makeFrameRow(): HTMLElement {
  return html('li', {}, html('span', { class: 'badge' }), html('span', { class: 'what' }), makeBar(), html('span', { class: 'left' }));
}

function makeStream(): HTMLElement {
  const pending = html('div', { class: 'pending' }, html('span', { class: 'what' }), makeBar(), html('span', { class: 'left' }));
  return html('section', { class: 'waits-stream' }, html('h3'), pending, html('ul'));
}

function drawPending(node: HTMLElement, waits: StreamWaits, t: number): void {
  const [what, bar, left] = node.children as unknown as [HTMLElement, HTMLElement, HTMLElement];
  const { pending } = waits;
  set(node, { 'data-pending': pending ? pending.type : null });
  const remaining = drawBar(bar, pending, t);
  say(what, pending ? `${pending.type} pending: ${layoutWords(pending.type)}` : 'no other layout pending');
  say(left, pending ? (remaining > 0 ? seconds(remaining) : 'due') : '');
  set(left, { 'data-remaining': Math.round(remaining) });
}

export function makeWaits(root: HTMLElement): (state: State, t: number) => void {
  const list = html('div');
  const empty = html('p', { class: 'empty' }, 'No timers reported yet.');
  root.append(list, empty);
  return (state, t) => {
    empty.hidden = state.waits.length > 0;
    const numbers = frameNumbers(state);
    each(list, state.waits, makeStream, (node, waits) => {
      const [title, pending, rows] = node.children as unknown as [HTMLElement, HTMLElement, HTMLElement];
      set(node, { 'data-stream': waits.stream });
      say(title, `Stream ${waits.stream} shows ${waits.type}`);
      drawPending(pending, waits, t);
      each(rows, waits.frames, makeFrameRow, (row, frame: FrameWait) => {
        const [badge, what, bar, left] = row.children as unknown as [HTMLElement, HTMLElement, HTMLElement, HTMLElement];
        set(row, { 'data-frame': frame.index, 'data-position': frame.headPosition });
        variable(badge, '--c', frameColour(numberOf(numbers, waits.stream, frame.index)));
        say(badge, state.waits.length > 1 ? `${waits.stream}·${frame.index}` : String(frame.index));
        say(what, positionWords(frame.headPosition));
        set(what, { title: frame.headPosition });
        const remaining = drawBar(bar, frame, t);
        say(left, remaining > 0 ? seconds(remaining) : '');
        set(left, { 'data-remaining': Math.round(remaining) });
      });
    });
  };
}
