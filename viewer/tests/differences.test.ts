import { describe, expect, test } from 'vitest';
import { differencesOf, nextDifference, pictureOf } from '../src/differences';
import { scene } from './meeting';
import { stateOf } from './states';

const put = (t: number, type: string, people: number) => ({ t, topic: '/PRBOut', payload: scene(type, people, 0, { sceneNumber: t, frameNumber: t }) });
const course = (...pictures: [t: number, type: string, people: number][]) => pictures.map((p) => pictureOf(stateOf(put(...p))));

describe('where two courses differ', () => {
  test.each([
    ['the same picture, sent at other times', course([0, 'HEAD', 2]), course([0, 'HEAD', 2], [700, 'HEAD', 2]), []],
    ['a change that comes later', course([0, 'HEAD', 2], [400, 'GROUP', 2]), course([0, 'HEAD', 2], [900, 'GROUP', 2]), [[400, 900, 'GROUP beside HEAD']]],
    ['so soon after that nobody sees it', course([0, 'HEAD', 2], [400, 'GROUP', 2]), course([0, 'HEAD', 2], [480, 'GROUP', 2]), []],
    ['another cut', course([0, 'HEAD', 2]), course([0, 'HEAD', 3]), [[0, 2000, 'HEAD, cut in another way']]],
    ['nothing on one side', course([500, 'HEAD', 2]), [], [[500, 2000, 'HEAD beside nothing']]],
    [
      'two kinds in a row are two differences',
      course([0, 'HEAD', 2], [600, 'GROUP', 2], [1200, 'HEAD', 2]),
      course([0, 'HEAD', 3], [1200, 'HEAD', 2]),
      [[0, 600, 'HEAD, cut in another way'], [600, 1200, 'GROUP beside HEAD']],
    ],
  ])('%s', (_name, a, b, expected) => {
    const found = differencesOf(a, b, 2000);
    expect(found.map((d) => [d.start, d.end, d.words])).toEqual(expected);
  });

  test('are stepped through in both directions', () => {
    const found = [{ start: 100, end: 300, words: '' }, { start: 500, end: 900, words: '' }];
    const steps = [0, 100, 600].map((t) => [nextDifference(found, t, 1)?.start, nextDifference(found, t, -1)?.start]);
    expect(steps).toEqual([[100, undefined], [500, undefined], [undefined, 500]]);
  });
});
