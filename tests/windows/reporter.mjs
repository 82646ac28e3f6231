// A line for every test, by name, and the counts at the end.
export default async function* reporter(events) {
  const counts = { passed: 0, failed: 0, skipped: 0 };
  for await (const { type, data } of events) {
    if (type !== 'test:pass' && type !== 'test:fail') continue;
    if (data.details?.type === 'suite' || data.name.endsWith('.mjs')) continue;
    const verdict = type === 'test:fail' ? 'failed' : data.skip === undefined ? 'passed' : 'skipped';
    ++counts[verdict];
    const reason = typeof data.skip === 'string' ? `: ${data.skip}` : '';
    yield `${verdict.padEnd(8)}${'  '.repeat(data.nesting)}${data.name}${reason}\n`;
    if (verdict === 'failed') {
      const error = data.details.error;
      yield `${String(error.cause?.stack ?? error.cause ?? error.stack ?? error).replace(/^/gm, '    ')}\n`;
    }
  }
  yield `${counts.passed} passed, ${counts.failed} failed, ${counts.skipped} skipped\n`;
}
