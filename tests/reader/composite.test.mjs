// GS1 DataBar and the linear components of composite symbols through the reader, from the PNG files that people get.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { bytesOf, Random, draw, read, readBack } from './reader.mjs';

const digits = '0123456789';
const capitals = 'ABCDEFGHIJKLMNOPQRSTUVWXYZ';
const others = 'abcdefghijklmnopqrstuvwxyz!"%&\'*+,-./:;<=>?_'; // brackets would begin an identifier

const checkDigit = (text) =>
  String((10 - ([...text].reverse().reduce((sum, digit, i) => sum + Number(digit) * (i % 2 ? 1 : 3), 0) % 10)) % 10);
const checked = (text) => text + checkDigit(text);

const itemSymbols = [
  ['databar', 'DataBarOmni', (random) => random.string(digits, 13)],
  ['databar-truncated', 'DataBarOmni', (random) => random.string(digits, 13)],
  ['databar-stacked', 'DataBarStk', (random) => random.string(digits, 13)],
  ['databar-stacked-omni', 'DataBarStk', (random) => random.string(digits, 13)],
  ['databar-limited', 'DataBarLtd', (random) => random.string('01', 1) + random.string(digits, 12)],
];

for (const [name, format, number] of itemSymbols) {
  test(`${name} holds any item number`, async () => {
    const random = new Random(name.length);
    for (const item of ['0000000000000', name === 'databar-limited' ? '1999999999999' : '9999999999999', ...Array.from({ length: 40 }, () => number(random))]) {
      const result = await readBack(name, item, format, ['--module', '2']);
      assert.equal(bytesOf(result), `01${checked(item)}`, `${name} of ${item}`);
    }
  });
}

