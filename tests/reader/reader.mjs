// Draws symbols with the korvex command and reads them back with an independent reader.
import { execFile } from 'node:child_process';
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { fileURLToPath } from 'node:url';
import { prepareZXingModule, readBarcodes } from 'zxing-wasm/reader';

const require = createRequire(import.meta.url);
// Given the module's bytes, the reader does not look for them on a network.
prepareZXingModule({
  overrides: { wasmBinary: readFileSync(require.resolve('zxing-wasm/reader/zxing_reader.wasm')) },
});

export const korvex = process.env.KORVEX ?? fileURLToPath(new URL('../../build/bin/korvex', import.meta.url));

/** Random numbers that are the same in every run. */
export class Random {
  constructor(seed) {
    this.state = seed >>> 0;
  }
  /** A whole number from 0 to below - 1. */
  below(below) {
    this.state = (this.state + 0x6d2b79f5) >>> 0;
    let t = this.state;
    t = Math.imul(t ^ (t >>> 15), t | 1);
    t ^= t + Math.imul(t ^ (t >>> 7), t | 61);
    return ((t ^ (t >>> 14)) >>> 0) % below;
  }
  string(alphabet, length) {
    return Array.from({ length }, () => alphabet[this.below(alphabet.length)]).join('');
  }
}

/** The file that `korvex draw` makes of `data` (a string, one character a byte). */
export function draw(symbology, data, options = [], format = 'png') {
  return new Promise((resolve, reject) => {
    const child = execFile(
      korvex,
      ['draw', symbology, '--hex', ...options, '-o', '-', '--format', format],
      { encoding: 'buffer', maxBuffer: 1 << 26 },
      (error, file, message) => (error ? reject(new Error(`${symbology}: ${message}`)) : resolve(file)),
    );
    child.stdin.on('error', () => {}); // a refused option closes the pipe early; the exit status tells
    child.stdin.end(Buffer.from(data, 'latin1').toString('hex'));
  });
}

/** What the reader finds in a picture that holds one symbol of `format`. */
export async function read(png, format, options = {}) {
  const results = await readBarcodes(png, { formats: [format], tryInvert: false, textMode: 'Plain', ...options });
  return results.filter((result) => result.isValid);
}

/** Draws and reads one symbol; returns the reader's result, or throws with what went wrong. */
export async function readBack(symbology, data, format, options = [], readOptions = {}) {
  const results = await read(await draw(symbology, data, options), format, readOptions);
  if (results.length !== 1) {
    throw new Error(`${symbology} of ${JSON.stringify(data)}: ${results.length} symbols found`);
  }
  return results[0];
}

/** The bytes of a result, one character each. */
export const bytesOf = (result) => Buffer.from(result.bytes).toString('latin1');
