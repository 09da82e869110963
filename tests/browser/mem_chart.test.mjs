// The MemChart tab of Detail pages: columns drawn in the category colours, the window redrawn
// on scroll, popups opened, reused, dragged, kept across tab switches and kept inside the
// window, the zoom of 64-bit address spaces, all-zero figures, and the 50,000-row page's
// timings.

import { test, before, after } from 'node:test';
import assert from 'node:assert/strict';
import { launch, screenshot, showTab, clickWidePopup, openChart as openChartIn, printedOn, recordTimings, scrollRedrawMs } from './report_browser.mjs';

let browser;
before(async () => { browser = await launch(); });
const openChart = (...args) => openChartIn(browser, ...args);
after(async () => { await browser.close(); });

/// The colour of a pixel of the scrolling canvas, x and y from its top left.
const pixel = (page, x, y) => page.evaluate(([px, py]) => {
  const data = document.getElementById('scrollcanvas').getContext('2d').getImageData(px, py, 1, 1).data;
  return '#' + [data[0], data[1], data[2]].map((v) => v.toString(16).padStart(2, '0')).join('').toUpperCase();
}, [x, y]);

/// Page coordinates of the middle of a column of the window, at a height in the graph.
const columnPoint = (page, column, fraction = 0.5) => page.evaluate(([c, f]) => {
  const canvas = document.getElementById('scrollcanvas').getBoundingClientRect();
  const x = canvas.left + (leftX[c] + rightX[c]) / 2 + window.scrollX;
  const y = canvas.top + window.scrollY + marginTop + (1 - f) * (x_scroll.height - marginTop - 6);
  return { x, y };
}, [column, fraction]);

test('columns in the category colours, and the window redrawn on scroll', async () => {
  const { page, errors } = await openChart('detail_detailedmemory.html');
  await showTab(page, 'MemChart');
  assert.equal(await page.isVisible('#scrollcanvas'), true);
  // The scroll bar's range is the fake canvas's width: it stands at the left of its div.
  assert.deepEqual(await page.evaluate(() => {
    const canvas = document.getElementById('fakecanvas');
    return [canvas.width > 1000, document.getElementById('fakecanvasdiv').scrollWidth === canvas.width];
  }), [true, true]);
  // Bottom to top: non-process, Dlls, committed, reserved, free.
  const bottom = await page.evaluate(() => x_scroll.height - 8);
  const middle = await page.evaluate(() => Math.round((leftX[1] + rightX[1]) / 2));
  assert.equal(await pixel(page, middle, bottom), '#666666');
  assert.equal(await pixel(page, middle, await page.evaluate(() => marginTop + 10)), '#7AEE3C');
  const committed = await page.evaluate(([c]) => {
    const factor = (x_scroll.height - marginTop - 6) / max;
    const r = procData[c];
    return Math.round(x_scroll.height - 5.5 - (r.NonProcessStart + r.DllsStart + r.CommittedStart / 2) * factor);
  }, [1]);
  assert.equal(await pixel(page, middle, committed), '#EC0033');
  assert.deepEqual((await printedOn(page, 'lockedcanvas')).slice(0, 2), ['0', String(Math.round(
    await page.evaluate(() => max) / 10))]);
  assert.ok((await printedOn(page, 'lockedcanvas')).includes('Virtual Memory (MB)'));
  assert.deepEqual((await printedOn(page, 'legendCanvas')), ['Free', 'Reserved', 'Committed', 'Dlls', 'Non-process']);
  await screenshot(page, 'detail_detailedmemory_MemChart');

  // Blank records came after the rows and stay out of the tables.
  const blanks = await page.evaluate(() => numBlankData);
  assert.ok(blanks >= 4);
  await showTab(page, 'Details');
  await page.click('#userInputs input[value="Refresh"]');
  const rows = await page.evaluate(() => dataView.Index.length);
  assert.equal(rows, await page.evaluate(() => procData.length - numBlankData));

  // Scrolled to the end: the last real row is in the window.
  await showTab(page, 'MemChart');
  await page.$eval('#fakecanvasdiv', (div) => { div.scrollLeft = div.scrollWidth; });
  await page.waitForFunction(() => firstVisibleRow > 0);
  const last = await page.evaluate(() => phaseLabel(procData[procData.length - numBlankData - 1]));
  assert.ok(await page.evaluate((label) => visiblePhaseNames.includes(label), last));
  // ... and its column whole inside the chart's window.
  assert.ok(await page.evaluate(() => rightX[realRows() - 1 - firstVisibleRow] <=
                                      document.getElementById('scrollcanvasdiv').clientWidth));
  assert.deepEqual(errors, []);
  await page.close();
});

