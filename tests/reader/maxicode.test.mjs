// MaxiCode through the reader, which samples the middles of the modules and looks at nothing else.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { bytesOf, Random, readBack } from './reader.mjs';

const digits = '0123456789';
const capitals = 'ABCDEFGHIJKLMNOPQRSTUVWXYZ';
const range = (first, last) => Array.from({ length: last - first + 1 }, (_, i) => String.fromCharCode(first + i)).join('');
// A few characters of each code set that stand in no other one.
const codeSets = {
  A: `${capitals}${digits} "#$%&'()*+,-./:`,
  B: 'abcdefghijklmnopqrstuvwxyz;<=>?[\\]^_!@|`{}~',
  C: range(0xc0, 0xdb),
  D: range(0xe0, 0xfb),
  E: range(1, 12) + range(14, 26),
};

async function check(data, options = [], mode = '4') {
  const result = await readBack('maxicode', data, 'MaxiCode', options);
  assert.equal(bytesOf(result), data, `${options.join(' ')} of ${JSON.stringify(data)}`);
  assert.equal(result.ecLevel, mode);
  return result;
}

test('all code sets, alone and mixed', async () => {
  const random = new Random(1);
  for (const alphabet of Object.values(codeSets)) {
    for (const length of [1, 2, 3, 4, 5, 9, 40]) await check(random.string(alphabet, length));
  }
  const all = Object.values(codeSets);
  for (let round = 0; round < 60; ++round) {
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
  await check(random.string(capitals, 93));
  for (const set of 'CDE') await check(random.string(codeSets[set], 91));
});

test('structured carrier messages', async () => {
  for (const [code, mode, expected] of [['152382802', '2', '152382802'], ['1', '2', '1'], ['B1050A', '3', 'B1050A']]) {
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
