// The Call Tree tab: folded calls, expanding and collapsing, the filter that opens the tree to
// its matches, the links in from the Aggregate tab and out to the Details tab, and the totals
// of ticked rows, in all three metrics; filters on one field alone, and trees of any depth.

import { test, before, after } from 'node:test';
import assert from 'node:assert/strict';
import { join } from 'node:path';
import { launch, openReport, reports, screenshot, showTab } from './report_browser.mjs';

let browser;
before(async () => { browser = await launch(); });
after(async () => { await browser.close(); });

const viewport = { width: 1280, height: 1600 };

/// The rows on show: phase name (as the page shows it), count, and whether the box is ticked.
async function shownRows(page) {
  return page.$$eval('#callTreeSummaryTable tr[id^="CTR_"]', (rows) => rows.map((row) => {
    const n = Number(row.id.slice(4)) + 1;
    return {
      name: document.querySelector(`#ct_phaseNameTD${n} a`).textContent,
      count: Number(document.getElementById(`ct_countTD${n}`).textContent),
      ticked: row.querySelector('input[type="checkbox"]').checked,
    };
  }));
}

const names = async (page) => (await shownRows(page)).map((row) => row.name);

/// Clicks the spacer of the first shown row with that name.
async function toggle(page, name) {
  const rows = await names(page);
  const at = rows.indexOf(name);
  assert.ok(at >= 0, `${name} is on show`);
  await page.click(`#CTR_${at} td.PlusMinusSpacer`);
}

async function filter(page, phase) {
  await page.click('a[href="javascript:showInputTable(\'CT_FilterData\')"]');
  await page.fill('#CT_phasename', phase);
  await page.click('#CT_userInputs input[value="Refresh"]');
}

test('folded calls, expanding and collapsing', async () => {
  const { page, errors } = await openReport(browser, 'call_tree_time.html', viewport);
  await showTab(page, 'Call Tree');

  // The roots and their direct children; ten calls of "step" are one row.
  const first = await shownRows(page);
  assert.deepEqual(first.map((row) => row.name),
    ['main', 'init_self', 'init_post', 'step', 'worker', 'worker', 'worker_post', 'deep1',
     'main2', 'step', 'needle']);
  assert.deepEqual(first.map((row) => row.count), [1, 1, 1, 10, 1, 1, 1, 1, 1, 3, 1]);
  assert.equal(await page.textContent('#CT_aggregateTD'), 'Aggregate (N = 11)');
  assert.equal(await page.textContent('#CTR_0 td.PlusMinusSpacer'), '[-]');
  assert.equal(await page.textContent('#CTR_3 td.PlusMinusSpacer'), '[+]');
  await screenshot(page, 'call_tree_time_CallTree');

  // Open the loop: its folded child counts ten calls too.
  await toggle(page, 'step');
  assert.deepEqual((await shownRows(page)).slice(3, 5), [
    { name: 'step', count: 10, ticked: false }, { name: 'solve', count: 10, ticked: false }]);
  assert.equal(await page.textContent('#CTR_3 td.PlusMinusSpacer'), '[-]');
  await toggle(page, 'step');
  assert.equal((await names(page)).includes('solve'), false);

  // Open three levels, close the top one: re-opening it shows its direct children only.
  await toggle(page, 'deep1');
  await toggle(page, 'deep2');
  await toggle(page, 'deep3');
  assert.deepEqual((await names(page)).slice(7, 11), ['deep1', 'deep2', 'deep3', 'needle']);
  await toggle(page, 'deep1');
  assert.deepEqual((await names(page)).slice(7, 9), ['deep1', 'main2']);
  await toggle(page, 'deep1');
  assert.deepEqual((await names(page)).slice(7, 10), ['deep1', 'deep2', 'main2']);

  // A leaf's spacer changes nothing.
  const before = await shownRows(page);
  await toggle(page, 'init_self');
  assert.deepEqual(await shownRows(page), before);
  assert.deepEqual(errors, []);
  await page.close();
});

