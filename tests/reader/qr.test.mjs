// The QR Code family through the reader, from the PNG files that people get: every version and level that it knows.
import assert from 'node:assert/strict';
import { mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { execFileSync } from 'node:child_process';
import { test } from 'node:test';
import { bytesOf, korvex, Random, read, readBack } from './reader.mjs';

const digits = '0123456789';
const alphanumeric = `${digits}ABCDEFGHIJKLMNOPQRSTUVWXYZ $%*+-./:`;
const bytes = Array.from({ length: 256 }, (_, code) => String.fromCharCode(code)).join('');
const kanji = ['8140', '889f', '93fa', '967b', '8cea', '9ffc', 'e040', 'ea9e'].map((pair) => Buffer.from(pair, 'hex').toString('latin1'));

const levels = ['L', 'M', 'Q', 'H'];
const microLevels = { M1: ['L'], M2: ['L', 'M'], M3: ['L', 'M'], M4: ['L', 'M', 'Q'] };
const rmqrVersions = [7, 9, 11, 13, 15, 17].flatMap((rows) =>
  [27, 43, 59, 77, 99, 139].filter((columns) => columns > 27 || rows === 11 || rows === 13).map((columns) => `R${rows}x${columns}`));

const pureModel1 = 7;  // the reader finds smaller ones only where it looks for finder patterns, larger ones only without

/** Data of several modes, short enough for `version`. */
function mixture(random, longest) {
  const parts = [() => random.string(digits, 7), () => random.string(alphanumeric, 5), () => random.string(bytes, 3)];
  let data = '';
  while (data.length < longest) data += parts[random.below(parts.length)]();
  return data.slice(0, longest);
}

/** Draws in one version and level, and checks that the reader finds these, the data, and nothing to correct. */
async function check(name, format, data, version, level, options = []) {
  const what = `${name} ${version}-${level} of ${JSON.stringify(data)}`;
  const result = await readBack(name, data, format, ['--module', '2', '--version', version, '--level', level, ...options], { isPure: true });
  assert.equal(bytesOf(result), data, what);
  assert.equal(result.version, version, what);
  assert.equal(result.ecLevel, level, what);
  // The reader takes the short codeword of M1 and M3 for a whole one, of whomever's symbols, and corrects that.
  if (!/^M[13]$/.test(version)) assert.equal(JSON.parse(result.extra).UEC, 1, `${what}: no module needs correction`);
  return result;
}

for (const level of levels) {
  test(`every version of Model 2 at level ${level}`, async () => {
    const random = new Random(level.charCodeAt(0));
    for (let version = 1; version <= 40; ++version) {
      const result = await check('qr', 'QRCode', mixture(random, 4 + Math.floor(version ** 1.7 / 2) * (level === 'L' ? 3 : 1)), `${version}`, level);
      assert.equal(result.symbologyIdentifier, ']Q1');
    }
  });
}

test('Model 1 up to version 12 at every level', async () => {
  const random = new Random(1);
  for (let version = 1; version <= 12; ++version) {
    for (const level of levels) {
      const data = mixture(random, 3 + version * 4);
      const result = await readBack('qr-model1', data, 'QRCode',
        ['--module', '2', '--version', `${version}`, '--level', level], { isPure: version >= pureModel1 });
      assert.equal(bytesOf(result), data, `Model 1 ${version}-${level}`);
      assert.equal(result.symbologyIdentifier, ']Q0');
    }
  }
});

test('every version and level of Micro QR, in every mode, at every length', async () => {
  const random = new Random(2);
  // Most characters: digits, alphanumeric, bytes, Kanji (ISO/IEC 18004:2015, Table 7).
  const most = {
    'M1-L': [5, 0, 0, 0], 'M2-L': [10, 6, 0, 0], 'M2-M': [8, 5, 0, 0], 'M3-L': [23, 14, 9, 6], 'M3-M': [18, 11, 7, 4],
    'M4-L': [35, 21, 15, 9], 'M4-M': [30, 18, 13, 8], 'M4-Q': [21, 13, 9, 5],
  };
  const modes = [
    (length) => [random.string(digits, length), []],
    (length) => [random.string(alphanumeric, length), []],
    (length) => [random.string('abc\xfe', length), []],
    (length) => [Array.from({ length }, () => kanji[random.below(kanji.length)]).join(''), ['--encoding', 'bytes']],
  ];
  for (const [name, lengths] of Object.entries(most)) {
    const [version, level] = name.split('-');
    for (const [mode, data] of modes.entries()) {
      for (let length = 1; length <= lengths[mode]; ++length) {
        const [text, options] = data(length);
        await check('micro-qr', 'MicroQRCode', text, version, level, options);
      }
      if (lengths[mode] === 0) continue;
      const [text, options] = data(lengths[mode] + 1);
      await assert.rejects(check('micro-qr', 'MicroQRCode', text, version, level, options), /micro-qr: korvex: /, `${name} ${text}`);
    }
  }
});

test('every version and level of rMQR', async () => {
  const random = new Random(3);
  assert.equal(rmqrVersions.length, 32);
  for (const version of rmqrVersions) {
    for (const level of ['M', 'H']) {
      await check('rmqr', 'RMQRCode', random.string(digits, version === 'R7x43' && level === 'H' ? 4 : 6), version, level);
      const [, rows, columns] = version.match(/R(\d+)x(\d+)/).map(Number);
      const room = Math.max(1, Math.floor((rows * columns - 260) / (level === 'M' ? 20 : 45)));
      if (rows * columns > 600) await check('rmqr', 'RMQRCode', mixture(random, room), version, level);
    }
  }
});

test('every length in every mode, in the version that comes out', async () => {
  const random = new Random(4);
  const contents = [
    (length) => [random.string(digits, length), []],
    (length) => [random.string(alphanumeric, length), []],
    (length) => [random.string(bytes, length), []],
    (length) => [Array.from({ length }, () => kanji[random.below(kanji.length)]).join(''), ['--mode', 'kanji']],
    (length) => [mixture(random, length), []],
  ];
  for (const content of contents) {
    for (let length = 1; length < 45; length += 1 + Math.floor(length / 20)) {
      for (const name of ['qr', 'rmqr']) {
        const [data, options] = content(length);
        const level = name === 'qr' ? levels[length % 4] : 'MH'[length % 2];
        const result = await readBack(name, data, 'QRCode', ['--module', '2', '--level', level, ...options], { isPure: true });
        assert.equal(bytesOf(result), data, `${name} ${JSON.stringify(data)}`);
        assert.equal(JSON.parse(result.extra).UEC, 1, `${name} ${JSON.stringify(data)}`);
      }
    }
  }
});

test('GS1 QR is read as GS1, with separators where they belong', async () => {
  const random = new Random(7);
  const texts = ['(01)09501101530003(10)AB%1(21)42', '(10)%%%(21)%', '(10)AB%(21)a%b(91)%'];
  for (let round = 0; round < 40; ++round) {
    const fields = ['10', '21', '91', '92'].slice(0, 1 + random.below(4));
    const alphabets = [digits, 'ABC%', 'A%', 'ab%', `${digits}${digits}%A-`];
    texts.push(fields.map((ai) => `(${ai})${random.string(alphabets[random.below(5)], 1 + random.below(20))}`).join(''));
  }
  for (const text of texts) {
    const result = await readBack('gs1-qr', text, 'QRCode', ['--level', 'L']);
    const plain = text.replace('(01)', '01').replace(/^\((\d\d)\)/, '$1').replace('0003(10)', '000310').replace(/\((\d\d)\)/g, '\x1d$1');
    assert.equal(bytesOf(result), plain, text);
    assert.equal(result.contentType, 'GS1');
    assert.equal(JSON.parse(result.extra).UEC, 1, text);
  }
});

test('a series has the right numbers and parity, and only the public text is read of a symbol with a private one', async () => {
  const folder = mkdtempSync(join(tmpdir(), 'korvex-'));
  try {
    const text = new Random(5).string(alphanumeric, 400);
    const parity = [...text].reduce((all, c) => all ^ c.charCodeAt(0), 0);
    for (const [name, count] of [['qr', 2], ['qr', 7], ['qr', 16], ['qr-model1', 5]]) {
      const file = join(folder, `${name}.png`);
      execFileSync(korvex, ['draw', name, text, '--symbols', `${count}`, '-o', file]);
      let all = '';
      for (let number = 1; number <= count; ++number) {
        const [part] = await read(readFileSync(join(folder, `${name}-${number}.png`)), 'QRCode');
        assert.deepEqual([part.sequenceIndex, part.sequenceSize, part.sequenceId], [number - 1, count, `${parity}`]);
        all += bytesOf(part);
      }
      assert.equal(all, text);
    }
  } finally {
    rmSync(folder, { recursive: true });
  }
  for (const name of ['qr', 'qr-model1']) {
    const result = await readBack(name, 'public 123', 'QRCode',
      ['--private', 'what nobody else reads', '--key', '0123456789ABCDEF']);
    assert.equal(bytesOf(result), 'public 123');
  }
});