test('popups: opened, reused last freed first, dragged, kept across tab switches', async () => {
  const { page, errors } = await openChart('detail_detailedmemory.html');
  await showTab(page, 'MemChart');
  const open = () => page.$$eval('div[id^="popupDiv"]', (divs) =>
    divs.filter((d) => d.style.zIndex >= 1000).map((d) => d.id).sort());

  const first = await columnPoint(page, 1);
  await page.mouse.click(first.x, first.y);
  assert.deepEqual(await open(page), ['popupDiv100']);
  const figures = await page.$$eval('#popupDiv100 td[style*="right"]', (cells) => cells.map((c) => c.textContent));
  const expected = await page.evaluate(() => {
    const r = procData[firstVisibleRow + 1];
    return [r.FreeStart, r.ReservedStart, r.CommittedStart, r.DllsStart, r.NonProcessStart];
  });
  assert.deepEqual(figures.map(Number), expected);
  assert.equal(await page.isVisible('#outlineDiv1'), true);
  assert.ok((await page.textContent('#popupDiv100')).includes('evaluate parameters'));

  const second = await columnPoint(page, 3);
  await page.mouse.click(second.x, second.y);
  assert.deepEqual(await open(page), ['popupDiv100', 'popupDiv99'].sort());

  // Dragging the title moves the popup.
  const box = await page.locator('#popupDiv99 b').boundingBox();
  const leftBefore = await page.$eval('#popupDiv99', (d) => parseInt(d.style.left));
  await page.mouse.move(box.x + 5, box.y + 5);
  await page.mouse.down();
  await page.mouse.move(box.x + 65, box.y + 45);
  await page.mouse.up();
  assert.equal(await page.$eval('#popupDiv99', (d) => parseInt(d.style.left)), leftBefore + 60);

  // Away and back: both popups and their outlines come back.
  await showTab(page, 'Aggregate');
  assert.equal(await page.isVisible('#popupDiv100 table'), false);
  await showTab(page, 'MemChart');
  assert.equal(await page.isVisible('#popupDiv100 table'), true);
  assert.equal(await page.isVisible('#popupDiv99 table'), true);
  assert.equal(await page.isVisible('#outlineDiv3'), true);
  await screenshot(page, 'detail_detailedmemory_MemChart_popups');

  // Closing frees the index; the next popup takes the last freed.
  await page.click('#popupClose100');
  assert.deepEqual(await open(page), ['popupDiv99']);
  assert.equal(await page.isVisible('#outlineDiv1'), false);
  await page.mouse.click(second.x, second.y);
  assert.deepEqual(await open(page), ['popupDiv100', 'popupDiv99'].sort());

  // The hundred-and-first popup takes no index.
  await page.evaluate(() => {
    const canvas = document.getElementById('scrollcanvas').getBoundingClientRect();
    for (let i = 0; i < 120; i++) {
      const x = canvas.left + (leftX[2] + rightX[2]) / 2 + window.scrollX;
      const y = canvas.top + window.scrollY + marginTop + 20;
      statsPopup({ pageX: x, pageY: y });
    }
  });
  assert.equal((await open(page)).length, 100);
  assert.equal(await page.evaluate(() => availablePopupIndices.length), 0);
  assert.deepEqual(errors, []);
  await page.close();
});

