// Request lines for every export: the special ones of requests.jsonl, and random ones, the same in every run.
import { readFileSync } from 'node:fs';

/** Numbers from a seed (a linear congruential generator's upper bits). */
class Random {
  constructor(seed) {
    this.state = BigInt(seed);
  }
  below(limit) {
    this.state = (this.state * 6364136223846793005n + 1442695040888963407n) & 0xffffffffffffffffn;
    return Number((this.state >> 33n) % BigInt(limit));
  }
  between(least, most) {
    return least + this.below(most - least + 1);
  }
  pick(items) {
    return items[this.below(items.length)];
  }
  oneIn(count) {
    return this.below(count) === 0;
  }
  /** The usual value, and every twelfth time an unusual one. */
  mostly(usual, unusual) {
    return this.oneIn(12) ? unusual : usual;
  }
  string(alphabet, length) {
    return Array.from({ length }, () => this.pick(alphabet)).join('');
  }
  /** A length: short ones are frequent, the longest is rare. */
  length(most) {
    return this.between(1, this.oneIn(6) ? most : Math.min(most, 30));
  }
}

const digits = '0123456789';
const capitals = 'ABCDEFGHIJKLMNOPQRSTUVWXYZ';
const alphanumeric = `${digits}${capitals} $%*+-./:`;
const text = `${alphanumeric}abcdefghijklmnopqrstuvwxyz!"#&'(),;<=>?@[]^_{}|`;
const gs1 = `${digits}${capitals}-./`;

const hexadecimal = (random, length) => ({ hex: random.string('0123456789abcdef', 2 * length) });
const kanji = (random, length) => ({ hex: Array.from({ length }, () => random.pick(['8b9e', '93fa', '967b', '8ce0'])).join('') });

function someData(random, most) {
  const length = random.length(most);
  return random.pick([
    () => random.string(digits, length),
    () => random.string(alphanumeric, length),
    () => random.string(text, length),
    () => random.string(digits, length) + random.string(capitals, 5) + random.string(text, 5),
    () => hexadecimal(random, length),
  ])();
}

/** What a linear type's data is made of; a fault gets in now and then. */
function linearData(random, type) {
  const length = random.length(120);
  const of = {
    0: () => `${random.pick('ABCD')}${random.string(`${digits}-$:/.+`, length)}${random.pick('ABCDTN*E')}`,
    1: () => `*${random.string(`${digits}${capitals}-. $/+%`, Math.min(length, 60))}*`,
    3: () => random.string(digits, random.pick([11, 12, 13])),
    4: () => random.string(digits, random.pick([7, 8])),
    8: () => random.string(digits, 17),
    9: () => `>${random.pick('GH')}${random.string(capitals + digits, length)}`,
    11: () => random.string(`${digits}-`, length),
    12: () => random.string(text, length),
    13: () => random.pick(['A', 'B']).concat('05', random.string(capitals, 5)),
    14: () => random.string(digits, 6),
    15: () => random.string(digits, random.pick([2, 5])),
  }[type] ?? (() => random.string(digits, length));
  return of() + random.mostly('', random.pick(['x', '5', 'é']));
}

