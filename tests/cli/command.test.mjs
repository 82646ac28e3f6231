// The command around the drawing: where data comes from, what is left behind, what errors look like, what is listed.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { chmodSync, mkdirSync, openSync, readdirSync, readFileSync, readlinkSync, statSync, symlinkSync, writeFileSync }
  from 'node:fs';
import { dirname, join } from 'node:path';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { draw, inFolder, korvex, program } from './korvex.mjs';

const ean = ['draw', 'ean13', '400638133393'];

test('every error is one sentence and an exit status, with nothing drawn', () =>
  inFolder((folder) => {
    for (const [status, sentence, ...args] of [
      [2, /No command is given/],
      [2, /There is no command "drow"; did you mean draw\?/, 'drow'],
      [2, /No symbology is given/, 'draw'],
      [2, /No symbology is given/, 'draw', '-o', 'x.png'],
      [2, /There is no symbology "ena13"; did you mean ean13\?/, 'draw', 'ena13', '1'],
      [2, /There is no symbology "\\x1b\[2J"; korvex list shows them all/, 'draw', '\x1b[2J', '1'],
      [2, /--ratio is 2:1, 3:1 or 5:2, not "4:1"/, 'draw', 'itf', '12', '--ratio', '4:1'],
      [2, /draw ean13 has no option --ratio; korvex draw ean13 --help shows/, ...ean, '--ratio', '2:1'],
      [2, /an argument too many, "more"/, ...ean, 'more'],
      [2, /has no option --no-txt; did you mean --no-text\?/, ...ean, '--no-txt'],
      [2, /-o.*required.*FILE/, ...ean, '-o'],
      [2, /--widths takes four numbers/, 'draw', 'itf', '12', '--widths', '1,2,3'],
      [2, /--widths is a whole number from 1 to 99, not "0"/, 'draw', 'itf', '12', '--widths', '1,1,0,3'],
      [2, /--module is a whole number of pixels/, ...ean, '--module', '2.5', '-o', 'x.png'],
      [2, /--module is a whole number of pixels/, ...ean, '--module', '-1mm', '-o', 'x.png'],
      [2, /becomes whole pixels only with --dpi/, ...ean, '--module', '0.33mm', '-o', 'x.png'],
      [2, /--dpi is a number/, ...ean, '--dpi', 'nan', '-o', 'x.png'],
      [2, /--height in millimetres needs/, ...ean, '--height', '20mm', '-o', 'x.png'],
      [2, /--height is a number of modules up to 10000/, ...ean, '--height', '1e9', '-o', 'x.png'],
      [2, /--quiet-zone is a whole number from 0 to 1000/, ...ean, '--quiet-zone', '-1', '-o', 'x.png'],
      [2, /--bwr is a whole number from 0 to 3, not "4"/, ...ean, '--bwr', '4', '-o', 'x.png'],
      [2, /--bwr counts dots; a module in millimetres has them only with --dpi/, ...ean, '--bwr', '1',
        '--module', '0.3mm', '-o', 'x.svg'],
      [2, /--background is a colour/, ...ean, '--background', 'red', '-o', 'x.png'],
      [2, /--foreground is a colour/, ...ean, '--foreground', 'transparent', '-o', 'x.png'],
      [2, /Standard output needs --format/, ...ean, '-o', '-'],
      [2, /There is no format "tiff", which label.tiff asks for/, ...ean, '-o', 'label.tiff'],
      [2, /The name label does not say what the file is/, ...ean, '-o', 'label'],
      [2, /There is no format "tiff"; there are png, svg, pdf, eps or txt/, ...ean, '-o', '-', '--format', 'tiff'],
      [2, /The data is given twice/, ...ean, '--data-file', 'x'],
      [1, /takes 12 digits, or 13 .*; 3 given/, 'draw', 'ean13', '123', '-o', 'x.png'],
      [1, /byte 'x' \(0x78\) at position 3/, 'draw', 'ean13', '40x638133393', '-o', 'x.png'],
      [1, /check digit 0 at position 13 is wrong/, 'draw', 'ean13', '4006381333930', '-o', 'x.png'],
      [1, /character "g" at position 4 is no hexadecimal digit/, 'draw', 'code128', '--hex', '41 g2', '-o', 'x.png'],
      [1, /half a byte/, 'draw', 'code128', '--hex', '414', '-o', 'x.png'],
      [1, /There is no data/, 'draw', 'qr', '', '-o', 'x.png'],
      [1, /holds at most 5596 digits.*--append splits it/, 'draw', 'qr', '1'.repeat(9000), '-o', 'x.png'],
      [1, /9000 bytes; at most 4158/, 'draw', 'datamatrix', 'é'.repeat(4500), '-o', 'x.png'],
      [2, /There is no size of 11 x 11/, 'draw', 'datamatrix', 'x'.repeat(2000), '--size', '11x11', '-o', 'x.png'],
      [1, /Cannot read none: No such file/, 'draw', 'ean13', '--data-file', 'none', '-o', 'x.png'],
      [1, /a side has from 1 to 32767/, ...ean, '--module', '1000', '-o', 'x.png'],
      [2, /--version is a whole number from 1 to 40, not "41"/, 'draw', 'qr', '1', '--version', '41', '-o', 'x.png'],
      [2, /There is no rMQR symbol R11x44/, 'draw', 'rmqr', '1', '--version', 'R11x44', '-o', 'x.png'],
      [1, /holds at most 5596 digits.*; --append splits it over up to 16 symbols/, 'draw', 'qr', '1'.repeat(6000), '-o', 'x.png'],
      [2, /draw micro-qr has no option --append/, 'draw', 'micro-qr', '1', '--append', '-o', 'x.png'],
      [1, /The byte 'a' \(0x61\) at position 3 does not suit/, 'draw', 'qr', '12a', '--mode', 'numeric', '-o', 'x.png'],
      [2, /2 bytes cannot fill 3 symbols/, 'draw', 'qr', 'ab', '--symbols', '3', '-o', 'x.png'],
      [2, /A series of 2 symbols goes into files/, 'draw', 'qr', 'ab', '--symbols', '2', '--format', 'png', '-o', '-'],
      [2, /--key with 16 hexadecimal digits/, 'draw', 'qr', 'ab', '--private', 'x', '--key', '123', '-o', 'x.png'],
      [2, /There is no size of 11 x 11 modules/, 'draw', 'datamatrix', 'x', '--size', '11x11', '-o', 'x.png'],
      [1, /\(01\) at position 1 of the data takes exactly 14 digits; 2 given/, 'draw', 'datamatrix', '(01)12', '--gs1', '-o', 'x.png'],
      [2, /take.* together/, 'draw', 'maxicode', 'x', '--postal-code', '1', '-o', 'x.png'],
      [2, /belong to a structured carrier message/, 'draw', 'maxicode', 'x', '--country', '1', '-o', 'x.png'],
      [1, /The postal code is "x1"; mode 3/, 'draw', 'maxicode', 'x', '--postal-code', 'x1', '--country', '1',
        '--service', '1', '-o', 'x.png'],
      [2, /position in the series is 3; allowed are 1 to 2/, 'draw', 'maxicode', 'x', '--position', '3', '--total', '2',
        '-o', 'x.png'],
      [1, /brace at position 2 opens no name of a control character/, 'draw', 'code128', '--escapes', 'a{XY}', '-o', 'x.png'],
      [2, /--escapes does not go with it/, 'draw', 'code128', '--escapes', '--hex', '41', '-o', 'x.png'],
      [1, /300 bytes, of which the first 249 fit/, 'draw', 'micropdf417', 'x'.repeat(300), '-o', 'x.png'],
      [1, /Cannot write no\/x.png: No such file or directory/, ...ean, '-o', 'no/x.png'],
    ]) {
      const result = korvex(args, { cwd: folder });
      const what = args.join(' ');
      assert.equal(result.status, status, what);
      assert.match(result.stderr, sentence);
      assert.match(result.stderr, /^korvex: [^\n]*[.?]\n$/, what);
      assert.equal(result.stdout.length, 0, what);
      assert.deepEqual(readdirSync(folder), [], what);
    }
  }));

