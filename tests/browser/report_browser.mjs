// Opens generated reports in headless Chromium for the tests: one browser per test file, a
// fresh page per report, and every script error of a page collected.

import { chromium } from 'playwright-core';
import { after } from 'node:test';
import assert from 'node:assert/strict';
import { existsSync, mkdirSync } from 'node:fs';
import { join } from 'node:path';

export const reports = process.env.PT_REPORTS;
const executablePath = process.env.PT_CHROMIUM || '/usr/lib/chromium/chromium';

async function launch() {
  assert.ok(reports && existsSync(reports), 'PT_REPORTS must name the folder of generated reports');
  const browser = await chromium.launch({
    executablePath,
    args: ['--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
           '--disable-background-networking', '--disable-component-update', '--disable-sync'],
  });
  // Line coverage of the page scripts, when scripts/coverage asks for it.
  if (process.env.PT_JS_COVERAGE) {
    (await import('../../scripts/page_coverage.mjs')).record(browser, process.env.PT_JS_COVERAGE);
  }
  return browser;
}

let browser;
after(async () => { if (browser) await (await browser).close(); });

/// Opens a report (or a page at an absolute path) whose canvases record their texts in
/// window.printed, runs body on it and checks that the page met no script error (nor a console
/// message matching alsoErrors). prepare runs once the page's scripts are parsed.
export async function withReport(name, body, { viewport = { width: 1280, height: 1000 },
                                               prepare = null, alsoErrors = null } = {}) {
  browser ??= launch();
  const page = await (await browser).newPage({ viewport });
  const errors = [];
  page.on('pageerror', (error) => errors.push(error.message));
  page.on('console', (message) => {
    if (message.type() === 'error' || alsoErrors?.test(message.text())) errors.push(message.text());
  });
  await page.addInitScript((source) => {
    window.printed = [];
    const fillText = CanvasRenderingContext2D.prototype.fillText;
    CanvasRenderingContext2D.prototype.fillText = function (text, x, y) {
      window.printed.push({ canvas: this.canvas.id, text: String(text) });
      return fillText.apply(this, arguments);
    };
    if (source) document.addEventListener('DOMContentLoaded', new Function(source));
  }, prepare);
  await page.goto('file://' + (name.startsWith('/') ? name : join(reports, name)));
  await page.waitForFunction(() => document.readyState === 'complete');
  await body(page);
  assert.deepEqual(errors, [], name);
  await page.close();
}

/// Windows of the sizes the tests open pages in.
export const tall = { viewport: { width: 1280, height: 1600 } }, big = { viewport: { width: 1600, height: 1600 } };

export async function screenshot(page, name) {
  mkdirSync(join(reports, 'screenshots'), { recursive: true });
  await page.screenshot({ path: join(reports, 'screenshots', name + '.png'), fullPage: false });
}

export const tabArguments = { 'Aggregate': 'aggregateSummary', 'Call Tree': 'callTreeSummary', 'Details': 'phaseSummary',
                              'MemChart': 'memCanvas', 'System Info': 'systemInfo' };

/// Clicks a tab in the bar that is on show, and waits for its script link to have run.
export const showTab = (page, label) =>
  follow(page, `#headerTable div[id="header"]:visible a:text-is("${label}")`, tabArguments[label]);

/// Opens a page on its MemChart tab.
export const withChart = (name, body, options) =>
  withReport(name, async (page) => { await showTab(page, 'MemChart'); await body(page); }, options);
export const openPopups = (page) => page.$$eval('div[id^="popupDiv"]', (divs) =>
  divs.filter((d) => d.style.zIndex >= 1000).map((d) => d.id).sort());

/// Clicks a link, and waits for the tab it opens (by the tab's script argument) to be on show.
export async function follow(page, selector, tab) {
  await page.click(selector);
  await page.waitForFunction((argument) => activeTab === argument, tab);
}

export const texts = (page, selector) => page.$$eval(selector, (all) => all.map((e) => e.textContent));

/// The phase names of the Details tab's rows on show.
export const detailPhases = (page) => page.$$eval('#phaseSummaryTable td[id^="phaseTD"]', (cells) => cells.map((c) => c.childNodes[0].textContent));

