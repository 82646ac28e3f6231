// Data Matrix through the reader, from the PNG files that people get.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { bytesOf, draw, Random, readBack } from './reader.mjs';

// Rows, columns and data codewords (ISO/IEC 16022, table 7).
const sizes = [
  [10, 10, 3], [12, 12, 5], [14, 14, 8], [16, 16, 12], [18, 18, 18], [20, 20, 22], [22, 22, 30], [24, 24, 36],
  [26, 26, 44], [32, 32, 62], [36, 36, 86], [40, 40, 114], [44, 44, 144], [48, 48, 174], [52, 52, 204], [64, 64, 280],
  [72, 72, 368], [80, 80, 456], [88, 88, 576], [96, 96, 696], [104, 104, 816], [120, 120, 1050], [132, 132, 1304],
  [144, 144, 1558], [8, 18, 5], [8, 32, 10], [12, 26, 16], [12, 36, 22], [16, 36, 32], [16, 48, 49],
];
const alphabets = {
  ASCII: 'a1;B\x05',
  C40: 'ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789 ',
  Text: 'abcdefghijklmnopqrstuvwxyz0123456789 ',
  X12: 'ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789 \r*>',
  EDIFACT: Array.from({ length: 63 }, (_, i) => String.fromCharCode(32 + i)).join('').replace(/[A-Z0-9]/g, '') + 'ABC',
  'Base 256': Array.from({ length: 256 }, (_, i) => String.fromCharCode(i)).join(''),
  digits: '0123456789',
};

async function check(data, options = [], size = undefined) {
  const what = `${options.join(' ')} of ${JSON.stringify(data)}`;
  const result = await readBack('datamatrix', data, 'DataMatrix', ['--module', '2', ...options], { isPure: true });
  assert.equal(bytesOf(result), data, what);
  assert.equal(JSON.parse(result.extra).UEC, 1, `${what}: no module needs correction`);
  if (size) assert.equal(result.version, size, what);
  return result;
}

test('every size, filled to the last codeword and with pads', async () => {
  const random = new Random(1);
  for (const [rows, columns, codewords] of sizes) {
    const size = `${rows}x${columns}`;
    await check(random.string(alphabets.digits, 2 * codewords), ['--size', size], size);
    await check(random.string(alphabets.digits, 2), ['--size', size], size);
    // A Base 256 segment that ends the symbol says 0 for its length, one codeword less above 249 bytes.
    const bytes = codewords - 2;
    await check(random.string('\x80\x99\xfe\xff', bytes), ['--size', size], size);
  }
});

test('the smallest size of its shape, up to the last digit that it holds', async () => {
  const random = new Random(3);
  for (const shape of [sizes.filter(([rows, columns]) => rows === columns), sizes.filter(([rows, columns]) => rows !== columns)]) {
    const options = shape[0][0] === shape[0][1] ? [] : ['--rect'];
    for (const [i, [rows, columns, codewords]] of shape.entries()) {
      await check(random.string(alphabets.digits, 2 * codewords), options, `${rows}x${columns}`);
      if (i > 0) await check(random.string(alphabets.digits, 2 * shape[i - 1][2] + 1), options, `${rows}x${columns}`);
    }
  }
});

test('every byte among capitals, among small letters and between stops', async () => {
  const random = new Random(4);
  for (let byte = 0; byte < 256; ++byte) {
    const character = String.fromCharCode(byte);
    for (const around of [alphabets.C40.slice(0, 26), alphabets.Text.slice(0, 26)]) {
      await check(random.string(around, 9) + character + random.string(around, 6 + (byte % 3)));
    }
    // EDIFACT's, and whatever leads out of it.
    if (byte >= 32) await check(`.=.=${character}.=.=${character}${'.='.repeat(byte % 3)}`);
  }
});

for (const [scheme, alphabet] of Object.entries(alphabets)) {
  test(`messages of ${scheme} characters of every length that ends a symbol another way`, async () => {
    const random = new Random(scheme.length);
    for (let length = 1; length <= 64; ++length) {
      await check(random.string(alphabet, length), length % 3 === 0 && length <= 45 ? ['--rect'] : []);
    }
  });
}

test('random mixes that switch schemes', async () => {
  const random = new Random(2);
  const all = Object.values(alphabets);
  for (let round = 0; round < 150; ++round) {
    let data = '';
    for (let parts = 2 + random.below(6); parts > 0; --parts) {
      data += random.string(all[random.below(all.length)], 1 + random.below(round % 10 === 0 ? 60 : 14));
    }
    await check(data);
  }
});

/** The longest start of `data` that some size takes: halving finds one that fits where the next does not. */
async function cutToFit(data, options) {
  let [fits, over] = [1, data.length + 1];
  while (over - fits > 1) {
    const length = (fits + over) >> 1;
    const drawn = await draw('datamatrix', data.slice(0, length), options).then(() => true, () => false);
    [fits, over] = drawn ? [length, over] : [fits, length];
  }
  return data.slice(0, fits);
}

test('mixed messages cut to the last character that fits, in every size', async () => {
  const random = new Random(5);
  const all = Object.values(alphabets);
  for (const [rows, columns, codewords] of sizes) {
    for (let round = 0; round < (codewords < 60 ? 5 : 1); ++round) {
      let data = '';
      while (data.length <= 2 * codewords) data += random.string(all[random.below(all.length)], 1 + random.below(14));
      const options = ['--size', `${rows}x${columns}`];
      await check(await cutToFit(data, options), options, `${rows}x${columns}`);
    }
  }
});

test('GS1 DataMatrix is read as GS1, whatever stands behind its first FNC1', async () => {
  for (const [data, expected] of [
    ['(01)09501101530003(17)261231', '010950110153000317261231'],
    ['(10)ABCDEFGHIJ(21)XYZXYZ', '10ABCDEFGHIJ\x1d21XYZXYZ'],
    ['(90)abcdefghijklmnop', '90abcdefghijklmnop'],
    ['ABCDEFGHIJKLMNOP', 'ABCDEFGHIJKLMNOP'], // against the rules of GS1, and C40 from the first character on
  ]) {
    const result = await readBack('datamatrix', data, 'DataMatrix', ['--gs1', 'lenient'], { isPure: true });
    assert.equal(bytesOf(result), expected);
    assert.equal(result.symbologyIdentifier, ']d2', data);
  }
});
