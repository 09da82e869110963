// Every kind of report and its tabs, also with figures that are not finite; the Aggregate table;
// comparison pages with phases of one side only.

import { test } from 'node:test';
import assert from 'node:assert/strict';
import { aggregateRow, big, detailPhases, follow, scrollDiv, showTab, tabArguments, texts, textsOf, withReport }
  from './report_browser.mjs';

const tabsOf = (name) => ['Aggregate',
  ...(name.startsWith('aggregate') ? [] : name.includes('difference') ? ['Details'] : ['Call Tree', 'Details']),
  ...(name.includes('detailedmemory') && !name.startsWith('aggregate') ? ['MemChart'] : []), 'System Info'];
// The difference chart's graph stands for its tab.
const tabDiv = (name, tab) => ({ 'Aggregate': 'aggregateSummaryDiv', 'Call Tree': 'callTreeSummaryDiv',
  'Details': 'phaseSummaryDiv', 'System Info': 'systemInfoTableDiv',
  'MemChart': name.startsWith('difference') ? 'absDevCanvasDiffDiv' : 'scrollcanvasdiv' })[tab];

test('every page opens on Aggregate, and every tab switches to every other', async () => {
  for (const name of ['detail', 'difference', 'aggregate', 'aggregate_difference'].flatMap((kind) =>
    ['time', 'basicmemory', 'detailedmemory'].map((metric) => `${kind}_${metric}.html`))) {
    const tabs = tabsOf(name);
    await withReport(name, async (page) => {
      assert.ok((await texts(page, '#aggregateSummaryTable td[id$="col0"]')).length > 0, name);
      assert.deepEqual(await texts(page, '#headerTable div[id="header"]:not([style*="none"]) li'), tabs);
      for (const from of tabs) {
        for (const to of tabs.filter((tab) => tab !== from)) {
          await page.evaluate((argument) => ShowTable(argument), tabArguments[from]);
          await showTab(page, to);
          const shown = await Promise.all(tabs.map((tab) => page.isVisible('#' + tabDiv(name, tab))));
          assert.deepEqual(shown, tabs.map((tab) => tab === to), `${name} ${from} -> ${to}`);
        }
      }
    });
  }
});

// Figures that are not finite, as a damaged or foreign file may hold them, reach the page as NaN and Infinity.
test('pages of figures that are not finite open, show every tab and print NaN and Infinity', async () => {
  for (const name of ['detail', 'difference'].flatMap((kind) => ['time', 'basicmemory', 'detailedmemory']
    .map((metric) => `non_finite_${kind}_${metric}.html`))) {
    await withReport(name, async (page) => {
      assert.ok(await page.evaluate(() => procData.flatMap((record) => Object.values(record))
        .some((v) => typeof v === 'number' && !Number.isFinite(v))), name);
      for (const tab of tabsOf(name).slice(1).concat(['Aggregate', 'Details'])) await showTab(page, tab);
      const cells = await texts(page, '#phaseSummaryTable td[id^="row"]');
      assert.ok(cells.some((text) => /NaN|Infinity/.test(text)), `${name}: ${cells.join(' ')}`);
    }, big);
  }
});

test('the aggregate table sorts both ways, and another column starts ascending', async () => {
  await withReport('detail_time.html', async (page) => {
    const counts = async () => {
      await page.click('#aggregateSummaryTable span:text-is("Count")');
      return (await texts(page, '#aggregateSummaryTable td[id$="col1"]')).map(Number);
    };
    const [ascending, descending] = [await counts(), await counts()];
    assert.notDeepEqual(ascending, descending);
    // Another column begins ascending again, names compared without case.
    await page.click('#aggregateSummaryTable span:text-is("Phase")');
    const names = (await texts(page, '#aggregateSummaryTable td[id$="col0"]')).map((n) => n.toLowerCase());
    assert.deepEqual([ascending, descending, names],
                     [[...ascending].sort((a, b) => a - b), [...ascending].sort((a, b) => b - a), [...names].sort()]);
  });
});

test('the aggregate strip of a long table re-fills its 32 rows', async () => {
  await withReport('large_difference.html', async (page) => {
    const names = () => texts(page, '#aggregateSummaryTable td[id$="col0"]');
    const before = await names();
    await scrollDiv(page, 'aggregateSummaryScrollTableDiv', { y: 1 }, (first) => aggRow0col0.textContent !== first, before[0]);
    const after = await names();
    assert.deepEqual([before.length, after.length, after[31]],
                     [32, 32, await page.evaluate(() => Phase[aggData[aggDataView.Index.at(-1)].Phase])]);
  }, { viewport: { width: 1600, height: 2400 } });
});

test('difference pages: NA for one side\'s phases, colour classes and the link to the Details tab', async () => {
  for (const metric of ['time', 'basicmemory']) {
    await withReport(`difference_${metric}.html`, async (page) => {
      // "load model" is only on the left, "link model" only on the right.
      const [leftOnly, rightOnly] = [await aggregateRow(page, 'load model'), await aggregateRow(page, 'link model')];
      const binned = await page.$$eval('#aggregateSummaryTable td', (cells) =>
        cells.filter((cell) => /\b(GT50|LTM50|BETWN_[M0-9_]+)\b/.test(cell.className)).length);
      // Relative deviations have colour classes.
      assert.deepEqual([leftOnly[2], rightOnly[1], leftOnly.slice(4).includes('NA'), rightOnly.slice(4).includes('NA'), binned > 0],
                       ['NA', 'NA', true, true, true], metric);
      // Four runs of "outputs" on the left, five on the right: five aligned rows, ticked.
      await follow(page, '#aggregateSummaryTable a:text-is("outputs")', 'phaseSummary');
      assert.deepEqual([await detailPhases(page), await page.textContent('#totalChecked'),
                        (await texts(page, '#phaseSummaryTable td[id^="row"]')).includes('NA')], [Array(5).fill('outputs'), '5', true], metric);
    }, big);
  }
});

test('a parent only the right side has, on the first row: every tab works', async () => {
  // The right run wraps the left one's work in an outer phase.
  await withReport('outer_difference_time.html', async (page) => {
    const r = await page.evaluate(() => ({ ...procData[0], name: Phase[procData[0].Phase] }));
    assert.deepEqual([r.isParent, r.name, r.LHS_WCSelf, r.RHS_WCSelf, r.RHS_CPUSelf,
                      (await page.$$('#aggregateSummaryTable td[id$="col0"]')).length > 0], [1, 'session', -99.99, 0, 0, true]);
    await showTab(page, 'Details');
    assert.deepEqual(await textsOf(page, '#aggTD', '#row0col1'),
                     [`Aggregate (N = ${await page.evaluate(() => procData.length - numBlankData)})`, 'NA']);
    for (const tab of ['System Info', 'Aggregate']) await showTab(page, tab);
  }, big);
});
