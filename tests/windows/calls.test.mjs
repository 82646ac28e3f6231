// The same request lines through `korvex call` here and through korvex.exe on GDI: the same bytes come out.
import assert from 'node:assert/strict';
import { rmSync, writeFileSync } from 'node:fs';
import { test } from 'node:test';
import { familyOf, requestLines } from './requests.mjs';
import { project, runHere, runOnWindows } from './run.mjs';

const lines = requestLines();

const answersOf = ({ status, output }) => {
  assert.equal(status, 1, 'some lines are no requests, which the exit status tells');
  const answers = output.split('\n');
  assert.equal(answers.pop(), '', 'the last answer ends with a line feed');
  assert.equal(answers.length, lines.length, 'a line, an answer');
  return answers;
};

test('real GDI and the portable device give the same answers', async (t) => {
  const input = lines.join('\n');
  const windows = runOnWindows(t, 'korvex.exe', ['call'], input);
  if (windows === undefined) return;
  const expected = answersOf(runHere(project('build/bin/korvex'), ['call'], input));
  const found = answersOf(windows);

  for (const family of new Set(lines.map(familyOf))) {
    const places = [...lines.keys()].filter((place) => familyOf(lines[place]) === family);
    await t.test(family, () => {
      for (const place of places) assert.equal(found[place], expected[place], `to ${lines[place]}`);
      if (family === 'no request') return;
      const drawn = places.filter((place) => JSON.parse(expected[place]).result === 0).length;
      assert.ok(drawn > places.length / 4, `${drawn} of ${places.length} requests draw a symbol`);
    });
  }
});

test('a file as Windows programs name and write it, in UTF-16, gives the answers of UTF-8', (t) => {
  // The second read begins inside a character of two units.
  const text = ['é€😀', '😀'.repeat(40_000)].map((id) => `${JSON.stringify({ id, export: 'none' })}\r\n`).join('');
  const littleEndian = Buffer.from(`\ufeff${text}`, 'utf16le');
  const expected = runHere(project('build/bin/korvex'), ['call'], text);
  for (const bytes of [littleEndian, Buffer.from(littleEndian).swap16()]) {
    assert.deepEqual(runHere(project('build/bin/korvex'), ['call'], bytes), expected);
  }
  const name = 'Étiquettes 日本.jsonl';
  writeFileSync(project('build/windows/bin', name), littleEndian);
  t.after(() => rmSync(project('build/windows/bin', name)));
  const windows = runOnWindows(t, 'korvex.exe', ['call', name]);
  if (windows !== undefined) assert.deepEqual(windows, expected);
});
