// Every linear symbology that the reader knows, over random data of all characters and of every length that changes
// something, from the PNG files that people get.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { bytesOf, draw, Random, read, readBack } from './reader.mjs';

const digits = '0123456789';
const ascii = Array.from({ length: 128 }, (_, code) => String.fromCharCode(code)).join('');
const printable = ascii.slice(32, 127);

/** The GS1 check digit that goes behind `text`. */
function checkDigit(text) {
  const sum = [...text].reverse().reduce((total, digit, i) => total + Number(digit) * (i % 2 === 0 ? 3 : 1), 0);
  return String((10 - (sum % 10)) % 10);
}
const checked = (text) => text + checkDigit(text);

/** The twelve digits of the UPC-A number that a UPC-E number of system 0 stands for, check digit included. */
function upcA(six) {
  const [d1, d2, d3, d4, d5, d6] = six;
  if (d6 <= '2') return checked(`0${d1}${d2}${d6}0000${d3}${d4}${d5}`);
  if (d6 === '3') return checked(`0${d1}${d2}${d3}00000${d4}${d5}`);
  if (d6 === '4') return checked(`0${d1}${d2}${d3}${d4}00000${d5}`);
  return checked(`0${d1}${d2}${d3}${d4}${d5}0000${d6}`);
}

/** The modules of a linear symbol, '1' a bar, without quiet zone. */
async function drawText(symbology, data) {
  const text = await draw(symbology, data, ['--quiet-zone', '0', '--no-text'], 'txt');
  return text.toString().split('\n')[0];
}

/** A picture of bars, four pixels a module, with quiet zones. */
function pictureOf(bars) {
  const [scale, quiet, height] = [4, 12, 60];
  const width = (bars.length + 2 * quiet) * scale;
  const data = new Uint8ClampedArray(width * height * 4).fill(255);
  for (let y = 0; y < height; ++y) {
    for (let x = 0; x < bars.length * scale; ++x) {
      if (bars[Math.floor(x / scale)] === '1') data.fill(0, ((y * width) + quiet * scale + x) * 4, ((y * width) + quiet * scale + x) * 4 + 3);
    }
  }
  return { data, width, height };
}

const ratios = [['--ratio', '2:1'], ['--ratio', '3:1'], ['--ratio', '5:2']];
const itself = (data) => data;
const bytes = Array.from({ length: 256 }, (_, code) => String.fromCharCode(code)).join('');
const every = (first, last) => Array.from({ length: last - first + 1 }, (_, i) => first + i);

/** `data` and the character behind it that makes the sum of values, in the order of `alphabet`, a multiple of modulus. */
function modulo(alphabet, modulus, data, sum = data) {
  const rest = [...sum].reduce((total, character) => total + alphabet.indexOf(character), 0) % modulus;
  return data + alphabet[modulus === 43 ? rest : (modulus - rest) % modulus];
}
const code39 = '0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ-. $/+%';
const codabar = '0123456789-$:/.+';
const framed = (data, random) => random.string('ABCD', 1) + data + random.string('ABCD', 1);

// Lengths are those of the data given to the command: check characters of Code 93 weigh in turns of 15 and 20, those of
// Code 128 grow, and the 2 of 5 codes go by pairs. The reader finds neither ITF of two digits nor Codabar of one
// character between start and stop.
const symbologies = [
  { name: 'codabar', format: 'Codabar', alphabet: codabar, lengths: every(2, 24), make: framed, variants: ratios },
  { name: 'codabar', format: 'Codabar', alphabet: codabar, lengths: every(2, 24), make: framed,
    expect: (data) => modulo(`${codabar}ABCD`, 16, data.slice(0, -1), data) + data.at(-1), variants: [['--check', 'mod16']] },
  { name: 'code39', format: 'Code39Std', alphabet: code39, lengths: every(1, 30), variants: ratios },
  { name: 'code39', format: 'Code39Std', alphabet: code39, lengths: every(1, 30), expect: (data) => modulo(code39, 43, data),
    variants: [['--check', 'mod43']] },
  { name: 'code93', format: 'Code93', alphabet: ascii, lengths: every(1, 50) },
  { name: 'itf', format: 'ITF', alphabet: digits, lengths: every(3, 32),
    expect: (data) => (data.length % 2 ? '0' + data : data), variants: ratios },
  { name: 'itf', format: 'ITF', alphabet: digits, lengths: every(3, 20),
    expect: (data) => checked(data.length % 2 ? data : '0' + data), variants: [['--check', 'mod10']] },
  { name: 'upca', format: 'UPCA', alphabet: digits, lengths: Array(10).fill(11), expect: (data) => '0' + checked(data) },
  { name: 'ean8', format: 'EAN8', alphabet: digits, lengths: Array(10).fill(7), expect: checked },
  { name: 'sscc18', format: 'Code128', alphabet: digits, lengths: Array(10).fill(17), expect: (data) => '00' + checked(data) },
  { name: 'code128', format: 'Code128', alphabet: ascii, lengths: every(1, 50) },
  { name: 'code128', format: 'Code128', alphabet: bytes, lengths: every(1, 50) },
  { name: 'code128', format: 'Code128', alphabet: `${digits.repeat(3)}AZaz\t\x80\xe9`, lengths: every(1, 50) },
  { name: 'code128-inband', format: 'Code128', alphabet: printable.replace('>', ''), lengths: every(1, 30) },
  { name: 'code128-inband', format: 'Code128', alphabet: digits, lengths: [2, 10, 30],
    make: (data) => '>I' + data, expect: (data) => data.slice(2) },
  { name: 'code128-segments', format: 'Code128', alphabet: digits, lengths: [8],
    make: (data) => `A02C04B02AZ${data.slice(0, 4)}bz`, expect: (data) => data.slice(9),
    variants: [['--segments', '3']] },
];

