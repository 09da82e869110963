// A report of 50,000 rows: the window holds 32 rows at most, scrolling the strip re-fills them
// without making rows, and the Details tab sorts them all. The times of the first render and of a re-fill are written to
// timings.json beside the reports.

import { test, before, after } from 'node:test';
import assert from 'node:assert/strict';
import { launch, openReport, recordTimings, screenshot, showTab } from './report_browser.mjs';

let browser;
before(async () => { browser = await launch(); });
after(async () => { await browser.close(); });

const timings = {};

test('50,000 rows: opening, and scrolling the Details strip', async () => {
  const start = Date.now();
  const { page, errors } = await openReport(browser, 'large_detail.html', { width: 1600, height: 2400 });
  await page.waitForSelector('#aggRow0col0');
  timings.loadToAggregateMs = Date.now() - start;

  await showTab(page, 'Details');
  await page.click('#userInputs input[value="Refresh"]');
  assert.equal(await page.textContent('#aggTD'), 'Aggregate (N = 50000)');
  const rows = () => page.$$eval('#phaseSummaryTable tr', (all) => all.length);
  const dataRows = () => page.$$eval('#phaseSummaryTable td[id^="execTD"]', (all) => all.length);
  const rowsBefore = await rows();
  assert.equal(await dataRows(), 32);
  const firstCell = await page.$('#execTD0');

  // Halfway down the strip: the same rows show the middle of the view.
  await page.$eval('#phaseSummaryScrollTableDiv', (strip) => {
    strip.scrollTop = (strip.scrollHeight - strip.clientHeight) / 2;
  });
  await page.waitForFunction(() => Number(document.getElementById('execTD0').textContent) > 20000);
  const first = Number(await page.textContent('#execTD0'));
  assert.ok(Math.abs(first - (50000 - 32) / 2) < 100, `window starts at ${first}`);
  assert.equal(await rows(), rowsBefore, 'no row made or lost');
  assert.equal(await page.evaluate((cell) => cell === document.getElementById('execTD0'), firstCell),
               true, 'the same cell, re-filled');
  await screenshot(page, 'large_detail_Details_scrolled');

  // One re-fill, timed in the page over many positions.
  timings.detailRefillMs = await page.evaluate(() => {
    const strip = document.getElementById('phaseSummaryScrollTableDiv');
    const range = strip.scrollHeight - strip.clientHeight;
    const start = performance.now();
    for (let i = 0; i < 50; i++) {
      strip.scrollTop = (range * i) / 50;
      reGenerateTable(strip, 'Detail');
    }
    return (performance.now() - start) / 50;
  });
  // The end of the view.
  await page.$eval('#phaseSummaryScrollTableDiv', (strip) => { strip.scrollTop = strip.scrollHeight; });
  await page.waitForFunction(() => document.getElementById('execTD31').textContent === '49999');

  // A strip taller than the browser lays out scales its rows down, and still reaches them.
  const scaled = await page.evaluate(() => {
    MAXSTRIPHEIGHT = 100000;
    generateFakeDivContents('Detail');
    const strip = document.getElementById('phaseSummaryScrollTableDiv');
    return [strip.scrollHeight, stripScale['Detail'] < 1];
  });
  assert.deepEqual(scaled, [100000, true]);
  await page.$eval('#phaseSummaryScrollTableDiv', (strip) => { strip.scrollTop = strip.scrollHeight / 2; });
  await page.waitForFunction(() => {
    const first = Number(document.getElementById('execTD0').textContent);
    return first > 20000 && first < 30000;
  });
  await page.$eval('#phaseSummaryScrollTableDiv', (strip) => { strip.scrollTop = strip.scrollHeight; });
  await page.waitForFunction(() => document.getElementById('execTD31').textContent === '49999');

  // Rank 1 on self time: eight distinct figures, the commonest on thousands of rows. The rows
  // come by descending figure, equal ones in execution order.
  const sortStart = Date.now();
  await page.click('a[href="javascript:showInputTable(\'SortData\')"]');
  await page.fill('#Sort_self', '1');
  await page.click('#userInputs input[value="Refresh"]');
  timings.detailSortSelfMs = Date.now() - sortStart;
  assert.equal(await page.textContent('#aggTD'), 'Aggregate (N = 50000)');
  const order = await page.evaluate(() => dataView.Index.every((row, i) => i === 0 ||
    procData[dataView.Index[i - 1]].WCSelf > procData[row].WCSelf ||
    (procData[dataView.Index[i - 1]].WCSelf === procData[row].WCSelf && dataView.Index[i - 1] < row)));
  assert.equal(order, true);
  assert.deepEqual(errors, []);
  await page.close();
});

