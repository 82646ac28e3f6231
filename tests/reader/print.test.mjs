// What people print: bars reduced against ink that spreads, text beyond ASCII, lists of labels.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { test } from 'node:test';
import { bytesOf, korvex, read, readBack } from './reader.mjs';

const symbols = [
  ['code128', 'Code128', 'PRINT 128'], ['ean13', 'EAN13', '4006381333931'], ['itf', 'ITF', '00012345678905'],
  ['qr', 'QRCode', 'PRINT QR'], ['rmqr', 'RMQRCode', 'PRINT RMQR'],
  ['datamatrix', 'DataMatrix', 'PRINT DM'], ['pdf417', 'PDF417', 'PRINT PDF417'],
  ['maxicode', 'MaxiCode', 'PRINT MAXICODE'], ['databar', 'DataBarOmni', '(01)09501101530003'],
];

test('symbols with reduced bars read back', async () => {
  for (const [symbology, format, data] of symbols) {
    const read = bytesOf(await readBack(symbology, data, format, ['--module', '4', '--bwr', '1']));
    assert.ok(read.endsWith(data.replace('(01)', '')), `${symbology}: ${read}`);
  }
});

test('a list of labels reads back, and Code 128 in Latin-1', async () => {
  const folder = mkdtempSync(join(tmpdir(), 'korvex-reader-'));
  try {
    const jobs = [...symbols.map(([symbology, , data]) => ({ id: symbology, symbology, data })),
      { id: 'latin', symbology: 'code128', data: 'Größe 4 µm' }];
    execFileSync(korvex, ['batch', '-', '-o', folder, '--module', '4', '--name', '{id}.png'],
      { input: jobs.map((job) => JSON.stringify(job)).join('\n'), stdio: ['pipe', 'ignore', 'pipe'] });
    for (const [symbology, format, data] of symbols) {
      const [result] = await read(readFileSync(join(folder, `${symbology}.png`)), format);
      assert.ok(result && bytesOf(result).endsWith(data.replace('(01)', '')), symbology);
    }
    const [latin] = await read(readFileSync(join(folder, 'latin.png')), 'Code128');
    assert.equal(latin.text, 'Größe 4 µm');
  } finally {
    rmSync(folder, { recursive: true });
  }
});
