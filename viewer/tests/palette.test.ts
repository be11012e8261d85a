import { describe, expect, test } from 'vitest';
import { FRAME_COLOURS, ROOM } from '../src/palette';

type Triple = [number, number, number];

const linear = (hex: string) =>
  [1, 3, 5].map((i) => {
    const v = Number.parseInt(hex.slice(i, i + 2), 16) / 255;
    return v <= 0.04045 ? v / 12.92 : ((v + 0.055) / 1.055) ** 2.4;
  }) as Triple;

const times = (m: readonly Triple[], [r, g, b]: Triple) => m.map((row) => row[0] * r + row[1] * g + row[2] * b) as Triple;

/** CIE L*a*b* under D65. */
function lab(rgb: Triple): Triple {
  const clipped = rgb.map((v) => Math.min(1, Math.max(0, v))) as Triple;
  const [x, y, z] = times([[0.4339, 0.3762, 0.1899], [0.2126, 0.7152, 0.0722], [0.0177, 0.1095, 0.8729]], clipped);
  const f = (t: number) => (t > 0.008856 ? Math.cbrt(t) : 7.787 * t + 16 / 116);
  return [116 * f(y) - 16, 500 * (f(x) - f(y)), 200 * (f(y) - f(z))];
}

/** What an eye without one kind of cones sees, in linear RGB: Machado, Oliveira and Fernandes, 2009. */
const SIGHTS: [string, Triple[]][] = [
  ['all cones', [[1, 0, 0], [0, 1, 0], [0, 0, 1]]],
  ['no long ones', [[0.152286, 1.052583, -0.204868], [0.114503, 0.786281, 0.099216], [-0.003882, -0.048116, 1.051998]]],
  ['no middle ones', [[0.367322, 0.860646, -0.227968], [0.280085, 0.672501, 0.047413], [-0.01182, 0.04294, 0.968881]]],
  ['no short ones', [[1.255528, -0.076749, -0.178779], [-0.078411, 0.930809, 0.147602], [0.004733, 0.691367, 0.3039]]],
];

describe.each(SIGHTS)('an eye with %s', (_name, matrix) => {
  test('tells the frame colours apart', () => {
    const seen = FRAME_COLOURS.map((c) => lab(times(matrix, linear(c))));
    const distances = seen.flatMap((a, i) => seen.slice(0, i).map((b) => Math.hypot(...a.map((v, k) => v - (b[k] as number)))));
    // Two is what a trained eye just sees side by side.
    expect(Math.min(...distances)).toBeGreaterThan(25);
  });
});

test.each(FRAME_COLOURS.map((c) => [c]))('%s stands out from walls and floor', (colour) => {
  const light = (hex: string) => lab(linear(hex))[0];
  for (const behind of [ROOM.wallTop, ROOM.wallLow, ROOM.floorFar, ROOM.floorNear]) expect(light(colour) - light(behind)).toBeGreaterThan(20);
});
