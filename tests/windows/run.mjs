// Running things on both systems.
import { spawnSync } from 'node:child_process';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';

const cannot = 77;  // the exit status of a tool that this machine does not allow

/** A place in the project. */
export function project(...path) {
  return join(fileURLToPath(new URL('../..', import.meta.url)), ...path);
}

function run(command, args, input) {
  const { error, status, stdout, stderr } = spawnSync(command, args, { input: input ?? '', maxBuffer: 2 ** 30 });
  if (error) throw error;
  return { status, output: stdout.toString(), complaint: stderr.toString() };
}

/** Runs a program of this system: its exit status, output and complaint (standard error). */
export const runHere = run;

/** Runs a program of the 32-bit Windows build; undefined, and the test `t` is skipped, where that cannot be. */
export function runOnWindows(t, program, args = [], input = '') {
  const result = run(project('tools/windows-run'), [project('build/windows/bin', program), ...args], input);
  if (result.status !== cannot) return result;
  t.skip(result.complaint.trim());
  return undefined;
}

/** Every line of a program's report, "ok - name" or "not ok - name: why", as a test under `t`. */
export async function reportedTests(t, { status, output, complaint }) {
  const lines = output.split(/\r?\n/).filter((line) => line !== '');
  for (const line of lines) {
    const [, verdict, name, why] = line.match(/^(ok|not ok) - ([^:]*)(?:: (.*))?$/) ?? [null, 'not ok', line];
    await t.test(name, () => {
      if (verdict === 'not ok') throw new Error(why ?? 'failed');
    });
  }
  if (lines.length === 0 || status !== 0) throw new Error(`exit status ${status}\n${complaint}`);
}
