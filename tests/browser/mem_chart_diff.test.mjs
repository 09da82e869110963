// The MemChart tab of Difference pages: three graphs in the category colours, shaded columns
// (and deviations) where a phase is missing on one side, the deviation around its midline,
// popups with both sides' figures, kept inside the window, ribbons collapsed and expanded
// through the arrows, one side's zoom, equal runs, the end of the scroll, and the 50,000-row
// page's timings.

import { test, before, after } from 'node:test';
import assert from 'node:assert/strict';
import { launch, screenshot, showTab, clickWidePopup, openChart, printedOn, recordTimings, scrollRedrawMs } from './report_browser.mjs';

let browser;
before(async () => { browser = await launch(); });
after(async () => { await browser.close(); });

async function openDiff(name, prepare = null, viewport = { width: 1280, height: 1000 }) {
  const opened = await openChart(browser, name, prepare, viewport);
  await showTab(opened.page, 'MemChart');
  return opened;
}

/// The colour of a pixel of a band's canvas, x and y from its top left.
const pixel = (page, canvas, x, y) => page.evaluate(([id, px, py]) => {
  const data = document.getElementById(id).getContext('2d').getImageData(px, py, 1, 1).data;
  return data[3] === 0 ? 'none' :
    '#' + [data[0], data[1], data[2]].map((v) => v.toString(16).padStart(2, '0')).join('').toUpperCase();
}, [canvas, x, y]);

/// The window's column of the first row that one side lacks and the other has.
const columnMissing = (page, side) => page.evaluate((s) => {
  const other = s === 'LHS' ? 'RHS' : 'LHS';
  for (let c = 1; c < xticks.length; c++) {
    const row = firstVisibleRow + c;
    if (row < realRows() && !sidePresent(s, row) && sidePresent(other, row)) return c;
  }
  return -1;
}, side);

const columnCentre = (page, column) => page.evaluate((c) => Math.round((leftX[c] + rightX[c]) / 2), column);

/// Page coordinates of a column in a graph.
const columnPoint = (page, graph, column) => page.evaluate(([g, c]) => {
  const box = document.getElementById(g + 'CanvasDiff').getBoundingClientRect();
  return { x: box.left + window.scrollX + (leftX[c] + rightX[c]) / 2, y: box.top + window.scrollY + box.height / 2 };
}, [graph, column]);

const openPopups = (page) => page.$$eval('div[id^="popupDiv"]', (divs) =>
  divs.filter((d) => d.style.zIndex >= 1000).map((d) => d.id).sort());

const shownOutlines = (page) => page.$$eval('div[id^="outlineDiv"]', (divs) =>
  divs.filter((d) => d.style.display === 'block').map((d) => d.id).sort());

/// Clicks the smaller (left) or larger (right) arrow of a band.
async function arrow(page, band, larger) {
  const box = await page.locator(`#upDownArrows${band}CanvasDiffDiv`).boundingBox();
  await page.mouse.click(box.x + (larger ? 28 : 11), box.y + 9);
}

