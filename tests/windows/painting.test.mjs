// Painting on real GDI: every kind of destination, and ten thousand calls.
import { test } from 'node:test';
import { reportedTests, runOnWindows } from './run.mjs';

test('symbols take the colours, the depth and the size of what they are painted on', async (t) => {
  const windows = runOnWindows(t, 'painting.exe', ['destinations']);
  if (windows !== undefined) await reportedTests(t, windows);
});

test('calls leave nothing behind', async (t) => {
  const windows = runOnWindows(t, 'painting.exe', ['leaks']);
  if (windows !== undefined) await reportedTests(t, windows);
});
