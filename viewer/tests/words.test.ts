import { describe, expect, test } from 'vitest';
import { momentsIn } from './states';
import { clock, seconds } from '../src/words';
import { reasonsAt } from '../src/why';
import { meeting, scene } from './meeting';

test.each([
  [0, '0 ms'], [999, '999 ms'], [1000, '1 s'], [1500, '1.5 s'], [61_000, '61 s'],
])('%d ms read %s', (ms, text) => expect(seconds(ms)).toBe(text));

test.each([
  [0, '0:00.000'], [61_007, '1:01.007'], [3_600_000, '1:00:00.000'], [-4, '0:00.000'],
])('%d ms on the clock are %s', (ms, text) => expect(clock(ms)).toBe(text));

const decision = (rest: object) => ({ t: 5, decision: { stream: 0, from: 'HEAD', to: 'GROUP', ...rest } });

describe('a decision in words says what differed, which timer, how long it waited and what ended it', () => {
  test.each([
    [{ kind: 'pending', differs: 'the kind of layout', timer: 'headTimer', waitMs: 2000, waitedMs: 0 },
      'GROUP pending', ['from HEAD to GROUP (the whole group)', 'What differs: The kind of layout.', 'The wait is 2 s (headTimer).']],
    [{ kind: 'pending', reason: "the speakers' selection", timer: 'a', waitMs: 100, waitedMs: 0 },
      'GROUP pending', ["Rule: The speakers' selection.", 'The wait is 100 ms (a).']],
    [{ kind: 'dropped', waitMs: 4000, waitedMs: 133 },
      'GROUP dropped', ['HEAD stays', 'fits HEAD again', '133 ms of 4 s']],
    [{ kind: 'dropped', differs: 'no switch is needed', waitMs: 4000, waitedMs: 133 },
      'GROUP dropped', ['No switch is needed.']],
    [{ kind: 'dropped', reason: 'held in silence', waitMs: 2000, waitedMs: 333 },
      'GROUP dropped', ['Rule: Held in silence.']],
    [{ kind: 'adopted', differs: 'the kind of layout', timer: 'x', waitMs: 4000, waitedMs: 4033 },
      'HEAD → GROUP', ['changed from HEAD (one tile per person) to GROUP', 'It waited 4.0 s of 4 s (x).']],
    [{ kind: 'adopted', to: 'HEAD', differs: 'the number of frames', waitMs: 0, waitedMs: 0 },
      'HEAD adopted', ['A new HEAD layout', 'The number of frames.', 'There is no wait']],
    [{ kind: 'reframeWait', frame: 1, headPosition: 'HEAD_ON_EDGE', timer: 'onFrameEdgeTimer', waitMs: 1500, waitedMs: 0 },
      'frame 1: on the edge of the frame', ['Frame 1', '(HEAD_ON_EDGE)', 'if this lasts', '1.5 s (onFrameEdgeTimer)']],
    [{ kind: 'reframeCancelled', frame: 0, headPosition: 'HEAD_OUTSIDE', timer: 'outsideFrameTimer', waitMs: 2000, waitedMs: 967 },
      'frame 0: reframe cancelled', ['back in place', '967 ms of 2 s']],
    [{ kind: 'reframed', frame: 2, headPosition: 'HEAD_OFF_CENTER', waitMs: 8000, waitedMs: 8000 },
      'frame 2 reframed', ['Frame 2 was cut anew: off centre']],
    [{ kind: 'feedPriority', frame: 0, waitMs: 1000 }, 'frame 0: better camera', ['another camera']],
    [{ kind: 'secondary' }, 'GROUP from the primary', ['primary device']],
    [{ kind: 'reset' }, 'layouts reset', ['anew']],
    [{ kind: 'somethingNew', differs: 'a whim', timer: 'whimTimer' }, 'somethingNew', ['"somethingNew"', 'A whim.', 'whimTimer']],
  ])('%j', (rest, title, parts) => {
    const [moment] = momentsIn([decision(rest)]);
    expect(moment?.title).toBe(title);
    for (const part of parts) expect(moment?.reason).toContain(part);
    expect(moment?.reason).not.toMatch(/undefined|null|NaN| {2}|\.\./);
  });
});