test('files appear all or not at all, and old ones stay as they were', () =>
  inFolder((folder) => {
    const paths = ['a.png', 'b.SVG', 'c.pdf', 'd.eps', 'e.txt'];
    const several = paths.flatMap((path) => ['-o', path]);
    mkdirSync(join(folder, 'folder.png'));
    for (const impossible of ['no/x.png', '/dev/full', 'folder.png']) {
      const { status, stderr } = korvex([...ean, ...several, '-o', impossible, '--format', 'png'], { cwd: folder });
      assert.equal(status, 1, impossible);
      assert.match(stderr, /^korvex: Cannot write [^\n]*\.\n$/);
      assert.deepEqual(readdirSync(folder), ['folder.png'], impossible);
    }

    writeFileSync(join(folder, 'a.png'), 'old');
    assert.equal(korvex(['draw', 'ean13', 'x', ...several], { cwd: folder }).status, 1);
    assert.equal(readFileSync(join(folder, 'a.png'), 'latin1'), 'old');

    chmodSync(join(folder, 'a.png'), 0o640);
    symlinkSync('target.svg', join(folder, 'b.SVG'));
    writeFileSync(join(folder, 'target.svg'), 'old');
    assert.equal(korvex([...ean, ...several], { cwd: folder }).status, 0);
    assert.deepEqual(readdirSync(folder).sort(), [...paths, 'folder.png', 'target.svg'].sort());
    assert.equal(statSync(join(folder, 'a.png')).mode & 0o777, 0o640);
    assert.equal(readlinkSync(join(folder, 'b.SVG')), 'target.svg');
    assert.match(readFileSync(join(folder, 'target.svg'), 'utf8'), /<svg/);
  }));

