// The QR Code family through the reader, from the PNG files that people get: every version and level that it knows.
import assert from 'node:assert/strict';
import { mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { execFileSync } from 'node:child_process';
import { test } from 'node:test';
import { bytesOf, draw, korvex, Random, read, readBack } from './reader.mjs';

const digits = '0123456789';
const alphanumeric = `${digits}ABCDEFGHIJKLMNOPQRSTUVWXYZ $%*+-./:`;
const bytes = Array.from({ length: 256 }, (_, code) => String.fromCharCode(code)).join('');

/** A random Shift JIS pair that Kanji mode packs: 8140 to 9FFC, E040 to EBBF. */
function kanji(random) {
  const lead = 0x81 + random.below(43);
  const code = lead > 0x9f ? lead + 0x40 : lead;
  const trail = 0x40 + random.below(code === 0xeb ? 127 : 188);
  return String.fromCharCode(code, trail < 0x7f ? trail : trail + 1);
}

const some = (random, length, one) => Array.from({ length }, () => one(random)).join('');
/** The modes in the order of their count indicators: random characters, and how many fit in some bits. */
const modes = [
  { name: 'numeric', make: (random, n) => random.string(digits, n), fit: (bits) => 3 * Math.floor(bits / 10) + [0, 0, 0, 0, 1, 1, 1, 2, 2, 2][bits % 10] },
  { name: 'alphanumeric', make: (random, n) => random.string(alphanumeric, n), fit: (bits) => 2 * Math.floor(bits / 11) + (bits % 11 < 6 ? 0 : 1) },
  { name: 'byte', make: (random, n) => random.string(bytes, n), fit: (bits) => Math.floor(bits / 8) },
  { name: 'kanji', make: (random, n) => some(random, n, kanji), fit: (bits) => Math.floor(bits / 13) },
];

// ISO/IEC 18004:2015, Table 7: data codewords of versions 1 to 40.
const dataCodewords = {
  L: [
    19, 34, 55, 80, 108, 136, 156, 194, 232, 274, 324, 370, 428, 461, 523, 589, 647, 721, 795, 861, 932, 1006, 1094,
    1174, 1276, 1370, 1468, 1531, 1631, 1735, 1843, 1955, 2071, 2191, 2306, 2434, 2566, 2702, 2812, 2956,
  ],
  M: [
    16, 28, 44, 64, 86, 108, 124, 154, 182, 216, 254, 290, 334, 365, 415, 453, 507, 563, 627, 669, 714, 782, 860,
    914, 1000, 1062, 1128, 1193, 1267, 1373, 1455, 1541, 1631, 1725, 1812, 1914, 1992, 2102, 2216, 2334,
  ],
  Q: [
    13, 22, 34, 48, 62, 76, 88, 110, 132, 154, 180, 206, 244, 261, 295, 325, 367, 397, 445, 485, 512, 568, 614, 664,
    718, 754, 808, 871, 911, 985, 1033, 1115, 1171, 1231, 1286, 1354, 1426, 1502, 1582, 1666,
  ],
  H: [
    9, 16, 26, 36, 46, 60, 66, 86, 100, 122, 140, 158, 180, 197, 223, 253, 283, 313, 341, 385, 406, 442, 464, 514,
    538, 596, 628, 661, 701, 745, 793, 845, 901, 961, 986, 1054, 1096, 1142, 1222, 1276,
  ],
};
const countBits = (version) => (version < 10 ? [10, 9, 8, 8] : version < 27 ? [12, 11, 16, 10] : [14, 13, 16, 12]);
// The same table: data bits of a level, and the bits of mode and count indicators, which M1 and M2 have for few modes.
const micro = {
  M1: { bits: { L: 20 }, header: [3] },
  M2: { bits: { L: 40, M: 32 }, header: [5, 4] },
  M3: { bits: { L: 84, M: 68 }, header: [7, 6, 6, 5] },
  M4: { bits: { L: 128, M: 112, Q: 80 }, header: [9, 8, 8, 7] },
};
// ISO/IEC 23941:2022, Tables 6 and 3: data codewords of levels M and H, bits of the count indicators.
const rmqr = `
  R7x43 6 3 4332, R7x59 12 7 5543, R7x77 20 10 6554, R7x99 28 14 7655, R7x139 44 24 7665, R9x43 12 7 5543,
  R9x59 21 11 6554, R9x77 31 17 7655, R9x99 42 22 7665, R9x139 63 33 8766, R11x27 7 5 4432, R11x43 19 11 6554,
  R11x59 31 15 7655, R11x77 43 23 7665, R11x99 57 29 8766, R11x139 84 42 8776, R13x27 12 7 5543, R13x43 27 13 6655,
  R13x59 38 20 7665, R13x77 53 29 7766, R13x99 73 35 8776, R13x139 106 54 8877, R15x43 33 15 7665, R15x59 48 26 7765,
  R15x77 67 31 8776, R15x99 88 48 8776, R15x139 127 69 9877, R17x43 39 21 7665, R17x59 56 28 8766, R17x77 78 38 8776,
  R17x99 100 56 8876, R17x139 152 76 9887`.trim().split(/,\s+/).map((row) => row.split(' '));

/** Data of several modes in random turn, `longest` bytes long or a little less. */
function mixture(random, longest) {
  let data = '';
  for (;;) {
    const next = modes[random.below(4)].make(random, 1 + random.below(9));
    if (data.length + next.length > longest) return data === '' ? '7' : data;
    data += next;
  }
}

/** Draws in one version and level, and checks that the reader finds these, the data, and nothing to correct. */
async function check(name, data, version, level, { options = [], uec = [1], identifier = ']Q1' } = {}) {
  const what = `${name} ${version}-${level} ${options.join(' ')} of ${JSON.stringify(data)}`;
  const given = ['--module', '2', '--version', version, '--level', level, ...options];
  const result = await readBack(name, data, 'QRCode', given, { isPure: true });
  assert.equal(bytesOf(result), data, what);
  assert.equal(result.version, version, what);
  assert.equal(result.ecLevel, level, what);
  assert.equal(result.symbologyIdentifier, identifier, what);
  assert.ok(uec.includes(JSON.parse(result.extra).UEC), `${what}: UEC ${JSON.parse(result.extra).UEC}`);
}

/** Reads `lengths` of the data that `room` bits hold in a mode, counted from the longest down; one more is refused. */
async function checkMode(name, random, mode, room, version, level, lengths, settings = {}) {
  const longest = mode.fit(room);
  const options = ['--mode', mode.name];
  for (const length of new Set(lengths.map((less) => longest - less).filter((length) => length > 0))) {
    await check(name, mode.make(random, length), version, level, { ...settings(length), options });
  }
  await assert.rejects(draw(name, mode.make(random, longest + 1), ['--version', version, '--level', level, ...options]),
    /does not fit|does not hold the data/, `${name} ${version}-${level}: ${longest + 1} in ${mode.name} mode`);
}

// A symbol of each mode that fills it or leaves one character free, with a terminator of four bits or less.
for (const level of 'LMQH') {
  test(`every version of Model 2 at level ${level}, full and mixed`, async () => {
    const random = new Random(level.charCodeAt(0));
    for (let version = 1; version <= 40; ++version) {
      const bits = 8 * dataCodewords[level][version - 1];
      for (const [index, mode] of modes.entries()) {
        // Of large versions one mode each.
        if (version > 10 && version !== 26 && version !== 27 && version !== 40 && index !== version % 4) continue;
        await checkMode('qr', random, mode, bits - 4 - countBits(version)[index], `${version}`, level, [0, 1], () => ({}));
      }
      await check('qr', mixture(random, Math.min(bits / 8 / 2, 600)), `${version}`, level);
    }
  });
}

// The reader finds none from version 13 on.
test('Model 1 up to version 12 at every level', async () => {
  const random = new Random(1);
  for (let version = 1; version <= 12; ++version) {
    for (const level of 'LMQH') {
      for (const data of [mixture(random, 3 + version * 4), random.string(digits, 4 + version * 7), some(random, version, kanji)]) {
        await check('qr-model1', data, `${version}`, level, { identifier: ']Q0' });
      }
    }
  }
});

test('every length of every version, level and mode of Micro QR', async () => {
  const random = new Random(2);
  for (const [version, { bits, header }] of Object.entries(micro)) {
    for (const level of Object.keys(bits)) {
      // The reader takes the short last codeword of M1 and M3 for the low half of a byte, and spends a correction
      // on it unless it is 0000. What comes out is right.
      const short = { M1L: [16, 0], M3L: [80, 0.66], M3M: [64, 0.75] }[version + level];
      for (const [index, headerBits] of header.entries()) {
        const mode = modes[index];
        const all = Array.from({ length: mode.fit(bits[level] - headerBits) }, (_, less) => less);
        const reaches = (length) => short && length > mode.fit(short[0] - headerBits);
        await checkMode('micro-qr', random, mode, bits[level] - headerBits, version, level, all,
          (length) => ({ uec: reaches(length) ? [1, short[1]] : [1] }));
      }
    }
  }
});

test('every version, level and mode of rMQR, full and mixed', async () => {
  const random = new Random(3);
  assert.equal(rmqr.length, 32);
  for (const [version, m, h, counts] of rmqr) {
    for (const [level, codewords] of [['M', m], ['H', h]]) {
      for (const [index, mode] of modes.entries()) {
        await checkMode('rmqr', random, mode, 8 * codewords - 3 - counts[index], version, level, [0, 1, 2], () => ({}));
      }
      if (codewords > 20) await check('rmqr', mixture(random, codewords / 2), version, level);
    }
  }
});

test('GS1 QR is read as GS1, with separators where they belong, in every mode', async () => {
  const random = new Random(4);
  for (let i = 0; i < 80; ++i) {
    // Batch, serial number and more, of variable length; small letters ask for byte mode, "%" for two characters.
    const alphabet = [digits, `${alphanumeric}%%%%`, `${digits}abcde%`][i % 3].replace(/[ $]/g, '');
    const elements = ['10', '21', '240', '37'].map((ai) => ai + random.string(ai === '37' ? digits : alphabet, 1 + random.below(8)));
    const brackets = elements.map((e) => e.replace(/^(10|21|240|37)/, '($1)')).join('');
    const result = await readBack('gs1-qr', `(01)09501101530003${brackets}`, 'QRCode', [], { isPure: true });
    assert.equal(bytesOf(result), `0109501101530003${elements.join('\x1d')}`);
    assert.deepEqual([result.contentType, result.symbologyIdentifier, JSON.parse(result.extra).UEC], ['GS1', ']Q3', 1]);
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
