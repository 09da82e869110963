// Every kind of report opens on its Aggregate tab without a script error, and every tab it
// has can be shown from every other.

import { test, before, after } from 'node:test';
import assert from 'node:assert/strict';
import { launch, openReport, screenshot, showTab, tabArguments } from './report_browser.mjs';

const pages = {
  'detail_time.html': ['Aggregate', 'Call Tree', 'Details', 'System Info'],
  'detail_basicmemory.html': ['Aggregate', 'Call Tree', 'Details', 'System Info'],
  'detail_detailedmemory.html': ['Aggregate', 'Call Tree', 'Details', 'MemChart', 'System Info'],
  'difference_time.html': ['Aggregate', 'Details', 'System Info'],
  'difference_basicmemory.html': ['Aggregate', 'Details', 'System Info'],
  'difference_detailedmemory.html': ['Aggregate', 'Details', 'MemChart', 'System Info'],
  'aggregate_time.html': ['Aggregate', 'System Info'],
  'aggregate_basicmemory.html': ['Aggregate', 'System Info'],
  'aggregate_detailedmemory.html': ['Aggregate', 'System Info'],
  'aggregate_difference_time.html': ['Aggregate', 'System Info'],
  'aggregate_difference_basicmemory.html': ['Aggregate', 'System Info'],
  'aggregate_difference_detailedmemory.html': ['Aggregate', 'System Info'],
};

const tabDivs = {
  'Aggregate': 'aggregateSummaryDiv',
  'Call Tree': 'callTreeSummaryDiv',
  'Details': 'phaseSummaryDiv',
  'MemChart': 'scrollcanvasdiv',
  'System Info': 'systemInfoTableDiv',
};
// The difference chart's graph stands for its tab.
const tabDiv = (name, tab) =>
  tab === 'MemChart' && name.startsWith('difference') ? 'absDevCanvasDiffDiv' : tabDivs[tab];

let browser;
before(async () => { browser = await launch(); });
after(async () => { await browser.close(); });

for (const [name, tabs] of Object.entries(pages)) {
  test(`${name}: opens on Aggregate, every tab switches`, async () => {
    const { page, errors } = await openReport(browser, name);
    assert.equal(await page.isVisible('#aggregateSummaryTable'), true);
    const rows = await page.$$eval('#aggregateSummaryTable td[id$="col0"]', (cells) => cells.length);
    assert.ok(rows > 0, 'the aggregate table has rows');
    const labels = await page.$$eval('#headerTable div[id="header"]:not([style*="none"]) li',
                                     (items) => items.map((item) => item.textContent));
    assert.deepEqual(labels, tabs);
    await screenshot(page, name.replace('.html', '') + '_Aggregate');
    // From every tab to every other.
    for (const from of tabs) {
      for (const to of tabs) {
        if (from === to) continue;
        await page.evaluate((argument) => ShowTable(argument), tabArguments[from]);
        await showTab(page, to);
        assert.equal(await page.isVisible('#' + tabDiv(name, to)), true, `${from} -> ${to}`);
        for (const other of tabs.filter((tab) => tab !== to)) {
          assert.equal(await page.isVisible('#' + tabDiv(name, other)), false, `${other} hidden`);
        }
      }
    }
    for (const tab of tabs.slice(1)) {
      await page.evaluate(() => ShowTable('aggregateSummary'));
      await showTab(page, tab);
      await screenshot(page, name.replace('.html', '') + '_' + tab.replace(' ', ''));
    }
    assert.deepEqual(errors, []);
    await page.close();
  });
}

test('the aggregate table sorts both ways, and another column starts ascending', async () => {
  const { page, errors } = await openReport(browser, 'detail_time.html');
  const counts = async () => (await page.$$eval('#aggregateSummaryTable td[id$="col1"]',
    (cells) => cells.map((cell) => Number(cell.textContent))));
  await page.click('#aggregateSummaryTable span:text-is("Count")');
  const ascending = await counts();
  assert.deepEqual(ascending, [...ascending].sort((a, b) => a - b));
  await page.click('#aggregateSummaryTable span:text-is("Count")');
  const descending = await counts();
  assert.deepEqual(descending, [...descending].sort((a, b) => b - a));
  assert.notDeepEqual(ascending, descending);
  // Another column begins ascending again, names compared without case.
  await page.click('#aggregateSummaryTable span:text-is("Phase")');
  const names = await page.$$eval('#aggregateSummaryTable td[id$="col0"]',
                                  (cells) => cells.map((cell) => cell.textContent.toLowerCase()));
  assert.deepEqual(names, [...names].sort());
  assert.deepEqual(errors, []);
  await page.close();
});