test('filters open the tree to their matches and tick them', async () => {
  const { page, errors } = await openReport(browser, 'call_tree_time.html', viewport);
  await showTab(page, 'Call Tree');

  // A phase deep down keeps its root, and the whole subtree of each root opens.
  await filter(page, 'needle');
  const rows = await shownRows(page);
  assert.deepEqual(rows.map((row) => row.name),
    ['main', 'init_self', 'init_post', 'step', 'solve', 'worker', 'a', 'worker', 'b',
     'worker_post', 'deep1', 'deep2', 'deep3', 'needle', 'main2', 'step', 'solve', 'needle']);
  assert.deepEqual(rows.filter((row) => row.ticked).map((row) => row.name), ['needle', 'needle']);
  assert.equal(await page.textContent('#CT_FilterDataDisp'), 'Phase::needle');
  assert.equal(await page.textContent('#CT_totalChecked'), '2');
  assert.equal(await page.textContent('#CT_totalExecCount'), '2.00');
  await screenshot(page, 'call_tree_time_CallTree_filtered');

  // A pattern that finds "_self" finds the names that end in "_post" as well.
  await filter(page, '_self');
  const ticked = (await shownRows(page)).filter((row) => row.ticked).map((row) => row.name);
  assert.deepEqual(ticked, ['init_self', 'init_post', 'worker_post']);

  // Nothing matches: header and totals only.
  await filter(page, 'no such phase');
  assert.deepEqual(await names(page), []);
  assert.equal(await page.textContent('#CT_aggregateTD'), 'Aggregate (N = 0)');

  // An empty filter brings the roots back.
  await filter(page, '');
  assert.equal((await names(page))[0], 'main');
  assert.equal(await page.textContent('#CT_FilterDataDisp'), '');
  assert.deepEqual(errors, []);
  await page.close();
});

test('links from the Aggregate tab and to the Details tab, and the totals of ticked rows', async () => {
  const { page, errors } = await openReport(browser, 'call_tree_time.html', viewport);

  // The Aggregate tab's link lands on the tree filtered to that phase, its calls ticked.
  await page.click('#aggregateSummaryTable a:text-is("needle")');
  await page.waitForFunction(() => activeTab === 'callTreeSummary');
  assert.equal(await page.inputValue('#CT_phasename'), 'needle');
  const ticked = (await shownRows(page)).filter((row) => row.ticked);
  assert.deepEqual(ticked.map((row) => row.name), ['needle', 'needle']);
  assert.equal(await page.textContent('#CT_totalExecCount'), '2.00');

  // Ticking rows by hand: the totals hold every execution folded into them.
  await page.check('#AllCTChecked');
  await page.uncheck('#AllCTChecked');
  const at = (await names(page)).indexOf('step');
  await page.check(`#ct_checkBox${at}`);
  const expected = await page.evaluate((position) => {
    const ids = nodeArray[CTDataView.Index[position]].IDs;
    return createScientificNotation(ids.reduce((sum, id) => sum + procData[id].WCSelf, 0));
  }, at);
  assert.equal(await page.textContent('#CT_totalChecked'), '1');
  assert.equal(await page.textContent('#CT_totalExecCount'), '10.00');
  assert.equal(await page.textContent('#CT_totalSelfTime'), expected);

  // The name links to the Details tab, listing every execution folded into the row, ticked.
  await page.click(`#ct_phaseNameTD${at + 1} a`);
  await page.waitForFunction(() => activeTab === 'phaseSummary');
  const detail = await page.$$eval('#phaseSummaryTable td[id^="execTD"]',
    (cells) => cells.map((cell) => Number(cell.textContent)));
  assert.deepEqual(detail, [3, 5, 7, 9, 11, 13, 15, 17, 19, 21]);
  assert.equal(await page.textContent('#totalChecked'), '10');
  assert.equal(await page.isChecked('#AllChecked'), true);
  assert.deepEqual(errors, []);
  await page.close();
});

