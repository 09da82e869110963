// The MemChart tab of Difference pages: colours, shading, deviations, popups, bands, zoom, equal runs

import { test } from 'node:test';
import assert from 'node:assert/strict';
import { clickAt, clickWidePopup, openPopups, pixel, pixels, printedOn, scrollDiv, shownOutlines, showTab, withChart }
  from './report_browser.mjs';

const printed = (page, ...canvases) => Promise.all(canvases.map((c) => printedOn(page, c + 'CanvasDiff')));

/// The window's column of the first row that one side lacks and the other has.
const columnMissing = (page, side) => page.evaluate((s) => {
  for (let c = 1; c < xticks.length; c++) {
    const row = firstVisibleRow + c;
    if (row < realRows() && !sidePresent(s, row) && sidePresent(s === 'LHS' ? 'RHS' : 'LHS', row)) return c;
  }
  return -1;
}, side);
const columnCentre = (page, column) => page.evaluate((c) => Math.round((leftX[c] + rightX[c]) / 2), column);

/// Page coordinates of a column in a graph.
const columnPoint = (page, graph, column) => page.evaluate(([g, c]) => {
  const box = document.getElementById(g + 'CanvasDiff').getBoundingClientRect();
  return { x: box.left + window.scrollX + (leftX[c] + rightX[c]) / 2, y: box.top + window.scrollY + box.height / 2 };
}, [graph, column]);
const click = async (page, graph, column) => clickAt(page, await columnPoint(page, graph, column));
const outlines = (...columns) => columns.flatMap((c) => [`outlineDiv${c}a`, `outlineDiv${c}b`]);

/// Clicks the smaller (left) or larger (right) arrow of a band, times times.
async function arrow(page, band, larger, times = 1) {
  const box = await page.locator(`#upDownArrows${band}CanvasDiffDiv`).boundingBox();
  for (let i = 0; i < times; i++) await page.mouse.click(box.x + (larger ? 28 : 11), box.y + 9);
}

test('graphs in the category colours, shaded where a side lacks the phase, deviations about the midline', async () => {
  await withChart('difference_detailedmemory.html', async (page) => {
    assert.equal(await page.isVisible('#absDevCanvasDiff'), true);
    // The left run has "load model", the right one "link model" and one more step.
    const shaded = ['#62C42D', '#D1A1A1', '#A60327', '#C97F00', '#4D4D4D'];
    for (const [side, shadedGraph, plainGraph] of [['LHS', 'dataSet1CanvasDiff', 'dataSet2CanvasDiff'],
                                                   ['RHS', 'dataSet2CanvasDiff', 'dataSet1CanvasDiff']]) {
      const column = await columnMissing(page, side);
      assert.ok(column > 0, side);
      const x = await columnCentre(page, column);
      // Free at the top, non-process at the bottom.
      const ends = async (graph) => (await pixels(page, graph, x, 0)).filter((_, y, all) => y === 3 || y === all.length - 2);
      assert.deepEqual([await ends(shadedGraph), await ends(plainGraph)], [['#62C42D', '#4D4D4D'], ['#7AEE3C', '#666666']]);
      // The deviation of the column is drawn in the shaded colours, as its popup reads NA.
      const deviation = [...new Set(await pixels(page, 'absDevCanvasDiff', x, 0))]
        .filter((c) => !['none', '#FFFFFF', '#000000'].includes(c));
      assert.ok(deviation.length > 0 && deviation.every((c) => shaded.includes(c)), deviation.join(' '));
      // The missing side repeats its previous column.
      assert.ok(await page.evaluate(([c, s]) =>
        [0, 1, 2, 3, 4].every((k) => windowFigures[s][k][c] === windowFigures[s][k][c - 1]), [column, side]));
    }

    // The largest gain and loss of a column with both sides, each in its colour on its side of the midline.
    const { both, segments } = await page.evaluate(() => {
      const half = absDevCanvasDiff.height / 2, factor = half / differenceRange;
      for (let c = 1; c < xticks.length; c++) {
        if (isShaded('LHS', c) || isShaded('RHS', c)) continue;
        const h = [0, 1, 2, 3, 4].map((k) => (windowFigures.RHS[k][c] - windowFigures.LHS[k][c]) * factor);
        let up = half, down = half, gain = null, loss = null;
        for (const k of [4, 3, 2, 1, 0]) if (h[k] > 0) { if (!(gain?.h >= h[k])) gain = { k, h: h[k], y: up - h[k] / 2 }; up -= h[k]; }
        for (const k of [0, 1, 2, 3, 4]) if (h[k] < 0) { if (!(loss?.h >= -h[k])) loss = { k, h: -h[k], y: down - h[k] / 2 }; down -= h[k]; }
        if (gain && loss && gain.h >= 3 && loss.h >= 3) return { both: c, segments: { gain, loss, half } };
      }
      return { both: -1, segments: null };
    });
    assert.ok(both > 0 && segments.gain.y < segments.half && segments.loss.y > segments.half, 'gains and losses');
    const colours = ['#7AEE3C', '#FFC8C8', '#EC0033', '#FFA500', '#666666'];
    const x = await columnCentre(page, both);
    for (const { k, y } of [segments.gain, segments.loss]) assert.equal(await pixel(page, 'absDevCanvasDiff', x, Math.round(y)), colours[k]);

    // Axes: the deviation's labels are symmetric about 0; each graph has its name.
    const range = await page.evaluate(() => differenceRange);
    assert.ok(range > 0 && range % 25 === 0);
    const [deviationLabels, left, titles, names] = await printed(page, 'absDevLabel', 'dataSet1Label', 'graphLabel', 'phaseNames');
    assert.deepEqual([deviationLabels.length, ...[0, 5, 10].map((i) => deviationLabels[i]), left.length, titles, names],
                     [11, String(-range), '0', String(range), 5,
                      ['Virtual Memory (MB)', 'Absolute Deviation', 'Before (Baseline)', 'After'], ['Phase names']]);
  });
});

