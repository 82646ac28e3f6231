// What is installed: an outside project builds against it, the examples draw labels, and the Debian package comes
// and goes.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { existsSync, mkdirSync, mkdtempSync, readdirSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { after, before, test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { draw, korvex, program, readPng } from '../cli/korvex.mjs';

const root = fileURLToPath(new URL('../..', import.meta.url));
const build = process.env.KORVEX_BUILD ?? join(root, 'build');
const folder = mkdtempSync(join(tmpdir(), 'korvex-package-'));
const prefix = join(folder, 'usr');
const library = join(prefix, 'lib');
const run = (command, args, env = {}) =>
  execFileSync(command, args,
    { encoding: 'utf8', stdio: ['ignore', 'pipe', 'pipe'], cwd: folder, env: { ...process.env, ...env } });

before(() => run('cmake', ['--install', build, '--prefix', prefix]));
after(() => rmSync(folder, { recursive: true }));

/** Rows of 0 and 1 of a PBM picture. */
const pbmRows = (pbm) => pbm.trim().split('\n').slice(pbm.startsWith('P1\n') ? 2 : 1);
/** What `korvex draw` has for the same symbol, `scale` pixels a module. */
const rowsOf = (scale, ...args) => draw(...args, '--format', 'txt').toString().trim().split('\n').flatMap((row) =>
  Array(scale).fill([...row].map((module) => module.repeat(scale)).join('')));

test('an outside project in C and in C++ builds against the installed tree, and draws', () => {
  const out = join(folder, 'outside');
  run('cmake', ['-S', join(root, 'examples'), '-B', out, '-G', 'Ninja', `-DCMAKE_PREFIX_PATH=${prefix}`]);
  run('cmake', ['--build', out]);
  const pbm = run(join(out, 'label_c'), ['HELLO KORVEX']);
  assert.deepEqual(pbmRows(pbm), rowsOf(4, 'qr', 'HELLO KORVEX', '--dialect', 'korvex32', '--quiet-zone', '4'));
  const svg = run(join(out, 'label_cpp'), ['400638133393']);
  const bars = [...svg.matchAll(/M(\d+) 0h1/g)].map(([, x]) => Number(x) - 11);
  const expected = draw('ean13', '400638133393', '--format', 'txt').toString();
  assert.deepEqual(bars, [...expected].flatMap((bar, x) => (bar === '1' ? [x] : [])));
  assert.match(svg, />4006381333931</);

  const flags = run('pkg-config', ['--cflags', '--libs', 'korvex'], { PKG_CONFIG_PATH: join(library, 'pkgconfig') });
  run('cc', ['-o', 'by-hand', join(root, 'examples/label.c'), ...flags.trim().split(/\s+/)]);
  assert.equal(run('./by-hand', ['HELLO KORVEX'], { LD_LIBRARY_PATH: library }), pbm);
  run('cc', ['-o', 'static', join(root, 'examples/label.c'), `-I${prefix}/include`, join(library, 'libkorvex.a'),
    '-lstdc++']);
  assert.equal(run('./static', ['HELLO KORVEX']), pbm);
});

test('the examples in Python and Node draw what the command draws', () => {
  const pbm = run('python3', [join(root, 'examples/label.py'), 'ITEM 4711'],
    { LIBKORVEX: join(library, 'libkorvex.so.1') });
  assert.deepEqual(pbmRows(pbm), rowsOf(4, 'datamatrix', 'ITEM 4711', '--quiet-zone', '1'));
  run('node', [join(root, 'examples/label.mjs'), '340123450000000017', 'label.png'],
    { KORVEX: join(prefix, 'bin/korvex') });
  const png = readPng(readFileSync(join(folder, 'label.png')));
  assert.equal(png.dotsPerMetre, Math.round(203 / 0.0254));
  assert.deepEqual([png.width % 4, png.height], [0, 256]);  // 0.5 mm are 4 dots at 203 dpi
});

