// The example session's pages, as a new user first sees them: real figures in every row, and a
// comparison that shows the changed version's gains and losses. Its screenshots are the README's.

import { test, before, after } from 'node:test';
import assert from 'node:assert/strict';
import { existsSync } from 'node:fs';
import { join } from 'node:path';
import { launch, openReport, reports, screenshot, showTab } from './report_browser.mjs';

// The pages exist where the build has the example session.
const skip = !existsSync(join(reports ?? '', 'example', 'detail.html')) && 'the example is not built';

let browser;
before(async () => { if (!skip) browser = await launch(); });
after(async () => { await browser?.close(); });

/// The cells of the aggregate table's row of a phase.
const rowOf = (page, phase) => page.$eval(`#aggregateSummaryTable a:text-is("${phase}")`,
  (link) => [...link.closest('tr').querySelectorAll('td')].map((cell) => cell.textContent));

test('example session: every phase of the Detail page has real figures', { skip }, async () => {
  const { page, errors } = await openReport(browser, 'example/detail.html', { width: 1600, height: 560 });
  const rows = await page.$$eval('#aggregateSummaryTable tr', (trs) => trs
    .map((tr) => [...tr.querySelectorAll('td')].map((cell) => cell.textContent))
    .filter((cells) => cells.length > 2 && /^\d+$/.test(cells[1])));
  assert.ok(rows.length >= 6, `phases listed: ${rows.length}`);
  for (const [phase, , ...figures] of rows) {
    const largest = Math.max(...figures.map(Number).filter((x) => !Number.isNaN(x)));
    assert.ok(largest >= 0.01, `${phase} shows ${figures.join(' ')}`);
  }
  const sort = (await rowOf(page, 'sort blocks')).slice(2).map(Number);
  assert.ok(sort.some((x) => x >= 0.25), `sort blocks takes about 0.3 s: ${sort}`);
  await screenshot(page, 'example_detail_Aggregate');
  await showTab(page, 'Call Tree');
  await screenshot(page, 'example_detail_CallTree');
  assert.deepEqual(errors, []);
  await page.close();
});

test('example session: the Difference page shows gains, losses and new phases', { skip }, async () => {
  const { page, errors } = await openReport(browser, 'example/difference.html', { width: 1200, height: 310 });
  const relative = async (phase) => Number((await rowOf(page, phase)).at(-1));
  // Computing phases stretch on a busy machine; the bounds leave room for that.
  assert.ok(await relative('sort blocks') > 10, 'the slower sort is a loss of about 50%');
  assert.ok(await relative('outputs') < -20, 'the faster steps are a gain of about 40%');
  const limits = await rowOf(page, 'check limits');
  assert.equal(limits[1], 'NA', 'the new phase has no baseline');
  await screenshot(page, 'example_difference_Aggregate');
  assert.deepEqual(errors, []);
  await page.close();
});
