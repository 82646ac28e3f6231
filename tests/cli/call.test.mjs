// `korvex call`, to the letter of its format.
import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { openSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { once } from 'node:events';
import { test } from 'node:test';
import { draw, inFolder, korvex, program, widened } from './korvex.mjs';

/** The answers to some lines, and the exit status. */
function call(lines) {
  const { status, stdout } = korvex(['call'], { input: lines.join('\n') });
  return { status, answers: stdout.toString().trimEnd().split('\n').map((line) => JSON.parse(line)) };
}
const request = (name, params, more = {}) => JSON.stringify({ ...more, export: name, params });

// ISO/IEC 15420 by hand: add-on of 1 and 2, 12 modulo 4 is 0, so both in set A.
const addon12 = '1011' + '0011001' + '01' + '0010011';
const ean13 =
  '101' + '0001101' + '0100111' + '0101111' + '0111101' + '0001001' + '0110011' + '01010' +
  '1000010'.repeat(3) + '1110100' + '1000010' + '1100110' + '101';

test('Korvex_Bit answers with its pattern, guards and text', () => {
  const params = { type: 3, guard_option: 1, text_option: 1, data: '400638133393' };
  const { status, answers } = call([request('Korvex_Bit', params, { id: 2 }), request('Korvex_Bit_x64', params)]);
  const guards = [...Array(95).keys()].map((i) => ([0, 2, 46, 48, 92, 94].includes(i) ? '1' : '0')).join('');
  const answer = {
    result: 0, text_length: 13, bit_count: 95, bars: ean13, guards, text: '4006381333931',
    text_groups: [1, 6, 6, 0, 0],
  };
  assert.equal(status, 0);
  assert.deepEqual(answers, [{ id: 2, ...answer }, answer]);
});

test('the forms of a request', () => {
  const bars = { result: 0, text_length: 0, bit_count: 20, bars: addon12 };
  const failed = { result: -3, text_length: 0 };
  for (const [params, answer] of [
    [{ type: 15, data: '12' }, bars],
    [{ type: 15, data: { hex: '3132' } }, bars],
    [{ type: 15, data: '12345', data_length: 2 }, bars],
    [{ type: 15, data: '12', guard_option: 1, ratio: [0, 0, 0, 0, 0] }, bars],  // no type with guards
    [{ type: 15, data: '12', data_length: -1 }, failed],
    [{ type: 15, data: '12', data_length: 1 }, failed],
    [{ type: 15 }, failed],
    [{ type: 65535, data: '12' }, failed],
    [{ type: 15, data: '12', ratio: [3, 1, 1, 2, 2] }, { result: -1, text_length: 0 }],
    [{ type: 12, data: 'é' }, failed],  // two bytes above 127
  ]) {
    assert.deepEqual(call([request('Korvex_Bit', params)]).answers, [answer], JSON.stringify(params));
  }
});

test('a drawing export that fails leaves every field as it was preset', () => {
  const nothing = { width: -1, height: -1, painted_width: 0, painted_height: 0, rows: [] };
  const { status, answers } = call([
    request('QR_Encode', { ecc_level: 9, data: 'A' }, { trace: true }),
    request('QR_Encode_x64', { ecc_level: 9, symbol_type: 4, data: 'a@b' }),
    request('MAXI_Encode', { position: 9, postal_code: '1', message: 'x' }),
    request('DATA_Encode', { module_width: -1, data: { hex: '00FF' }, length: 1 }, { trace: false }),
  ]);
  assert.equal(status, 0);
  assert.ok(answers.every(({ result }) => result < 0));
  assert.deepEqual(answers.map(({ result, ...rest }) => rest), [
    { ...nothing, version_used: 65535, trace: [] },
    { ...nothing, version_used: 65535, data_after: '614062' },
    nothing,
    nothing,
  ]);
});

test('what an export paints on the pixel path comes back pixel by pixel', () => {
  const modules = draw('veri', 'A', '--size', '12', '--format', 'txt').toString().trimEnd().split('\n');
  const params = { symbol_size: 12, ecc_mode: 4, module_width: 3, module_height: 3, data: 'A' };
  const { answers: [plain, { trace, ...traced }] } = call([
    request('VERI_Encode', params),
    request('VERI_Encode', params, { trace: true }),
  ]);
  const bits = plain.rows.map((row) => [...row].map((digit) => parseInt(digit, 16).toString(2).padStart(4, '0')).join(''));
  assert.deepEqual(bits, modules.flatMap((row) => Array(3).fill(widened(row, 3) + '0000')));
  const { rows, ...sizes } = plain;
  assert.deepEqual(sizes, { result: 0, width: 36, height: 36, painted_width: 36, painted_height: 36 });
  assert.deepEqual(traced, plain);
  assert.match(trace.join(' '), /^SetPixel\*\d{4}$/);
});

test('what an export paints on the bitmap path comes back too', () => {
  const params = { module_width: 1, row_height: 2, columns: 1, rows: 5, data: 'A' };
  const { answers: [answer] } = call([request('PDF_Encode', params, { trace: true })]);
  // Start pattern 81111113 at the left; 86 modules are 22 digits, the last two bits beyond the picture.
  assert.deepEqual([answer.painted_width, answer.painted_height, answer.rows.length], [86, 10, 10]);
  answer.rows.forEach((row, y) => {
    assert.match(row, /^ff54[0-9a-f]{17}[048c]$/);
    assert.equal(row, answer.rows[y - (y % 2)]);
  });
  assert.deepEqual(answer.trace, ['CreateBitmap', 'CreateCompatibleDC', 'SelectObject', 'BitBlt', 'DeleteDC', 'DeleteObject']);
});

test('text that the library prints is in the answer, not between the answers', () => {
  const limited = { type: 5, module_size: 1, linear_height: 1, segments_per_row: 2 };
  const { answers } = call([
    request('CC_Encode', { ...limited, data: '2000000000000' }, { id: 1 }),
    request('Korvex_Bit', { type: 16 }, { id: 2 }),
  ]);
  assert.equal(answers[0].console, '\nerror occurred, exiting.');
  assert.deepEqual(answers[1], { id: 2, result: -3, text_length: 0 });
});

test('what paints nothing, or not too much, is answered however large its modules are', () => {
  const large = { type: 1, linear_height: 33, data: '0950110153000' };
  const { answers } = call([
    request('CC_Encode', { ...large, module_size: 600 }),  // its rows are too wide for CC_Encode
    request('DATA_Encode', { module_width: 32767, module_height: 32767, data: 'A' }),
    request('DATA_Encode', { module_width: 3276, module_height: 10, data: 'A' }),
  ]);
  assert.deepEqual(answers.map(({ result, painted_width: width }) => [result, width]), [[-1, 0], [-1, 0], [0, 32760]]);
});

test('every id comes back', () => {
  const ids = [0, -7, 1.5, true, null, '', 'ü\n"', [1, [2]], { a: { b: [] } }];
  const { answers } = call(ids.map((id) => request('Korvex_Bit', { type: 16 }, { id })));
  assert.deepEqual(answers.map(({ id }) => id), ids);
  assert.ok(!('id' in call([request('Korvex_Bit', {})]).answers[0]));
});

test('a bad line gets a sentence, and the next one its answer', () => {
  const bad = [
    ['nonsense', /not JSON at byte 2/],
    ['{"export": "Korvex_Bit"', /not JSON at byte/],
    ['[]', /a request is a JSON object/],
    ['{"export": "Korvex_Bit", "params": {"data": "\xff"}}', /not JSON/],  // as Latin-1: no UTF-8
    ['{"id": ' + '['.repeat(100000) + ']'.repeat(100000) + '}', /nested/],
    ['{"id": 1e999}', /too large/],
    [`{"id": "${'x'.repeat(1 << 25)}"}`, /more than the 16777216 bytes that are read/],
    ['{"params": {}}', /export is missing/],
    ['{"export": "qr_encode", "params": {}}', /no export "qr_encode"; there are Korvex_Bit, .* and VERI_Encode/],
    ['{"id": {"a": 1, "a": 2}, "export": "VERI_Encode", "params": {}}', /the key "a" is there twice/],
    [request('DATA_Encode', { module_width: 3276, module_height: 3276, data: 'A' }),
      /would have 32760 x 32760 pixels; answers have up to 400000000/],
    [request('CC_Encode', { type: 1, module_size: 500, linear_height: 32767, data: '0950110153000' }), /pixels; answers/],
    ['{"export": 3, "params": {}}', /no export 3/],
    ['{"export": "VERI_Encode", "params": {}, "Trace": 1}', /unknown key "Trace"/],
    ['{"export": "VERI_Encode", "params": {}, "trace": 1}', /trace is true or false/],
    ['{"export": "VERI_Encode", "params": []}', /params must be/],
    [request('VERI_Encode', { ecc_level: 1 }), /unknown key "ecc_level" in params; VERI_Encode takes symbol_size, /],
    [request('VERI_Encode', { symbol_size: 32768 }), /symbol_size is a whole number from -32768 to 32767, not 32768/],
    [request('VERI_Encode', { symbol_size: '10' }), /symbol_size is a whole number/],
    [request('VERI_Encode', { symbol_size: 1.5 }), /not 1\.5/],
    [request('Korvex_Bit', { type: -1 }), /type is a whole number from 0 to 65535, not -1/],
    [request('Korvex_Bit', { type: 2 ** 64 }), /type is a whole number/],
    [request('Korvex_Bit', { ratio: [1, 2, 3, 4] }), /ratio is a list of five numbers/],
    [request('Korvex_Bit', { ratio: [1, 2, 3, 4, 99999] }), /ratio\[4\] is a whole number/],
    [request('Korvex_Bit', { data: '12', data_length: 3 }), /data_length is 3, but data has 2 bytes/],
    [request('Korvex_Bit', { data_length: 1 }), /data_length is 1, but data has 0 bytes/],
    [request('Korvex_Bit', { data: 12 }), /data is a string or/],
    [request('Korvex_Bit', { data: { hex: '123' } }), /odd number of digits/],
    [request('Korvex_Bit', { data: { hex: '12x4' } }), /"x4" at position 3/],
    [request('Korvex_Bit', { data: { hex: '12', more: 1 } }), /data is a string or/],
    [request('PDF_Encode', { data: 'x'.repeat(32768) }), /32768 bytes, and length counts no more than 32767/],
    [request('QR_Encode', { private_key: '0123456789abcde' }), /private_key is a string of 16 characters/],
  ];
  const good = request('Korvex_Bit', { type: 15, data: '12' });
  const input = Buffer.from(bad.map(([line]) => `${line}\n${good}\n`).join(''), 'latin1');
  const { status, stdout } = korvex(['call'], { input });
  const answers = stdout.toString().trimEnd().split('\n').map((line) => JSON.parse(line));
  assert.equal(status, 1);
  assert.equal(answers.length, 2 * bad.length);
  bad.forEach(([line, sentence], index) => {
    assert.match(answers[2 * index].error, sentence, line.slice(0, 80));
    assert.ok(answers[2 * index].error.startsWith(`line ${2 * index + 1}: `));
    assert.equal(answers[2 * index + 1].bars, addon12);
  });
  assert.deepEqual(Object.keys(call(['{"id": 5, "export": 1}']).answers[0]), ['id', 'error']);
});

test('lines may end in CR LF, be blank, or lack their end', () => {
  const line = request('Korvex_Bit', { type: 15, data: '12' });
  const { status, stdout } = korvex(['call'], { input: `\ufeff${line}\r\n\r\n  \n${line}` });
  assert.equal(status, 0);
  assert.match(stdout.toString(), /^(\{"result": 0, .*\}\n){2}$/);
});

test('files are answered in order, and one that is missing is reported', () =>
  inFolder((folder) => {
    const [first, second] = ['a', 'b'].map((name) => join(folder, name));
    writeFileSync(first, request('Korvex_Bit', { type: 16 }, { id: 1 }));
    writeFileSync(second, `\nbad\n${request('Korvex_Bit', { type: 16 }, { id: 2 })}\n`);
    const { status, stdout, stderr } = korvex(['call', first, join(folder, 'none'), second]);
    assert.equal(status, 1);
    const answers = stdout.toString().trimEnd().split('\n').map((line) => JSON.parse(line));
    assert.deepEqual(answers.map(({ id }) => id), [1, undefined, 2]);
    assert.ok(answers[1].error.startsWith(`line 2 of ${second}: `));
    assert.match(stderr, /^korvex: Cannot read .*none: No such file or directory\.\n$/);
  }));

test('whoever waits for an answer gets it before sending the next line', { timeout: 20000 }, async () => {
  const child = spawn(program, ['call']);
  for (let id = 0; id < 3; ++id) {
    child.stdin.write(request('Korvex_Bit', { type: 16 }, { id }) + '\n');
    const [answer] = await once(child.stdout, 'data');
    assert.equal(JSON.parse(answer).id, id);
  }
  child.stdin.end();
  assert.deepEqual(await once(child, 'exit'), [0, null]);
});

test('answers that cannot be written are an error', () => {
  const { status, stderr } = korvex(['call'], {
    input: request('Korvex_Bit', {}),
    stdio: ['pipe', openSync('/dev/full', 'w'), 'pipe'],
  });
  assert.equal(status, 1);
  assert.match(stderr, /^korvex: Cannot write standard output: No space left on device\.\n$/);
});
