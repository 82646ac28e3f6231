// What a Windows DLL or program says of itself: a reader of the PE file's headers.
import { readFileSync } from 'node:fs';

const directories = { exports: 0, imports: 1, resources: 2, relocations: 5 };

export class PeFile {
  constructor(path) {
    this.bytes = readFileSync(path);
    const headers = this.bytes.readUInt32LE(0x3c);
    if (this.text(headers) !== 'PE') throw new Error(`${path} is no PE file`);
    this.headers = headers;
    this.machine = this.bytes.readUInt16LE(headers + 4);
    this.optional = headers + 24;
    this.is64 = this.bytes.readUInt16LE(this.optional) === 0x20b;
    this.dllCharacteristics = this.bytes.readUInt16LE(this.optional + 70);
    const first = this.optional + this.bytes.readUInt16LE(headers + 20);
    this.sections = Array.from({ length: this.bytes.readUInt16LE(headers + 6) }, (_, index) => {
      const at = first + index * 40;
      const field = (offset) => this.bytes.readUInt32LE(at + offset);
      return { name: this.text(at).slice(0, 8), size: Math.max(field(8), field(16)), address: field(12), place: field(20),
               flags: field(36) };
    });
  }

  /** The text before the NUL at a place in the file. */
  text(place) {
    return this.bytes.toString('latin1', place, this.bytes.indexOf(0, place));
  }

  /** Where in the file an address of the loaded image stands. */
  place(address) {
    const section = this.sections.find((one) => address >= one.address && address < one.address + one.size);
    return address - section.address + section.place;
  }

  /** The place of a data directory, 0 when there is none. */
  directory(name) {
    const address = this.bytes.readUInt32LE(this.optional + (this.is64 ? 112 : 96) + directories[name] * 8);
    return address && this.place(address);
  }

  /** The names exported, and how many functions there are in all: one without a name would make them differ. */
  exports() {
    const at = this.directory('exports');
    const names = this.place(this.bytes.readUInt32LE(at + 32));
    const name = (index) => this.text(this.place(this.bytes.readUInt32LE(names + index * 4)));
    return { names: Array.from({ length: this.bytes.readUInt32LE(at + 24) }, (_, index) => name(index)),
             functions: this.bytes.readUInt32LE(at + 20) };
  }

  /** Seconds since 1970: when it was linked, by its header and by its table of exports if it has one. */
  times() {
    const exports = this.directory('exports');
    return [this.headers + 8, ...(exports ? [exports + 4] : [])].map((place) => this.bytes.readUInt32LE(place));
  }

  /** DLL name in capitals -> names imported from it. */
  imports() {
    const found = new Map();
    const step = this.is64 ? 8 : 4;
    for (let at = this.directory('imports'); this.bytes.readUInt32LE(at + 12) !== 0; at += 20) {
      const names = [];
      for (let thunk = this.place(this.bytes.readUInt32LE(at)); this.bytes.readUInt32LE(thunk) !== 0; thunk += step) {
        names.push(this.text(this.place(this.bytes.readUInt32LE(thunk)) + 2));
      }
      found.set(this.text(this.place(this.bytes.readUInt32LE(at + 12))).toUpperCase(), names);
    }
    return found;
  }

  /** A string of the version resource, which stands as UTF-16 text: its key, padding, its value. */
  versionString(key) {
    const at = this.bytes.indexOf(Buffer.from(`${key}\0`, 'utf16le'));
    if (!this.directory('resources') || at < 0) return undefined;
    return this.bytes.toString('utf16le', at + 2 * key.length, at + 2 * key.length + 80).replace(/^\0+/, '').split('\0')[0];
  }
}
