// PDF417, truncated PDF417 and MicroPDF417 through the reader, from the PNG files that people get.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { bytesOf, draw, Random, readBack } from './reader.mjs';

const alphabets = [
  'ABCDEFGHIJKLMNOPQRSTUVWXYZ ',
  'abcdefghijklmnopqrstuvwxyz ',
  '0123456789',
  '0123456789&\r\t,:#-.$/+%*=^ ',
  ';<>@[\\]_`~!\r\t,:\n-.$/"|*()?{}\'',
  Array.from({ length: 256 }, (_, i) => String.fromCharCode(i)).join(''),
];
// Columns x rows (ISO/IEC 24728), and the data codewords that stay beside the check codewords.
const microSizes = [
  [1, 11, 4], [1, 14, 7], [1, 17, 10], [1, 20, 12], [1, 24, 16], [1, 28, 20], [2, 8, 8], [2, 11, 13], [2, 14, 19],
  [2, 17, 24], [2, 20, 29], [2, 23, 33], [2, 26, 37], [3, 6, 6], [3, 8, 10], [3, 10, 14], [3, 12, 18], [3, 15, 24],
  [3, 20, 34], [3, 26, 46], [3, 32, 58], [3, 38, 70], [3, 44, 82], [4, 4, 8], [4, 6, 12], [4, 8, 18], [4, 10, 24],
  [4, 12, 30], [4, 15, 39], [4, 20, 54], [4, 26, 72], [4, 32, 90], [4, 38, 108], [4, 44, 126],
];

/** Data in stretches of one kind each, so that compactions and sub-modes change. */
function mixture(random, length) {
  let data = '';
  while (data.length < length) data += random.string(alphabets[random.below(alphabets.length)], 1 + random.below(30));
  return data.slice(0, length);
}

async function check(name, data, options = []) {
  const result = await readBack(name, data, name === 'micropdf417' ? 'MicroPDF417' : 'PDF417',
    ['--module', name === 'micropdf417' ? '4' : '2', ...options], { isPure: true });
  assert.equal(bytesOf(result), data, `${name} ${options.join(' ')} of ${JSON.stringify(data)}`);
  assert.equal(JSON.parse(result.extra).UEC, 1, 'no codeword needs correction');
}

test('all nine levels, and the columns and rows that there are', async () => {
  const random = new Random(1);
  for (let level = 0; level <= 8; ++level) {
    for (const name of ['pdf417', 'pdf417-truncated']) {
      await check(name, mixture(random, 20 + random.below(180)), ['--level', `${level}`]);
    }
  }
  // Rows in threes tell of rows, of level and rest, of columns: every number of each.
  for (let rows = 3; rows <= 90; ++rows) {
    const columns = Math.min(1 + ((rows * 7) % 30), Math.floor(928 / rows));
    const data = random.string(alphabets[0], Math.min(100, rows * columns - 5));
    await check(rows % 2 ? 'pdf417' : 'pdf417-truncated', data, ['--columns', `${columns}`, '--rows', `${rows}`, '--level', '1']);
  }
});

test('random data of every mix of compactions', async () => {
  const random = new Random(2);
  for (let round = 0; round < 60; ++round) await check('pdf417', mixture(random, 1 + random.below(round % 6 === 0 ? 700 : 120)));
  for (let length = 1; length < 60; ++length) {
    await check('pdf417', random.string(alphabets[length % alphabets.length], length), ['--byte-only'].slice(length % 2));
  }
});

test('symbols full to the last codeword', async () => {
  const random = new Random(3);
  // 30 columns and 16 rows have 480 codewords: 8 check codewords at level 2, the length descriptor, 471 of data.
  await check('pdf417', random.string(alphabets[0], 942), ['--columns', '30', '--rows', '16']);
  // A latch and five codewords for six bytes: 470 codewords are 564 bytes.
  await check('pdf417', random.string('\x80\x90\xa0\xff', 564), ['--columns', '30', '--rows', '16']);
  // The largest symbol there is.
  await check('pdf417', random.string(alphabets[0], 1850), ['--level', '0']);
});

test('all sizes of MicroPDF417, full and with pads', async () => {
  const random = new Random(4);
  assert.equal(microSizes.length, 34);
  for (const [columns, rows, codewords] of microSizes) {
    const size = ['--columns', `${columns}`, '--rows', `${rows}`, '--row-height', '4'];
    // A latch to byte compaction, then five codewords for six bytes and one for each byte left over.
    const bytes = Math.floor((codewords - 1) / 5) * 6 + ((codewords - 1) % 5);
    await check('micropdf417', random.string('\x80\x90\xa0\xff', bytes), size);
    await check('micropdf417', mixture(random, 1 + Math.floor(codewords / 4)), size);
    // Digits and text with one pad, and the smallest size for this and for one byte more.
    await check('micropdf417', random.string(alphabets[0], 2 * (codewords - 2)), size);
    const free = ['--columns', `${columns}`, '--row-height', '4'];
    await check('micropdf417', random.string('\x80\x90\xa0\xff', bytes), free);
    if (rows !== [28, 26, 44, 44][columns - 1]) await check('micropdf417', random.string('\x80\x90\xa0\xff', bytes + 1), free);
  }
});

test('every length of digits, text and bytes in MicroPDF417', async () => {
  const random = new Random(5);
  for (let length = 1; length <= 60; ++length) {
    for (const alphabet of [alphabets[2], alphabets[length % 2 ? 3 : 4], alphabets[5]]) {
      await check('micropdf417', random.string(alphabet, length), ['--row-height', '4']);
    }
  }
});

/** As much of `data` as there is room for: a refusal says how many bytes that is. */
async function cutToFit(name, data, options) {
  for (;;) {
    const refusal = await draw(name, data, options).then(() => null, (error) => error.message);
    if (refusal === null) return data;
    const fit = Number(/the first (\d+) fit/.exec(refusal)?.[1]);
    data = data.slice(0, Math.min(fit, data.length - 1));
  }
}

test('mixed messages cut to the last byte that fits', async () => {
  const random = new Random(6);
  const sizes = microSizes.map(([columns, rows]) => ['micropdf417', ['--columns', `${columns}`, '--rows', `${rows}`, '--row-height', '4']]);
  for (let level = 0; level <= 8; level += 4) sizes.push(['pdf417', ['--level', `${level}`]]);
  for (let rows = 5; rows < 30; ++rows) sizes.push(['pdf417-truncated', ['--columns', '2', '--rows', `${rows}`, '--level', '1']]);
  for (const [name, options] of sizes) await check(name, await cutToFit(name, mixture(random, 1200), options), options);
});
