// MaxiCode through the reader, which samples the middles of the modules and looks at nothing else.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { bytesOf, Random, readBack } from './reader.mjs';

const digits = '0123456789';
const capitals = 'ABCDEFGHIJKLMNOPQRSTUVWXYZ';
const range = (first, last) => Array.from({ length: last - first + 1 }, (_, i) => String.fromCharCode(first + i)).join('');
const characters = (...codes) => codes.map((code) => (typeof code === 'number' ? String.fromCharCode(code) : code)).join('');
// The characters of each code set that stand in no set before it, from ISO/IEC 16023's table as printed: all 256.
const codeSets = {
  A: `\r${capitals}${characters(28, 29, 30)} "#$%&'()*+,-./${digits}:`,
  B: '`abcdefghijklmnopqrstuvwxyz{}~\x7f;<=>?[\\]^_@!|',
  C: range(0xc0, 0xdf) + '\xaa\xac\xb1\xb2\xb3\xb5\xb9\xba\xbc\xbd\xbe' + range(0x80, 0x89),
  D: range(0xe0, 0xff) + '\xa1\xa8\xab\xaf\xb0\xb4\xb7\xb8\xbb\xbf' + range(0x8a, 0x94),
  E: range(0, 12) + range(14, 27) + '\x1f\x9f\xa0\xa2\xa3\xa4\xa5\xa6\xa7\xa9\xad\xae\xb6' + range(0x95, 0x9e),
};

async function check(data, options = [], mode = '4') {
  const result = await readBack('maxicode', data, 'MaxiCode', options);
  assert.equal(bytesOf(result), data, `${options.join(' ')} of ${JSON.stringify(data)}`);
  assert.equal(result.ecLevel, mode);
  return result;
}

test('all characters of all code sets, shifted and latched, and mixed', async () => {
  const random = new Random(1);
  const all = Object.values(codeSets);
  assert.equal(new Set(all.join('')).size, 256);
  for (const alphabet of all) {
    await check(alphabet);
    for (let at = 0; at < alphabet.length; at += 20) await check([...alphabet.slice(at, at + 20)].join('A'));
    for (const length of [1, 2, 3, 4, 5, 9, 40]) await check(random.string(alphabet, length));
  }
  for (let round = 0; round < 120; ++round) {
    let data = '';
    while (data.length < 25) data += random.string(all[random.below(all.length)], 1 + random.below(7));
    await check(data, round % 2 ? ['--mode', '6'] : [], round % 2 ? '6' : '4');
  }
});

test('runs of digits, and symbols full to the last codeword', async () => {
  const random = new Random(2);
  for (let length = 7; length < 40; ++length) {
    const around = random.string(capitals, length % 4);
    await check(around + random.string(digits, length) + around);
  }
  await check(random.string(digits, 138));
  for (let length = 1; length <= 93; ++length) await check(random.string(capitals, length));
  for (const set of 'CDE') await check(random.string(codeSets[set], 91));
});

test('structured carrier messages', async () => {
  for (const [code, mode, expected] of [
    ['152382802', '2', '152382802'], ['1', '2', '1'], ['12345', '2', '123450000'], ['B1050A', '3', 'B1050A'], ['W1 2', '3', 'W1 2  '],
  ]) {
    const options = ['--postal-code', code, '--country', '840', '--service', '7'];
    const result = await readBack('maxicode', 'MESSAGE 1', 'MaxiCode', options);
    assert.equal(bytesOf(result), `${expected}\x1d840\x1d007\x1dMESSAGE 1`);
    assert.equal(result.ecLevel, mode);
    // A carrier's header comes before the postal code when it is read.
    const header = '[)>\x1e01\x1d96';
    assert.equal(bytesOf(await readBack('maxicode', `${header}1Z\x1e\x04`, 'MaxiCode', options)),
      `${header}${expected}\x1d840\x1d007\x1d1Z\x1e\x04`);
  }
});

test('series', async () => {
  for (let total = 2; total <= 8; ++total) {
    for (let position = 1; position <= total; ++position) {
      const result = await check(`PART ${position}`, ['--position', `${position}`, '--total', `${total}`]);
      assert.deepEqual([result.sequenceIndex, result.sequenceSize], [position - 1, total]);
    }
  }
});

test('hexagons and rings of any size', async () => {
  for (const pixels of [4, 5, 6, 9, 14, 23]) await check('KORVEX', ['--module', `${pixels}`]);
});
