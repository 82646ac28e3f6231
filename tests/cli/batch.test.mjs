// `korvex batch`: lists of jobs become files and sheets; what fails is reported and stops nothing.
import assert from 'node:assert/strict';
import { spawn, spawnSync } from 'node:child_process';
import { existsSync, mkdirSync, readdirSync, readFileSync, symlinkSync, utimesSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { setTimeout } from 'node:timers/promises';
import { test } from 'node:test';
import { draw, inFolder, korvex, program } from './korvex.mjs';

const lines = (...jobs) => jobs.map((job) => (typeof job === 'string' ? job : JSON.stringify(job))).join('\n');
const failures = (folder) =>
  readFileSync(join(folder, 'failed.jsonl'), 'utf8').split('\n').filter(Boolean).map((line) => JSON.parse(line));
const pictures = (folder) => readdirSync(folder).filter((name) => name !== 'failed.jsonl').sort();

/** Runs a list given as text into out/; returns what the command said, the pictures and the failures. */
function batch(folder, list, ...args) {
  const out = join(folder, 'out');
  const { status, stderr } = korvex(['batch', '-', '-o', out, ...args], { input: list, cwd: folder });
  return { out, status, stderr, pictures: pictures(out), failed: failures(out) };
}

test('a line keeps its number where the list is read in pieces', () =>
  inFolder((folder) => {
    // The first 65,536 bytes end between CR and LF, or beside them.
    for (const size of [65534, 65535, 65536]) {
      const list = 'symbology,data\r\nveri,'.padEnd(size, 'x') + '\r\nno,a\r\n';
      assert.deepEqual(batch(folder, list).failed.map(({ line }) => line), [2, 3]);
    }
  }));

test('a job draws what the same options draw, from JSON and from CSV', () =>
  inFolder((folder) => {
    writeFileSync(join(folder, 'bytes.bin'), Buffer.from([0, 255, 10]));
    const json = lines(
      { id: 'a', symbology: 'qr', data: 'Grüße, "1"', level: 'H', quiet_zone: 2, foreground: '#102030' },
      { id: 'b', symbology: 'ean13', data: 400638133393, 'no-text': true, module: '3' },
      { id: 'c', symbology: 'code128', data: '4b 37', hex: true, height: null },
      { id: 'd', symbology: 'datamatrix', data_file: 'bytes.bin', rect: false });
    const csv = '\ufeffid,symbology,data,level,quiet_zone,foreground,no_text,module,hex,data_file,rect\r\n' +
      'a,qr,"Grüße, ""1""",H,2,#102030,,,,,\r\n\r\nb,ean13,400638133393,,,,true,3,,,\r\n' +
      'c,code128,4b 37,,,,,,yes,,\r\nd,datamatrix,,,,,,,,bytes.bin,no';
    // As spreadsheets of other countries write it, and as they copy it.
    const semicolons = csv.replaceAll(',', ';').replace('Grüße;', 'Grüße,').replace('yes', 'TRUE');
    for (const list of [json, csv, semicolons, semicolons.replaceAll(';', '\t')]) {
      const { out, status, pictures } = batch(folder, list);
      assert.equal(status, 0);
      assert.deepEqual(pictures, ['a-qr.png', 'b-ean13.png', 'c-code128.png', 'd-datamatrix.png']);
      const png = (...args) => draw(...args, '--format', 'png');
      for (const [file, expected] of [
        ['a-qr', png('qr', 'Grüße, "1"', '--level', 'H', '--quiet-zone', '2', '--foreground', '#102030')],
        ['b-ean13', png('ean13', '400638133393', '--no-text', '--module', '3')],
        ['c-code128', png('code128', '--hex', '4b37')],
        ['d-datamatrix', png('datamatrix', '--hex', '00ff0a')],
      ]) {
        assert.deepEqual(readFileSync(join(out, `${file}.png`)), expected, file);
      }
    }
  }));

test('GS1 data are checked as a job says, and warnings are reported', () =>
  inFolder((folder) => {
    const wrong = '(01)09501101530004';
    const { status, stderr, pictures, failed } = batch(folder, lines(
      { id: 'a', symbology: 'code128', data: '(01)09501101530003', gs1: true },
      { id: 'b', symbology: 'code128', data: wrong, gs1: 'strict' },
      { id: 'c', symbology: 'code128', data: wrong, gs1: 'lenient' },
      { id: 'd', symbology: 'code128', data: wrong, gs1: false },
      { id: 'e', symbology: 'gs1-qr', data: wrong, gs1: true },
      { id: 'f', symbology: 'datamatrix', data: wrong, gs1: 'lax' }));
    assert.equal(status, 1);
    assert.deepEqual(pictures, ['a-code128.png', 'c-code128.png', 'd-code128.png']);
    assert.deepEqual(failed.map(({ id, error, warning }) => [id, (error ?? '').slice(0, 25), (warning ?? '').slice(0, 6)]), [
      ['b', '(01) at position 1 of the', ''], ['c', '', '(01) a'], ['e', '(01) at position 1 of the', ''],
      ['f', '--gs1 is strict or lenien', '']]);
    assert.match(stderr, /3 symbols drawn, 1 line with warnings, 3 lines failed \(/);
  }));

test('what the command line says holds for jobs that do not say it', () =>
  inFolder((folder) => {
    const list = 'name,data,level\n"a\nb",1,\nc,2,L\n';
    const { out, pictures, status } = batch(folder, list, '--symbology', 'qr', '--set', 'level=H',
      '--set', 'check=mod43', '--module', '1', '--name', '{name}.txt', '--name', '{symbology}/{line}.svg');
    assert.equal(status, 0);
    assert.deepEqual(pictures, ['a_b.txt', 'c.txt', 'qr']);
    assert.deepEqual(readdirSync(join(out, 'qr')).sort(), ['2.svg', '4.svg']);  // the first job takes two lines
    const text = (data, level) => draw('qr', data, '--level', level, '--format', 'txt').toString();
    assert.equal(readFileSync(join(out, 'a_b.txt'), 'utf8'), text('1', 'H'));
    assert.equal(readFileSync(join(out, 'c.txt'), 'utf8'), text('2', 'L'));
  }));

test('a job that fails is reported and stops nothing', () =>
  inFolder((folder) => {
    const good = { symbology: 'code39', data: 'X' };
    const { status, stderr, pictures, failed } = batch(folder, lines(
      good, 'no json', '[1]', '', { ...good, levl: 1 }, { ...good, data: [1] }, { symbology: 'code39' },
      { ...good, symbology: 'cod39' }, { ...good, data: 'ü' }, { ...good, id: 'x/../y' }, { ...good, id: 'x\\..:y' },
      { ...good, module: 0 }, { ...good, id: 'n'.repeat(300) }, { ...good, no_text: 'maybe' }, { data: 'X' },
      { symbology: 'qr', id: 's', data: 'series', symbols: 2 }));
    assert.equal(status, 1);
    assert.deepEqual(pictures, ['1-code39.png', 's-qr-1.png', 's-qr-2.png', 'x_.._y-code39.png']);
    for (const [index, [line, sentence]] of [
      [2, /^The line is not JSON at byte 2: .*invalid literal; last read: 'no'\.$/],
      [3, /^The line is no JSON object\.$/],
      [5, /^There is no option "levl" of code39/],
      [6, /^The field "data" is a text, a number, true or false, not array\.$/],
      [7, /^No data is given\.$/],
      [8, /did you mean code39\?$/],
      [9, /at position 1/],
      [11, /^Another symbol of this list has the file .*x_\.\._y-code39\.png already\.$/],
      [12, /^--module is a whole number/],
      [13, /File name too long/],
      [14, /^The field "no-text" is true or false, not "maybe"\.$/],
      [15, /^No symbology is given/],
    ].entries()) {
      assert.equal(failed[index].line, line);
      assert.match(failed[index].error, sentence);
    }
    assert.equal(failed.length, 12);
    assert.match(stderr, /4 symbols drawn, 12 lines failed \(.*failed\.jsonl\)/);
    assert.match(stderr, /line 3: The line is no JSON object/);
  }));

/** Records as the list has them: what is drawn, by id, and the lines that fail, with why. */
for (const [what, list, drawn, failed] of [
  ['JSON', Buffer.from(
    '{"id": 1, "data": 12345678901234567890123}\n\n{"id": 3, "data": 1.50}\n{"id": "4", "data": -0}\n{"data": 1e999}\n' +
    '{"data": "\xff"}\n{"data": 1, "data": 2}\n{"data_file": 1, "data-file": 1}\n{"data_file": "bytes\\u0000.bin"}\n' +
    '{"data_file": "-"}\n{"data_file": "/dev/stdin"}\n{"data_file": ""}\n' + `{"data": "${'x'.repeat(5 << 20)}"}\n` +
    '{"id": 14, "data": 14} {}\n' + '['.repeat(1 << 20) + '\n{"id": 16, "data": "sixteen"}', 'latin1'),
    { 1: '12345678901234567890123', 3: '1.50', 4: '-0', 16: 'sixteen' },
    [[5, /number that is too large/], [6, /ill-formed UTF-8/], [7, /"data" is there twice/], [8, /"data-file" is there twice/],
      [9, /has a NUL in it/], [10, /is standard input/], [11, /is standard input/], [12, /name of the data file is empty/],
      [13, /more than the 4194304 bytes/], [14, /not JSON at byte 24: .*expected end of input/], [15, /no JSON object/]]],
  ['CSV', `${' '.repeat(1 << 26)}\r\n\n id ,data\r\n4," x "\r\n5, x \n6,"\n7,"seven"\n8,8" "p"\n9,"a\r\n,""b"\r\n  \n` +
    `12,"x" \n13,${'x'.repeat(5 << 20)}\r\n14,"${'y\n'.repeat(2)}${'z'.repeat(5 << 20)}\n18,1,2\r19,"nineteen"\n20,"x\r\n21,x`,
    { 4: ' x ', 5: ' x ', 7: 'seven', 8: '8" "p"', 9: 'a\\x0d\\x0a,"b', 19: 'nineteen', 21: 'x' },
    [[6, /A quote of the record closes within a cell/], [12, /A quote/], [13, /more than the 4194304 bytes that are read\.$/],
      [14, /is a quote left open/], [15, /1 cells where the header names 2/], [16, /more than the 4194304/], [17, /3 cells/],
      [19, /quote of the record is left open/]]],
]) {
  test(`${what} stands as it is written, and a record that is none fails alone`, { timeout: 60000 }, () =>
    inFolder((folder) => {
      const { out, pictures, failed: reported } = batch(folder, list, '--symbology', 'code128', '--name', '{id}.svg');
      const description = (name) => /<desc>(.*)<\/desc>/.exec(readFileSync(join(out, name), 'utf8'))[1];
      assert.deepEqual(Object.fromEntries(pictures.map((name) => [name.slice(0, -4), description(name)])), drawn);
      assert.deepEqual(reported.map(({ line }) => line), failed.map(([line]) => line));
      failed.forEach(([line, sentence], index) => assert.match(reported[index].error, sentence, `line ${line}`));
    }));
}

test('a column that nothing knows, and a list that cannot be read, stop the run before it begins', () =>
  inFolder((folder) => {
    for (const [status, sentence, list, ...args] of [
      [2, /The column "price" is no field .* --ignore price passes it over/, 'id,data,price\n', '-o', 'out'],
      [1, /Two columns of the list are called "data"/, 'data,data\n', '-o', 'out'],
      [1, /A column of the list has no name/, 'id,,data\n', '-o', 'out'],
      [1, /text in UTF-16; save it as UTF-8/, Buffer.from('\ufeffid,data\n', 'utf16le'), '-o', 'out'],
      [1, /begins with no header: A quote of the record is left open/, 'id,"data\n1,2\n', '-o', 'out'],
      [2, /The column "c0" is no field/, [...Array(300000).keys()].map((i) => `c${i}`).join(), '-o', 'out'],
      [2, /A sheet is a PDF; s\.png is not written/, '{}', '--sheet', 's.png'],
      [2, /There is no format "jpg", which \{id\}\.jpg asks for/, '{}', '-o', 'out', '--name', '{id}.jpg'],
      [2, /The report would overwrite the list/, '{}', '-o', 'out', '--report', 'jobs'],
      [2, /Nothing says where the symbols go/, '{}'],
      [2, /No symbology has the option "levle"/, '{}', '-o', 'out', '--set', 'levle=H'],
      [2, /There is no symbology "rq"; did you mean qr/, '{}', '-o', 'out', '--symbology', 'rq'],
      [2, /The name \{id\} does not say what the file is/, '{}', '-o', 'out', '--name', '{id}'],
      [2, /--name has a \{ that opens no name/, '{}', '-o', 'out', '--name', '{id.png'],
      [2, /--resume does not go with --sheet/, '{}', '-o', 'out', '--sheet', 's.pdf', '--resume'],
      [2, /--grid is rows x columns/, '{}', '--sheet', 's.pdf', '--grid', '8'],
      [2, /--page is A3, .*not "A7"/, '{}', '--sheet', 's.pdf', '--page', 'A7'],
      [2, /--margins is one length/, '{}', '--sheet', 's.pdf', '--margins', '1,2mm'],
      [2, /no room for labels on a page of 100 x 100 mm/, '{}', '--sheet', 's.pdf', '--page', '100x100mm',
        '--margins', '50mm'],
      [1, /Cannot make the folder \/dev\/null\/x/, '{}', '-o', '/dev/null/x'],
      [1, /Cannot write no\/s\.pdf/, '{}', '--sheet', 'no/s.pdf'],
    ]) {
      writeFileSync(join(folder, 'jobs'), list);
      const result = korvex(['batch', 'jobs', ...args], { cwd: folder, timeout: 20000 });
      assert.equal(result.status, status, String(sentence));
      assert.match(result.stderr, sentence);
      assert.ok(!existsSync(join(folder, 's.pdf')));
    }
  }));

test('an interrupted run goes on where it ended, with the same list and arguments alone', () =>
  inFolder(async (folder) => {
    const count = 30000;
    const jobs = Array.from({ length: count }, (_, id) => (
      { id, symbology: 'code39', data: id % 100 ? `J${id}` : 'ü' }));
    jobs.push({ id: 1, symbology: 'code39', data: 'TWICE' });
    writeFileSync(join(folder, 'jobs'), lines(...jobs));
    const args = ['batch', 'jobs', '-o', 'out', '--name', '{id}.txt'];
    const out = join(folder, 'out');
    const run = (...more) => korvex([...args, ...more], { cwd: folder });
    const journal = join(folder, 'out', '.korvex-batch.json');
    for (const signal of ['SIGINT', 'SIGKILL']) {
      const child = spawn(program, [...args, '--resume'], { cwd: folder, stdio: 'ignore' });
      const ended = new Promise((resolve) => child.on('exit', resolve));
      const before = existsSync(journal) ? JSON.parse(readFileSync(journal)).records : 0;
      while (child.exitCode === null && !(existsSync(journal) && JSON.parse(readFileSync(journal)).records > before)) {
        await setTimeout(2);
      }
      child.kill(signal);
      assert.equal(await ended, signal === 'SIGINT' ? 130 : null);
    }
    const done = JSON.parse(readFileSync(journal)).records;
    assert.ok(done > 0 && done < count, `${done} records`);

    assert.match(run('--module', '2', '--resume').stderr, /had other arguments/);
    writeFileSync(join(folder, 'jobs'), lines({ id: 'new' }, ...jobs));
    assert.match(run('--resume').stderr, /records of the list are not those of the interrupted run/);
    writeFileSync(join(folder, 'jobs'), lines(...jobs));

    mkdirSync(join(out, 'sub'));
    for (const left of [out, join(out, 'sub')]) writeFileSync(join(left, '.korvex-1-2.tmp'), 'left behind');
    for (const id of [1, done + 2]) {  // by the clock of another computer
      writeFileSync(join(out, `${id}.txt`), 'old', { flag: 'a' });
      utimesSync(join(out, `${id}.txt`), 4e9, 4e9);
    }
    const first = readFileSync(join(out, '1.txt'), 'utf8');
    const last = run('--resume');
    assert.match(last.stderr, new RegExp(`Going on behind record ${done.toLocaleString('en')}\\.`));
    assert.match(last.stderr, /29,700 symbols drawn, 301 lines failed/);
    assert.equal(last.status, 1);
    assert.deepEqual(failures(out).map(({ line }) => line), [...Array.from({ length: 300 }, (_, i) => 100 * i + 1), count + 1]);
    assert.match(failures(out).at(-1).error, /Another symbol of this list has the file .*1\.txt already/);
    assert.equal(readFileSync(join(out, '1.txt'), 'utf8'), first);
    assert.equal(pictures(out).length, 29700 + 1);  // with the folder, and nothing left behind
    assert.deepEqual(readdirSync(join(out, 'sub')), []);
    for (const id of [done, done + 1, done + 2, count - 1].filter((id) => id % 100)) {
      const text = draw('code39', `J${id}`, '--format', 'txt').toString();
      assert.equal(readFileSync(join(out, `${id}.txt`), 'utf8'), text);
    }
  }));

test('an end that is asked for comes while a list or the data of a job is awaited', { timeout: 60000 }, () =>
  inFolder(async (folder) => {
    for (const signal of ['SIGINT', 'SIGTERM', 'SIGHUP']) {
      for (const [first, records] of [['{"data": 1}\n', 1], ['{"data_file": "pipe"}\n', 0], ['data\n1\n', 1], [' ', null]]) {
        const out = join(folder, `${signal}-${first.length}`);
        const journal = join(out, '.korvex-batch.json');
        spawnSync('mkfifo', ['pipe'], { cwd: folder });
        const child = spawn(program, ['batch', '-', '-o', out, '--symbology', 'qr'], { cwd: folder, stdio: ['pipe', 'ignore', 'pipe'] });
        const ended = new Promise((resolve) => child.on('exit', resolve));
        child.stdin.write(first);
        const isThere = () => records === null || (existsSync(journal) && JSON.parse(readFileSync(journal)).records === records);
        while (!isThere()) await setTimeout(5);
        await setTimeout(100);
        child.kill(signal);
        assert.equal(await ended, 130, `${signal} ${first}`);
        if (records !== null) assert.equal(JSON.parse(readFileSync(journal)).records, records);
      }
    }
  }));

test('a run that cannot write any more says why and how far it came, and can go on', () =>
  inFolder((folder) => {
    const args = ['-o', 'out', '--symbology', 'code39'];
    const full = korvex(['batch', '-', ...args, '--report', '/dev/full'], { input: '{"data": "ü"}', cwd: folder });
    assert.equal(full.status, 1);
    assert.match(full.stderr, /Stopped behind record 0; 0 symbols drawn, 1 line failed .*--resume goes on there\.\n/);
    assert.match(full.stderr, /Cannot write \/dev\/full: No space left on device\.\n$/);
    assert.ok(existsSync(join(folder, 'out', '.korvex-batch.json')));

    writeFileSync(join(folder, 'jobs'), lines(...Array.from({ length: 3000 }, (_, data) => ({ data }))));
    const script = `mount -t tmpfs -o size=1m none out || exit 99
      '${program}' batch jobs ${args.join(' ')} && exit 98
      mount -o remount,size=100m out; '${program}' batch jobs ${args.join(' ')} --resume; ls out | wc -l`;
    const { status, stdout, stderr } = spawnSync('unshare', ['-rm', 'sh', '-c', script], { cwd: folder, encoding: 'utf8' });
    if (status === null || /unshare:|mount:/.test(stderr)) return;  // a system that gives nobody a small disk
    assert.match(stderr, /Stopped behind record [\d,]+; \d+ symbols drawn, in .*\nkorvex: Cannot write out\/.*: No space left/);
    assert.match(stderr, /korvex: 3,000 symbols drawn/);
    assert.equal(stdout, '3001\n');
  }));

test('nothing is written through a link, and without threads the work is done all the same', () =>
  inFolder((folder) => {
    writeFileSync(join(folder, 'victim'), 'kept');
    mkdirSync(join(folder, 'out'));
    for (const name of ['failed.jsonl', '.korvex-batch.names']) symlinkSync('../victim', join(folder, 'out', name));
    const command = `ulimit -s 1073741824; exec '${program}' batch - -o out --symbology code39 --threads 200 --name {line}.txt`;
    const { status, stderr } = spawnSync('bash', ['-c', command], { cwd: folder, input: '{"data": 1}\n{"data": "ü"}\n', encoding: 'utf8' });
    assert.equal(status, 1);
    assert.match(stderr, /1 symbol drawn, 1 line failed/);
    assert.equal(readFileSync(join(folder, 'victim'), 'utf8'), 'kept');
    assert.equal(failures(join(folder, 'out')).length, 1);
  }));

test('a sheet has the symbols on pages, and refuses what is larger than a label', () =>
  inFolder((folder) => {
    const jobs = Array.from({ length: 13 }, (_, id) => ({ id, symbology: 'datamatrix', data: `LABEL ${id}` }));
    jobs.push({ id: 'long', symbology: 'code128', data: 'x'.repeat(80) });
    const { status, stderr } = korvex(['batch', '-', '--sheet', 's.pdf', '--page', '100x60mm', '--grid', '2x3',
      '--margins', '5mm', '--gap', '2mm', '--caption', 'No. {id}', '--module', '0.5mm'],
      { input: lines(...jobs), cwd: folder });
    assert.equal(status, 1);
    assert.match(stderr, /line 14: The symbol takes [\d.]+ x [\d.]+ mm with its caption; a label has 28\.7 x 24 mm\./);
    assert.match(stderr, /13 symbols drawn, 1 line failed \(s\.pdf\.failed\.jsonl\), .* on 3 pages/);
    const onOutput = korvex(['batch', '-', '--sheet', 't.pdf', '--report', '-'], { input: lines(...jobs, 1), cwd: folder });
    assert.equal(JSON.parse(onOutput.stdout.toString().trimEnd().split('\n').at(-1)).line, 15);
    const pdf = readFileSync(join(folder, 's.pdf'), 'latin1');
    assert.match(pdf, /\/Count 3\b/);
    assert.match(pdf, /\/MediaBox \[ 0 0 283\.46\d* 170\.07\d* \]/);
  }));
