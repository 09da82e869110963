// The MemChart tab of Detail pages: colours, scrolling, popups, the zoom of 64-bit address spaces,
// all-zero figures (of Difference pages too), and a chart of 50,000 rows.

import { test } from 'node:test';
import assert from 'node:assert/strict';
import { clickAt, clickWidePopup, openPopups, pixel, printedOn, scrollDiv, shownOutlines, showTab, withChart }
  from './report_browser.mjs';

const narrow = { viewport: { width: 1000, height: 1000 } };
const colour = (page, x, y) => pixel(page, 'scrollcanvas', x, y);

/// Page coordinates of the middle of a column of the window, at a height in the graph.
const columnPoint = (page, column, fraction = 0.5) => page.evaluate(([c, f]) => {
  const canvas = document.getElementById('scrollcanvas').getBoundingClientRect();
  return { x: canvas.left + (leftX[c] + rightX[c]) / 2 + window.scrollX,
           y: canvas.top + window.scrollY + marginTop + (1 - f) * (x_scroll.height - marginTop - 6) };
}, [column, fraction]);

test('columns in the category colours, and the window and a popup column moved on scroll to the end', async () => {
  await withChart('detail_detailedmemory.html', async (page) => {
    // The scroll bar's range is the fake canvas's width: it stands at the left of its div.
    assert.ok(await page.evaluate(() => fakecanvas.width > 1000 && fakecanvasdiv.scrollWidth === fakecanvas.width));
    // Bottom to top: non-process, Dlls, committed, reserved, free.
    const [middle, bottom, top, committed, max] = await page.evaluate(() => {
      const r = procData[1], factor = (x_scroll.height - marginTop - 6) / max;
      return [Math.round((leftX[1] + rightX[1]) / 2), x_scroll.height - 8, marginTop + 10,
              Math.round(x_scroll.height - 5.5 - (r.NonProcessStart + r.DllsStart + r.CommittedStart / 2) * factor), max];
    });
    const axis = await printedOn(page, 'lockedcanvas');
    assert.deepEqual([await colour(page, middle, bottom), await colour(page, middle, top), await colour(page, middle, committed),
                      axis.slice(0, 2), axis.includes('Virtual Memory (MB)'), await printedOn(page, 'legendCanvas')],
                     ['#666666', '#7AEE3C', '#EC0033', ['0', String(Math.round(max / 10))], true,
                      ['Free', 'Reserved', 'Committed', 'Dlls', 'Non-process']]);

    // Blank records came after the rows and stay out of the tables.
    assert.ok(await page.evaluate(() => numBlankData) >= 4);
    await showTab(page, 'Details');
    await page.click('#userInputs input[value="Refresh"]');
    assert.ok(await page.evaluate(() => dataView.Index.length === procData.length - numBlankData));
    // Scrolled to the end: the last row's column whole in the window; a popup's outline and close box follow its column.
    await showTab(page, 'MemChart');
    await clickAt(page, await columnPoint(page, 8));
    const row = await page.evaluate(() => firstVisibleRow + 8);
    await scrollDiv(page, 'fakecanvasdiv', { x: 1 }, () => firstVisibleRow > 0);
    assert.ok(await page.evaluate(() => visiblePhaseNames.includes(phaseLabel(procData[realRows() - 1])) &&
      rightX[realRows() - 1 - firstVisibleRow] <= document.getElementById('scrollcanvasdiv').clientWidth));
    const column = row - await page.evaluate(() => firstVisibleRow);
    assert.ok(column >= 0 && column < 8, `the column moved from 8 to ${column}`);
    assert.deepEqual([await shownOutlines(page), await page.getAttribute('#popupClose100', 'onclick')],
                     [[`outlineDiv${column}`], `clearDiv('100', ${row}, ${column})`]);
  }, narrow);
});

