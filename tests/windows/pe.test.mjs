// What KORVEX32.dll offers and asks for, and how it and korvex.exe are built, read from the files themselves.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { test } from 'node:test';
import { PeFile } from './pe.mjs';
import { project } from './run.mjs';

const exportNames = ['CC_Encode', 'CC_Encode_x64', 'DATA_Encode', 'DATA_Encode_x64', 'Korvex_Bit', 'Korvex_Bit_x64',
                     'MAXI_Encode', 'MAXI_Encode_x64', 'PDF_Encode', 'PDF_Encode_x64', 'QR_Encode', 'QR_Encode_x64',
                     'VERI_Encode'];
const gdiNames = ['BitBlt', 'CreateBitmap', 'CreateCompatibleDC', 'DeleteDC', 'DeleteObject', 'SelectObject', 'SetPixel'];

const dynamicBase = 0x40;
const noExecution = 0x100;  // of data
const highEntropy = 0x20;  // moves beyond 4 GB
const executable = 0x20000000;
const writable = 0x80000000;

const header = readFileSync(project('include/korvex/korvex32.h'), 'latin1');
const version = ['MAJOR', 'MINOR', 'PATCH'].map((part) => header.match(`KORVEX_VERSION_${part} (\\d+)`)[1]).join('.');

const builds = [
  { bits: 32, preset: 'windows', machine: 0x14c },
  { bits: 64, preset: 'windows64', machine: 0x8664 },
];
for (const { bits, preset, machine } of builds) {
  const path = project('build', preset, 'bin/KORVEX32.dll');

  test(`the ${bits}-bit DLL exports exactly the thirteen names, undecorated`, () => {
    const dll = new PeFile(path);
    assert.equal(dll.machine, machine);
    assert.deepEqual(dll.exports(), { names: exportNames, functions: exportNames.length });
  });

  test(`the ${bits}-bit DLL imports from system DLLs only, and of GDI what it paints with`, () => {
    const imports = new PeFile(path).imports();
    assert.deepEqual([...imports.keys()].sort(), ['GDI32.DLL', 'KERNEL32.DLL', 'MSVCRT.DLL']);
    assert.deepEqual([...imports.get('GDI32.DLL')].sort(), gdiNames);
  });

  for (const name of ['KORVEX32.dll', 'korvex.exe']) {
    const own = project('build', preset, 'bin', name);

    test(`the ${bits}-bit ${name} moves in memory and has nothing that is both writable and executable`, () => {
      const file = new PeFile(own);
      const wanted = dynamicBase | noExecution | (bits === 64 ? highEntropy : 0);
      assert.equal(file.dllCharacteristics & wanted, wanted);
      const names = (flags) => file.sections.filter((one) => (one.flags & flags) >>> 0 === flags).map((one) => one.name);
      assert.deepEqual(names(executable), ['.text']);
      assert.deepEqual(names((executable | writable) >>> 0), []);
      assert.ok(file.directory('relocations') > 0, 'without relocations it cannot move');
    });

    test(`the ${bits}-bit ${name} does not tell when and where it was built`, () => {
      const file = new PeFile(own);
      assert.deepEqual(file.times(), name.endsWith('.dll') ? [0, 0] : [0]);
      assert.equal(file.bytes.indexOf(project().replace(/\/$/, '')), -1);
    });
  }

  test(`the ${bits}-bit DLL says which version it is`, () => {
    const dll = new PeFile(path);
    assert.equal(dll.versionString('FileVersion'), version);
    assert.equal(dll.versionString('OriginalFilename'), 'KORVEX32.dll');
  });
}
