// The MemChart tab of Difference pages: graphs in the category colours, shaded where a side
// lacks the phase, deviations, popups, bands, zoom, equal runs, zero figures, end of the scroll.

import { test } from 'node:test';
import assert from 'node:assert/strict';
import { clickWidePopup, openPopups, pixel, printedOn, scrollDiv, showTab, withChart } from './report_browser.mjs';

const evaluate = (page, expression, argument) => page.evaluate(expression, argument);

/// The window's column of the first row that one side lacks and the other has.
const columnMissing = (page, side) => evaluate(page, (s) => {
  for (let c = 1; c < xticks.length; c++) {
    const row = firstVisibleRow + c;
    if (row < realRows() && !sidePresent(s, row) && sidePresent(s === 'LHS' ? 'RHS' : 'LHS', row)) return c;
  }
  return -1;
}, side);
const columnCentre = (page, column) => evaluate(page, (c) => Math.round((leftX[c] + rightX[c]) / 2), column);

/// Page coordinates of a column in a graph.
const columnPoint = (page, graph, column) => evaluate(page, ([g, c]) => {
  const box = document.getElementById(g + 'CanvasDiff').getBoundingClientRect();
  return { x: box.left + window.scrollX + (leftX[c] + rightX[c]) / 2, y: box.top + window.scrollY + box.height / 2 };
}, [graph, column]);
const click = async (page, graph, column) => {
  const point = await columnPoint(page, graph, column);
  await page.mouse.click(point.x, point.y);
};
const shownOutlines = (page) => page.$$eval('div[id^="outlineDiv"]', (divs) =>
  divs.filter((d) => d.style.display === 'block').map((d) => d.id).sort());
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
      const ends = async (graph) => [await pixel(page, graph, x, 3), await pixel(page, graph, x,
        await evaluate(page, (g) => document.getElementById(g).height - 2, graph))];
      assert.deepEqual(await ends(shadedGraph), ['#62C42D', '#4D4D4D']);
      assert.deepEqual(await ends(plainGraph), ['#7AEE3C', '#666666']);
      // The deviation of the column is drawn in the shaded colours, as its popup reads NA.
      const deviationColours = await evaluate(page, (px) => {
        const canvas = document.getElementById('absDevCanvasDiff');
        const data = canvas.getContext('2d').getImageData(px, 0, 1, canvas.height).data;
        const seen = new Set();
        for (let i = 0; i < data.length; i += 4) {
          if (data[i + 3] !== 0) seen.add('#' + [data[i], data[i + 1], data[i + 2]].map((v) => v.toString(16).padStart(2, '0')).join('').toUpperCase());
        }
        return [...seen].filter((c) => c !== '#FFFFFF' && c !== '#000000');
      }, x);
      assert.ok(deviationColours.length > 0 && deviationColours.every((c) => shaded.includes(c)), deviationColours.join(' '));
      // The missing side repeats its previous column.
      assert.ok(await evaluate(page, ([c, s]) =>
        [0, 1, 2, 3, 4].every((k) => windowFigures[s][k][c] === windowFigures[s][k][c - 1]), [column, side]));
    }

    // The largest gain and the largest loss of a column with both sides, each in its colour on
    // its side of the midline.
    const { both, segments } = await evaluate(page, () => {
      const half = absDevCanvasDiff.height / 2, factor = half / differenceRange;
      for (let c = 1; c < xticks.length; c++) {
        if (isShaded('LHS', c) || isShaded('RHS', c)) continue;
        let up = half, down = half, gain = null, loss = null;
        for (let k = 4; k >= 0; k--) {
          const h = (windowFigures.RHS[k][c] - windowFigures.LHS[k][c]) * factor;
          if (h > 0) { if (!gain || h > gain.h) gain = { k, h, y: up - h / 2 }; up -= h; }
        }
        for (let k = 0; k < 5; k++) {
          const h = (windowFigures.RHS[k][c] - windowFigures.LHS[k][c]) * factor;
          if (h < 0) { if (!loss || -h > loss.h) loss = { k, h: -h, y: down - h / 2 }; down -= h; }
        }
        if (gain && loss && gain.h >= 3 && loss.h >= 3) return { both: c, segments: { gain, loss, half } };
      }
      return { both: -1, segments: null };
    });
    assert.ok(both > 0 && segments.gain.y < segments.half && segments.loss.y > segments.half, 'gains and losses');
    const colours = ['#7AEE3C', '#FFC8C8', '#EC0033', '#FFA500', '#666666'];
    for (const { k, y } of [segments.gain, segments.loss]) {
      assert.equal(await pixel(page, 'absDevCanvasDiff', await columnCentre(page, both), Math.round(y)), colours[k]);
    }

    // Axes: the deviation's labels are symmetric about 0; each graph has its name.
    const range = await evaluate(page, () => differenceRange);
    assert.ok(range > 0 && range % 25 === 0);
    const deviationLabels = await printedOn(page, 'absDevLabelCanvasDiff');
    assert.deepEqual([deviationLabels.length, ...[0, 5, 10].map((i) => deviationLabels[i])],
                     [11, String(-range), '0', String(range)]);
    assert.equal((await printedOn(page, 'dataSet1LabelCanvasDiff')).length, 5);
    assert.deepEqual(await printedOn(page, 'graphLabelCanvasDiff'),
                     ['Virtual Memory (MB)', 'Absolute Deviation', 'Before (Baseline)', 'After']);
    assert.deepEqual(await printedOn(page, 'phaseNamesCanvasDiff'), ['Phase names']);
  });
});