for (const { name, format, alphabet, lengths, make, expect, variants } of symbologies) {
  for (const variant of variants ?? [[]]) {
    test(`${name} ${variant.join(' ')} of ${alphabet.length} characters reads back`, async () => {
      const random = new Random(name.length * 1000 + alphabet.length);
      const left = new Set(lengths.length > 1 ? alphabet : '');
      for (const length of lengths) {
        // What has not had its turn yet comes first.
        const plain = ([...left].slice(0, length).join('') + random.string(alphabet, length)).slice(0, length);
        for (const character of plain) left.delete(character);
        const data = make ? make(plain, random) : plain;
        const result = await readBack(name, data, format, ['--module', '2', ...variant]);
        assert.equal(bytesOf(result), (expect ?? itself)(data), `${name} of ${JSON.stringify(data)}`);
      }
      assert.equal(left.size, 0, 'every character has had its turn');
    });
  }
}

test('code128 of stretches between which code sets and the upper half change', async () => {
  const random = new Random(128);
  const kinds = ['\x80\x81\x9f', '\xe0\xe9\xff', '\xc0\xd6\xa1', digits, '\x01\t\x1f', 'AZ ', 'az{'];
  for (const before of kinds) {
    for (const behind of kinds) {
      const data = random.string(before, 6) + random.string(behind, 6) + random.string(before, 1 + random.below(7));
      assert.equal(bytesOf(await readBack('code128', data, 'Code128', ['--module', '2'])), data, JSON.stringify(data));
    }
  }
});

test('every row of number sets in EAN-13, UPC-E and both add-ons', async () => {
  const random = new Random(13);
  for (const first of digits) {
    const main = first + random.string(digits, 11);
    assert.equal(bytesOf(await readBack('ean13', main, 'EAN13')), checked(main));
    // The first digit weighs 1 in the check digit, which chooses the sets; the last one says how zeros are left out.
    for (const last of digits) {
      const six = first + random.string(digits, 4) + last;
      assert.equal(bytesOf(await readBack('upce', six, 'UPCE')), '0' + upcA(six));
    }
    for (const addon of [random.string(digits, 4) + first, random.string(digits, 1) + first]) {
      const bars = (await drawText('ean13', main)) + '0'.repeat(9) + (await drawText('addon', addon));
      const [result] = await read(pictureOf(bars), 'EAN13', { eanAddOnSymbol: 'Require' });
      assert.equal(result?.text.replace(' ', ''), checked(main) + addon);
    }
  }
});

test('a supplied check digit is drawn as it is', async () => {
  for (const [name, data, format] of [
    ['ean13', '4006381333931', 'EAN13'],
    ['ean8', '96385074', 'EAN8'],
  ]) {
    assert.equal(bytesOf(await readBack(name, data, format)), data);
  }
});

test('GS1-128 is told apart from plain Code 128', async () => {
  const gs1 = await readBack('sscc18', '00000000000000000', 'Code128');
  assert.equal(gs1.symbologyIdentifier, ']C1');
  assert.equal((await readBack('code128', 'AB12', 'Code128')).symbologyIdentifier, ']C0');
  const bracketed = await readBack('code128', '(01)09501101530003(10)AB(21)7', 'Code128', ['--gs1']);
  assert.equal(bytesOf(bracketed), '010950110153000310AB\x1d217');
  assert.equal(bracketed.symbologyIdentifier, ']C1');
});
