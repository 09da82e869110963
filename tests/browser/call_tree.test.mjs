// The Call Tree tab: folding, filters, links, totals of ticked rows, trees of any depth and size.

import { test } from 'node:test';
import assert from 'node:assert/strict';
import { join } from 'node:path';
import { detailRows, filterCallTree as filter, follow, reports, scrollDiv, showTab, tall, textsOf, withReport } from './report_browser.mjs';


/// The rows on show: phase name (as the page shows it), count, and whether the box is ticked.
const shownRows = (page) => page.$$eval('#callTreeSummaryTable tr[id^="CTR_"]', (rows) => rows.map((row) => {
  const n = Number(row.id.slice(4)) + 1;
  return { name: document.querySelector(`#ct_phaseNameTD${n} a`).textContent,
           count: Number(document.getElementById(`ct_countTD${n}`).textContent),
           ticked: row.querySelector('input[type="checkbox"]').checked };
}));
const names = async (page) => (await shownRows(page)).map((row) => row.name);
const tickedNames = async (page) => (await shownRows(page)).filter((row) => row.ticked).map((row) => row.name);

/// Clicks the spacers of the first shown rows with these names.
async function toggle(page, ...rows) {
  for (const name of rows) {
    const at = (await names(page)).indexOf(name);
    assert.ok(at >= 0, `${name} is on show`);
    await page.click(`#CTR_${at} td.PlusMinusSpacer`);
  }
}
const counts = (page) => page.evaluate(() => [CTDataView.Index.length, CTDataView.Checked.filter((c) => c == 1).length]);

test('folded calls, expanding and collapsing; filters that open the tree to their matches; links in and out', async () => {
  await withReport('call_tree_time.html', async (page) => {
    await showTab(page, 'Call Tree');
    // The roots and their direct children; ten calls of "step" are one row.
    assert.deepEqual((await shownRows(page)).map((row) => `${row.name}:${row.count}`),
      ['main:1', 'init_self:1', 'init_post:1', 'step:10', 'worker:1', 'worker:1', 'worker_post:1', 'deep1:1',
       'main2:1', 'step:3', 'needle:1']);
    assert.deepEqual(await textsOf(page, '#CT_aggregateTD', '#CTR_0 td.PlusMinusSpacer', '#CTR_3 td.PlusMinusSpacer'),
                     ['Aggregate (N = 11)', '[-]', '[+]']);
    // Open the loop: its folded child counts ten calls too.
    await toggle(page, 'step');
    assert.deepEqual([...(await shownRows(page)).slice(3, 5), await page.textContent('#CTR_3 td.PlusMinusSpacer')],
                     [{ name: 'step', count: 10, ticked: false }, { name: 'solve', count: 10, ticked: false }, '[-]']);
    await toggle(page, 'step');
    assert.equal((await names(page)).includes('solve'), false);
    // Open three levels, close the top one: re-opening it shows its direct children only.
    for (const [rows, shown] of [[['deep1', 'deep2', 'deep3'], ['deep1', 'deep2', 'deep3', 'needle', 'main2']],
                                 [['deep1'], ['deep1', 'main2']], [['deep1'], ['deep1', 'deep2', 'main2']]]) {
      await toggle(page, ...rows);
      assert.deepEqual((await names(page)).slice(7, 7 + shown.length), shown);
    }
    // A leaf's spacer changes nothing.
    const before = await shownRows(page);
    await toggle(page, 'init_self');
    assert.deepEqual(await shownRows(page), before);

    // The Aggregate tab's link filters the tree to that phase: each root's whole subtree opens, the calls ticked.
    await showTab(page, 'Aggregate');
    await follow(page, '#aggregateSummaryTable a:text-is("needle")', 'callTreeSummary');
    assert.deepEqual([await page.inputValue('#CT_phasename'), await names(page), await tickedNames(page),
                      ...await textsOf(page, '#CT_FilterDataDisp', '#CT_totalChecked', '#CT_totalExecCount')],
      ['needle', ['main', 'init_self', 'init_post', 'step', 'solve', 'worker', 'a', 'worker', 'b', 'worker_post',
                  'deep1', 'deep2', 'deep3', 'needle', 'main2', 'step', 'solve', 'needle'], ['needle', 'needle'],
       'Phase::needle', '2', '2.00']);
    // A pattern that finds "_self" finds the names that end in "_post" as well.
    await filter(page, '_self');
    assert.deepEqual(await tickedNames(page), ['init_self', 'init_post', 'worker_post']);
    // Nothing matches: header and totals only; an empty filter brings the roots back.
    await filter(page, 'no such phase');
    assert.deepEqual([await names(page), await page.textContent('#CT_aggregateTD')], [[], 'Aggregate (N = 0)']);
    await filter(page, '');
    assert.deepEqual([(await names(page))[0], await page.textContent('#CT_FilterDataDisp')], ['main', '']);

    // Ticking rows by hand: the totals hold every execution folded into them.
    await page.check('#AllCTChecked');
    await page.uncheck('#AllCTChecked');
    const at = (await names(page)).indexOf('step');
    await page.check(`#ct_checkBox${at}`);
    assert.deepEqual(await textsOf(page, '#CT_totalChecked', '#CT_totalExecCount', '#CT_totalSelfTime'), ['1', '10.00',
      await page.evaluate((p) => createScientificNotation(nodeArray[CTDataView.Index[p]].IDs.reduce((sum, id) => sum + procData[id].WCSelf, 0)), at)]);
    // The name links to the Details tab, listing every execution folded into the row, ticked.
    await follow(page, `#ct_phaseNameTD${at + 1} a`, 'phaseSummary');
    assert.deepEqual([await detailRows(page), await page.textContent('#totalChecked'), await page.isChecked('#AllChecked')],
                     [[3, 5, 7, 9, 11, 13, 15, 17, 19, 21], '10', true]);

    // A filter on Grouping, Model or Target alone lists every node once (host-language rows match any).
    await showTab(page, 'Call Tree');
    const nodes = await page.evaluate(() => nodeArray.length);
    for (const [input, value] of [['CT_groupingname', 'Run'], ['CT_modelname', 'any model'], ['CT_targetname', 'any target']]) {
      const view = await page.evaluate(([id, text]) => {
        for (const f of ['CT_phasename', 'CT_groupingname', 'CT_modelname', 'CT_targetname']) document.getElementById(f).value = f === id ? text : '';
        CT_userInputsAction();
        return CTDataView.Index;
      }, [input, value]);
      assert.deepEqual([new Set(view).size, view.length, await page.textContent('#CT_aggregateTD')],
                       [nodes, nodes, `Aggregate (N = ${nodes})`], input);
    }
  }, tall);
});