describe('why', () => {
  const pending = { t: 10, decision: { kind: 'pending', stream: 0, from: 'HEAD', to: 'GROUP' } };
  const dropped = { t: 20, decision: { kind: 'dropped', stream: 0, from: 'HEAD', to: 'GROUP' } };
  const adopted = { t: 30, decision: { kind: 'adopted', stream: 0, from: 'HEAD', to: 'GROUP' } };
  const waiting = { t: 40, decision: { kind: 'reframeWait', stream: 0, frame: 0 } };
  const reframed = { t: 50, decision: { kind: 'reframed', stream: 0, frame: 0 } };
  const people = { t: 60, topic: '/PeopleCount', payload: { face_count: 3 } };
  const later = (t: number, line: { t: number; decision: object }) => ({ ...line, t });
  test.each([
    ['before anything', [pending], 5, null, null],
    ['while something waits', [pending], 10, null, 'GROUP pending'],
    ['once it was dropped', [pending, dropped], 25, null, 'GROUP dropped'],
    ['once it was adopted, nothing waits', [pending, adopted], 35, 'HEAD → GROUP', null],
    ['a frame waits after that', [adopted, waiting], 45, 'HEAD → GROUP', 'frame 0: well placed'],
    ['a reframe ends its own wait', [adopted, waiting, reframed], 55, 'frame 0 reframed', null],
    ['a reframe leaves a layout waiting', [adopted, later(35, pending), waiting, reframed], 55, 'frame 0 reframed', 'GROUP pending'],
    ['a new layout ends the wait of a frame', [later(1, waiting), adopted], 35, 'HEAD → GROUP', null],
    ['a people count is no reason', [adopted, people], 65, 'HEAD → GROUP', null],
    ['what comes later does not count', [adopted, waiting, reframed], 42, 'HEAD → GROUP', 'frame 0: well placed'],
  ])('%s', (_name, lines, t, picture, wait) => {
    const reasons = reasonsAt(momentsIn(lines), t);
    expect([reasons.picture?.title ?? null, reasons.wait?.title ?? null]).toEqual([picture, wait]);
  });
});

test('a people count that is told again is no moment', () => {
  const count = (t: number, n: number) => ({ t, topic: '/PeopleCount', payload: { face_count: n } });
  expect(momentsIn([count(0, 2), count(10, 2), count(20, 1), count(30, 1)]).map((m) => m.title)).toEqual(['2 people', '1 person']);
});

test('among several streams each moment names its own', () => {
  const layouts = { t: 1, topic: '/PRBOut', payload: scene('GROUP', 2, 0, { streams: 2 }) };
  const moment = momentsIn([layouts, decision({ kind: 'adopted', stream: 1 })]).pop();
  expect(moment?.title).toBe('stream 1: HEAD → GROUP');
});

describe('a recording without decisions', () => {
  const titles = (lines: (string | object)[], lane: string) => momentsIn(lines).filter((m) => m.lane === lane).map((m) => m.title);
  const plain = meeting({ seconds: 13 }).filter((line) => !line.includes('"decision"'));
  test('tells layouts and reframes by the documents', () => {
    expect(titles(plain, 'layout')).toEqual(['GROUP', 'GROUP → HEAD', 'HEAD → GROUP']);
    expect(titles(plain, 'reframe')).toEqual(['reframed', 'reframed']);
    expect(titles(plain, 'wait')).toEqual(['HEAD pending', 'GROUP pending']);
  });
  test('tells a wait that came to nothing', () => {
    const timers = (t: number, pending: string[]) => ({
      t, topic: '/TimerDebug', payload: {
        currentLayout: { layouts: [{ layoutType: 'HEAD', layoutTimer: 0, frames: [] }] },
        nextLayout: { layouts: pending.map((layoutType) => ({ layoutType, layoutTimer: 900, frames: [] })) },
      },
    });
    expect(titles([timers(0, []), timers(10, ['GROUP']), timers(20, ['GROUP']), timers(30, [])], 'wait')).toEqual(['GROUP pending', 'GROUP dropped']);
  });
});
