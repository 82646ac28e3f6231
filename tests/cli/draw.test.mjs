// What `korvex draw` draws: pixels, sizes, colours and the other formats.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { test } from 'node:test';
import { draw, korvex, program, readPng, rowOf, widened } from './korvex.mjs';

const modulesOf = (...args) => draw(...args, '--format', 'txt').toString().trimEnd();
const pngOf = (...args) => readPng(draw(...args, '--format', 'png'));

test('a module is a whole number of pixels, black or white, within its quiet zones', () => {
  for (const [args, left, right] of [
    [['ean13', '400638133393'], 11, 7],
    [['upca', '03600029145'], 9, 9],
    [['ean8', '9638507'], 7, 7],
    [['upce', '425261'], 9, 7],
    [['code128', 'Korvex'], 10, 10],
    [['code39', 'A', '--ratio', '5:2'], 20, 20],
  ]) {
    const bars = '0'.repeat(left) + modulesOf(...args) + '0'.repeat(right);
    for (const size of [1, 3]) {
      const png = pngOf(...args, '--no-text', '--height', '10', '--module', `${size}`);
      assert.equal(png.height, 10 * size);
      for (let y = 0; y < png.height; ++y) assert.equal(rowOf(png, y), widened(bars, size), args[0]);
    }
    const withText = pngOf(...args, '--module', '2', '--height', '30');
    for (let y = 0; y < 60; ++y) assert.equal(rowOf(withText, y), widened(bars, 2), `${args[0]} with text`);
  }
});

test('guard bars of EAN/UPC are five modules longer, in UPC-A the bars of the outer digits too', () => {
  for (const [name, data, left, isLong] of [
    ['ean13', '400638133393', 11, (x) => x < 3 || (x > 44 && x < 50) || x > 91],
    ['ean8', '9638507', 7, (x) => x < 3 || (x > 30 && x < 36) || x > 63],
    ['upce', '425261', 9, (x) => x < 3 || x > 44],
    ['upca', '03600029145', 9, (x) => x < 10 || (x > 44 && x < 50) || x > 84],
  ]) {
    const bars = modulesOf(name, data);
    const long = widened([...bars].map((bar, x) => (isLong(x) ? bar : '0')).join(''), 2);
    const png = pngOf(name, data, '--module', '2', '--height', '20');
    const under = (y) => rowOf(png, y).slice(2 * left, 2 * (left + bars.length));
    assert.equal(under(40), long, name);  // between the bars and the digits
    for (let y = 40; y < 50; ++y) {
      [...long].forEach((pixel, x) => pixel === '1' && assert.equal(under(y)[x], '1', `${name}, row ${y}`));
    }
    assert.match(under(51), /[1?]/, `${name} has digits`);
    assert.equal(under(51).slice(0, 6), '000000', `${name}: the guard bars end`);
  }
});

test('text keeps inside the picture', () => {
  for (const args of [
    ['ean13', '400638133393', '--quiet-zone', '0'],
    ['upca', '03600029145', '--quiet-zone', '0'],
    ['addon', '52495', '--quiet-zone', '0'],
    ['code128', '00112233445566778899'.repeat(3), '--quiet-zone', '0'],
    ['code128', 'gjpqy(),;_', '--quiet-zone', '0'],
  ]) {
    const png = pngOf(...args, '--module', '2', '--height', '20');
    const columnIsLight = (x) => [...Array(png.height).keys()].every((y) => y < 60 || png.at(x, y) === 'ffffffff');
    assert.ok(columnIsLight(0) && columnIsLight(png.width - 1), args.join(' '));
    assert.match(rowOf(png, args[0] === 'addon' ? 0 : png.height - 1), /^0+$/, args.join(' '));
  }
});

