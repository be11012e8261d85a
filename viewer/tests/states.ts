/** States and moments from lines, as the page makes them. */

import type { Event } from '../src/events';
import { momentsOf, type Moment } from '../src/moments';
import { parseLine } from '../src/parse';
import { EMPTY, reduce, type State } from '../src/state';

export function eventsOf(lines: readonly (string | object)[]): Event[] {
  return lines.map((line) => {
    const { event, fault } = parseLine(typeof line === 'string' ? line : JSON.stringify(line));
    if (!event) throw new Error(`${fault}: ${JSON.stringify(line)}`);
    return event;
  });
}

export const stateOf = (...lines: (string | object)[]): State => eventsOf(lines).reduce(reduce, EMPTY);

export function momentsIn(lines: readonly (string | object)[]): Moment[] {
  let state = EMPTY;
  return eventsOf(lines).flatMap((event) => {
    const before = state;
    state = reduce(state, event);
    return momentsOf(event, before, state);
  });
}
