// Opens generated reports in headless Chromium for the tests: one browser per test file, a
// fresh page per report, and every script error of a page collected.

import { chromium } from 'playwright-core';
import assert from 'node:assert/strict';
import { existsSync, mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';

export const reports = process.env.PT_REPORTS;
const executablePath = process.env.PT_CHROMIUM || '/usr/lib/chromium/chromium';

export async function launch() {
  assert.ok(reports && existsSync(reports), 'PT_REPORTS must name the folder of generated reports');
  const browser = await chromium.launch({
    executablePath,
    args: ['--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
           '--disable-background-networking', '--disable-component-update', '--disable-sync'],
  });
  if (process.env.PT_JS_COVERAGE) recordCoverage(browser, process.env.PT_JS_COVERAGE);
  return browser;
}

// ---- Coverage of the page scripts ----
// With PT_JS_COVERAGE set to a folder, every page records which lines of each page script ran
// and writes them there as it closes, as { "file.js": [line, ...] } per page.

const pagesFolder = fileURLToPath(new URL('../../src/report/pages/', import.meta.url));
const pageScripts = ['aggregate_tab.js', 'call_tree_filter.js', 'call_tree_tab.js',
  'check_summary.js', 'details_tab.js', 'mem_chart.js', 'mem_chart_common.js',
  'mem_chart_diff.js', 'quicksort.js', 'tab_script.js', 'table_engine.js']
  .map((name) => ({ name, text: readFileSync(join(pagesFolder, name), 'utf8') }));
let coverageFiles = 0;

function recordCoverage(browser, folder) {
  mkdirSync(folder, { recursive: true });
  const open = new Set();
  const save = async (page) => {
    if (!open.delete(page)) return;
    const lines = {};
    for (const entry of await page.coverage.stopJSCoverage()) {
      for (const script of pageScripts) {
        const start = entry.source?.indexOf(script.text) ?? -1;
        if (start >= 0) (lines[script.name] ??= new Set());
        if (start >= 0) linesRun(entry, start, script.text).forEach((l) => lines[script.name].add(l));
      }
    }
    const out = Object.fromEntries(Object.entries(lines).map(([k, v]) => [k, [...v]]));
    writeFileSync(join(folder, `${process.pid}-${coverageFiles++}.json`), JSON.stringify(out));
  };
  const newPage = browser.newPage.bind(browser);
  browser.newPage = async (...options) => {
    const page = await newPage(...options);
    await page.coverage.startJSCoverage({ resetOnNavigation: false });
    open.add(page);
    const close = page.close.bind(page);
    page.close = async (...how) => { await save(page); return close(...how); };
    return page;
  };
  const closeBrowser = browser.close.bind(browser);
  browser.close = async () => { for (const page of [...open]) await save(page); return closeBrowser(); };
}

/// The lines of a script, found at start in a page's script, whose first character ran: the
/// count of an offset is the count of the smallest range that holds it.
function linesRun(entry, start, text) {
  const ranges = entry.functions.flatMap((f) => f.ranges)
    .filter((r) => r.endOffset > start && r.startOffset < start + text.length)
    .sort((a, b) => (b.endOffset - b.startOffset) - (a.endOffset - a.startOffset));
  const run = [];
  let offset = 0;
  text.split('\n').forEach((line, index) => {
    const first = line.search(/\S/);
    if (first >= 0) {
      const at = start + offset + first;
      let count = 0;
      for (const r of ranges) if (r.startOffset <= at && at < r.endOffset) count = r.count;
      if (count > 0) run.push(index + 1);
    }
    offset += line.length + 1;
  });
  return run;
}

/// A report opened on its first tab; errors holds every uncaught script error of the page.
export async function openReport(browser, name, viewport = { width: 1280, height: 900 }) {
  return openChart(browser, name, null, viewport);
}

/// Milliseconds per redraw of a chart's window, scrolled through by its scroll bar in 50 steps.
export function scrollRedrawMs(page, scrollDiv) {
  return page.evaluate((id) => {
    const div = document.getElementById(id);
    const range = div.scrollWidth - div.clientWidth;
    const begin = performance.now();
    for (let i = 0; i < 50; i++) {
      div.scrollLeft = (range * i) / 50;
      swapCanvas(div);
    }
    return (performance.now() - begin) / 50;
  }, scrollDiv);
}

/// Adds figures to timings.json beside the reports.
export function recordTimings(figures) {
  const file = join(reports, 'timings.json');
  const timings = existsSync(file) ? JSON.parse(readFileSync(file, 'utf8')) : {};
  writeFileSync(file, JSON.stringify(Object.assign(timings, figures), null, 1) + '\n');
}

export async function screenshot(page, name) {
  const folder = join(reports, 'screenshots');
  mkdirSync(folder, { recursive: true });
  await page.screenshot({ path: join(folder, name + '.png'), fullPage: false });
}

/// The texts of a column of the aggregate table's rows on show.
export async function aggregateColumn(page, column) {
  return page.$$eval(`#aggregateSummaryTable td[id$="col${column}"]`, (cells) =>
    cells.filter((cell) => /^aggRow\d+col/.test(cell.id)).map((cell) => cell.textContent));
}

export const tabArguments = {
  'Aggregate': 'aggregateSummary', 'Call Tree': 'callTreeSummary', 'Details': 'phaseSummary',
  'MemChart': 'memCanvas', 'System Info': 'systemInfo',
};

/// Clicks a tab in the bar that is on show, and waits for its script link to have run.
export async function showTab(page, label) {
  const bar = page.locator('#headerTable div[id="header"]:visible');
  await bar.locator(`a:text-is("${label}")`).click();
  await page.waitForFunction((argument) => activeTab === argument, tabArguments[label]);
}

/// A report whose canvases record every text they print in window.printed; prepare runs in the
/// page once its scripts are parsed, before the chart is drawn.
export async function openChart(browser, name, prepare = null, viewport = { width: 1280, height: 1000 }) {
  const page = await browser.newPage({ viewport });
  const errors = [];
  page.on('pageerror', (error) => errors.push(error.message));
  page.on('console', (message) => { if (message.type() === 'error') errors.push(message.text()); });
  await page.addInitScript((source) => {
    window.printed = [];
    const fillText = CanvasRenderingContext2D.prototype.fillText;
    CanvasRenderingContext2D.prototype.fillText = function (text, x, y) {
      window.printed.push({ canvas: this.canvas.id, text: String(text) });
      return fillText.apply(this, arguments);
    };
    if (source) document.addEventListener('DOMContentLoaded', new Function(source));
  }, prepare);
  await page.goto('file://' + join(reports, name));
  await page.waitForFunction(() => document.readyState === 'complete');
  return { page, errors };
}

export const printedOn = (page, canvas) =>
  page.evaluate((id) => window.printed.filter((p) => p.canvas === id).map((p) => p.text), canvas);

/// Clicks at point in a window that ends just below it, on the memory chart's column of a popup
/// wider than the window, and checks that the popup and its close box are kept inside the
/// window; returns the close box.
export async function clickWidePopup(page, point) {
  await page.setViewportSize({ width: 1000, height: Math.round(point.y) + 30 });
  await page.mouse.click(point.x, point.y);
  const [box, close, view] = await page.evaluate(() => [
    document.querySelector('#popupDiv100 table').getBoundingClientRect().toJSON(),
    document.getElementById('popupClose100').getBoundingClientRect().toJSON(),
    [document.documentElement.clientWidth, document.documentElement.clientHeight]]);
  assert.ok(box.width > view[0], 'the popup is wider than the window');
  assert.ok(box.right <= view[0] && box.top >= 0 && box.bottom <= view[1], JSON.stringify(box));
  assert.ok(close.left >= 0 && close.right <= view[0] && close.top >= 0 && close.bottom <= view[1]);
  return close;
}