test('the size of a module', () => {
  for (const [args, pixels, dotsPerInch, said] of [
    [[], 4, 0, /^$/],
    [['--module', '3'], 3, 0, /^$/],
    [['--module', '3', '--dpi', '600'], 3, 600, /^$/],
    [['--module', '0.254mm', '--dpi', '300'], 3, 300, /^$/],
    [['--module', '0.33mm', '--dpi', '300'], 4, 300, /0\.33 mm is 3\.9 dots at 300 dpi; it is drawn with 4 dots, 0\.3387 mm/],
    [['--module', '0.01mm', '--dpi', '203'], 1, 203, /drawn with 1 dot, 0\.1251 mm/],
    [['--dpi', '203.2'], 3, 203.2, /2\.64 dots/],
  ]) {
    const { stdout, stderr } = korvex(['draw', 'addon', '12', '--no-text', ...args, '--format', 'png']);
    const { width, dotsPerMetre } = readPng(stdout);
    assert.equal(width, (7 + 20 + 5) * pixels, args.join(' '));
    assert.equal(dotsPerMetre ?? 0, Math.round(dotsPerInch / 0.0254));
    assert.match(stderr, said);
  }
});

test('heights in modules and millimetres', () => {
  const barRows = (...args) => {
    const png = pngOf('addon', '12', '--no-text', '--quiet-zone', '0', ...args);
    return [...Array(png.height).keys()].filter((y) => png.at(0, y) === '000000ff').length;
  };
  assert.equal(barRows('--height', '20', '--module', '2'), 40);
  assert.equal(barRows('--height', '7.5', '--module', '2'), 15);
  assert.equal(barRows('--height', '20mm', '--module', '0.254mm', '--dpi', '300'), 236);  // 236.2 dots
});

test('colours', () => {
  const coloured = pngOf('addon', '12', '--foreground', '#102030', '--background', 'transparent', '--module', '1');
  assert.equal(coloured.at(7, 40), '102030ff');
  assert.equal(coloured.at(0, 40), '10203000');
  const { stderr, status } = korvex(['draw', 'addon', '12', '--foreground', 'white', '--background', '#000000']);
  assert.equal(status, 0);
  assert.match(stderr, /not darker than their background/);
});

test('text has the modules alone, and a quiet zone when asked', () => {
  const bars = modulesOf('addon', '12');
  assert.equal(bars, '10110011001010010011');
  const light = '0'.repeat(24);
  assert.equal(modulesOf('addon', '12', '--quiet-zone', '2'), [light, light, `00${bars}00`, light, light].join('\n'));
});

/** What an SVG file shows: the modules of its path along its upper edge, and some of its texts. */
function readSvg(svg) {
  const [, width, height] = /viewBox="0 0 (\d+) (\d+)"/.exec(svg);
  const modules = Array(Number(width)).fill('0');
  for (const [, x, , w] of svg.matchAll(/M(\d+) (\d+)h(\d+)v[\d.]+h-\3z/g)) modules.fill('1', +x, +x + +w);
  const texts = [...svg.matchAll(/<text [^>]*>([^<]*)<\/text>/g)].map(([, text]) => text);
  const [, size, unit] = /<svg [^>]* width="([\d.]+)(mm)?"/.exec(svg);
  return { width: +width, height: +height, modules: modules.join(''), texts, size: +size, unit };
}

test('SVG has the same modules, on their grid, and its size in the real world', () => {
  const args = ['ean13', '400638133393'];
  const svg = readSvg(draw(...args, '--format', 'svg').toString());
  assert.equal(svg.modules, '0'.repeat(11) + modulesOf(...args) + '0'.repeat(7));
  assert.equal(svg.texts.join(''), '4006381333931');
  for (const [sizes, size, unit] of [
    [[], 113 * 0.33, 'mm'],
    [['--module', '3'], 339, undefined],
    [['--module', '0.25mm'], 28.25, 'mm'],
    [['--module', '3', '--dpi', '300'], 113 * 0.254, 'mm'],
  ]) {
    const sized = readSvg(draw(...args, ...sizes, '--format', 'svg').toString());
    assert.deepEqual([sized.size.toFixed(2), sized.unit], [size.toFixed(2), unit]);
  }
});

