// Names, labels, titles and system information with quotes, angle brackets, ampersands,
// backslashes and line breaks show as text: they neither break a page's scripts nor run as
// markup. Names that are patterns are matched as text, and a filter that is no pattern
// matches nothing.

import { test, before, after } from 'node:test';
import assert from 'node:assert/strict';
import { launch, openReport, screenshot, showTab } from './report_browser.mjs';

let browser;
before(async () => { browser = await launch(); });
after(async () => { await browser.close(); });

const hostileNames = ['say "hi"', "it's", '<b>bold</b>', 'back\\slash',
                      '</script><script>window.pwned=1</script>', 'a & b',
                      "x' onmouseover='window.pwned=2", '100% done'];

test('a Detail page of hostile names', async () => {
  const { page, errors } = await openReport(browser, 'hostile_detail.html', { width: 1600, height: 1600 });
  assert.equal(await page.title(), 'Run "quoted" <group>');
  const shown = await page.$$eval('#aggregateSummaryTable td[id$="col0"]', (cells) => cells.map((c) => c.textContent));
  // The leaves are listed; phase names show with forward slashes, as paths do.
  assert.deepEqual(shown, hostileNames.map((name) => name.replace('\\', '/') + ' inner'));
  assert.equal(await page.$('#aggregateSummaryTable b'), null, 'no markup from names');
  // Every name's link opens the call tree at that phase, and the tree's link its rows.
  await page.click(`#aggregateSummaryTable a:text-is("it's inner")`);
  await page.waitForFunction(() => activeTab === 'callTreeSummary');
  const tree = await page.$$eval('#callTreeSummaryTable td[id^="ct_phaseNameTD"] a', (links) => links.map((a) => a.textContent));
  assert.deepEqual(tree, ['outer', ...hostileNames.flatMap((name) => [name.replace('\\', '/'), name.replace('\\', '/') + ' inner'])]);
  assert.equal(await page.$('#callTreeSummaryTable b'), null, 'no markup from names');
  const row = await page.evaluate(() => CTDataView.Checked.indexOf(1) - lastStartIndex['CallTree']);
  await page.click(`#ct_phaseNameTD${row + 1} a`);
  await page.waitForFunction(() => activeTab === 'phaseSummary');
  const rows = await page.$$eval('#phaseSummaryTable td[id^="phaseTD"]', (cells) => cells.map((c) => c.childNodes[0].textContent));
  assert.deepEqual(rows, ["it's inner"]);
  // Names of the other kinds keep their characters, backslashes included.
  assert.equal(await page.textContent('#modelTD0'), "model's <x>");
  assert.equal(await page.textContent('#targetTD0'), 't"t');
  const grouping = await page.textContent('#phaseTD0 span');
  assert.equal(grouping, '(Grouping:Run "quoted" <group>)');
  await page.hover('#phaseTD0');
  await showTab(page, 'System Info');
  const info = await page.textContent('#systemInfoTableDiv');
  assert.ok(info.includes('<i>processorStr</i> & "more"'));
  assert.ok(info.includes('<i>installedProductsStr</i> & "more"'));
  assert.equal(await page.$('#systemInfoTableDiv i'), null);
  await screenshot(page, 'hostile_detail_SystemInfo');
  assert.equal(await page.evaluate(() => window.pwned), undefined);
  assert.deepEqual(errors, []);
  await page.close();
});

test('a Difference page with hostile labels', async () => {
  const { page, errors } = await openReport(browser, 'hostile_difference.html', { width: 1600, height: 1600 });
  const header = await page.textContent('#aggregateSummaryTableLastHeaderRow');
  assert.ok(header.includes('<b>"Left"</b> \\'), header);
  assert.ok(header.includes("it's & <i>right</i>"), header);
  await page.click('#aggregateSummaryTable a:text-is("a & b inner")');
  await page.waitForFunction(() => activeTab === 'phaseSummary');
  assert.equal(await page.textContent('#totalChecked'), '1');
  await screenshot(page, 'hostile_difference_Details');
  assert.equal(await page.evaluate(() => window.pwned), undefined);
  assert.deepEqual(errors, []);
  await page.close();
});

