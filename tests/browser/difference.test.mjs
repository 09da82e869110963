// The comparison pages: phases on one side only show "NA", relative deviations carry their
// colour class, and a phase of the Aggregate tab opens the Details tab with its rows.

import { test, before, after } from 'node:test';
import assert from 'node:assert/strict';
import { launch, openReport, screenshot } from './report_browser.mjs';

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
