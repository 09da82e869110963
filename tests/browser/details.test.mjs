// The Details tab: Refresh, filters, sort ranks, check boxes and totals, and a table of 50,000 rows.

import { test } from 'node:test';
import assert from 'node:assert/strict';
import { detailPhases, detailRows as shownRows, follow, scrollDiv, showTab, tall, textsOf, withReport } from './report_browser.mjs';

const text = (page, id) => page.textContent('#' + id);

async function refresh(page, inputs = {}) {
  await page.evaluate((values) => ['phasename', 'groupingname', 'modelname', 'targetname', 'machinename', 'chartname',
    'Sort_phasename', 'Sort_self', 'Sort_selfPchild'].forEach((id) => { document.getElementById(id).value = values[id] || ''; }), inputs);
  await page.click('#userInputs input[value="Refresh"]');
}

test('Refresh, filters, sorting and the check boxes with their totals', async () => {
  await withReport('detail_time.html', async (page) => {
    await showTab(page, 'Details');
    const total = await page.evaluate(() => procData.length - numBlankData);
    // First shown, and refreshed with empty inputs, the tab lists every row in order, none checked.
    for (const again of [false, true]) {
      if (again) await refresh(page);
      assert.deepEqual([await shownRows(page), await text(page, 'aggTD'), ...await page.evaluate(() =>
        [dataView.Checked.every((c) => c === 0), dataView.AllChecked])], [[...Array(total).keys()], `Aggregate (N = ${total})`, true, false]);
    }
    // A regular expression on the names; filters join by AND; no match leaves header and totals.
    for (const [inputs, phases, shown] of [[{ phasename: 'build|sort' }, ['sort blocks', ...Array(3).fill('build chart')], 4],
                                           [{ phasename: 'build', chartname: 'Gear' }, ['build chart'], 1],
                                           [{ phasename: 'no such phase' }, [], 0]]) {
      await refresh(page, inputs);
      assert.deepEqual([await detailPhases(page), await text(page, 'aggTD')], [phases, `Aggregate (N = ${shown})`]);
    }
    // Rank 1 on self time: numbers sort descending; on the phase name: ascending.
    await refresh(page, { Sort_self: '1' });
    const bySelf = await page.evaluate(() => dataView.Index.map((i) => procData[i].WCSelf));
    await refresh(page, { Sort_phasename: '1' });
    const byName = await page.evaluate(() => dataView.Index.map((i) => Phase[procData[i].Phase].toLowerCase()));
    assert.deepEqual([bySelf, byName], [[...bySelf].sort((a, b) => b - a), [...byName].sort()]);

    await refresh(page);
    await page.check('#checkBox0');
    await page.check('#checkBox2');
    assert.deepEqual(await textsOf(page, '#totalChecked', '#totalSelfTime'), ['2', await page.evaluate(() =>
      createScientificNotation(procData[dataView.Index[0]].WCSelf + procData[dataView.Index[2]].WCSelf))]);
    await page.check('#AllChecked');
    assert.equal(await text(page, 'totalChecked'), String(total));  // the header's box ticks all
    await page.uncheck('#checkBox1');
    assert.deepEqual([await text(page, 'totalChecked'), await page.isChecked('#AllChecked')], [String(total - 1), false]);
  }, tall);
});

test('a phase of the Aggregate tab opens the call tree, and its row there the Details tab', async () => {
  await withReport('detail_basicmemory.html', async (page) => {
    await follow(page, '#aggregateSummaryTable a:text-is("build chart")', 'callTreeSummary');
    // The three charts are built by equal calls: one row of the tree, ticked.
    assert.equal(await text(page, 'CT_totalExecCount'), '3.00');
    const row = await page.evaluate(() => CTDataView.Checked.indexOf(1) - lastStartIndex['CallTree']);
    await follow(page, `#ct_phaseNameTD${row + 1} a`, 'phaseSummary');
    assert.deepEqual([await detailPhases(page), await text(page, 'totalChecked')], [Array(3).fill('build chart'), '3']);
  }, tall);
});

test('50,000 rows: the strip re-fills its rows, reaches the end, and the sort keeps the order', async () => {
  await withReport('large_detail.html', async (page) => {
    await showTab(page, 'Details');
    await page.click('#userInputs input[value="Refresh"]');
    const rows = () => page.$$eval('#phaseSummaryTable tr', (all) => all.length);
    const [rowsBefore, firstCell] = [await rows(), await page.$('#execTD0')];
    assert.deepEqual([await text(page, 'aggTD'), (await shownRows(page)).length], ['Aggregate (N = 50000)', 32]);
    // Halfway down the strip: the same rows show the middle of the view.
    await scrollDiv(page, 'phaseSummaryScrollTableDiv', { y: 0.5 }, () => Number(execTD0.textContent) > 20000);
    const first = Number(await text(page, 'execTD0'));
    assert.deepEqual([Math.abs(first - (50000 - 32) / 2) < 100, await rows(), await page.evaluate((cell) => cell === execTD0, firstCell)],
                     [true, rowsBefore, true], `window starts at ${first}`);
    const toEnd = () => scrollDiv(page, 'phaseSummaryScrollTableDiv', { y: 1 }, () => execTD31.textContent === '49999');
    await toEnd();
    // A strip taller than the browser lays out scales its rows down, and still reaches them.
    assert.deepEqual(await page.evaluate(() => {
      MAXSTRIPHEIGHT = 100000;
      generateFakeDivContents('Detail');
      return [phaseSummaryScrollTableDiv.scrollHeight, stripScale['Detail'] < 1];
    }), [100000, true]);
    await scrollDiv(page, 'phaseSummaryScrollTableDiv', { y: 0.5 }, () => Math.abs(Number(execTD0.textContent) - 25000) < 5000);
    await toEnd();

    // Rank 1 on self time, eight figures on thousands of rows: descending, equal ones in execution order.
    await page.click('a[href="javascript:showInputTable(\'SortData\')"]');
    await page.fill('#Sort_self', '1');
    await page.click('#userInputs input[value="Refresh"]');
    assert.deepEqual([await text(page, 'aggTD'), await page.evaluate(() => dataView.Index.every((row, i, all) => i === 0 ||
      procData[all[i - 1]].WCSelf > procData[row].WCSelf || (procData[all[i - 1]].WCSelf === procData[row].WCSelf && all[i - 1] < row)))],
                     ['Aggregate (N = 50000)', true]);
  }, { viewport: { width: 1600, height: 2400 } });
});
