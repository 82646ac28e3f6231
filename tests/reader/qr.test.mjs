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
  assert.equal(JSON.parse(result.extra).UEC, 1, `${what}: no module needs correction`);
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

test('every version and level of Micro QR, in every mode, up to the last character', async () => {
  const random = new Random(2);
  // Beyond these lengths M1 and M3 have data in their last, short codeword, of which the reader makes 0000.
  const most = { M1: 3, M2: 8, M3: 17, M4: 21 };
  for (const [version, its] of Object.entries(microLevels)) {
    for (const level of its) {
      for (let length = 1; length <= most[version]; ++length) {
        if (version === 'M4' && level === 'Q' && length > 13) continue;
        await check('micro-qr', 'MicroQRCode', random.string(digits, length), version, level);
      }
      if (version !== 'M1') await check('micro-qr', 'MicroQRCode', random.string(alphanumeric, 5), version, level);
      if (version >= 'M3') await check('micro-qr', 'MicroQRCode', random.string('abc\xfe', 5), version, level);
      if (version >= 'M3') await check('micro-qr', 'MicroQRCode', kanji[2] + kanji[3], version, level, ['--encoding', 'bytes']);
    }
  }
});

// The old form divides the short codeword as the high half of a byte. The reader spends its correction on that, and
// then has the data right.
test('M1 and M3 are read with data in the short codeword of the old form', async () => {
  const random = new Random(6);
  for (const [version, level, lengths] of [['M1', 'L', [4, 5]], ['M3', 'L', [22, 23]], ['M3', 'M', [18]]]) {
    for (const length of lengths) {
      const data = random.string(digits, length);
      const options = ['--module', '2', '--version', version, '--level', level, '--dialect', 'korvex32'];
      assert.equal(bytesOf(await readBack('micro-qr', data, 'MicroQRCode', options, { isPure: true })), data);
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

test('Kanji mode carries Shift JIS', async () => {
  const random = new Random(4);
  for (let length = 1; length < 60; length += 7) {
    const data = Array.from({ length }, () => kanji[random.below(kanji.length)]).join('');
    for (const name of ['qr', 'rmqr']) {
      assert.equal(bytesOf(await readBack(name, data, 'QRCode', ['--mode', 'kanji'], { isPure: true })), data);
    }
  }
});

test('GS1 QR is read as GS1, with separators where they belong', async () => {
  const result = await readBack('gs1-qr', '(01)09501101530003(10)AB%1(21)42', 'QRCode');
  assert.equal(bytesOf(result), '010950110153000310AB%1\x1d2142');
  assert.equal(result.contentType, 'GS1');
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