test('output that nobody takes is an error', () => {
  for (const args of [ean, [...ean, '--format', 'png'], ['list'], ['--help']]) {
    const { status, stderr } = korvex(args, { stdio: ['pipe', openSync('/dev/full', 'w'), 'pipe'] });
    assert.equal(status, 1, args.join(' '));
    assert.match(stderr, /^korvex: Cannot write standard output: No space left on device\.\n$/);
  }
});

test('a closed standard stream is nobody else\'s place', () =>
  inFolder((folder) => {
    const run = (command) => spawnSync('bash', ['-c', `'${program}' ${command}`], { cwd: folder, encoding: 'utf8' });
    for (const [command, status, sentence] of [
      ['draw code39 A --format txt >&-', 1, /Cannot write standard output: Bad file descriptor/],
      ['draw code39 -o x.txt <&-', 1, /Cannot read standard input: Bad file descriptor/],
      ["draw code39 '' -o x.txt <&- >&- 2>&-", 1, /^$/],
      ['draw code39 A -o x.txt --verbose <&- >&- 2>&-', 0, /^$/],
    ]) {
      const result = run(command);
      assert.equal(result.status, status, command);
      assert.match(result.stderr, sentence, command);
      if (status === 1) assert.deepEqual(readdirSync(folder), [], command);
    }
    assert.match(readFileSync(join(folder, 'x.txt'), 'utf8'), /^[01]+\n$/);
    writeFileSync(join(folder, 'jobs'), '{}');
    assert.equal(run('batch jobs -o out <&- 2>&-').status, 1);
    assert.equal(JSON.parse(readFileSync(join(folder, 'out', 'failed.jsonl'))).line, 1);
  }));