test('the memory metrics show their figures per folded row', async () => {
  for (const [metric, columns, total] of [
    ['basicmemory', ['ct_deltaTD', 'ct_usageTD', 'ct_peakDeltaTD', 'ct_peakTD'], 'CT_totalUsage'],
    ['detailedmemory', ['ct_comTD', 'ct_resTD', 'ct_dllTD', 'ct_osTD', 'ct_freeTD'], 'CT_totalFree'],
  ]) {
    await withReport(`call_tree_${metric}.html`, async (page) => {
      await showTab(page, 'Call Tree');
      // The loop row: the usage is the largest of its ten calls.
      const [shown, largest] = await page.evaluate(([position, cell, field]) => [
        document.getElementById(cell + (position + 1)).textContent, createScientificNotation(
          Math.max(...nodeArray[CTDataView.Index[position]].IDs.map((id) => procData[id][field])))],
      [(await names(page)).indexOf('step'), ...(metric === 'basicmemory' ? ['ct_usageTD', 'Usage'] : ['ct_comTD', 'Committed'])]);
      assert.deepEqual([await page.$$eval('#callTreeSummaryTableLastHeaderRow th', (cells) => cells.length), shown],
                       [columns.length + 2, largest], metric);
      await page.check('#AllCTChecked');
      assert.notEqual(await page.textContent('#' + total), '0.00', metric);
    }, tall);
  }
});

test('a chain 2,000 deep stays one tree, and a tree 100,000 deep opens and closes', async () => {
  await withReport('deep_chain.html', async (page) => {
    await showTab(page, 'Call Tree');
    assert.deepEqual(await page.evaluate(() => [callTreeArray.length, nodeArray.length]), [1, 2000]);
    await filter(page, 'odd');
    assert.deepEqual([...await counts(page), await page.evaluate(() => CTDataView.Index.every((n, i) => n === i))], [2000, 1000, true]);

    // The library's text of two chains of 100,000 levels folded into one, in place of the page's tree.
    await page.addScriptTag({ path: join(reports, 'deep_tree.js') });
    const levels = 100000;
    assert.deepEqual(await page.evaluate(() => {
      let depth = 0;
      for (let node = callTreeArray[0]; node; node = node.children[0], depth++) {
        if (node.Parent !== (depth === 0 ? 0 : node.index - 1) || node.IDs.length !== 2) return `node ${node.index}`;
      }
      ctDataViewCreated = false;
      ShowTable('callTreeSummary');
      return [depth, CTDataView.Index.length];
    }), [levels, 2]);
    await filter(page, 'odd');
    assert.deepEqual(await counts(page), [levels, levels / 2]);
    // Collapsing the root closes the whole chain; opening it shows its child again.
    const spacer = () => page.evaluate(() => {
      lastStartIndex['CallTree'] = 0;
      renderCTDetailTable();
      toggleCallTreeChildren(0, 0, 0);
      return CTDataView.Index.length;
    });
    assert.deepEqual([await spacer(), await spacer()], [1, 2]);
    // The deepest node's link lists its rows in the Details tab.
    await filter(page, 'odd');
    await page.evaluate((deepest) => openDetailTab(deepest), levels - 1);
    assert.equal(await page.textContent('#aggTD'), 'Aggregate (N = 2)');
  }, tall);
});

test('the call tree of 50,000 rows: opening, scrolling and filtering', async () => {
  await withReport('large_detail.html', async (page) => {
    await showTab(page, 'Call Tree');
    await page.waitForSelector('#ct_checkBoxTD1');
    const [nodes, shown] = await page.evaluate(() => [nodeArray.length, CTDataView.Index.length]);
    assert.ok(nodes < 50000 / 5 && (await shownRows(page)).length === 32, `${nodes} nodes fold the 50,000 rows`);
    // The strip re-fills the same rows with the end of the view.
    const firstCell = await page.$('#ct_countTD1');
    await scrollDiv(page, 'callTreeSummaryScrollTableDiv', { y: 1 }, (length) => lastStartIndex['CallTree'] === length - 32, shown);
    assert.equal(await page.evaluate((cell) => cell === ct_countTD1, firstCell), true);
    // A filter that matches under every root opens the whole tree.
    await filter(page, 'task 7$');
    assert.ok((await counts(page))[1] > 0);
  }, { viewport: { width: 1600, height: 2400 } });
});
