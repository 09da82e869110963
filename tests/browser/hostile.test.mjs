// Names full of quotes, markup, backslashes and line breaks show as text; names that are patterns match as text.

import { test } from 'node:test';
import assert from 'node:assert/strict';
import { big, detailPhases, follow, showTab, texts, textsOf, withReport } from './report_browser.mjs';

const hostileNames = ['say "hi"', "it's", '<b>bold</b>', 'back\\slash',
                      '</script><script>window.pwned=1</script>', 'a & b',
                      "x' onmouseover='window.pwned=2", '100% done'];
const aggregateNames = (page) => texts(page, '#aggregateSummaryTable td[id$="col0"]');

test('a Detail page of hostile names, and a Difference page with hostile labels', async () => {
  await withReport('hostile_detail.html', async (page) => {
    assert.equal(await page.title(), 'Run "quoted" <group>');
    // The leaves are listed; phase names show with forward slashes, as paths do.
    const shown = hostileNames.map((name) => name.replace('\\', '/'));
    assert.deepEqual(await aggregateNames(page), shown.map((name) => name + ' inner'));
    // Every name's link opens the call tree at that phase, and the tree's link its rows.
    await follow(page, `#aggregateSummaryTable a:text-is("it's inner")`, 'callTreeSummary');
    assert.deepEqual(await texts(page, '#callTreeSummaryTable td[id^="ct_phaseNameTD"] a'),
                     ['outer', ...shown.flatMap((name) => [name, name + ' inner'])]);
    const row = await page.evaluate(() => CTDataView.Checked.indexOf(1) - lastStartIndex['CallTree']);
    await follow(page, `#ct_phaseNameTD${row + 1} a`, 'phaseSummary');
    // Names of the other kinds keep their characters, backslashes included.
    assert.deepEqual([await detailPhases(page), ...await textsOf(page, '#modelTD0', '#targetTD0', '#phaseTD0 span')],
                     [["it's inner"], "model's <x>", 't"t', '(Grouping:Run "quoted" <group>)']);
    await page.hover('#phaseTD0');
    await showTab(page, 'System Info');
    const info = await page.textContent('#systemInfoTableDiv');
    assert.ok(info.includes('<i>processorStr</i> & "more"') && info.includes('<i>installedProductsStr</i> & "more"'));
    assert.deepEqual([await page.$('#aggregateSummaryTable b, #callTreeSummaryTable b, #systemInfoTableDiv i'),
                      await page.evaluate(() => window.pwned)], [null, undefined]);
  }, big);
  await withReport('hostile_difference.html', async (page) => {
    const header = await page.textContent('#aggregateSummaryTableLastHeaderRow');
    assert.ok(header.includes('<b>"Left"</b> \\') && header.includes("it's & <i>right</i>"), header);
    await follow(page, '#aggregateSummaryTable a:text-is("a & b inner")', 'phaseSummary');
    assert.deepEqual([await page.textContent('#totalChecked'), await page.evaluate(() => window.pwned)], ['1', undefined]);
  }, big);
});

test('names, labels and system information with a carriage return, U+2028 or U+2029', async () => {
  const names = ['first\rline', 'para\u2029graph', 'line\u2028separator'];
  await withReport('line_breaks_detail.html', async (page) => {
    assert.deepEqual(await page.evaluate(() => [...Phase.slice(0, 3), Model[0], Chart[0]]), [...names, 'model\r2', 'chart\rone']);
    // Markup reads a carriage return as a line feed; the rest stays as it is.
    assert.deepEqual((await aggregateNames(page)).sort(), [names[2], names[1]].sort());
    for (const tab of ['Call Tree', 'Details', 'MemChart', 'System Info']) await showTab(page, tab);
    assert.ok((await page.textContent('#systemInfoTableDiv')).includes('processorStr\n\u2028\u2029end'));
  }, big);
  await withReport('line_breaks_difference.html', async (page) => {
    assert.deepEqual(await page.evaluate(() => [lhsLabel.startsWith('Left\rside'), rhsLabel]), [true, 'Right\rside']);
    await showTab(page, 'Details');
  }, big);
  // The name arrays carry whole name tables: a later page of the same process holds the names.
  await withReport('detail_time.html', async (page) => {
    assert.deepEqual(await page.evaluate(() => Phase.slice(0, 3)), names);
  });
});

test('names that are patterns match as text; a filter that is no pattern matches nothing', async () => {
  await withReport('patterns.html', async (page) => {
    const linkOf = (name) => page.evaluate((text) =>
      `#aggregateSummaryTable a[onclick="openCallTreeTab(Phase[${Phase.indexOf(text)}]); return false;"]`, name);
    const ticked = () => page.evaluate(() => CTDataView.Index.filter((n, i) => CTDataView.Checked[i] == 1)
      .map((n) => Phase[procData[nodeArray[n].IDs[0]].Phase]));
    // "(a+)+b" beside a long run of 'a': the link finds that phase alone, at once.
    // A name of a megabyte: too large a pattern, but as text it finds itself.
    for (const name of ['(a+)+b', 'a'.repeat(1 << 20)]) {
      await page.evaluate(() => ShowTable('aggregateSummary'));
      await follow(page, await linkOf(name), 'callTreeSummary');
      assert.deepEqual(await ticked(), [name], name.slice(0, 10));
    }
    // The user's own filters: not valid, or too large to run, they match nothing.
    for (const pattern of ['[unclosed', 'a'.repeat(1 << 20)]) {
      for (const [tab, prefix, action, total] of [['Details', '', 'userInputsAction', 'aggTD'],
                                                  ['Call Tree', 'CT_', 'CT_userInputsAction', 'CT_aggregateTD']]) {
        await showTab(page, tab);
        await page.evaluate(([text, id, run]) => { document.getElementById(id).value = text; window[run](); },
                            [pattern, prefix + 'phasename', action]);
        assert.equal(await page.textContent('#' + total), 'Aggregate (N = 0)', `${tab}: ${pattern.slice(0, 10)}`);
      }
    }
  }, big);
});