test('the call tree of 50,000 rows: opening, scrolling and filtering', async () => {
  const { page, errors } = await openReport(browser, 'large_detail.html', { width: 1600, height: 2400 });
  await page.waitForSelector('#aggRow0col0');
  const start = Date.now();
  await showTab(page, 'Call Tree');
  await page.waitForSelector('#ct_checkBoxTD1');
  timings.callTreeFirstRenderMs = Date.now() - start;
  const nodes = await page.evaluate(() => nodeArray.length);
  const shown = await page.evaluate(() => CTDataView.Index.length);
  assert.ok(nodes < 50000 / 5, `${nodes} nodes fold the 50,000 rows`);
  assert.equal(await page.$$eval('#callTreeSummaryTable tr[id^="CTR_"]', (rows) => rows.length), 32);

  // The strip re-fills the same rows with the end of the view.
  const firstCell = await page.$('#ct_countTD1');
  await page.$eval('#callTreeSummaryScrollTableDiv', (strip) => { strip.scrollTop = strip.scrollHeight; });
  await page.waitForFunction((length) => lastStartIndex['CallTree'] === length - 32, shown);
  assert.equal(await page.evaluate((cell) => cell === document.getElementById('ct_countTD1'), firstCell),
               true, 'the same cell, re-filled');
  timings.callTreeRefillMs = await page.evaluate(() => {
    const strip = document.getElementById('callTreeSummaryScrollTableDiv');
    const range = strip.scrollHeight - strip.clientHeight;
    const start = performance.now();
    for (let i = 0; i < 50; i++) {
      strip.scrollTop = (range * i) / 50;
      reGenerateTable(strip, 'CallTree');
    }
    return (performance.now() - start) / 50;
  });

  // A filter that matches under every root opens the whole tree.
  const filterStart = Date.now();
  await page.click('a[href="javascript:showInputTable(\'CT_FilterData\')"]');
  await page.fill('#CT_phasename', 'task 7$');
  await page.click('#CT_userInputs input[value="Refresh"]');
  timings.callTreeFilterMs = Date.now() - filterStart;
  const ticked = await page.evaluate(() => CTDataView.Checked.filter((c) => c == 1).length);
  assert.ok(ticked > 0);
  await screenshot(page, 'large_detail_CallTree_filtered');
  assert.deepEqual(errors, []);
  await page.close();
});

test('the aggregate strip of a long table re-fills its rows too', async () => {
  const { page, errors } = await openReport(browser, 'large_difference.html', { width: 1600, height: 2400 });
  const names = () => page.$$eval('#aggregateSummaryTable td[id$="col0"]', (all) => all.map((c) => c.textContent));
  const before = await names();
  assert.equal(before.length, 32);
  await page.$eval('#aggregateSummaryScrollTableDiv', (strip) => { strip.scrollTop = strip.scrollHeight; });
  await page.waitForFunction((first) =>
    document.getElementById('aggRow0col0').textContent !== first, before[0]);
  const after = await names();
  assert.equal(after.length, 32);
  const last = await page.evaluate(() => Phase[aggData[aggDataView.Index[aggDataView.Index.length - 1]].Phase]);
  assert.equal(after[31], last);
  timings.aggregateRefillMs = await page.evaluate(() => {
    const strip = document.getElementById('aggregateSummaryScrollTableDiv');
    const start = performance.now();
    for (let i = 0; i < 50; i++) {
      strip.scrollTop = ((strip.scrollHeight - strip.clientHeight) * i) / 50;
      reGenerateTable(strip, 'Aggregate');
    }
    return (performance.now() - start) / 50;
  });
  assert.deepEqual(errors, []);
  await page.close();
  recordTimings(timings);
});