// How many requests of each export, and what their parameters are.
const families = {
  Korvex_Bit: [240, (random) => {
    const type = random.between(0, 18);
    return { type, guard_option: random.pick([0, 1, 1, 65535]), text_option: random.pick([0, 1, 1, 2]),
             ratio: [random.pick([0, 0, 1, 2, 3, -1]), ...Array.from({ length: 4 }, () => random.between(1, 5))],
             data: linearData(random, type) };
  }],
  QR_Encode: [60, (random) => {
    const type = random.pick([1, 2, 2, 3, 4, 5]);
    const most = { 1: 200, 2: 900, 3: 12, 4: 200, 5: 60 }[type];
    return {
      ecc_level: random.mostly(random.between(1, 4), 0), module_size: random.mostly(random.between(1, 3), 0),
      symbol_type: random.mostly(type, 6), rmqr_rows: random.mostly(random.between(1, 6), 7),
      version: random.mostly(0, random.between(1, 40)),
      append_flag: random.mostly(0, 1), append_count: 4, append_index: random.between(1, 5), append_parity: 90,
      fixed_mode_flag: random.mostly(0, 1), fixed_mode: 4,
      data: random.oneIn(5) ? kanji(random, random.length(40)) : someData(random, most),
      private_flag: random.mostly(0, 1), private_key: '0123456789ABCDEF', private_data: 'secret',
    };
  }],
  PDF_Encode: [50, (random) => {
    const micro = random.pick([0, 0, 0, 1]);
    const [columns, rows] = micro ? random.pick([[1, 11], [2, 8], [3, 15], [4, 10], [4, 44], [0, 0], [5, 5]])
                                  : [random.pick([0, 3, 10, 31]), random.pick([0, 0, 0, 20, 90])];
    return { module_width: random.mostly(random.between(1, 3), 10), row_height: random.mostly(random.between(1, 6), 0),
             ecc_level: random.mostly(random.between(0, 5), 9), columns, rows, micro, truncated: random.pick([0, 0, 1]),
             byte_only: random.pick([0, 0, 1]), data: someData(random, micro ? 60 : 500) };
  }],
  DATA_Encode: [60, (random) => {
    const [columns, rows] = random.pick([[0, 0], [0, 0], [24, 24], [64, 64], [18, 8], [0, 12], [36, 16], [23, 23]]);
    return { module_width: random.mostly(random.between(1, 4), 0), module_height: random.between(1, 4), columns, rows,
             fnc1_escape: random.pick([0, 1]), data: someData(random, columns === 0 && rows === 0 ? 600 : 12) };
  }],
  MAXI_Encode: [8, (random) => {
    const mode = random.pick([2, 3, 4, 6]);
    return { position: random.between(1, 8), total: random.mostly(random.between(1, 8), 9), mode,
             postal_code: mode === 3 ? random.string(alphanumeric, 6) : random.string(digits, 9),
             service_class: random.between(1, 999), country_code: random.between(1, 999),
             message: random.string(text, random.length(100)) };
  }],
  CC_Encode: [70, (random) => {
    const type = random.mostly(random.between(1, 12), 13);
    const linear = { 6: `01${random.string(digits, 14)}`, 7: random.string(digits, 12), 8: random.string(digits, 6),
                     9: random.string(digits, 7), 10: random.string(digits, 12), 11: `01${random.string(digits, 14)}`,
                     12: `01${random.string(digits, 14)}` }[type] ?? `0${random.string(digits, 12)}`;
    const twoD = random.pick(['', '', `|99${random.string(gs1, random.length(40))}`, `|21${random.string(digits, 8)}`]);
    return { type, module_size: random.mostly(random.between(1, 3), 0), linear_height: random.between(5, 30),
             segments_per_row: random.pick([2, 4, 22]), data: linear + twoD };
  }],
  VERI_Encode: [10, (random) => ({
    symbol_size: random.between(8, 34), ecc_mode: random.pick([0, 2, 4]), module_width: 3, module_height: 3,
    data: random.string(text, random.between(1, 12)),
  })],
};

/** All request lines, in one order for ever. */
export function requestLines() {
  const lines = readFileSync(new URL('requests.jsonl', import.meta.url), 'utf8').split('\n').filter(Boolean);
  lines.push(JSON.stringify({ id: 'a byte too long', export: 'CC_Encode',
                              params: { type: 6, module_size: 1, segments_per_row: 22, data: '1'.repeat(2437) } }));
  Object.entries(families).forEach(([name, [count, parameters]], seed) => {
    const random = new Random(seed + 1);
    for (let index = 0; index < count; ++index) {
      const twin = random.oneIn(4) && name !== 'VERI_Encode' ? '_x64' : '';
      const trace = random.oneIn(6) ? { trace: true } : {};
      lines.push(JSON.stringify({ id: `${name} ${index}`, export: name + twin, ...trace, params: parameters(random) }));
    }
  });
  return lines;
}

/** The family's plain name for a line's export, or "no request" for a line that names none. */
export function familyOf(line) {
  const name = line.match(/"export": ?"(\w+?)(_x64)?"/)?.[1];
  return name in families ? name : 'no request';
}