test('DataBar Expanded holds element strings of every encodation method, in one row and in many', async () => {
  const random = new Random(1);
  const item = () => checked(`9${random.string(digits, 12)}`);
  const date = () => `${random.string(digits, 2)}0${1 + random.below(9)}1${random.below(9)}`;
  const methods = [
    () => `(01)${checked(random.string('123', 1) + random.string(digits, 12))}`,
    () => `(01)${item()}(3103)0${random.string('012', 1)}${random.string(digits, 4)}`,
    () => `(01)${item()}(3202)00${random.string(digits, 4)}`,
    () => `(01)${item()}(3203)01${random.string(digits, 4)}`,
    // The largest weights of the short methods, and one more.
    ...['(3103)032767', '(3103)032768', '(3202)009999', '(3202)010000', '(3203)022767', '(3203)022768', '(3103)099999', '(3103)100000']
      .map((weight) => () => `(01)${item()}${weight}`),
    () => `(01)${item()}(3925)${random.string(digits, 5)}(10)${random.string(capitals, 3)}`,
    () => `(01)${item()}(3931)840${random.string(digits, 6)}`,
    ...['11', '13', '15', '17'].flatMap((ai) => [
      () => `(01)${item()}(3103)${random.string('01', 1)}${random.string(digits, 5)}(${ai})${date()}`,
      () => `(01)${item()}(3201)0${random.string(digits, 5)}(${ai})${date()}`,
    ]),
    () => `(01)${item()}(21)${random.string(digits + capitals, 1 + random.below(18))}`,
    () => `(01)${item()}(91)${random.string(others + capitals + digits, 1 + random.below(20))}`,
  ];
  for (const method of methods) {
    for (let round = 0; round < 4; ++round) {
      const text = method();
      // The reader drops a field 000 behind FNC1.
      if (text.includes(')000')) continue;
      const rows = round < 2 ? [] : ['--segments', ['4', '6'][round - 2]];
      const result = await readBack('databar-expanded', text, 'DataBarExp', ['--module', '2', ...rows]);
      const plain = text.replace(/(\((?:21|91|392.|393.|10)\)[^(]*)(?=\((?:10|21)\))/g, '$1\x1d').replace(/\((\d{2,4})\)/g, '$1');
      assert.equal(bytesOf(result), plain, text);
    }
  }
});

test('the linear components of composite symbols read under every 2D component', async () => {
  const random = new Random(2);
  const cases = [
    ['ean13-cc', 'EAN13', 12, checked],
    ['ean8-cc', 'EAN8', 7, checked],
    ['upce-cc', 'UPCE', 0, (data) => `0${checked(data)}`],
    ['upca-cc', 'UPCA', 11, (data) => `0${checked(data)}`],
  ];
  for (const [name, format, length, expect] of cases) {
    for (const text of [undefined, '(21)A1', `(10)${random.string(capitals, 8)}(91)${random.string(others, 16)}`]) {
      const data = length ? random.string(digits, length) : `0${random.string('123456789', 5)}0000${5 + random.below(5)}`;
      const component = text ? ['--cc', text] : [];
      const [result] = await read(await draw(name, data, ['--module', '2', ...component]), format);
      assert.equal(result && bytesOf(result), expect(data), `${name} ${text}`);
    }
  }
  for (const [name, text] of [['gs1-128', undefined], ['gs1-128', '(21)A1'], ['gs1-128-cc', '(21)A1B2']]) {
    const component = text ? ['--cc', text] : [];
    const [result] = await read(await draw(name, '(01)09501101530003(10)AB-12', ['--module', '2', ...component]), 'Code128');
    assert.equal(result && bytesOf(result), '010950110153000310AB-12', `${name} ${text}`);
    assert.equal(result.symbologyIdentifier, ']C1');
  }
});

test('DataBar Expanded takes what 21 data characters hold, with an item number or without', async () => {
  const random = new Random(3);
  const beginnings = ['(01)09501101530003(10)', '(8110)', '(01)09501101530003(17)271231(10)AB(91)', '(00)095011015300000010(91)'];
  for (const beginning of beginnings) {
    for (const alphabet of [digits, capitals, digits + capitals + others]) {
      let drawn = 0;
      for (let length = 1; length <= 70; ++length) {
        const text = beginning + random.string(alphabet, length);
        let png;
        try {
          png = await draw('databar-expanded', text, ['--module', '2', '--segments', '8']);
        } catch (error) {
          assert.match(error.message, /data characters|takes/, text);
          break; // and so are all longer ones
        }
        const [result] = await read(png, 'DataBarExp');
        const plain = text.replace('(10)AB(91)', '(10)AB\x1d(91)').replace(/\((\d{2,4})\)/g, '$1');
        assert.equal(result && bytesOf(result), plain, text);
        drawn = length;
      }
      assert.ok(drawn >= 15, `${beginning}: ${drawn} characters`);
    }
  }
});

test('every size of CC-B reads as the MicroPDF417 that it is', async () => {
  // Columns; the shortest text that is no CC-A, which the reader does not know; rows and check codewords of the
  // sizes. The other codewords hold bytes, behind 920 and the latch.
  const sizes = {
    'upce-cc': [2, 22, [[17, 10], [20, 11], [23, 13], [26, 15]]],
    'ean8-cc': [3, 22, [[15, 21], [20, 26], [26, 32], [32, 38], [38, 44], [44, 50]]],
    'ean13-cc': [4, 26, [[10, 16], [12, 18], [15, 21], [20, 26], [26, 32], [32, 38], [38, 44], [44, 50]]],
  };
  const numbers = { 'upce-cc': '01234000005', 'ean8-cc': '9638507', 'ean13-cc': '400638133393' };
  for (const [name, [columns, shortest, rows]] of Object.entries(sizes)) {
    const expected = rows.map(([count, check]) => {
      const codewords = count * columns - check - 2;
      return Math.floor(codewords / 5) * 6 + (codewords % 5); // bytes
    });
    const met = new Set();
    for (let length = shortest; length < 170; length += 2) {
      const text = ['91', '92'].map((ai, i) => [ai, 'x'.repeat(Math.max(0, Math.min(90, length - 90 * i)))])
        .filter(([, data]) => data).map(([ai, data]) => `(${ai})${data}`).join('');
      let png;
      try {
        png = await draw(name, numbers[name], ['--module', '4', '--cc', text]);
      } catch {
        break;
      }
      const [result] = await read(png, 'MicroPDF417');
      assert.ok(result, `${name} ${text}`);
      met.add(result.bytes.length);
    }
    assert.deepEqual([...met], expected, name);
  }
});

test('CC-C is found as a PDF417 symbol, CC-B as MicroPDF417', async () => {
  const long = `(91)${'KORVEX0123'.repeat(6)}`;
  for (const [name, format, data] of [['gs1-128-cc', 'PDF417', '(01)09501101530003'], ['ean13-cc', 'MicroPDF417', '400638133393']]) {
    const results = await read(await draw(name, data, ['--module', '4', '--cc', long]), format);
    assert.equal(results.length, 1, name);
  }
});