test('markup and control characters in the data cannot break an SVG', () => {
  const hex = Buffer.from('<&"\'>]]>\x01\x1b\x7f').toString('hex');
  const svg = draw('code128', '--hex', hex, '--format', 'svg').toString();
  assert.ok(!/[\x00-\x09\x0b-\x1f\x7f]/.test(svg));
  assert.ok(svg.includes('<desc>&lt;&amp;"\'&gt;]]&gt;\\x01\\x1b\\x7f</desc>'));
  assert.equal(readSvg(svg).texts[0].trimEnd(), '&lt;&amp;"\'&gt;]]&gt;');
  assert.ok(!/&(?!(amp|lt|gt);)/.test(svg));
});

test('PDF and EPS have the size of the picture', () => {
  const sized = ['ean13', '400638133393', '--module', '0.254mm'];  // 113 x 79 modules of 0.72 points
  const pdf = draw(...sized, '--format', 'pdf').toString('latin1');
  const [, width, height] = /\/MediaBox \[ 0 0 ([\d.]+) ([\d.]+) \]/.exec(pdf);
  assert.deepEqual([(+width).toFixed(2), (+height).toFixed(2)], ['81.36', '56.88']);
  assert.ok(pdf.startsWith('%PDF-') && pdf.trimEnd().endsWith('%%EOF'));
  const eps = draw(...sized, '--format', 'eps').toString('latin1');
  assert.match(eps, /^%!PS-Adobe-3\.0 EPSF-3\.0\n/);
  assert.match(eps, /%%BoundingBox: 0 0 82 57\n/);
});

/** The modules in a line of blocks; `wide` where a character has two modules side by side. */
function modulesOfLine(line, wide) {
  const quarters = ' ▘▝▀▖▌▞▛▗▚▐▜▄▙▟█';
  return [...line].map((c) => (quarters.indexOf(c) & 1) + (wide ? `${(quarters.indexOf(c) >> 1) & 1}` : '')).join('');
}

