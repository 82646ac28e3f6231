// The programs of docs/windows.md do what the page says.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { test } from 'node:test';
import { project, runHere, runOnWindows } from './run.mjs';

const page = readFileSync(project('docs/windows.md'), 'utf8');
const program = (language) => page.match(new RegExp(`\`\`\`${language}\n([^]*?)\`\`\``))[1];

const call = (request) => JSON.parse(runHere(project('build/bin/korvex'), ['call'], JSON.stringify(request)).output);

test('the C program of the page draws a QR symbol', (t) => {
  const exe = project('build/windows/bin/page.exe');
  const flags = ['-std=c99', '-Wall', '-Wextra', '-Werror', '-I', project('include')];
  const compiled = runHere('i686-w64-mingw32-gcc', [...flags, '-x', 'c', '-', '-o', exe, '-lgdi32'], program('c'));
  assert.equal(compiled.status, 0, compiled.complaint);
  const windows = runOnWindows(t, 'page.exe');
  if (windows === undefined) return;

  const params = { ecc_level: 2, symbol_type: 2, module_size: 1, rmqr_rows: 1, data: 'KORVEX' };
  const { width, rows } = call({ export: 'QR_Encode', params });
  const bits = (row) => Buffer.from(row, 'hex').reduce((all, byte) => all + byte.toString(2).padStart(8, '0'), '');
  const picture = rows.map((row) => bits(row).slice(0, width).replaceAll('1', '#').replaceAll('0', '.'));
  assert.equal(windows.output.replaceAll('\r', ''), `${picture.join('\n')}\n`);
});

test('the script of the page returns an EAN-13 symbol (here, from the shared library)', () => {
  const script = program('python').replace('KORVEX32.dll', project('build/lib/libkorvex.so'));
  const { status, output, complaint } = runHere('python3', ['-'], script);
  assert.equal(status, 0, complaint);
  const { bars, text } = call({ export: 'Korvex_Bit', params: { type: 3, text_option: 1, data: '400638133393' } });
  assert.equal(output, `${bars}\n${text}\n`);
});