test('the memory metrics show their figures per folded row', async () => {
  for (const [metric, columns, total] of [
    ['basicmemory', ['ct_deltaTD', 'ct_usageTD', 'ct_peakDeltaTD', 'ct_peakTD'], 'CT_totalUsage'],
    ['detailedmemory', ['ct_comTD', 'ct_resTD', 'ct_dllTD', 'ct_osTD', 'ct_freeTD'], 'CT_totalFree'],
  ]) {
    const { page, errors } = await openReport(browser, `call_tree_${metric}.html`, viewport);
    await showTab(page, 'Call Tree');
    const headings = await page.$$eval('#callTreeSummaryTableLastHeaderRow th', (cells) => cells.length);
    assert.equal(headings, columns.length + 2, metric);
    // The loop row: the usage is the largest of its ten calls.
    const at = (await names(page)).indexOf('step');
    const [shown, largest] = await page.evaluate(([position, cell]) => {
      const ids = nodeArray[CTDataView.Index[position]].IDs;
      const field = cell === 'ct_usageTD' ? 'Usage' : 'Committed';
      return [document.getElementById(cell + (position + 1)).textContent,
              createScientificNotation(Math.max(...ids.map((id) => procData[id][field])))];
    }, [at, columns[columns.length === 4 ? 1 : 0]]);
    assert.equal(shown, largest, metric);
    await page.check('#AllCTChecked');
    assert.notEqual(await page.textContent('#' + total), '0.00', metric);
    await screenshot(page, `call_tree_${metric}_CallTree`);
    assert.deepEqual(errors, [], metric);
    await page.close();
  }
});

test('a filter on Grouping, Model or Target alone lists every node once', async () => {
  const { page, errors } = await openReport(browser, 'call_tree_time.html', viewport);
  await showTab(page, 'Call Tree');
  const nodes = await page.evaluate(() => nodeArray.length);
  for (const [input, value] of [['CT_groupingname', 'Run'], ['CT_modelname', 'any model'],
                                ['CT_targetname', 'any target']]) {
    const view = await page.evaluate(([id, text]) => {
      for (const field of ['CT_phasename', 'CT_groupingname', 'CT_modelname', 'CT_targetname']) {
        document.getElementById(field).value = field === id ? text : '';
      }
      CT_userInputsAction();
      return CTDataView.Index;
    }, [input, value]);
    // Host-language rows have no model or target, so every row matches: the whole tree opens.
    assert.equal(new Set(view).size, view.length, `${input}: no node twice`);
    assert.equal(view.length, nodes, input);
    assert.equal(await page.textContent('#CT_aggregateTD'), `Aggregate (N = ${nodes})`);
  }
  assert.deepEqual(errors, []);
  await page.close();
});

test('a chain 2,000 deep stays one tree, and a tree 100,000 deep opens and closes', async () => {
  const { page, errors } = await openReport(browser, 'deep_chain.html', viewport);
  await showTab(page, 'Call Tree');
  assert.deepEqual(await page.evaluate(() => [callTreeArray.length, nodeArray.length]), [1, 2000]);
  await filter(page, 'odd');
  const open = await page.evaluate(() => [CTDataView.Index.length,
    CTDataView.Checked.filter((c) => c == 1).length, CTDataView.Index.every((n, i) => n === i)]);
  assert.deepEqual(open, [2000, 1000, true]);

  // The library's text of a chain of 100,000 levels, two of them folded into one, in place
  // of the page's tree: its statements build it whole, and the walks run at any depth.
  await page.addScriptTag({ path: join(reports, 'deep_tree.js') });
  const levels = 100000;
  const built = await page.evaluate(() => {
    let depth = 0;
    for (let node = callTreeArray[0]; node; node = node.children[0]) {
      if (node.Parent !== (depth === 0 ? 0 : node.index - 1) || node.IDs.length !== 2) {
        return `node ${node.index}`;
      }
      depth++;
    }
    return depth;
  });
  assert.equal(built, levels);
  await page.evaluate(() => { ctDataViewCreated = false; ShowTable('callTreeSummary'); });
  assert.equal(await page.evaluate(() => CTDataView.Index.length), 2);
  await filter(page, 'odd');
  assert.deepEqual(await page.evaluate(() => [CTDataView.Index.length,
    CTDataView.Checked.filter((c) => c == 1).length]), [levels, levels / 2]);
  // Collapsing the root closes the whole chain; opening it shows its child again.
  const spacer = () => page.evaluate(() => {
    lastStartIndex['CallTree'] = 0;
    renderCTDetailTable();
    toggleCallTreeChildren(0, 0, 0);
    return CTDataView.Index.length;
  });
  assert.equal(await spacer(), 1);
  assert.equal(await spacer(), 2);
  // The deepest node's link lists its rows in the Details tab.
  await filter(page, 'odd');
  await page.evaluate((deepest) => openDetailTab(deepest), levels - 1);
  assert.equal(await page.textContent('#aggTD'), 'Aggregate (N = 2)');
  assert.deepEqual(errors, []);
  await page.close();
});