test('names, labels and system information with a carriage return, U+2028 or U+2029', async () => {
  const names = ['first\rline', 'para\u2029graph', 'line\u2028separator'];
  const detail = await openReport(browser, 'line_breaks_detail.html', { width: 1600, height: 1600 });
  assert.deepEqual(await detail.page.evaluate(() => Phase.slice(0, 3)), names);
  assert.deepEqual(await detail.page.evaluate(() => [Model[0], Chart[0]]), ['model\r2', 'chart\rone']);
  // Markup reads a carriage return as a line feed; the rest stays as it is.
  const shown = await detail.page.$$eval('#aggregateSummaryTable td[id$="col0"]', (cells) => cells.map((c) => c.textContent));
  assert.deepEqual(shown.sort(), [names[2], names[1]].sort());
  for (const tab of ['Call Tree', 'Details', 'MemChart', 'System Info']) {
    await showTab(detail.page, tab);
  }
  assert.ok((await detail.page.textContent('#systemInfoTableDiv')).includes('processorStr\n\u2028\u2029end'));
  assert.deepEqual(detail.errors, []);
  await detail.page.close();

  const difference = await openReport(browser, 'line_breaks_difference.html', { width: 1600, height: 1600 });
  assert.deepEqual(await difference.page.evaluate(() => [lhsLabel.startsWith('Left\rside'), rhsLabel]),
                   [true, 'Right\rside']);
  await showTab(difference.page, 'Details');
  assert.deepEqual(difference.errors, []);
  await difference.page.close();

  // The name arrays carry whole name tables: a later page of the same process holds the names.
  const later = await openReport(browser, 'detail_time.html');
  assert.deepEqual(await later.page.evaluate(() => Phase.slice(0, 3)), names);
  assert.deepEqual(later.errors, []);
  await later.page.close();
});

test('names that are patterns match as text; a filter that is no pattern matches nothing', async () => {
  const { page, errors } = await openReport(browser, 'patterns.html', { width: 1600, height: 1600 });
  const linkOf = (name) => page.evaluate((text) =>
    `#aggregateSummaryTable a[onclick="openCallTreeTab(Phase[${Phase.indexOf(text)}]); return false;"]`, name);
  // "(a+)+b" beside a long run of 'a': the link finds that phase alone, at once.
  await page.click(await linkOf('(a+)+b'));
  await page.waitForFunction(() => activeTab === 'callTreeSummary', null, { timeout: 10000 });
  const ticked = () => page.evaluate(() => CTDataView.Index.filter((n, i) => CTDataView.Checked[i] == 1)
    .map((n) => Phase[procData[nodeArray[n].IDs[0]].Phase]));
  assert.deepEqual(await ticked(), ['(a+)+b']);
  // A name of a megabyte: too large a pattern, but as text it finds itself.
  await showTab(page, 'Aggregate');
  await page.click(await linkOf('a'.repeat(1 << 20)));
  await page.waitForFunction(() => activeTab === 'callTreeSummary');
  assert.deepEqual((await ticked()).map((name) => name.length), [1 << 20]);

  // The user's own filters: not valid, or too large to run, they match nothing.
  for (const pattern of ['[unclosed', 'a'.repeat(1 << 20)]) {
    await page.evaluate((text) => {
      document.getElementById('CT_phasename').value = text;
      CT_userInputsAction();
    }, pattern);
    assert.equal(await page.textContent('#CT_aggregateTD'), 'Aggregate (N = 0)');
    await showTab(page, 'Details');
    await page.evaluate((text) => {
      document.getElementById('phasename').value = text;
      userInputsAction();
    }, pattern);
    assert.equal(await page.textContent('#aggTD'), 'Aggregate (N = 0)');
    await showTab(page, 'Call Tree');
  }
  assert.deepEqual(errors, []);
  await page.close();
});
