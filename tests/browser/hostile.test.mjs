// Names, labels, titles and system information with quotes, angle brackets, ampersands and
// backslashes show as text: they neither break a page's scripts nor run as markup.

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