test('popups: both sides with their deviations, NA for a missing side, kept across tab switches', async () => {
  await withChart('difference_detailedmemory.html', async (page) => {
    const both = 1;
    await click(page, 'dataSet1', both);
    assert.deepEqual(await openPopups(page), ['popupDiv100']);
    assert.deepEqual(await shownOutlines(page), [...outlines(both), `outlineDiv${both}c`]);
    const rowOf = (popup, name) => page.$$eval(`#${popup} tr`, (rows, n) =>
      [...rows.find((r) => r.firstChild.textContent === n).querySelectorAll('td')].map((td) => td.textContent), name);
    assert.deepEqual(await rowOf('popupDiv100', 'Reserved'), await evaluate(page, (c) => {
      const r = procData[firstVisibleRow + c];
      const abs = r.RHS_ReservedStart - r.LHS_ReservedStart;
      return ['Reserved', r.LHS_ReservedStart.toFixed(2), r.RHS_ReservedStart.toFixed(2), abs.toFixed(2),
              (abs / r.LHS_ReservedStart * 100).toFixed(1) + '%'];
    }, both));
    assert.deepEqual(await page.$$eval('#popupDiv100 td.diffPopupHeader', (tds) => tds.map((td) => td.textContent)),
                     ['', 'Before(Baseline)', 'After', 'Abs.Dev.', 'Rel.Dev.']);

    // A column whose phase the right run lacks reads NA there, in the deviation graph too.
    const leftOnly = await columnMissing(page, 'RHS');
    await click(page, 'absDev', leftOnly);
    assert.deepEqual(await openPopups(page), ['popupDiv100', 'popupDiv99']);
    assert.deepEqual((await rowOf('popupDiv99', 'Free')).slice(2), ['NA', 'NA', 'NA']);
    const zIndex = (id) => page.$eval(id, (d) => Number(d.style.zIndex));
    assert.ok(await zIndex('#popupDiv99') > await zIndex('#popupDiv100'));

    // A ribbon opens none.
    await arrow(page, 'DataSet2', false, 2);
    await click(page, 'dataSet2', both);
    assert.deepEqual([(await openPopups(page)).length, await page.isVisible(`#outlineDiv${both}c`)], [2, false]);

    // Away and back: popups and outlines return.
    await showTab(page, 'Details');
    assert.deepEqual([await page.isVisible('#popupDiv100 table'), await shownOutlines(page)], [false, []]);
    await showTab(page, 'MemChart');
    assert.ok(await page.isVisible('#popupDiv100 table') && await page.isVisible('#popupDiv99 table'));
    assert.deepEqual(await shownOutlines(page), outlines(both, leftOnly));

    // Closing frees the index and the column's outlines; the next popup takes the last freed.
    await page.click('#popupClose100');
    assert.deepEqual(await openPopups(page), ['popupDiv99']);
    assert.deepEqual(await shownOutlines(page), outlines(leftOnly));
    await click(page, 'dataSet1', both);
    assert.deepEqual(await openPopups(page), ['popupDiv100', 'popupDiv99']);

    // A narrower window hides the outlines of the columns it no longer shows.
    const far = await evaluate(page, () => {
      let c = 0;
      while (c + 1 < xticks.length && rightX[c + 1] <= widthLimit) c++;
      return c;
    });
    await click(page, 'absDev', far);
    assert.ok((await shownOutlines(page)).includes(`outlineDiv${far}a`));
    await page.setViewportSize({ width: 1000, height: 1000 });
    await page.waitForFunction(() => windowWidth < 1100);
    assert.deepEqual(await evaluate(page, () => [...document.querySelectorAll('div[id^="outlineDiv"]')]
      .filter((d) => d.style.display === 'block' && parseFloat(d.style.left) > bandLeft + widthLimit)), []);
  });
});

