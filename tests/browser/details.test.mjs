// The Details tab: Refresh, the filter as regular expression and as exact name, the sort
// panel's ranks, and the check boxes with their totals.

import { test, before, after } from 'node:test';
import assert from 'node:assert/strict';
import { launch, openReport, screenshot, showTab } from './report_browser.mjs';

let browser;
before(async () => { browser = await launch(); });
after(async () => { await browser.close(); });

/// The procData indices of the rows on show, in order.
async function shownRows(page) {
  return page.$$eval('#phaseSummaryTable td[id^="execTD"]', (cells) =>
    cells.map((cell) => Number(cell.textContent)));
}

async function refresh(page, inputs = {}) {
  await page.evaluate((values) => {
    for (const id of ['phasename', 'groupingname', 'modelname', 'targetname', 'machinename',
                      'chartname', 'Sort_phasename', 'Sort_self', 'Sort_selfPchild']) {
      document.getElementById(id).value = values[id] || '';
    }
  }, inputs);
  await page.click('#userInputs input[value="Refresh"]');
}

test('Refresh, filters and sorting', async () => {
  const { page, errors } = await openReport(browser, 'detail_time.html', { width: 1280, height: 1600 });
  await showTab(page, 'Details');
  const total = await page.evaluate(() => procData.length - numBlankData);
  // First shown, the tab lists every row in execution order, as Refresh would.
  assert.deepEqual(await shownRows(page), [...Array(total).keys()]);
  assert.equal(await page.textContent('#aggTD'), `Aggregate (N = ${total})`);

  // All inputs empty: every row in execution order, none checked.
  await refresh(page);
  assert.deepEqual(await shownRows(page), [...Array(total).keys()]);
  assert.equal(await page.textContent('#aggTD'), `Aggregate (N = ${total})`);
  assert.equal(await page.evaluate(() => dataView.Checked.every((c) => c === 0)), true);
  assert.equal(await page.evaluate(() => dataView.AllChecked), false);

  // A regular expression on the phase names.
  await refresh(page, { phasename: 'build|sort' });
  const phases = await page.$$eval('#phaseSummaryTable td[id^="phaseTD"]',
    (cells) => cells.map((cell) => cell.childNodes[0].textContent));
  assert.deepEqual(phases, ['sort blocks', 'build chart', 'build chart', 'build chart']);
  await screenshot(page, 'detail_time_Details_filtered');

  // Filters join by AND; one that matches nothing leaves the header and the totals.
  await refresh(page, { phasename: 'build', chartname: 'Gear' });
  assert.equal((await shownRows(page)).length, 1);
  await refresh(page, { phasename: 'no such phase' });
  assert.deepEqual(await shownRows(page), []);
  assert.equal(await page.textContent('#aggTD'), 'Aggregate (N = 0)');

  // Rank 1 on self time: numbers sort descending, equal ones keep their order.
  await refresh(page, { Sort_self: '1' });
  const bySelf = await page.evaluate(() => dataView.Index.map((i) => procData[i].WCSelf));
  assert.deepEqual(bySelf, [...bySelf].sort((a, b) => b - a));
  // Rank 1 on the phase name: ascending.
  await refresh(page, { Sort_phasename: '1' });
  const byName = await page.evaluate(() => dataView.Index.map((i) => Phase[procData[i].Phase].toLowerCase()));
  assert.deepEqual(byName, [...byName].sort());
  assert.deepEqual(errors, []);
  await page.close();
});

test('check boxes change the totals', async () => {
  const { page, errors } = await openReport(browser, 'detail_time.html', { width: 1280, height: 1600 });
  await showTab(page, 'Details');
  await refresh(page);
  const total = await page.evaluate(() => dataView.Index.length);
  await page.check('#checkBox0');
  await page.check('#checkBox2');
  assert.equal(await page.textContent('#totalChecked'), '2');
  const expected = await page.evaluate(() =>
    createScientificNotation(procData[dataView.Index[0]].WCSelf + procData[dataView.Index[2]].WCSelf));
  assert.equal(await page.textContent('#totalSelfTime'), expected);
  // The header's box ticks every row; unticking one clears it again.
  await page.check('#AllChecked');
  assert.equal(await page.textContent('#totalChecked'), String(total));
  await page.uncheck('#checkBox1');
  assert.equal(await page.textContent('#totalChecked'), String(total - 1));
  assert.equal(await page.isChecked('#AllChecked'), false);
  await screenshot(page, 'detail_time_Details_checked');
  assert.deepEqual(errors, []);
  await page.close();
});

test('a phase of the Aggregate tab opens the call tree, and its row there the Details tab', async () => {
  const { page, errors } = await openReport(browser, 'detail_basicmemory.html', { width: 1280, height: 1600 });
  await page.click('#aggregateSummaryTable a:text-is("build chart")');
  await page.waitForFunction(() => activeTab === 'callTreeSummary');
  // The three charts are built by equal calls: one row of the tree, ticked.
  assert.equal(await page.textContent('#CT_totalExecCount'), '3.00');
  const row = await page.evaluate(() => CTDataView.Checked.indexOf(1) - lastStartIndex['CallTree']);
  await page.click(`#ct_phaseNameTD${row + 1} a`);
  await page.waitForFunction(() => activeTab === 'phaseSummary');
  const phases = await page.$$eval('#phaseSummaryTable td[id^="phaseTD"]',
    (cells) => cells.map((cell) => cell.childNodes[0].textContent));
  assert.deepEqual(phases, ['build chart', 'build chart', 'build chart']);
  assert.equal(await page.textContent('#totalChecked'), '3');
  assert.deepEqual(errors, []);
  await page.close();
});