test('a popup stays bound to its column while the chart scrolls', async () => {
  const { page, errors } = await openChart('detail_detailedmemory.html', null, { width: 1000, height: 1000 });
  await showTab(page, 'MemChart');
  const point = await columnPoint(page, 8);
  await page.mouse.click(point.x, point.y);
  const row = await page.evaluate(() => firstVisibleRow + 8);
  await page.$eval('#fakecanvasdiv', (div) => { div.scrollLeft = div.scrollWidth; });
  await page.waitForFunction(() => firstVisibleRow > 0);
  const shift = await page.evaluate(() => firstVisibleRow);
  const visible = await page.$$eval('div[id^="outlineDiv"]', (divs) =>
    divs.filter((d) => d.style.display === 'block').map((d) => d.id));
  assert.ok(row - shift >= 0 && row - shift < 8, `the column moved from 8 to ${row - shift}`);
  assert.deepEqual(visible, [`outlineDiv${row - shift}`]);
  const close = await page.getAttribute('#popupClose100', 'onclick');
  assert.equal(close, `clearDiv('100', ${row}, ${row - shift})`);
  assert.deepEqual(errors, []);
  await page.close();
});

test('a popup wider than the window keeps its close box in it', async () => {
  const { page, errors } = await openChart('wide_detailedmemory.html', null, { width: 1000, height: 1000 });
  await showTab(page, 'MemChart');
  // The long name's column, clicked low in a window that ends just below the click.
  const point = await columnPoint(page, 1, 0.1);
  const close = await clickWidePopup(page, point);
  await screenshot(page, 'wide_detailedmemory_MemChart_popup');
  await page.mouse.click(close.left + close.width / 2, close.top + close.height / 2);
  assert.equal(await page.evaluate(() => availablePopupIndices.length), 100);
  assert.deepEqual(errors, []);
  await page.close();
});

test('the zoom of a 64-bit address space, cut labels, and all-zero figures', async () => {
  const wide = await openChart('wide_detailedmemory.html');
  await showTab(wide.page, 'MemChart');
  const labels = await printedOn(wide.page, 'lockedcanvas');
  assert.equal(labels[0], 'NP = 2e6');
  assert.ok(labels.slice(1, 11).every((label) => label.startsWith('+')), labels.join(' '));
  const cut = (await printedOn(wide.page, 'scrollcanvas')).filter((text) => text.startsWith('a phase whose'));
  assert.ok(cut.length > 0 && cut.every((text) => text.endsWith('...')));
  assert.equal(await wide.page.evaluate(() => bEllipsed[1]), true);
  await screenshot(wide.page, 'wide_detailedmemory_MemChart');
  assert.deepEqual(wide.errors, []);
  await wide.page.close();

  const zero = await openChart('detail_detailedmemory.html', `
    for (const record of procData) {
      for (const field of ['Free', 'Reserved', 'Committed', 'Dlls', 'NonProcess', 'FreeStart',
                           'ReservedStart', 'CommittedStart', 'DllsStart', 'NonProcessStart']) {
        record[field] = 0;
      }
    }`);
  await showTab(zero.page, 'MemChart');
  const axis = await printedOn(zero.page, 'lockedcanvas');
  assert.deepEqual(axis, ['0', '~8TB', 'Virtual Memory']);
  const middle = await zero.page.evaluate(() => Math.round((leftX[1] + rightX[1]) / 2));
  assert.notEqual(await pixel(zero.page, middle, await zero.page.evaluate(() => x_scroll.height - 8)), '#666666');
  assert.deepEqual(zero.errors, []);
  await zero.page.close();
});

test('50,000 rows: the first chart and the redraw of a scrolled window', async () => {
  const start = Date.now();
  const { page, errors } = await openChart('large_detailedmemory.html', null, { width: 1600, height: 1200 });
  await page.waitForFunction(() => ctx_scroll !== null);
  const loadToChartMs = Date.now() - start;
  await showTab(page, 'MemChart');
  // Only a window of columns is drawn.
  assert.ok(await page.evaluate(() => phasesToRender < 200));
  const redrawMs = await scrollRedrawMs(page, 'fakecanvasdiv');
  await page.$eval('#fakecanvasdiv', (div) => { div.scrollLeft = div.scrollWidth / 2; });
  await page.waitForFunction(() => firstVisibleRow > 20000);
  await screenshot(page, 'large_detailedmemory_MemChart_scrolled');
  recordTimings({ memChartLoadToChartMs: loadToChartMs, memChartRedrawMs: redrawMs });
  assert.deepEqual(errors, []);
  await page.close();
});