test('graphs in the category colours, shaded where a side lacks the phase, deviations about the midline', async () => {
  const { page, errors } = await openDiff('difference_detailedmemory.html');
  assert.equal(await page.isVisible('#absDevCanvasDiff'), true);

  // The left run has "load model", the right one "link model" and one more step.
  const leftOnly = await columnMissing(page, 'RHS');
  const rightOnly = await columnMissing(page, 'LHS');
  assert.ok(leftOnly > 0 && rightOnly > 0, `${leftOnly} ${rightOnly}`);
  const bottom = (graph) => page.evaluate((g) => document.getElementById(g).height - 2, graph);
  for (const [column, shadedGraph, plainGraph] of [[rightOnly, 'dataSet1CanvasDiff', 'dataSet2CanvasDiff'],
                                                   [leftOnly, 'dataSet2CanvasDiff', 'dataSet1CanvasDiff']]) {
    const x = await columnCentre(page, column);
    // Non-process at the bottom, free at the top.
    assert.equal(await pixel(page, shadedGraph, x, await bottom(shadedGraph)), '#4D4D4D');
    assert.equal(await pixel(page, shadedGraph, x, 3), '#62C42D');
    assert.equal(await pixel(page, plainGraph, x, await bottom(plainGraph)), '#666666');
    assert.equal(await pixel(page, plainGraph, x, 3), '#7AEE3C');
    // The deviation of the column is drawn in the shaded colours, as its popup reads NA.
    const deviationColours = await page.evaluate((px) => {
      const canvas = document.getElementById('absDevCanvasDiff');
      const data = canvas.getContext('2d').getImageData(px, 0, 1, canvas.height).data;
      const seen = new Set();
      for (let i = 0; i < data.length; i += 4) {
        if (data[i + 3] === 0) continue;
        seen.add('#' + [data[i], data[i + 1], data[i + 2]].map((v) => v.toString(16).padStart(2, '0')).join('').toUpperCase());
      }
      return [...seen].filter((c) => c !== '#FFFFFF' && c !== '#000000');
    }, x);
    const shaded = ['#62C42D', '#D1A1A1', '#A60327', '#C97F00', '#4D4D4D'];
    assert.ok(deviationColours.length > 0 && deviationColours.every((c) => shaded.includes(c)),
              deviationColours.join(' '));
    // The missing side repeats its previous column.
    const same = await page.evaluate(([c, g]) => {
      const side = g.startsWith('dataSet1') ? 'LHS' : 'RHS';
      return [0, 1, 2, 3, 4].every((k) => windowFigures[side][k][c] === windowFigures[side][k][c - 1]);
    }, [column, shadedGraph]);
    assert.equal(same, true);
  }

  // The largest gain and the largest loss of a column with both sides, each in its colour on
  // its side of the midline.
  const { both, segments } = await page.evaluate(() => {
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
  assert.ok(both > 0, 'a column that gains and loses');
  const x = await columnCentre(page, both);
  const colours = ['#7AEE3C', '#FFC8C8', '#EC0033', '#FFA500', '#666666'];
  assert.ok(segments.gain.y < segments.half);
  assert.equal(await pixel(page, 'absDevCanvasDiff', x, Math.round(segments.gain.y)), colours[segments.gain.k]);
  assert.ok(segments.loss.y > segments.half);
  assert.equal(await pixel(page, 'absDevCanvasDiff', x, Math.round(segments.loss.y)), colours[segments.loss.k]);

  // Axes: the deviation's labels are symmetric about 0; each graph has its name.
  const range = await page.evaluate(() => differenceRange);
  assert.ok(range > 0 && range % 25 === 0);
  const deviationLabels = await printedOn(page, 'absDevLabelCanvasDiff');
  assert.equal(deviationLabels.length, 11);
  assert.deepEqual([deviationLabels[0], deviationLabels[5], deviationLabels[10]], [String(-range), '0', String(range)]);
  assert.deepEqual((await printedOn(page, 'dataSet1LabelCanvasDiff')).length, 5);
  assert.deepEqual(await printedOn(page, 'graphLabelCanvasDiff'),
                   ['Virtual Memory (MB)', 'Absolute Deviation', 'Before (Baseline)', 'After']);
  assert.deepEqual(await printedOn(page, 'phaseNamesCanvasDiff'), ['Phase names']);
  assert.deepEqual(errors, []);
  await page.close();
});

test('popups: both sides with their deviations, NA for a missing side, kept across tab switches', async () => {
  const { page, errors } = await openDiff('difference_detailedmemory.html');
  const both = 1;
  const point = await columnPoint(page, 'dataSet1', both);
  await page.mouse.click(point.x, point.y);
  assert.deepEqual(await openPopups(page), ['popupDiv100']);
  assert.deepEqual(await shownOutlines(page), [`outlineDiv${both}a`, `outlineDiv${both}b`, `outlineDiv${both}c`]);
  const cells = await page.$$eval('#popupDiv100 tr', (rows) => {
    const row = rows.find((r) => r.firstChild.textContent === 'Reserved');
    return [...row.querySelectorAll('td')].map((td) => td.textContent);
  });
  const expected = await page.evaluate((c) => {
    const r = procData[firstVisibleRow + c];
    const abs = r.RHS_ReservedStart - r.LHS_ReservedStart;
    return ['Reserved', r.LHS_ReservedStart.toFixed(2), r.RHS_ReservedStart.toFixed(2), abs.toFixed(2),
            (abs / r.LHS_ReservedStart * 100).toFixed(1) + '%'];
  }, both);
  assert.deepEqual(cells, expected);
  const headers = await page.$$eval('#popupDiv100 td.diffPopupHeader', (tds) => tds.map((td) => td.textContent));
  assert.deepEqual(headers, ['', 'Before(Baseline)', 'After', 'Abs.Dev.', 'Rel.Dev.']);

  // A column whose phase the right run lacks reads NA there, in the deviation graph too.
  const leftOnly = await columnMissing(page, 'RHS');
  const second = await columnPoint(page, 'absDev', leftOnly);
  await page.mouse.click(second.x, second.y);
  assert.deepEqual(await openPopups(page), ['popupDiv100', 'popupDiv99']);
  const free = await page.$$eval('#popupDiv99 tr', (rows) =>
    [...rows.find((r) => r.firstChild.textContent === 'Free').querySelectorAll('td')].map((td) => td.textContent));
  assert.deepEqual(free.slice(2), ['NA', 'NA', 'NA']);
  assert.ok(Number(await page.$eval('#popupDiv99', (d) => d.style.zIndex)) >
            Number(await page.$eval('#popupDiv100', (d) => d.style.zIndex)));

  // A ribbon opens none.
  await arrow(page, 'DataSet2', false);
  await arrow(page, 'DataSet2', false);
  const ribbon = await columnPoint(page, 'dataSet2', both);
  await page.mouse.click(ribbon.x, ribbon.y);
  assert.equal((await openPopups(page)).length, 2);
  assert.equal(await page.isVisible(`#outlineDiv${both}c`), false);

  // Away and back: popups and outlines return.
  await showTab(page, 'Details');
  assert.equal(await page.isVisible('#popupDiv100 table'), false);
  assert.deepEqual(await shownOutlines(page), []);
  await showTab(page, 'MemChart');
  assert.equal(await page.isVisible('#popupDiv100 table'), true);
  assert.equal(await page.isVisible('#popupDiv99 table'), true);
  assert.deepEqual(await shownOutlines(page), [`outlineDiv${both}a`, `outlineDiv${both}b`,
                                               `outlineDiv${leftOnly}a`, `outlineDiv${leftOnly}b`]);
  await screenshot(page, 'difference_detailedmemory_MemChart_popups');

  // Closing frees the index and the column's outlines; the next popup takes the last freed.
  await page.click('#popupClose100');
  assert.deepEqual(await openPopups(page), ['popupDiv99']);
  assert.deepEqual(await shownOutlines(page), [`outlineDiv${leftOnly}a`, `outlineDiv${leftOnly}b`]);
  await page.mouse.click(point.x, point.y);
  assert.deepEqual(await openPopups(page), ['popupDiv100', 'popupDiv99']);

  // A narrower window hides the outlines of the columns it no longer shows.
  const far = await page.evaluate(() => {
    let c = 0;
    while (c + 1 < xticks.length && rightX[c + 1] <= widthLimit) c++;
    return c;
  });
  const farPoint = await columnPoint(page, 'absDev', far);
  await page.mouse.click(farPoint.x, farPoint.y);
  assert.ok((await shownOutlines(page)).includes(`outlineDiv${far}a`));
  await page.setViewportSize({ width: 1000, height: 1000 });
  await page.waitForFunction(() => windowWidth < 1100);
  const outside = await page.evaluate(() => [...document.querySelectorAll('div[id^="outlineDiv"]')]
    .filter((d) => d.style.display === 'block' && parseFloat(d.style.left) > bandLeft + widthLimit).map((d) => d.id));
  assert.deepEqual(outside, []);
  assert.deepEqual(errors, []);
  await page.close();
});

test('a popup wider than the window keeps its close box in it', async () => {
  const { page, errors } = await openDiff('wide_difference_detailedmemory.html', null, { width: 1000, height: 1000 });
  const column = await page.evaluate(() => visiblePhaseNames.findIndex((name) => name.length > 300));
  const point = await columnPoint(page, 'dataSet2', column);
  const close = await clickWidePopup(page, point);
  await page.mouse.click(close.left + close.width / 2, close.top + close.height / 2);
  assert.deepEqual(await openPopups(page), []);
  assert.deepEqual(errors, []);
  await page.close();
});

test('bands: the names band expanded once, graphs collapsed to ribbons and back', async () => {
  const { page, errors } = await openDiff('difference_detailedmemory.html');
  const layout = () => page.evaluate(() => bands.map((b) => ({
    state: b.state, top: document.getElementById(b.div).getBoundingClientRect().top + window.scrollY,
    height: document.getElementById(b.canvas).height })));
  const before = await layout();
  assert.deepEqual(before.map((b) => [b.state, b.top, b.height]),
                   [['ribbon', 81, 40], ['expanded', 133, 400], ['collapsed', 553, 200], ['collapsed', 773, 200]]);

  await page.evaluate(() => { window.printed = []; });
  await arrow(page, 'PhaseNames', true);
  const expanded = await layout();
  const grow = expanded[0].height - 40;
  assert.equal(expanded[0].state, 'expanded');
  assert.ok(grow > 0);
  assert.deepEqual(expanded.slice(1).map((b) => b.top), [133 + grow, 553 + grow, 773 + grow]);
  const names = await printedOn(page, 'phaseNamesCanvasDiff');
  assert.ok(names.includes('scripts/setup_plant.m') && names.includes('link model'), names.join('|'));
  await arrow(page, 'PhaseNames', true);
  assert.deepEqual(await layout(), expanded);
  await screenshot(page, 'difference_detailedmemory_MemChart_names');

  // The deviation graph: expanded, collapsed, ribbon; its ticks and x-ticks go with it.
  await arrow(page, 'AbsDev', false);
  assert.equal((await layout())[1].height, 200);
  assert.equal((await printedOn(page, 'absDevLabelCanvasDiff')).slice(-5).length, 5);
  await arrow(page, 'AbsDev', false);
  const ribbons = await layout();
  assert.deepEqual([ribbons[1].state, ribbons[1].height, ribbons[2].top], ['ribbon', 40, 133 + grow + 40 + 20]);
  assert.equal(await page.isVisible('#topTicksCanvasDiffDiv'), false);
  assert.equal(await pixel(page, 'absDevCanvasDiff', 5, 5), '#E7EBF5');

  // All three ribbons: no title and no ticks.
  await arrow(page, 'DataSet1', false);
  await arrow(page, 'DataSet1', false);
  await page.evaluate(() => { window.printed = []; });
  await arrow(page, 'DataSet2', false);
  assert.deepEqual(await printedOn(page, 'graphLabelCanvasDiff'), []);
  assert.deepEqual((await layout()).slice(1).map((b) => b.state), ['ribbon', 'ribbon', 'ribbon']);
  assert.deepEqual(await printedOn(page, 'dataSet2CanvasDiff'), ['After']);
  const scroll = await page.$eval('#fakeCanvasDiffDiv', (d) => parseInt(d.style.top));
  const last = (await layout())[3];
  assert.equal(scroll, last.top + last.height + 7);

  // One back to collapsed: its graph, its ticks and the title return.
  await page.evaluate(() => { window.printed = []; });
  await arrow(page, 'DataSet2', true);
  assert.equal((await layout())[3].height, 200);
  assert.ok((await printedOn(page, 'graphLabelCanvasDiff')).includes('After'));
  assert.equal((await printedOn(page, 'dataSet2LabelCanvasDiff')).length, 5);
  assert.deepEqual(errors, []);
  await page.close();
});

test('one side zoomed, equal runs, all-zero figures, and the end of the scroll', async () => {
  const wide = await openDiff('wide_difference_detailedmemory.html');
  const left = await printedOn(wide.page, 'dataSet1LabelCanvasDiff');
  assert.equal(left[0], 'NP = 2e6');
  assert.ok(left.slice(1).every((label) => label.startsWith('+')), left.join(' '));
  assert.ok((await printedOn(wide.page, 'dataSet2LabelCanvasDiff')).every((label) => /^\d+$/.test(label)));
  await screenshot(wide.page, 'wide_difference_detailedmemory_MemChart');
  assert.deepEqual(wide.errors, []);
  await wide.page.close();

  const zero = await openDiff('difference_detailedmemory.html', `
    for (const record of procData) {
      for (const key of Object.keys(record)) {
        if (/^(LHS|RHS)_/.test(key) && record[key] != -99.99) record[key] = 0;
        if (/AbsDev$/.test(key) && record[key] != -99.99) record[key] = 0;
      }
    }`);
  for (const graph of ['absDev', 'dataSet1', 'dataSet2']) {
    assert.deepEqual(await printedOn(zero.page, graph + 'LabelCanvasDiff'), ['0', '~8TB']);
  }
  assert.equal((await printedOn(zero.page, 'graphLabelCanvasDiff'))[0], 'Virtual Memory');
  assert.deepEqual(zero.errors, []);
  await zero.page.close();

  // Two equal runs of 50,000 rows: no deviation to draw, and only a window of columns.
  const start = Date.now();
  const { page, errors } = await openChart(browser, 'large_difference_detailedmemory.html', null,
                                           { width: 1600, height: 1200 });
  await page.waitForFunction(() => ctx_phaseNames !== null);
  const loadToChartMs = Date.now() - start;
  await showTab(page, 'MemChart');
  assert.equal(await page.evaluate(() => differenceRange), 0);
  assert.deepEqual(await printedOn(page, 'absDevLabelCanvasDiff'), ['', '', '', '', '', '0', '', '', '', '', '']);
  const x = await columnCentre(page, 3);
  assert.equal(await pixel(page, 'absDevCanvasDiff', x, 100), 'none');
  assert.ok(await page.evaluate(() => phasesToRender < 200));
  const redrawMs = await scrollRedrawMs(page, 'fakeCanvasDiffDiv');

  // At the end the last row is in view and the bands end at its column.
  await page.$eval('#fakeCanvasDiffDiv', (div) => { div.scrollLeft = div.scrollWidth; });
  await page.waitForFunction(() => chartAtEnd);
  const end = await page.evaluate(() => {
    const lastColumn = realRows() - 1 - firstVisibleRow;
    const box = document.getElementById('absDevCanvasDiffDiv').getBoundingClientRect();
    return { label: visiblePhaseNames[lastColumn], wanted: phaseLabel(procData[realRows() - 1]),
             right: box.right, columnRight: bandLeft + rightX[lastColumn], inView: rightX[lastColumn] <= widthLimit };
  });
  assert.equal(end.label, end.wanted);
  assert.equal(end.inView, true);
  assert.ok(Math.abs(end.right - end.columnRight) <= 3, JSON.stringify(end));
  await screenshot(page, 'large_difference_detailedmemory_MemChart_end');
  recordTimings({ memChartDiffLoadToChartMs: loadToChartMs, memChartDiffRedrawMs: redrawMs });
  assert.deepEqual(errors, []);
  await page.close();
});
