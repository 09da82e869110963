// The comparison pages: phases on one side only show "NA", relative deviations carry their
// colour class, a phase of the Aggregate tab opens the Details tab with its rows, and a first
// row that only the right side has leaves the page whole.

import { test, before, after } from 'node:test';
import assert from 'node:assert/strict';
import { launch, openReport, screenshot, showTab } from './report_browser.mjs';

let browser;
before(async () => { browser = await launch(); });
after(async () => { await browser.close(); });

for (const metric of ['time', 'basicmemory']) {
  test(`difference_${metric}: NA, colour classes and the link to the Details tab`, async () => {
    const { page, errors } = await openReport(browser, `difference_${metric}.html`, { width: 1600, height: 1600 });
    // "load model" is only on the left, "link model" only on the right.
    const rowOf = async (name) => page.$eval(`#aggregateSummaryTable a:text-is("${name}")`,
      (link) => [...link.closest('tr').querySelectorAll('td')].map((cell) => cell.textContent));
    const leftOnly = await rowOf('load model');
    const rightOnly = await rowOf('link model');
    assert.equal(leftOnly[2], 'NA', 'no right-hand count');
    assert.equal(rightOnly[1], 'NA', 'no left-hand count');
    assert.ok(leftOnly.slice(4).includes('NA') && rightOnly.slice(4).includes('NA'));
    const binned = await page.$$eval('#aggregateSummaryTable td', (cells) =>
      cells.filter((cell) => /\b(GT50|LTM50|BETWN_[M0-9_]+)\b/.test(cell.className)).length);
    assert.ok(binned > 0, 'relative deviations have colour classes');
    await screenshot(page, `difference_${metric}_NA`);

    await page.click('#aggregateSummaryTable a:text-is("outputs")');
    await page.waitForFunction(() => activeTab === 'phaseSummary');
    const phases = await page.$$eval('#phaseSummaryTable td[id^="phaseTD"]',
      (cells) => cells.map((cell) => cell.childNodes[0].textContent));
    // Four runs of "outputs" on the left, five on the right: five aligned rows.
    assert.deepEqual(phases, Array(5).fill('outputs'));
    assert.equal(await page.textContent('#totalChecked'), '5');
    const cells = await page.$$eval('#phaseSummaryTable td[id^="row"]', (all) => all.map((c) => c.textContent));
    assert.ok(cells.includes('NA'), 'the right-only row shows NA on the left');
    await screenshot(page, `difference_${metric}_Details`);
    assert.deepEqual(errors, []);
    await page.close();
  });
}

test('a parent only the right side has, on the first row: every tab works', async () => {
  // The right run wraps the left one's work in an outer phase.
  const { page, errors } = await openReport(browser, 'outer_difference_time.html', { width: 1600, height: 1600 });
  const first = await page.evaluate(() => {
    const r = procData[0];
    return [r.isParent, Phase[r.Phase], r.LHS_WCSelf, r.RHS_WCSelf, r.RHS_CPUSelf];
  });
  assert.deepEqual(first, [1, 'session', -99.99, 0, 0]);
  assert.ok((await page.$$('#aggregateSummaryTable td[id$="col0"]')).length > 0);
  await showTab(page, 'Details');
  const rows = await page.evaluate(() => procData.length - numBlankData);
  assert.equal(await page.textContent('#aggTD'), `Aggregate (N = ${rows})`);
  assert.equal(await page.textContent('#row0col1'), 'NA');
  await showTab(page, 'System Info');
  await showTab(page, 'Aggregate');
  assert.deepEqual(errors, []);
  await page.close();
});
