// As many wrong codewords as a symbol's error correction promises to mend, and the reader still reads it. A
// module that is flipped makes one codeword wrong, so that many modules are flipped, anywhere in the data.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { bytesOf, draw, Random, read } from './reader.mjs';

const capitals = 'ABCDEFGHIJKLMNOPQRSTUVWXYZ';

/** The symbol's rows of modules, each an array of 0 and 1. */
const modulesOf = async (symbology, data, options) =>
  (await draw(symbology, data, options, 'txt')).toString().trimEnd().split('\n').map((row) => [...row].map(Number));

/** A picture for the reader, in a quiet zone. */
function picture(rows, { width = 4, height = 4, quiet = 4 } = {}) {
  const columns = (rows[0].length + 2 * quiet) * width;
  const lines = rows.length * height + 2 * quiet * width;
  const data = new Uint8ClampedArray(4 * columns * lines).fill(255);
  rows.forEach((row, y) => row.forEach((dark, x) => {
    if (!dark) return;
    for (let line = 0; line < height; ++line) {
      const start = 4 * ((quiet * width + y * height + line) * columns + (quiet + x) * width);
      for (let pixel = 0; pixel < width; ++pixel) data.fill(0, start + 4 * pixel, start + 4 * pixel + 3);
    }
  }));
  return { data, width: columns, height: lines };
}

/** Flips `count` of the `places`, each [row, column], at random. */
function flip(rows, places, count, random) {
  const left = [...places];
  for (let flipped = 0; flipped < count; ++flipped) {
    const [[row, column]] = left.splice(random.below(left.length), 1);
    rows[row][column] ^= 1;
  }
}

/** All [row, column] from (top, left) to before (bottom, right). */
const area = (top, left, bottom, right) =>
  Array.from({ length: (bottom - top) * (right - left) }, (_, index) =>
    [top + Math.floor(index / (right - left)), left + (index % (right - left))]);

const rounds = 3;

async function readsDamaged({ what, symbology, options, length, places, wrong, format, size, readOptions, alphabet = capitals }) {
  const random = new Random(wrong);
  for (let round = 0; round < rounds; ++round) {
    const data = random.string(alphabet, length);
    const rows = await modulesOf(symbology, data, options);
    flip(rows, places(rows), wrong, random);
    const results = await read(picture(rows, size), format, readOptions);
    assert.equal(results.length, 1, `${what}: nothing is read`);
    assert.equal(bytesOf(results[0]), data, what);
  }
}

// ISO/IEC 18004, table 9: versions of a single block, and how many wrong codewords it mends.
const qr = [
  ['1', 'L', 2], ['1', 'M', 4], ['1', 'Q', 6], ['1', 'H', 8], ['2', 'L', 4], ['2', 'M', 8], ['2', 'Q', 11], ['2', 'H', 14],
  ['3', 'L', 7], ['3', 'M', 13], ['4', 'L', 10], ['5', 'L', 13],
];
test('QR Code at every level', async () => {
  for (const [version, level, wrong] of qr) {
    await readsDamaged({
      what: `${version}-${level}`, symbology: 'qr', options: ['--version', version, '--level', level], length: 7, wrong,
      // Between the finder patterns and above the alignment pattern everything is data but for the timing pattern.
      places: (rows) => area(9, 7, rows.length - 9, rows.length), format: 'QRCodeModel2',
    });
  }
});

test('rMQR at both levels', async () => {
  for (const [version, level, wrong] of [['R13x27', 'M', 4], ['R13x27', 'H', 7], ['R11x43', 'M', 6], ['R11x43', 'H', 10]]) {
    await readsDamaged({
      what: `${version}-${level}`, symbology: 'rmqr', options: ['--version', version, '--level', level], length: 4, wrong,
      places: () => area(1, 12, 6, 19), format: 'RMQRCode',
    });
  }
});

// ISO/IEC 16022, table 7: rows, columns, wrong codewords.
const dataMatrix = [
  [10, 10, 2], [12, 12, 3], [14, 14, 5], [16, 16, 6], [18, 18, 7], [20, 20, 9], [22, 22, 10], [24, 24, 12], [26, 26, 14],
  [8, 18, 3], [12, 26, 7],
];
test('Data Matrix of every size with one region', async () => {
  for (const [height, width, wrong] of dataMatrix) {
    await readsDamaged({
      what: `${height} x ${width}`, symbology: 'datamatrix', options: ['--size', `${height}x${width}`], length: 2, wrong,
      places: () => area(1, 1, height - 1, width - 1), format: 'DataMatrix', readOptions: { isPure: true },
    });
  }
});

// ISO/IEC 15438: d check codewords mend (d - 2) / 2 wrong ones. Columns 2 and 3 hold data, 17 modules each.
test('PDF417 at every level', async () => {
  for (let level = 1; level <= 8; ++level) {
    const wrong = 2 ** level - 1;
    await readsDamaged({
      what: `level ${level}`, symbology: 'pdf417', options: ['--level', String(level), '--columns', level < 7 ? '6' : '12'],
      length: 20, wrong, size: { width: 2, height: 6, quiet: 4 }, format: 'PDF417',
      // One module of each symbol character, so that no two of them are of the same one.
      places: (rows) => rows.flatMap((_, row) => area(row, 0, row + 1, level < 7 ? 6 : 12)
        .map(([y, column]) => [y, 34 + 17 * column + 8])),
    });
  }
});

// ISO/IEC 16023: 5 of the 20 codewords of the primary message, 10 of each half of the other 124 in mode 4. The
// middle of a hexagon is what the reader looks at.
test('MaxiCode in its secondary message', async () => {
  const random = new Random(1);
  for (let round = 0; round < rounds; ++round) {
    const data = random.string(capitals, 40);
    const modules = await modulesOf('maxicode', data, []);
    flip(modules, area(0, 0, 8, 30), 10, random);
    const side = 7;
    const dots = Array.from({ length: 33 * 6 + 2 }, () => new Array(31 * side).fill(0));
    modules.forEach((row, y) => row.forEach((dark, x) => {
      if (!dark) return;
      for (let line = 1; line < 7; ++line) {
        for (let dot = 1; dot < 6; ++dot) dots[y * 6 + line][x * side + (y % 2) * 3 + dot] = 1;
      }
    }));
    drawRings(dots, 14.5 * side - 1, 16 * 6 + 4);
    const results = await read(picture(dots, { width: 2, height: 2, quiet: 10 }), 'MaxiCode', { isPure: true });
    assert.equal(results.length, 1, 'nothing is read');
    assert.equal(bytesOf(results[0]), data);
  }
});

function drawRings(dots, middleX, middleY) {
  const dotsPerMillimetre = 7 / 0.88;
  dots.forEach((row, y) => row.forEach((_, x) => {
    const distance = Math.hypot(x - middleX, y - middleY) / dotsPerMillimetre;
    for (const [inner, outer] of [[0.51, 1.18], [1.86, 2.53], [3.2, 3.87]]) {
      if (distance >= inner && distance < outer) row[x] = 1;
    }
  }));
}