/// The procData indices of the Details tab's rows on show.
export const detailRows = (page) => page.$$eval('#phaseSummaryTable td[id^="execTD"]', (cells) => cells.map((c) => Number(c.textContent)));

/// The texts of the cells of each row of the tables a selector names.
export const tableCells = (page, tables) => page.$$eval(tables + ' tr', (rows) =>
  rows.map((row) => [...row.querySelectorAll('td')].map((cell) => cell.textContent)));

/// The cells of the aggregate table's row of a phase.
export const aggregateRow = (page, phase) => page.$eval(`#aggregateSummaryTable a:text-is("${phase}")`,
  (link) => [...link.closest('tr').querySelectorAll('td')].map((cell) => cell.textContent));

/// Types a phase filter into the Call Tree tab's panel and refreshes.
export async function filterCallTree(page, phase) {
  await page.click('a[href="javascript:showInputTable(\'CT_FilterData\')"]');
  await page.fill('#CT_phasename', phase);
  await page.click('#CT_userInputs input[value="Refresh"]');
}

/// Scrolls a div to a fraction of its range across ({ x }) or down ({ y }), and waits for until(arg).
export async function scrollDiv(page, id, { x, y }, until, arg) {
  await page.$eval('#' + id, (div, [x, y]) => {
    if (y !== undefined) div.scrollTop = (div.scrollHeight - div.clientHeight) * y;
    else div.scrollLeft = (div.scrollWidth - div.clientWidth) * x;
  }, [x, y]);
  await page.waitForFunction(until, arg);
}

export const printedOn = (page, canvas) => page.evaluate((id) => printed.filter((p) => p.canvas === id).map((p) => p.text), canvas);

/// The colours of a column of pixels of a canvas from x, y (from its top left), height pixels or
/// to the bottom; "none" where nothing is drawn.
export const pixels = (page, canvas, x, y, height) => page.evaluate(([id, px, py, h]) => {
  const canvas = document.getElementById(id);
  const data = canvas.getContext('2d').getImageData(px, py, 1, h ?? canvas.height - py).data;
  return [...Array(data.length / 4).keys()].map((i) => data[4 * i + 3] === 0 ? 'none' : '#' +
    [...data.slice(4 * i, 4 * i + 3)].map((v) => v.toString(16).padStart(2, '0')).join('').toUpperCase());
}, [canvas, x, y, height]);
export const pixel = async (page, canvas, x, y) => (await pixels(page, canvas, x, y, 1))[0];

export const clickAt = (page, point) => page.mouse.click(point.x, point.y);
export const textsOf = (page, ...selectors) => Promise.all(selectors.map((s) => page.textContent(s)));
/// The memory chart's outlines on show.
export const shownOutlines = (page) => page.$$eval('div[id^="outlineDiv"]', (divs) =>
  divs.filter((d) => d.style.display === 'block').map((d) => d.id).sort());

/// Clicks at point in a window that ends just below it, on the memory chart's column of a popup
/// wider than the window, checks that the popup and its close box are kept inside the window,
/// and closes it there.
export async function clickWidePopup(page, point) {
  await page.setViewportSize({ width: 1000, height: Math.round(point.y) + 30 });
  await page.mouse.click(point.x, point.y);
  const [box, close, view] = await page.evaluate(() => [document.querySelector('#popupDiv100 table').getBoundingClientRect().toJSON(),
    popupClose100.getBoundingClientRect().toJSON(), [document.documentElement.clientWidth, document.documentElement.clientHeight]]);
  // The popup is wider than the window.
  assert.ok(box.width > view[0] && box.right <= view[0] && box.top >= 0 && box.bottom <= view[1], JSON.stringify(box));
  assert.ok(close.left >= 0 && close.right <= view[0] && close.top >= 0 && close.bottom <= view[1]);
  await page.mouse.click(close.left + close.width / 2, close.top + close.height / 2);
  assert.equal(await page.evaluate(() => availablePopupIndices.length), 100);
}
