// The example session's pages as a new user sees them (the README's screenshots), and its Trace
// Event export in speedscope (pinned in package.json), whose Sandwich view lists every frame.

import { test } from 'node:test';
import assert from 'node:assert/strict';
import { existsSync, readFileSync } from 'node:fs';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { aggregateRow, reports, screenshot, showTab, tableCells, withReport } from './report_browser.mjs';

const skip = !existsSync(join(reports ?? '', 'example', 'detail.html')) && 'the example is not built';

test('example session: every phase of the Detail page has real figures', { skip }, async () => {
  await withReport('example/detail.html', async (page) => {
    const rows = (await tableCells(page, '#aggregateSummaryTable')).filter((cells) => cells.length > 2 && /^\d+$/.test(cells[1]));
    assert.ok(rows.length >= 6, `phases listed: ${rows.length}`);
    assert.deepEqual(rows.filter(([, , ...figures]) => !(Math.max(...figures.map(Number).filter((x) => !Number.isNaN(x))) >= 0.01)), []);
    const sort = (await aggregateRow(page, 'sort blocks')).slice(2).map(Number);
    assert.ok(sort.some((x) => x >= 0.25), `sort blocks takes about 0.3 s: ${sort}`);
    await screenshot(page, 'example_detail_Aggregate');
    await showTab(page, 'Call Tree');
    await screenshot(page, 'example_detail_CallTree');
  }, { viewport: { width: 1600, height: 560 } });
});

test('example session: the Difference page shows gains, losses and new phases', { skip }, async () => {
  await withReport('example/difference.html', async (page) => {
    const relative = async (phase) => Number((await aggregateRow(page, phase)).at(-1));
    // Computing phases stretch on a busy machine; the bounds leave room for that.
    assert.ok(await relative('sort blocks') > 10, 'the slower sort is a loss of about 50%');
    assert.ok(await relative('outputs') < -20, 'the faster steps are a gain of about 40%');
    assert.equal((await aggregateRow(page, 'check limits'))[1], 'NA', 'the new phase has no baseline');
    await screenshot(page, 'example_difference_Aggregate');
  }, { viewport: { width: 1200, height: 310 } });
});

/// Microseconds of a time as speedscope prints it ("305.68ms", "217.00µs", "1.50s"), and how
/// far the printed figure may lie from the exact one.
function microseconds(text) {
  const match = /^(\d+)(?:\.(\d+))?(µs|ms|s)$/.exec(text);
  assert.ok(match, `a time: ${text}`);
  const scale = { 'µs': 1, 'ms': 1e3, 's': 1e6 }[match[3]];
  return { value: Number(`${match[1]}.${match[2] ?? 0}`) * scale, tolerance: scale * 0.5 * 10 ** -(match[2] ?? '').length };
}

test('example export: speedscope lists every phase with its duration', { skip }, async () => {
  const trace = join(reports, 'example', 'baseline.json');
  const phases = JSON.parse(readFileSync(trace, 'utf8')).traceEvents.filter((e) => e.ph === 'X');
  assert.ok(phases.length >= 15, `phases exported: ${phases.length}`);
  const viewer = fileURLToPath(new URL('./node_modules/speedscope/dist/release/index.html', import.meta.url));
  // speedscope warns of events that do not nest: an end that does not close the frame on top.
  await withReport(viewer, async (page) => {
    await page.setInputFiles('input[type=file]', trace);
    // The profile's name comes from the process and thread names of the metadata events.
    await page.getByText('baseline (pid 1), GLOBAL (tid 1)').waitFor();
    await screenshot(page, 'example_speedscope');
    await page.setViewportSize({ width: 1400, height: 2000 });  // room for every row of the list
    await page.keyboard.press('3');  // the Sandwich view
    // The list fills after its header: wait for as many frames as phases.
    await page.waitForFunction((n) => [...document.querySelectorAll('table tr')]
      .filter((tr) => tr.querySelectorAll('td').length === 3).length >= n, phases.length).catch(() => {});
    const rows = (await tableCells(page, 'table')).filter((cells) => cells.length === 3);
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
  }, { viewport: { width: 1200, height: 240 }, alsoErrors: /Tried to end/ });
});