test('popups: both sides with their deviations, NA for a missing side, kept across tab switches', async () => {
  await withChart('difference_detailedmemory.html', async (page) => {
    const both = 1;
    await click(page, 'dataSet1', both);
    assert.deepEqual([await openPopups(page), await shownOutlines(page)], [['popupDiv100'], [...outlines(both), `outlineDiv${both}c`]]);
    const rowOf = (popup, name) => page.$$eval(`#${popup} tr`, (rows, n) =>
      [...rows.find((r) => r.firstChild.textContent === n).querySelectorAll('td')].map((td) => td.textContent), name);
    assert.deepEqual(await rowOf('popupDiv100', 'Reserved'), await page.evaluate((c) => {
      const r = procData[firstVisibleRow + c], lhs = r.LHS_ReservedStart, abs = r.RHS_ReservedStart - lhs;
      return ['Reserved', lhs.toFixed(2), r.RHS_ReservedStart.toFixed(2), abs.toFixed(2), (abs / lhs * 100).toFixed(1) + '%'];
    }, both));
    assert.deepEqual(await page.$$eval('#popupDiv100 td.diffPopupHeader', (tds) => tds.map((td) => td.textContent)),
                     ['', 'Before(Baseline)', 'After', 'Abs.Dev.', 'Rel.Dev.']);

    // A column whose phase the right run lacks reads NA there, in the deviation graph too.
    const leftOnly = await columnMissing(page, 'RHS');
    await click(page, 'absDev', leftOnly);
    assert.deepEqual([await openPopups(page), (await rowOf('popupDiv99', 'Free')).slice(2)], [['popupDiv100', 'popupDiv99'], ['NA', 'NA', 'NA']]);
    assert.ok(await page.evaluate(() => Number(popupDiv99.style.zIndex) > Number(popupDiv100.style.zIndex)));

    // A ribbon opens none.
    await arrow(page, 'DataSet2', false, 2);
    await click(page, 'dataSet2', both);
    assert.deepEqual([(await openPopups(page)).length, await page.isVisible(`#outlineDiv${both}c`)], [2, false]);

    // Away and back: popups and outlines return.
    await showTab(page, 'Details');
    assert.deepEqual([await page.isVisible('#popupDiv100 table'), await shownOutlines(page)], [false, []]);
    await showTab(page, 'MemChart');
    assert.deepEqual([await page.isVisible('#popupDiv100 table'), await page.isVisible('#popupDiv99 table'),
                      await shownOutlines(page)], [true, true, outlines(both, leftOnly)]);

    // Closing frees the index and the column's outlines; the next popup takes the last freed.
    await page.click('#popupClose100');
    assert.deepEqual([await openPopups(page), await shownOutlines(page)], [['popupDiv99'], outlines(leftOnly)]);
    await click(page, 'dataSet1', both);
    assert.deepEqual(await openPopups(page), ['popupDiv100', 'popupDiv99']);

    // A narrower window hides the outlines of the columns it no longer shows.
    const far = await page.evaluate(() => rightX.slice(1, xticks.length).filter((x) => x <= widthLimit).length);
    await click(page, 'absDev', far);
    assert.ok((await shownOutlines(page)).includes(`outlineDiv${far}a`));
    await page.setViewportSize({ width: 1000, height: 1000 });
    await page.waitForFunction(() => windowWidth < 1100);
    assert.deepEqual(await page.evaluate(() => [...document.querySelectorAll('div[id^="outlineDiv"]')]
      .filter((d) => d.style.display === 'block' && parseFloat(d.style.left) > bandLeft + widthLimit)), []);
  });
});

