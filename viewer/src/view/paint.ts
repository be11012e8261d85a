/** Draws rooms, people, boxes and tiles. `unit` is image pixels per pixel of the page: lines and texts keep their size. */

import type { Box, Size } from '../events';
import { heightOf, imageOf, project, turnsOf, widthOf, type Camera, type HeadBox } from '../geometry';
import { frameColour, ROOM, TONES } from '../palette';
import { isDashed, type RoomFrame, type Tile } from '../pictures';
import type { Footage } from './footage';

type Context = CanvasRenderingContext2D;

const FLOOR = 0.72;

/** Rooms are drawn once per size and then copied. */
const rooms = new Map<string, HTMLCanvasElement>();

/** Wider or higher ones would cost more memory than they are worth. */
const WIDEST_ROOM = 1920;

function room({ width, height }: Size): HTMLCanvasElement {
  const key = `${width}x${height}`;
  const drawn = rooms.get(key);
  if (drawn) return drawn;
  // Sizes come from messages: forget old ones rather than keep whatever comes.
  if (rooms.size >= 8) rooms.clear();
  const canvas = document.createElement('canvas');
  const scale = Math.min(1, WIDEST_ROOM / Math.max(width, height));
  canvas.width = Math.max(1, Math.round(width * scale));
  canvas.height = Math.max(1, Math.round(height * scale));
  const g = canvas.getContext('2d', { alpha: false }) as Context;
  g.scale(scale, scale);
  const wall = g.createLinearGradient(0, 0, 0, height);
  const stops: [number, string][] = [[0, ROOM.wallTop], [FLOOR, ROOM.wallLow], [FLOOR, ROOM.floorFar], [1, ROOM.floorNear]];
  for (const [at, colour] of stops) wall.addColorStop(at, colour);
  g.fillStyle = wall;
  g.fillRect(0, 0, width, height);
  g.beginPath();
  for (let i = 1; i < 8; i += 1) line(g, (width * i) / 8, 0, (width * i) / 8, height * FLOOR);
  for (let i = 1; i < 4; i += 1) line(g, 0, (height * FLOOR * i) / 4, width, (height * FLOOR * i) / 4);
  for (let i = -8; i <= 16; i += 1) line(g, (width * i) / 8, height, width / 2 + (width * (i - 4)) / 16, height * FLOOR);
  g.strokeStyle = ROOM.lines;
  g.lineWidth = 2;
  g.stroke();
  rooms.set(key, canvas);
  return canvas;
}

function line(g: Context, x0: number, y0: number, x1: number, y1: number): void {
  g.moveTo(x0, y0);
  g.lineTo(x1, y1);
}

/** The middle of a video counts as the camera's image. */
function paintVideo(g: Context, video: HTMLVideoElement, { width, height }: Size, left: number): void {
  const scale = Math.min(video.videoWidth / width, video.videoHeight / height);
  const [w, h] = [width * scale, height * scale];
  g.drawImage(video, (video.videoWidth - w) / 2, (video.videoHeight - h) / 2, w, h, left, 0, width, height);
}

/** What a camera saw within `part` of its image; a room with figures when that is not at hand. */
export function paintImage(g: Context, camera: Camera, part: Box, heads: readonly HeadBox[], footage: Footage, unit: number): void {
  const video = footage.of(camera.id);
  for (const { left } of turnsOf(imageOf(camera), camera.size, part)) {
    if (video) paintVideo(g, video, camera.size, left);
    else g.drawImage(room(camera.size), left, 0, camera.size.width, camera.size.height);
  }
  if (!video) paintFigures(g, heads, unit);
}

/** Who is nearer, lower in the picture, stands in front. */
function paintFigures(g: Context, heads: readonly HeadBox[], unit: number): void {
  const order = [...heads].sort((a, b) => a.bottom - b.bottom || a.person - b.person);
  for (const head of order) {
    const w = Math.max(1, widthOf(head));
    const h = Math.max(1, heightOf(head));
    const x = head.left + w / 2;
    const [skin, cloth] = TONES[Math.abs(head.person) % TONES.length] as (typeof TONES)[number];
    ellipse(g, x, head.bottom + h * 0.78, w * 1.05, h * 0.82, cloth, ROOM.outline, unit);
    ellipse(g, x, head.top + h / 2, w * 0.4, h * 0.48, skin, head.speaks ? ROOM.text : ROOM.outline, head.speaks ? unit * 2.5 : unit);
  }
}

