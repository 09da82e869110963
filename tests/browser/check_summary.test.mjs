// The summary page of `ptreport check`, from runs with known truth (make_check_summary.sh).

import { test } from 'node:test';
import assert from 'node:assert/strict';
import { withReport } from './report_browser.mjs';

/// The rows of the verdict table with what their plots draw.
const rowsOf = (page) => page.$$eval('#checkTable tr[id^="checkRow"]', (trs) => trs.map((tr) => {
  const x = (selector) => Number(tr.querySelector(selector)?.getAttribute('x1'));
  const svg = tr.querySelector('svg.checkPlot');
  return {
    cells: [...tr.querySelectorAll('td')].map((cell) => cell.textContent),
    verdictClass: tr.querySelector('td.checkVerdict').className,
    baseRuns: tr.querySelectorAll('circle.baseRun').length, newRuns: tr.querySelectorAll('circle.newRun').length,
    baseMedian: x('line.baseMedian'), newMedian: x('line.newMedian'),
    dots: [...tr.querySelectorAll('circle')].map((c) => Number(c.getAttribute('cx'))),
    width: Number(svg.getAttribute('width')),
    labels: [...svg.querySelectorAll('text.axisLabel')].map((t) => t.textContent),
  };
}));

test('check summary: a failed check shows the slower phase first, drawn from its runs', async () => {
  await withReport('check/failed.html', async (page) => {
    assert.match(await page.textContent('#checkHeadline'), /^FAILED: \d+ regressions? beyond 5% \(sort blocks/);
    assert.match(await page.textContent('#checkMethod'), /^8 base runs against 8 new runs, wall-clock time/);
    const rows = await rowsOf(page);
    const [sort] = rows;
    assert.deepEqual([...sort.cells.slice(0, 2), sort.cells[7], sort.baseRuns, sort.newRuns],
                     ['sort blocks', 'self=total', 'regression', 8, 8]);
    assert.match(sort.cells[4], /^1\.\d{3} \(\+[45]\d\.\d%\)$/);
    assert.match(sort.verdictClass, /verdictRegression/);
    assert.ok(sort.newMedian > sort.baseMedian + 100, `medians at ${sort.baseMedian} and ${sort.newMedian}`);
    const outputs = rows.find((row) => row.cells[0] === 'outputs');
    assert.ok(outputs.cells[7] === 'improvement' && outputs.newMedian < outputs.baseMedian);
    const added = rows.find((row) => row.cells[0] === 'check limits');
    assert.deepEqual([added.cells[2], added.cells[7], added.baseRuns, added.newRuns], ['-', 'new only', 0, 8]);
    // Every dot inside its plot, and each plot's ends labelled with times.
    for (const row of rows) {
      assert.ok(row.dots.every((cx) => cx >= 0 && cx <= row.width) && row.labels.length === 2 &&
                row.labels.every((label) => /^-?\d+(\.\d+)? (s|ms|µs|ns)$/.test(label)), `${row.cells[0]}: ${row.dots} ${row.labels}`);
    }
    // A name full of markup is shown as text, and makes no element.
    assert.ok(rows.some((row) => row.cells[0] === '</script><b>"quoted" & \'odd\'') && !await page.$('#checkTable b'));
  }, { viewport: { width: 1500, height: 900 } });
});

test('check summary: a passed check and one with too few runs say so', async () => {
  await withReport('check/passed.html', async (page) => {
    assert.match(await page.textContent('#checkHeadline'), /^PASSED: no phase regressed beyond 5%/);
    const rows = await rowsOf(page);
    assert.ok(rows.length >= 20 && rows.every((row) => !/verdictRegression/.test(row.verdictClass)) &&
              await page.$eval('#checkNotice', (notice) => getComputedStyle(notice).display === 'none'));
  });
  await withReport('check/inconclusive.html', async (page) => {
    assert.match(await page.textContent('#checkHeadline'), /^INCONCLUSIVE/);
    assert.match(await page.textContent('#checkNotice'), /no p-value can go below 0\.1, .* at least \d+ runs on each side/);
    const rows = await rowsOf(page), sort = rows.find((row) => row.cells[0] === 'sort blocks');
    assert.deepEqual([rows.every((row) => row.cells[7] !== 'regression'), rows.some((row) => row.cells[5] === 'too few runs'),
                      sort.baseRuns + sort.newRuns], [true, true, 6]);
  });
});
