// The example session's Trace Event export, opened in a real trace viewer: speedscope (pinned in
// package.json), loaded from its files in node_modules and given the export through its file
// input, as a user drops a file on it. Its flame chart is a canvas; its Sandwich view lists every
// frame as text with its total time, which must be the duration of the phase it stands for.

import { test, before, after } from 'node:test';
import assert from 'node:assert/strict';
import { existsSync, readFileSync } from 'node:fs';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { launch, reports, screenshot } from './report_browser.mjs';

const trace = join(reports ?? '', 'example', 'baseline.json');
const viewer = fileURLToPath(
  new URL('./node_modules/speedscope/dist/release/index.html', import.meta.url));
// The export exists where the build has the example session.
const skip = !existsSync(trace) && 'the example is not built';

let browser;
before(async () => { if (!skip) browser = await launch(); });
after(async () => { await browser?.close(); });

/// Microseconds of a time as speedscope prints it ("305.68ms", "217.00µs", "1.50s"), and how
/// far the printed figure may lie from the exact one.
function microseconds(text) {
  const match = /^(\d+)(?:\.(\d+))?(µs|ms|s)$/.exec(text);
  assert.ok(match, `a time: ${text}`);
  const scale = { 'µs': 1, 'ms': 1e3, 's': 1e6 }[match[3]];
  const decimals = (match[2] ?? '').length;
  return { value: Number(`${match[1]}.${match[2] ?? 0}`) * scale, tolerance: scale * 0.5 * 10 ** -decimals };
}

test('example export: speedscope lists every phase with its duration', { skip }, async () => {
  const phases = JSON.parse(readFileSync(trace, 'utf8')).traceEvents.filter((e) => e.ph === 'X');
  assert.ok(phases.length >= 15, `phases exported: ${phases.length}`);

  const page = await browser.newPage({ viewport: { width: 1200, height: 240 } });
  const errors = [];
  page.on('pageerror', (error) => errors.push(error.message));
  // speedscope warns when an end does not close the frame on top of its stack: events that
  // do not nest.
  page.on('console', (message) => {
    if (message.type() === 'error' || /Tried to end/.test(message.text())) errors.push(message.text());
  });
  await page.goto(`file://${viewer}`);
  await page.setInputFiles('input[type=file]', trace);
  // The profile's name comes from the process and thread names of the metadata events.
  await page.getByText('baseline (pid 1), GLOBAL (tid 1)').waitFor();
  await screenshot(page, 'example_speedscope');

  await page.setViewportSize({ width: 1400, height: 2000 });  // room for every row of the list
  await page.keyboard.press('3');  // the Sandwich view
  await page.getByText('Symbol Name').waitFor();
  const rows = await page.$$eval('table tr', (trs) => trs
    .map((tr) => [...tr.querySelectorAll('td')].map((cell) => cell.textContent))
    .filter((cells) => cells.length === 3));
  const totalOf = new Map(rows.map(([total, , name]) => [name, total.replace(/ \(.*\)$/, '')]));
  assert.equal(rows.length, phases.length, 'one frame per phase, nothing else');
  for (const phase of phases) {
    // A frame is named after the event's name and its arguments.
    const name = `${phase.name} ${JSON.stringify(phase.args)}`;
    assert.ok(totalOf.has(name), `${name} is listed`);
    const { value, tolerance } = microseconds(totalOf.get(name));
    assert.ok(Math.abs(value - phase.dur) <= tolerance + 1e-6,
      `${name}: speedscope shows ${totalOf.get(name)}, the export ${phase.dur} µs`);
  }
  assert.deepEqual(errors, []);
  await page.close();
});
