// Runs the korvex command, and reads what it makes.
import { spawnSync } from 'node:child_process';
import { mkdtempSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { inflateSync } from 'node:zlib';

export const program = process.env.KORVEX ?? fileURLToPath(new URL('../../build/bin/korvex', import.meta.url));

/** Runs the command: its exit status, standard output (bytes) and standard error (text). */
export function korvex(args, { input = '', ...options } = {}) {
  const { status, stdout, stderr, error } = spawnSync(program, args, { input, maxBuffer: 1 << 28, ...options });
  if (error) throw error;
  return { status, stdout, stderr: stderr?.toString() };
}

/** The file that a drawing makes; throws with the command's sentence when it makes none. */
export function draw(symbology, ...args) {
  const { status, stdout, stderr } = korvex(['draw', symbology, '-o', '-', ...args]);
  if (status !== 0) throw new Error(stderr);
  return stdout;
}

/** Calls `use` with a new empty folder, which goes away afterwards. */
export async function inFolder(use) {
  const folder = mkdtempSync(join(tmpdir(), 'korvex-test-'));
  try {
    return await use(folder);
  } finally {
    rmSync(folder, { recursive: true });
  }
}

function crc32(bytes) {
  let crc = ~0;
  for (const byte of bytes) {
    crc ^= byte;
    for (let bit = 0; bit < 8; ++bit) crc = (crc >>> 1) ^ (crc & 1 ? 0xedb88320 : 0);
  }
  return ~crc >>> 0;
}

/** Reads a PNG file with a palette: `at(x, y)` is a colour as rrggbbaa. Throws when the file breaks the format. */
export function readPng(file) {
  if (file.subarray(0, 8).toString('latin1') !== '\x89PNG\r\n\x1a\n') throw new Error('no PNG file');
  const chunks = {};
  for (let at = 8; at < file.length; ) {
    const length = file.readUInt32BE(at);
    const end = at + 8 + length;
    if (crc32(file.subarray(at + 4, end)) !== file.readUInt32BE(end)) throw new Error('a chunk has a wrong CRC');
    chunks[file.toString('latin1', at + 4, at + 8)] = file.subarray(at + 8, end);
    at = end + 4;
  }
  const [width, height] = [chunks.IHDR.readUInt32BE(0), chunks.IHDR.readUInt32BE(4)];
  const bits = chunks.IHDR[8];
  const rowBytes = Math.ceil((width * bits) / 8) + 1;
  const rows = inflateSync(chunks.IDAT);
  if (rows.length !== rowBytes * height) throw new Error('the picture has the wrong number of bytes');
  const at = (x, y) => {
    const entry = (rows[y * rowBytes + 1 + ((x * bits) >> 3)] >> (8 - bits - ((x * bits) & 7))) & ((1 << bits) - 1);
    const alpha = chunks.tRNS?.[entry] ?? 255;
    return chunks.PLTE.toString('hex', 3 * entry, 3 * entry + 3) + alpha.toString(16).padStart(2, '0');
  };
  return { width, height, dotsPerMetre: chunks.pHYs?.readUInt32BE(0), at };
}

/** A row of a picture as text: 1 black, 0 white, ? anything else. */
export function rowOf({ width, at }, y) {
  const letters = { '000000ff': '1', ffffffff: '0' };
  return Array.from({ length: width }, (_, x) => letters[at(x, y)] ?? '?').join('');
}

/** Every character `count` times. */
export const widened = (text, count) => [...text].map((character) => character.repeat(count)).join('');