test('the shared library has its soname and public names only', () => {
  const shared = join(library, 'libkorvex.so.1');
  assert.match(run('objdump', ['-p', shared]), /SONAME +libkorvex\.so\.1\n/);
  const names = run('nm', ['-DC', '--defined-only', '--format=posix', shared]).trim().split('\n');
  const plain = names.filter((name) => /^\w+ T /.test(name)).map((name) => name.split(' ')[0]);
  assert.equal(plain.filter((name) => !name.startsWith('korvex_device_')).length, 13);
  for (const name of names) assert.match(name, /^(\w+ T |korvex::\w+::[a-z_0-9]+(\[abi:cxx11\])?\(.* T )/);
});

test('the library and the command are hardened as distributions build', () => {
  for (const [file, called] of [['lib/libkorvex.so.1', []], ['bin/korvex', ['__snprintf_chk']]]) {
    const read = (option) => run('readelf', ['-W', option, join(prefix, file)]);
    assert.match(read('-h'), /Type: +DYN/);
    assert.match(read('-l'), /GNU_RELRO/);
    assert.match(read('-l'), /GNU_STACK .* RW /);
    assert.match(read('-d'), /FLAGS_1.* NOW/);
    for (const name of ['__stack_chk_fail', ...called]) assert.match(read('--dyn-syms'), new RegExp(` UND ${name}@`));
  }
  assert.match(run('readelf', ['-W', '-d', join(prefix, 'bin/korvex')]), /FLAGS_1.* PIE/);
});

test('manual and completion know every command and option', () => {
  const page = readFileSync(join(prefix, 'share/man/man1/korvex.1'), 'utf8').replaceAll('\\-', '-');
  for (const command of ['draw', 'batch', 'list', 'call', 'completion']) assert.ok(page.includes(`korvex ${command}`));
  const offered = (...words) => run('bash', ['-c', `source ${join(prefix, 'share/bash-completion/completions/korvex')}
    COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)); compopt() { :; }; _korvex; printf '%s\\n' "\${COMPREPLY[@]}"`, 'korvex',
    'korvex', ...words]).trim().split('\n');
  const optionsOf = (...args) => [...korvex([...args, '--help']).stdout.toString()
    .matchAll(/^ {2}(?:-\w,)?(--[a-z-]+)/gm)].map(([, option]) => option);
  const options = { draw: optionsOf('draw', 'code39'), batch: optionsOf('batch') };
  assert.ok(options.draw.length > 10 && options.batch.length > 20);
  for (const option of [...optionsOf('draw', 'veri').slice(-11), ...options.batch]) {
    assert.ok(option === '--help' || page.includes(option), `the manual has ${option}`);
  }
  for (const option of options.draw) assert.ok(offered('draw', 'code39', '--').includes(option), option);
  for (const option of options.batch) assert.ok(offered('batch', 'jobs', '--').includes(option), option);
  assert.deepEqual(offered('draw', 'micro-q'), ['micro-qr']);
  assert.deepEqual(offered('draw', 'qr', '--level', ''), ['L', 'M', 'Q', 'H']);
  assert.deepEqual(offered('draw', '--format', 'p'), ['png', 'pdf']);
});

const skip = process.getuid() !== 0 && 'takes root';
test('the Debian package installs, runs and leaves nothing behind', { skip }, () => {
  run('cpack', ['-G', 'DEB', '--config', join(build, 'CPackConfig.cmake'), '-B', folder]);
  const [deb] = readdirSync(folder).filter((name) => /^korvex_.*\.deb$/.test(name));
  const info = run('dpkg-deb', ['--info', deb]);
  for (const needed of [/Depends: .*libcairo2/, /Depends: .*libc6/, /Maintainer: /, /Description: Barcode symbols/]) {
    assert.match(info, needed);
  }
  const system = join(folder, 'system');
  const admin = join(system, 'var/lib/dpkg');
  mkdirSync(join(admin, 'updates'), { recursive: true });
  mkdirSync(join(admin, 'info'));
  writeFileSync(join(admin, 'status'), '');
  // The package's scripts call ldconfig alone, which does no harm here.
  const dpkg = (...args) =>
    run('dpkg', [`--root=${system}`, '--force-depends', '--force-script-chrootless', '--log=/dev/null', ...args]);
  dpkg('-i', deb);
  for (const file of ['bin/korvex', 'share/man/man1/korvex.1', 'include/korvex/korvex32.h', 'share/doc/korvex/LICENSE',
    'share/bash-completion/completions/korvex', 'share/zsh/vendor-completions/_korvex']) {
    assert.ok(existsSync(join(system, 'usr', file)), file);
  }
  const installed = execFileSync(join(system, 'usr/bin/korvex'), ['draw', 'qr', 'X', '--format', 'txt']);
  assert.deepEqual(installed, draw('qr', 'X', '--format', 'txt'));
  const header = readFileSync(join(system, 'usr/include/korvex/korvex32.h'));
  assert.deepEqual(header, readFileSync(join(root, 'include/korvex/korvex32.h')));
  dpkg('-r', 'korvex');
  assert.deepEqual(existsSync(join(system, 'usr')) ? readdirSync(join(system, 'usr')) : [], []);
});