function ellipse(g: Context, x: number, y: number, rx: number, ry: number, fill: string, edge: string, width: number): void {
  g.beginPath();
  g.ellipse(x, y, rx, ry, 0, 0, 2 * Math.PI);
  g.fillStyle = fill;
  g.fill();
  g.strokeStyle = edge;
  g.lineWidth = width;
  g.stroke();
}

function text(g: Context, words: string, x: number, y: number, pixels: number, colour: string, align: CanvasTextAlign, unit: number): void {
  g.font = `650 ${pixels * unit}px system-ui, 'DejaVu Sans', sans-serif`;
  g.textAlign = align;
  g.textBaseline = 'alphabetic';
  g.lineJoin = 'round';
  g.lineWidth = 3.2 * unit;
  g.strokeStyle = ROOM.outline;
  g.strokeText(words, x, y);
  g.fillStyle = colour;
  g.fillText(words, x, y);
}

function rectangle(g: Context, b: Box, colour: string, width: number, dashes: number[] = []): void {
  g.strokeStyle = colour;
  g.lineWidth = width;
  g.setLineDash(dashes);
  g.strokeRect(b.left, b.top, widthOf(b), heightOf(b));
  g.setLineDash([]);
}

const headText = (head: HeadBox, best: boolean): string => `${head.person}${best && head.best ? '★' : ''}${head.speaks ? ' )))' : ''}`;

export function paintHeads(g: Context, heads: readonly HeadBox[], unit: number): void {
  for (const head of heads) {
    g.globalAlpha = head.speaks ? 1 : head.best ? 0.95 : 0.5;
    rectangle(g, head, ROOM.text, unit * (head.speaks ? 3 : head.best ? 1.5 : 1));
    g.globalAlpha = 1;
  }
}

export function paintNames(g: Context, heads: readonly HeadBox[], unit: number): void {
  for (const head of heads) text(g, headText(head, true), (head.left + head.right) / 2, head.top - 4 * unit, 12, ROOM.text, 'center', unit);
}

/** The cut is a thick line; the detection boundary is dashed, the off-centre bound dotted. */
export function paintFrames(g: Context, frames: readonly RoomFrame[], unit: number): void {
  for (const frame of frames) {
    const colour = frameColour(frame.number);
    const dashes = (...lengths: number[]) => lengths.map((l) => l * unit);
    if (frame.boundary) rectangle(g, frame.boundary, colour, 1.7 * unit, dashes(9, 6));
    g.lineCap = 'round';
    if (frame.offCentre) rectangle(g, frame.offCentre, colour, 2 * unit, dashes(0.5, 5));
    g.lineCap = 'butt';
    // A dark edge on both sides lets it stand out from whatever is behind.
    rectangle(g, frame.source, ROOM.outline, 5 * unit);
    rectangle(g, frame.source, colour, 3 * unit, isDashed(frame.number) ? dashes(22, 4) : []);
  }
  for (const frame of frames) {
    // A cut may begin outside of the image; its number stays inside.
    const x = Math.max(frame.source.left, 0) + 6 * unit;
    const y = Math.max(frame.source.top, 0) + 18 * unit;
    text(g, frame.label, x, y, 15, frameColour(frame.number), 'left', unit);
  }
}

/** A part of a camera's picture, cut and scaled to its place in the output. */
function paintTile(g: Context, { camera, source, dest, figures, heads, number }: Tile, footage: Footage, unit: number): void {
  const x = widthOf(dest) / widthOf(source);
  const y = heightOf(dest) / heightOf(source);
  g.save();
  g.beginPath();
  g.rect(dest.left, dest.top, widthOf(dest), heightOf(dest));
  g.clip();
  g.save();
  g.translate(dest.left - source.left * x, dest.top - source.top * y);
  g.scale(x, y);
  paintImage(g, camera, source, figures, footage, unit / Math.min(x, y));
  g.restore();
  for (const head of heads) {
    const placed = project(head, source, dest);
    const above = Math.max(placed.top - 4 * unit, dest.top + 14 * unit);
    text(g, headText(head, false), (placed.left + placed.right) / 2, above, 12, ROOM.text, 'center', unit);
  }
  // Twice as wide as seen, half of it is cut off: so tiles side by side keep their own colours.
  rectangle(g, dest, frameColour(number), 6 * unit, isDashed(number) ? [22 * unit, 4 * unit] : []);
  g.restore();
}

export function paintTiles(g: Context, size: Size, tiles: readonly Tile[], footage: Footage, unit: number): void {
  g.fillStyle = '#000000';
  g.fillRect(0, 0, size.width, size.height);
  for (const tile of tiles) paintTile(g, tile, footage, unit);
}