test('data comes from the argument, a file or standard input', () =>
  inFolder((folder) => {
    const file = join(folder, 'data');
    writeFileSync(file, 'AB\n');
    const txt = (args, input) => korvex(['draw', 'code128', '--format', 'txt', ...args], { input }).stdout.toString();
    const [ab, abLine] = [txt(['AB']), txt(['--hex', '41 42 0a'])];
    assert.notEqual(ab, abLine);
    for (const [expected, args, input] of [
      [ab, [], 'AB'],
      [ab, [], 'AB\n'],
      [ab, [], 'AB\r\n'],
      [abLine, [], 'AB\n\n'],
      [abLine, ['--data-file', file]],
      [abLine, ['--data-file', '-'], 'AB\n'],
      [ab, ['--hex'], '4142\n'],
      [txt(['--hex', '2d2d6865780a']), ['--', '--hex\n']],
    ]) {
      assert.equal(txt(args, input), expected, `${args} ${JSON.stringify(input)}`);
    }
    // A file is bytes; what is typed is text, which has other bytes in the symbol.
    for (const symbology of ['code128', 'qr']) {
      writeFileSync(file, 'é');
      const bytes = draw(symbology, '--hex', 'c3a9', '--format', 'txt');
      assert.deepEqual(draw(symbology, '--data-file', file, '--format', 'txt'), bytes);
      const { stdout } = korvex(['batch', '-', '-o', folder, '--name', `${symbology}.txt`],
        { input: JSON.stringify({ symbology, data_file: file }) });
      assert.deepEqual(readFileSync(join(folder, `${symbology}.txt`)), bytes, `${stdout}`);
    }
    assert.notDeepEqual(draw('code128', 'é', '--format', 'txt'), draw('code128', '--hex', 'c3a9', '--format', 'txt'));
  }));

test('options may stand before the symbology', () => {
  const usual = draw('itf', '1234', '--no-text', '--module', '2', '--format', 'png');
  const options = ['--no-text', '--module', '2', '-o-', '--format=png'];
  for (const words of [['itf', '1234'], ['--', 'itf', '1234'], ['itf', '--', '1234']]) {
    assert.deepEqual(korvex(['draw', ...options, ...words]).stdout, usual, words.join(' '));
  }
});

const listed = () => JSON.parse(korvex(['list', '--json']).stdout);

test('the list has every symbology, and what it says holds', () => {
  const names = listed().map(({ name }) => name);
  assert.equal(new Set(names).size, names.length);
  const linear = 'codabar code39 itf ean13 upca ean8 upce addon industrial25 code25-3bar sscc18 code128 code128-inband ' +
    'code128-segments msi code11 code93';
  for (const name of linear.split(' ')) assert.ok(names.includes(name), name);

  for (const { name, title, takes, example, options } of listed()) {
    assert.ok(title && takes, name);
    const base = [name, ...example.options];
    assert.match(draw(...base, '--format', 'txt', '--', example.data).toString(), /^([01]+\n)+$/, name);
    const help = korvex(['draw', name, '--help']).stdout.toString();
    for (const option of options) {
      assert.ok(help.includes(option.name), `${name} ${option.name}`);
      for (const choice of option.choices ?? []) {
        const { status, stderr } =
          korvex(['draw', ...base, option.name, choice, '--format', 'txt', '--', example.data]);
        assert.ok(status >= 0 && !stderr.includes(`${option.name} is `), `${name} ${option.name} ${choice}`);
      }
    }
  }
});

test('the text list names every symbology that the JSON list has', () => {
  const text = korvex(['list']).stdout.toString();
  const names = text.split('\n').filter((line) => /^\S/.test(line)).map((line) => line.split(' ')[0]);
  assert.deepEqual(names, listed().map(({ name }) => name));
});

test('every korvex line of the pages does what it says', () =>
  inFolder((folder) => {
    const root = fileURLToPath(new URL('../..', import.meta.url));
    const pages = ['README.md', ...readdirSync(join(root, 'docs')).filter((name) => name.endsWith('.md'))
      .map((name) => `docs/${name}`)];
    const lines = pages.flatMap((page) => readFileSync(join(root, page), 'utf8').replaceAll('\\\n', '')
      .match(/^ {4}(korvex (draw|list)|\$ echo) .*/gm) ?? []);
    assert.ok(lines.length > 20);
    for (const line of lines) {
      const command = line.trim().replace(/^\$ /, '');
      const env = { ...process.env, PATH: `${dirname(program)}:${process.env.PATH}` };
      const { status, stdout, stderr } = spawnSync('bash', ['-c', command], { cwd: folder, env, encoding: 'utf8' });
      assert.equal(status, 0, `${command}: ${stderr}`);
      if (command.startsWith('echo')) assert.equal(JSON.parse(stdout).result, 0, command);
    }
  }));
