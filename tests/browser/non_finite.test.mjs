// Figures that are not finite, as a damaged or foreign value file may hold them, reach the
// page's scripts as the numbers NaN and Infinity: every page opens, every tab works, and the
// tables show them.

import { test, before, after } from 'node:test';
import assert from 'node:assert/strict';
import { launch, openReport, showTab } from './report_browser.mjs';

let browser;
before(async () => { browser = await launch(); });
after(async () => { await browser.close(); });

const tabs = {
  detail: ['Call Tree', 'Details', 'System Info', 'Aggregate'],
  difference: ['Details', 'System Info', 'Aggregate'],
};

for (const kind of ['detail', 'difference']) {
  for (const metric of ['time', 'basicmemory', 'detailedmemory']) {
    const name = `non_finite_${kind}_${metric}.html`;
    test(`${name}: opens, and every tab shows`, async () => {
      const { page, errors } = await openReport(browser, name, { width: 1600, height: 1600 });
      const notFinite = await page.evaluate(() => procData.flatMap((record) => Object.values(record))
        .some((v) => typeof v === 'number' && !Number.isFinite(v)));
      assert.equal(notFinite, true);
      for (const tab of tabs[kind].concat(metric === 'detailedmemory' ? ['MemChart'] : [])) {
        await showTab(page, tab);
      }
      await showTab(page, 'Details');
      const cells = await page.$$eval('#phaseSummaryTable td[id^="row"]', (all) => all.map((c) => c.textContent));
      assert.ok(cells.some((text) => /NaN|Infinity/.test(text)), cells.join(' '));
      assert.deepEqual(errors, []);
      await page.close();
    });
  }
}