test('without files the symbol is drawn in blocks', () => {
  const args = ['ean13', '400638133393'];
  const bars = '0'.repeat(11) + modulesOf(...args) + '0'.repeat(7);
  const lines = korvex(['draw', ...args]).stdout.toString().trimEnd().split('\n');
  assert.equal(modulesOfLine(lines[0], false), bars);
  assert.equal(lines.at(-1).replace(/[ █]/g, ''), '4006381333931');

  const inTerminal = (columns) => {
    const command = `stty cols ${columns}; '${program}' draw ${args.join(' ')}`;
    const { status, stdout } = spawnSync('script', ['-qec', command, '/dev/null'], { input: '' });
    return { status, text: stdout.toString().replaceAll('\r', '') };
  };
  const narrow = inTerminal(60);
  assert.equal(narrow.status, 0);
  const [, first] = /^\x1b\[38;2;0;0;0;48;2;255;255;255m(.*)\x1b\[0m\n/.exec(narrow.text);
  assert.equal(modulesOfLine(first, true).slice(0, bars.length), bars);
  const tooNarrow = inTerminal(40);
  assert.equal(tooNarrow.status, 1);
  assert.match(tooNarrow.text, /^korvex: The symbol does not fit: it is 57 columns wide and the terminal 40; .*\n$/);
});

test('bar width reduction takes whole dots off what is dark, and nothing else', () => {
  const pixelsOf = (png) =>
    Array.from({ length: png.height }, (_, y) => [...rowOf(png, y)].map((pixel) => pixel === '1'));
  const darkAt = (pixels, x, y) => pixels[y]?.[x] ?? false;
  const range = (from, to) => Array.from({ length: to - from + 1 }, (_, i) => from + i);
  for (const [dots, lower, ...args] of [
    [1, false, 'code128', 'Korvex', '--no-text'],
    [2, false, 'ean13', '400638133393', '--no-text'],
    [1, true, 'qr', 'KORVEX'],
    [3, true, 'datamatrix', 'KORVEX'],
    [2, true, 'databar-stacked', '0950110153000'],
    [1, true, 'maxicode', 'KORVEX'],
  ]) {
    const sized = [...args, '--module', args[0] === 'maxicode' ? '8' : '4'];
    const whole = pixelsOf(pngOf(...sized));
    const reduced = pixelsOf(pngOf(...sized, '--bwr', `${dots}`));
    const [before, after] = [dots >> 1, dots - (dots >> 1)];  // at left and upper edges, at right and lower ones
    reduced.forEach((row, y) => row.forEach((dark, x) => {
      const expected = range(x - before, x + after).every((u) =>
        (lower ? range(y - before, y + after) : [y]).every((v) => darkAt(whole, u, v)));
      assert.equal(dark, expected, `${args[0]}, pixel ${x}, ${y}`);
    }));
  }
  // The same edges in vector output: a dot of four is a quarter of a module.
  const boxes = (...more) => [...draw('qr', 'KORVEX', '--module', '4', ...more, '--format', 'svg').toString()
    .matchAll(/M([\d.]+) ([\d.]+)h([\d.]+)v([\d.]+)h/g)].map((box) => box.slice(1).map(Number));
  const covered = new Set();
  for (const [left, top, width, height] of boxes('--bwr', '1')) {
    for (const x of range(left * 4, (left + width) * 4 - 1)) {
      for (const y of range(top * 4, (top + height) * 4 - 1)) covered.add(`${x},${y}`);
    }
  }
  const pixels = pixelsOf(pngOf('qr', 'KORVEX', '--module', '4', '--bwr', '1'));
  const dark = pixels.flatMap((row, y) => row.flatMap((pixel, x) => (pixel ? [`${x},${y}`] : [])));
  assert.deepEqual(covered, new Set(dark));
});

test('GS1 data that break the rules are refused, or drawn with a warning', () => {
  const right = '(01)09501101530003';
  const wrong = '(01)09501101530004';
  for (const name of ['code128', 'datamatrix', 'gs1-128', 'gs1-qr', 'databar-expanded']) {
    const expected = modulesOf(name, '--gs1', right);
    assert.equal(modulesOf(name, right, '--gs1=strict'), expected);
    assert.equal(draw(name, '--format', 'txt', '--gs1', '--', '{GS}0109501101530003').toString().trimEnd(), expected);
    for (const args of [['--gs1', wrong], [wrong, '--gs1', 'strict'], ['--gs1', '--', wrong]]) {
      const refused = korvex(['draw', name, '-o', '-', '--format', 'txt', ...args]);
      assert.match(refused.stderr, /^korvex: \(01\) at position 1 of the data has the check digit 4, which is wrong: .*\n$/);
      assert.equal(refused.status, 1);
    }
    if (name === 'databar-expanded') continue;  // has no room for a check digit of its own
    const drawn = korvex(['draw', '--gs1', 'lenient', name, wrong, '-o', '-', '--format', 'txt']);
    assert.match(drawn.stderr, /^korvex: \(01\) at position 1 of the data has the check digit 4, which is wrong: .*\n$/);
    assert.equal(drawn.status, 0);
    assert.notEqual(drawn.stdout.toString().trimEnd(), expected);
  }
  const composite = ['draw', 'ean13-cc', '4006381333931', '--cc', '(10)A B', '-o', '-', '--format', 'txt'];
  assert.match(korvex(composite).stderr, /\(10\) at position 1 of the 2D component's text cannot hold/);
  assert.match(korvex([...composite, '--gs1', 'lenient']).stderr, /\(10\) at position 1 of the 2D component's text/);
  // People read brackets, whatever was typed.
  const text = (...args) => korvex(['draw', ...args, '-o', '-', '--format', 'txt', '--verbose']).stderr;
  assert.match(text('code128', '--gs1', '[10]AB[21]7'), /text \(10\)AB\(21\)7,/);
  assert.match(text('code128', '--gs1', '10AB{GS}217'), /text \(10\)AB\(21\)7,/);
  assert.match(text('code128', '--gs1', 'lenient', 'AB{GS}217'), /text AB217,/);
});
