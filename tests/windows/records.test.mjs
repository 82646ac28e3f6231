// Records built from bytes by a 32-bit program without our header, against the same requests of `korvex call` here.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { test } from 'node:test';
import { project, runHere, runOnWindows } from './run.mjs';

const requests = readFileSync(new URL('records.jsonl', import.meta.url), 'utf8');
const compared = ['result', 'width', 'height', 'rows', 'bit_count', 'bars', 'guards', 'text_length', 'text', 'text_groups'];

// Byte offsets that a call may write to, in its parameter record or, for Korvex_Bit, in its result record.
const versionUsed = [20, 21];
const bitResult = [0, 1, 12, 13, ...Array.from({ length: 10 }, (_, index) => 20 + index)];

// By hand: ISO/IEC 15420 gives EAN-13 its digits' elements and, for a first digit 4, the sets A B A A B B.
const ean13 = `101 ${'0001101 0100111 0101111 0111101 0001001 0110011'} 01010 ` +
              `${'1000010 1000010 1000010 1110100 1000010 1100110'} 101`;

const parse = (lines) => lines.split(/\r?\n/).filter(Boolean).map((line) => JSON.parse(line));
const only = (keys, answer) => Object.fromEntries(keys.filter((key) => key in answer).map((key) => [key, answer[key]]));

test('records are read and written at their byte offsets, 16-bit arguments from the lower halves', async (t) => {
  const windows = runOnWindows(t, 'records.exe');
  if (windows === undefined) return;
  assert.equal(windows.status, 0, windows.complaint);
  const found = parse(windows.output);
  const expected = parse(runHere(project('build/bin/korvex'), ['call'], requests).output);
  assert.deepEqual(found.map(({ id }) => id), expected.map(({ id }) => id));

  for (const [index, answer] of expected.entries()) {
    await t.test(answer.id, () => {
      const { written, behind_size, ...outcome } = found[index];
      assert.deepEqual(only(compared, outcome), only(compared, answer));
      const allowed = 'text_length' in answer ? bitResult : 'version_used' in answer ? versionUsed : [];
      assert.deepEqual(written.filter((offset) => !allowed.includes(offset)), [], 'nothing else is written');
      assert.notEqual(behind_size, false, 'nor is anything behind the size pair');
      if (answer.id === 'EAN-13') assert.equal(outcome.bars, ean13.replaceAll(' ', ''));
      assert.equal(answer.result === 0, answer.id !== 'not a digit');
    });
  }
});