test('bands: the names band expanded once, graphs collapsed to ribbons and back', async () => {
  await withChart('difference_detailedmemory.html', async (page) => {
    const layout = () => evaluate(page, () => bands.map((b) => ({
      state: b.state, top: document.getElementById(b.div).getBoundingClientRect().top + window.scrollY,
      height: document.getElementById(b.canvas).height })));
    const forget = () => evaluate(page, () => { window.printed = []; });
    assert.deepEqual((await layout()).map((b) => [b.state, b.top, b.height]),
                     [['ribbon', 81, 40], ['expanded', 133, 400], ['collapsed', 553, 200], ['collapsed', 773, 200]]);
    await forget();
    await arrow(page, 'PhaseNames', true);
    const expanded = await layout();
    const grow = expanded[0].height - 40;
    assert.deepEqual([expanded[0].state, grow > 0, ...expanded.slice(1).map((b) => b.top)],
                     ['expanded', true, 133 + grow, 553 + grow, 773 + grow]);
    const names = await printedOn(page, 'phaseNamesCanvasDiff');
    assert.ok(names.includes('scripts/setup_plant.m') && names.includes('link model'), names.join('|'));
    await arrow(page, 'PhaseNames', true);
    assert.deepEqual(await layout(), expanded);

    // The deviation graph: expanded, collapsed, ribbon; its ticks and x-ticks go with it.
    await arrow(page, 'AbsDev', false);
    assert.equal((await layout())[1].height, 200);
    assert.equal((await printedOn(page, 'absDevLabelCanvasDiff')).slice(-5).length, 5);
    await arrow(page, 'AbsDev', false);
    const ribbons = await layout();
    assert.deepEqual([ribbons[1].state, ribbons[1].height, ribbons[2].top], ['ribbon', 40, 133 + grow + 40 + 20]);
    assert.deepEqual([await page.isVisible('#topTicksCanvasDiffDiv'), await pixel(page, 'absDevCanvasDiff', 5, 5)],
                     [false, '#E7EBF5']);

    // All three ribbons: no title and no ticks.
    await arrow(page, 'DataSet1', false, 2);
    await forget();
    await arrow(page, 'DataSet2', false);
    assert.deepEqual(await printedOn(page, 'graphLabelCanvasDiff'), []);
    const last = await layout();
    assert.deepEqual(last.slice(1).map((b) => b.state), ['ribbon', 'ribbon', 'ribbon']);
    assert.deepEqual(await printedOn(page, 'dataSet2CanvasDiff'), ['After']);
    assert.equal(await page.$eval('#fakeCanvasDiffDiv', (d) => parseInt(d.style.top)), last[3].top + last[3].height + 7);

    // One back to collapsed: its graph, its ticks and the title return.
    await forget();
    await arrow(page, 'DataSet2', true);
    assert.equal((await layout())[3].height, 200);
    assert.ok((await printedOn(page, 'graphLabelCanvasDiff')).includes('After'));
    assert.equal((await printedOn(page, 'dataSet2LabelCanvasDiff')).length, 5);
  });
});

test('one side zoomed, and a popup wider than the window', async () => {
  await withChart('wide_difference_detailedmemory.html', async (page) => {
    const left = await printedOn(page, 'dataSet1LabelCanvasDiff');
    assert.equal(left[0], 'NP = 2e6');
    assert.ok(left.slice(1).every((label) => label.startsWith('+')), left.join(' '));
    assert.ok((await printedOn(page, 'dataSet2LabelCanvasDiff')).every((label) => /^\d+$/.test(label)));
    const column = await evaluate(page, () => visiblePhaseNames.findIndex((name) => name.length > 300));
    await clickWidePopup(page, await columnPoint(page, 'dataSet2', column));
    assert.deepEqual(await openPopups(page), []);
  }, { viewport: { width: 1000, height: 1000 } });
});

test('all-zero figures', async () => {
  await withChart('difference_detailedmemory.html', async (page) => {
    for (const graph of ['absDev', 'dataSet1', 'dataSet2']) {
      assert.deepEqual(await printedOn(page, graph + 'LabelCanvasDiff'), ['0', '~8TB']);
    }
    assert.equal((await printedOn(page, 'graphLabelCanvasDiff'))[0], 'Virtual Memory');
  }, { prepare: `
    for (const record of procData) {
      for (const key of Object.keys(record)) {
        if (/^(LHS|RHS)_|AbsDev$/.test(key) && record[key] != -99.99) record[key] = 0;
      }
    }` });
});

test('two equal runs of 50,000 rows: no deviation, a window of columns, the end of the scroll', async () => {
  await withChart('large_difference_detailedmemory.html', async (page) => {
    assert.deepEqual([await evaluate(page, () => differenceRange), await printedOn(page, 'absDevLabelCanvasDiff'),
                      await pixel(page, 'absDevCanvasDiff', await columnCentre(page, 3), 100)],
                     [0, ['', '', '', '', '', '0', '', '', '', '', ''], 'none']);
    assert.ok(await evaluate(page, () => phasesToRender < 200));
    // At the end the last row is in view and the bands end at its column.
    await scrollDiv(page, 'fakeCanvasDiffDiv', 1);
    await page.waitForFunction(() => chartAtEnd);
    const end = await evaluate(page, () => {
      const lastColumn = realRows() - 1 - firstVisibleRow;
      const box = document.getElementById('absDevCanvasDiffDiv').getBoundingClientRect();
      return { label: visiblePhaseNames[lastColumn], wanted: phaseLabel(procData[realRows() - 1]),
               right: box.right, columnRight: bandLeft + rightX[lastColumn], inView: rightX[lastColumn] <= widthLimit };
    });
    assert.deepEqual([end.label, end.inView], [end.wanted, true]);
    assert.ok(Math.abs(end.right - end.columnRight) <= 3, JSON.stringify(end));
  }, { viewport: { width: 1600, height: 1200 } });
});
