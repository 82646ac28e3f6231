// A shipping label's GS1-128 as a PNG file, through the command:  node label.mjs 340123450000000017 label.png
import { execFileSync } from 'node:child_process';

const [sscc = '340123450000000017', file = 'label.png'] = process.argv.slice(2);
try {
  execFileSync(process.env.KORVEX ?? 'korvex',
    ['draw', 'gs1-128', `(00)${sscc}`, '--module', '0.5mm', '--dpi', '203', '--height', '32mm', '-o', file],
    { stdio: ['ignore', 'inherit', 'pipe'] });
} catch (error) {
  console.error(String(error.stderr));  // one sentence that says what was wrong
  process.exit(1);
}