test('bands: the names band expanded once, graphs collapsed to ribbons and back', async () => {
  await withChart('difference_detailedmemory.html', async (page) => {
    const layout = () => page.evaluate(() => bands.map((b) => ({
      state: b.state, top: document.getElementById(b.div).getBoundingClientRect().top + window.scrollY,
      height: document.getElementById(b.canvas).height })));
    const forget = () => page.evaluate(() => { window.printed = []; });
    assert.deepEqual((await layout()).map((b) => [b.state, b.top, b.height]),
                     [['ribbon', 81, 40], ['expanded', 133, 400], ['collapsed', 553, 200], ['collapsed', 773, 200]]);
    await forget();
    await arrow(page, 'PhaseNames', true);
    const expanded = await layout();
    const grow = expanded[0].height - 40;
    assert.deepEqual([expanded[0].state, grow > 0, ...expanded.slice(1).map((b) => b.top)],
                     ['expanded', true, 133 + grow, 553 + grow, 773 + grow]);
    const names = await printedOn(page, 'phaseNamesCanvasDiff');
    await arrow(page, 'PhaseNames', true);
    assert.deepEqual([names.includes('scripts/setup_plant.m'), names.includes('link model'), await layout()], [true, true, expanded]);

    // The deviation graph: expanded, collapsed, ribbon; its ticks and x-ticks go with it.
    await arrow(page, 'AbsDev', false);
    assert.deepEqual([(await layout())[1].height, (await printedOn(page, 'absDevLabelCanvasDiff')).slice(-5).length], [200, 5]);
    await arrow(page, 'AbsDev', false);
    const ribbons = await layout();
    assert.deepEqual([ribbons[1].state, ribbons[1].height, ribbons[2].top, await page.isVisible('#topTicksCanvasDiffDiv'),
                      await pixel(page, 'absDevCanvasDiff', 5, 5)], ['ribbon', 40, 133 + grow + 40 + 20, false, '#E7EBF5']);

    // All three ribbons: no title and no ticks.
    await arrow(page, 'DataSet1', false, 2);
    await forget();
    await arrow(page, 'DataSet2', false);
    const last = await layout();
    assert.deepEqual([await printed(page, 'graphLabel', 'dataSet2'), last.slice(1).map((b) => b.state),
                      await page.$eval('#fakeCanvasDiffDiv', (d) => parseInt(d.style.top))],
                     [[[], ['After']], ['ribbon', 'ribbon', 'ribbon'], last[3].top + last[3].height + 7]);

    // One back to collapsed: its graph, its ticks and the title return.
    await forget();
    await arrow(page, 'DataSet2', true);
    const [titles, ticks] = await printed(page, 'graphLabel', 'dataSet2Label');
    assert.deepEqual([(await layout())[3].height, titles.includes('After'), ticks.length], [200, true, 5]);
  });
});

test('one side zoomed, and a popup wider than the window', async () => {
  await withChart('wide_difference_detailedmemory.html', async (page) => {
    const [left, right] = await printed(page, 'dataSet1Label', 'dataSet2Label');
    assert.ok(left[0] === 'NP = 2e6' && left.slice(1).every((label) => label.startsWith('+')) &&
              right.every((label) => /^\d+$/.test(label)), `${left} | ${right}`);
    const column = await page.evaluate(() => visiblePhaseNames.findIndex((name) => name.length > 300));
    await clickWidePopup(page, await columnPoint(page, 'dataSet2', column));
    assert.deepEqual(await openPopups(page), []);
  }, { viewport: { width: 1000, height: 1000 } });
});

test('two equal runs of 50,000 rows: no deviation, a window of columns, the end of the scroll', async () => {
  await withChart('large_difference_detailedmemory.html', async (page) => {
    assert.deepEqual([await page.evaluate(() => differenceRange), await printedOn(page, 'absDevLabelCanvasDiff'),
                      await pixel(page, 'absDevCanvasDiff', await columnCentre(page, 3), 100)],
                     [0, ['', '', '', '', '', '0', '', '', '', '', ''], 'none']);
    assert.ok(await page.evaluate(() => phasesToRender < 200));
    // At the end the last row is in view and the bands end at its column.
    await scrollDiv(page, 'fakeCanvasDiffDiv', { x: 1 }, () => chartAtEnd);
    const end = await page.evaluate(() => {
      const last = realRows() - 1 - firstVisibleRow;
      return { label: visiblePhaseNames[last], wanted: phaseLabel(procData[realRows() - 1]), columnRight: bandLeft + rightX[last],
               right: absDevCanvasDiffDiv.getBoundingClientRect().right, inView: rightX[last] <= widthLimit };
    });
    assert.deepEqual([end.label, end.inView], [end.wanted, true]);
    assert.ok(Math.abs(end.right - end.columnRight) <= 3, JSON.stringify(end));
  }, { viewport: { width: 1600, height: 1200 } });
});