test('popups: opened, reused last freed first, dragged, kept across tab switches', async () => {
  await withChart('detail_detailedmemory.html', async (page) => {
    await clickAt(page, await columnPoint(page, 1));
    assert.deepEqual([await openPopups(page), await shownOutlines(page), (await page.textContent('#popupDiv100')).includes('evaluate parameters'),
                      await page.$$eval('#popupDiv100 td[style*="right"]', (cells) => cells.map((c) => Number(c.textContent)))],
                     [['popupDiv100'], ['outlineDiv1'], true, await page.evaluate(() => ['Free', 'Reserved', 'Committed', 'Dlls',
                       'NonProcess'].map((field) => procData[firstVisibleRow + 1][field + 'Start']))]);
    const second = await columnPoint(page, 3);
    await clickAt(page, second);
    assert.deepEqual(await openPopups(page), ['popupDiv100', 'popupDiv99']);

    // Dragging the title moves the popup.
    const box = await page.locator('#popupDiv99 b').boundingBox();
    const left = () => page.$eval('#popupDiv99', (d) => parseInt(d.style.left));
    const leftBefore = await left();
    await page.mouse.move(box.x + 5, box.y + 5);
    await page.mouse.down();
    await page.mouse.move(box.x + 65, box.y + 45);
    await page.mouse.up();
    assert.equal(await left(), leftBefore + 60);

    // Away and back: both popups and their outlines come back.
    await showTab(page, 'Aggregate');
    assert.equal(await page.isVisible('#popupDiv100 table'), false);
    await showTab(page, 'MemChart');
    assert.deepEqual([await page.isVisible('#popupDiv100 table'), await page.isVisible('#popupDiv99 table'), await shownOutlines(page)],
                     [true, true, ['outlineDiv1', 'outlineDiv3']]);
    // Closing frees the index; the next popup takes the last freed.
    await page.click('#popupClose100');
    assert.deepEqual([await openPopups(page), await shownOutlines(page)], [['popupDiv99'], ['outlineDiv3']]);
    await clickAt(page, second);
    assert.deepEqual(await openPopups(page), ['popupDiv100', 'popupDiv99']);

    // The hundred-and-first popup takes no index.
    await page.evaluate(({ x, y }) => { for (let i = 0; i < 120; i++) statsPopup({ pageX: x, pageY: y }); }, await columnPoint(page, 2));
    assert.deepEqual([(await openPopups(page)).length, await page.evaluate(() => availablePopupIndices.length)], [100, 0]);
  });
});

test('the zoom of a 64-bit address space, cut labels, a popup wider than the window', async () => {
  await withChart('wide_detailedmemory.html', async (page) => {
    const labels = await printedOn(page, 'lockedcanvas');
    assert.ok(labels[0] === 'NP = 2e6' && labels.slice(1, 11).every((label) => label.startsWith('+')), labels.join(' '));
    const cut = (await printedOn(page, 'scrollcanvas')).filter((text) => text.startsWith('a phase whose'));
    assert.ok(cut.length > 0 && cut.every((text) => text.endsWith('...')) && await page.evaluate(() => bEllipsed[1]));
    // The long name's column, clicked low in a window that ends just below the click.
    await clickWidePopup(page, await columnPoint(page, 1, 0.1));
  }, narrow);
});

test('all-zero figures, on Detail and Difference pages', async () => {
  await withChart('detail_detailedmemory.html', async (page) => {
    assert.deepEqual(await printedOn(page, 'lockedcanvas'), ['0', '~8TB', 'Virtual Memory']);
    const [middle, bottom] = await page.evaluate(() => [Math.round((leftX[1] + rightX[1]) / 2), x_scroll.height - 8]);
    assert.notEqual(await colour(page, middle, bottom), '#666666');
  }, { prepare: `for (const record of procData) for (const field of ['Free', 'Reserved', 'Committed', 'Dlls', 'NonProcess'])
                   record[field] = record[field + 'Start'] = 0;` });
  await withChart('difference_detailedmemory.html', async (page) => {
    const labels = await Promise.all(['absDevLabel', 'dataSet1Label', 'dataSet2Label', 'graphLabel'].map((c) => printedOn(page, c + 'CanvasDiff')));
    assert.deepEqual([...labels.slice(0, 3), labels[3][0]], [...Array(3).fill(['0', '~8TB']), 'Virtual Memory']);
  }, { prepare: `for (const record of procData) for (const key of Object.keys(record))
                   if (/^(LHS|RHS)_|AbsDev$/.test(key) && record[key] != -99.99) record[key] = 0;` });
});

test('50,000 rows: only a window of columns is drawn, and scrolling redraws it', async () => {
  await withChart('large_detailedmemory.html', async (page) => {
    await scrollDiv(page, 'fakecanvasdiv', { x: 0.5 }, () => firstVisibleRow > 20000);
    assert.ok(await page.evaluate(() => phasesToRender < 200));
  }, { viewport: { width: 1600, height: 1200 } });
});
