// A program that packs its own records includes the header: no field of ours moves, and its own stay packed.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { test } from 'node:test';
import { project, runHere } from './run.mjs';

const header = readFileSync(project('include/korvex/korvex32.h'), 'utf8');

// The byte offsets that the header itself writes beside the fields are those of a 32-bit process.
const offsets = [...header.matchAll(/^typedef struct (\w+) \{\n([^]*?)^\}/gm)].flatMap(([, record, fields]) =>
  [...fields.matchAll(/^ {2}[\w ]+?\*? ?(\w+)(?:\[\d+\])?; +\/\* (\d+)/gm)].map(([, field, offset]) => ({ record, field, offset })));

const holds = (language, condition) => `${language === 'c' ? '_Static_assert' : 'static_assert'}(${condition}, "");`;
const program = (language, packing) => `
#include <stddef.h>
#pragma pack(${packing})
#include "korvex/korvex32.h"
struct Own { char letter; int number; };
${holds(language, `sizeof(struct Own) == 4 + ${packing}`)}
${offsets.map(({ record, field, offset }) => holds(language, `offsetof(${record}, ${field}) == ${offset}`)).join('\n')}`;

const compilers = [
  ['i686-w64-mingw32-gcc'],
  ['gcc', '-m32', '-ffreestanding'],
  ['clang-14', '--target=i686-pc-windows-msvc', '-ffreestanding'],
];
for (const [compiler, ...options] of compilers) {
  test(`no #pragma pack moves a field: ${compiler}`, () => {
    assert.equal(offsets.length, header.match(/; +\/\* \d/g).length, 'every field with an offset');
    for (const [language, standard] of [['c', 'c11'], ['c++', 'c++11']]) {
      for (const packing of [1, 2, 4]) {
        const flags = [`-std=${standard}`, '-Wall', '-Wextra', '-Werror', '-fsyntax-only', '-I', project('include')];
        const { status, complaint } =
          runHere(compiler, [...options, ...flags, '-x', language, '-'], program(language, packing));
        assert.equal(status, 0, complaint);
      }
    }
  });
}
