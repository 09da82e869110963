// Times the report pages in headless Chromium: loading, the Details tab's Refresh, the call
// tree, the scroll re-fills of the tables and the memory charts' redraw, and the tab's heap.
//
//     node bench/pages/page_bench.mjs [--repeat N] [--only PAGE] FOLDER...
//
// Each FOLDER holds detail_time.html, difference_time.html, detail_detailedmemory.html and
// difference_detailedmemory.html (bench/pages/make_pages.pts writes them); --only measures one
// of them. Every figure is the
// median of N runs (3 by default), each in a freshly opened page; the folders are measured in
// turn within each run, so that figures of several folders compare under the same load. The
// medians are printed as a table and written to page_bench.json in each folder.
//
// The parse floor is the time the same browser takes, from navigation to the end, over a page
// that holds nothing but the report's data blocks: the text the page must parse and evaluate
// whatever its scripts do.

import { createRequire } from 'node:module';
import { existsSync, readFileSync, writeFileSync } from 'node:fs';
import { join, resolve } from 'node:path';

const require = createRequire(new URL('../../tests/browser/package.json', import.meta.url));
const { chromium } = require('playwright-core');

const pages = ['detail_time.html', 'difference_time.html', 'detail_detailedmemory.html',
               'difference_detailedmemory.html'];
const viewport = { width: 1600, height: 1200 };
// An action's time runs to the first frame after it, so that layout and paint count.
const frame = 'await new Promise((done) => requestAnimationFrame(() => setTimeout(done, 0)));';

function usage() {
  console.error('usage: node bench/pages/page_bench.mjs [--repeat N] [--only PAGE] FOLDER...');
  process.exit(2);
}

const args = process.argv.slice(2);
let repeat = 3;
let only = null;
while (args[0] === '--repeat' || args[0] === '--only') {
  if (args[0] === '--repeat') {
    repeat = Number(args[1]);
  } else {
    only = args[1];
  }
  args.splice(0, 2);
}
if (args.length === 0 || !(repeat > 0)) {
  usage();
}
const folders = args.map((folder) => resolve(folder));

/// The report's data blocks alone, with the record constructor they call, as a page of its own
/// whose last script notes the time.
function floorPage(report) {
  const html = readFileSync(report, 'utf8');
  const scripts = [];
  const open = '<script type="text/javascript">';
  const dataStart = html.lastIndexOf(open);
  const dataEnd = html.indexOf('</script>', dataStart);
  const data = html.slice(dataStart + open.length, dataEnd);
  if (!data.includes('var procData = [')) {
    // A comparison writes its rows inside the table script.
    const begin = html.indexOf('        var dataStruct = makeStruct(');
    const rows = html.indexOf('var procData = [', begin);
    scripts.push(html.slice(begin, html.indexOf('];\n', rows) + 3));
  }
  scripts.push(data);
  const makeStruct = 'function makeStruct(names) { var fields = names.split(" "); ' +
    'return function () { for (var i = 0; i < fields.length; i++) this[fields[i]] = arguments[i]; }; }';
  return '<html><head><meta http-equiv="Content-type" content="text/html;charset=UTF-8" /></head>' +
    '<body><script>' + makeStruct + '</script>' +
    scripts.map((text) => '<script>' + text + '</script>').join('') +
    '<script>window.floorMs = performance.now();</script></body></html>';
}

async function parseFloor(browser, folder, name) {
  const floorFile = join(folder, 'floor_' + name);
  writeFileSync(floorFile, floorPage(join(folder, name)));
  const page = await browser.newPage({ viewport });
  await page.goto('file://' + floorFile, { timeout: 0 });
  const ms = await page.evaluate(() => window.floorMs);
  await page.close();
  return ms;
}

/// Opens a report; loadMs runs from navigation to the first frame after the onload handler.
async function open(browser, file) {
  const page = await browser.newPage({ viewport });
  const errors = [];
  page.on('pageerror', (error) => errors.push(error.message));
  page.setDefaultTimeout(0);
  await page.addInitScript(() => {
    window.addEventListener('load', () => setTimeout(() => requestAnimationFrame(() => {
      window.loadedMs = performance.now();
    }), 0));
  });
  await page.goto('file://' + file, { timeout: 0 });
  await page.waitForFunction(() => window.loadedMs !== undefined, null, { timeout: 0, polling: 100 });
  const [loadMs, onloadMs] = await page.evaluate(() => [window.loadedMs,
    window.loadedMs - performance.getEntriesByType('navigation')[0].loadEventStart]);
  return { page, errors, loadMs, onloadMs };
}

/// Milliseconds of a statement of the page, to the first frame after it; null when it raised.
async function timed(page, statement) {
  return page.evaluate(async (source) => {
    const run = new Function(source);
    const begin = performance.now();
    try {
      run();
    } catch (error) {
      window.benchError = String(error);
      return null;
    }
    await new Promise((done) => requestAnimationFrame(() => setTimeout(done, 0)));
    return performance.now() - begin;
  }, statement);
}

/// Milliseconds of a re-fill of a table's window with the layout it brings about, as a scroll
/// goes on: the median over 100 positions of its strip after 20 more, so that the first calls'
/// compiling and a busy machine's pauses drop out.
function refillMs(page, tableType, strip) {
  return page.evaluate(([type, id]) => {
    const div = document.getElementById(id);
    const range = div.scrollHeight - div.clientHeight;
    const times = [];
    for (let i = -20; i < 100; i++) {
      const begin = performance.now();
      div.scrollTop = (range * ((i * 37) % 100)) / 100;
      reGenerateTable(div, type);
      document.body.getBoundingClientRect();
      if (i >= 0) {
        times.push(performance.now() - begin);
      }
    }
    return times.sort((a, b) => a - b)[50];
  }, [tableType, strip]);
}

/// Milliseconds of a redraw of a memory chart's window: the median over 100 positions after 20
/// more.
function redrawMs(page, scrollDiv) {
  return page.evaluate((id) => {
    const div = document.getElementById(id);
    const range = div.scrollWidth - div.clientWidth;
    const times = [];
    for (let i = -20; i < 100; i++) {
      const begin = performance.now();
      div.scrollLeft = (range * ((i * 37) % 100)) / 100;
      swapCanvas(div);
      if (i >= 0) {
        times.push(performance.now() - begin);
      }
    }
    return times.sort((a, b) => a - b)[50];
  }, scrollDiv);
}

async function heapMB(page) {
  const session = await page.context().newCDPSession(page);
  await session.send('HeapProfiler.collectGarbage');
  const { usedSize } = await session.send('Runtime.getHeapUsage');
  await session.detach();
  return usedSize / 1048576;
}

function setInputs(values) {
  return Object.entries(values).map(([id, value]) =>
    `document.getElementById('${id}').value = '${value}';`).join(' ');
}

/// The figures of one page in one freshly opened tab.
async function measure(browser, folder, name) {
  const figures = {};
  figures.parseFloorMs = await parseFloor(browser, folder, name);
  const { page, errors, loadMs, onloadMs } = await open(browser, join(folder, name));
  figures.loadToAggregateMs = loadMs;
  // The part of it from the load event on: the scripts' own work and the first frame.
  figures.onloadToAggregateMs = onloadMs;
  figures.aggregateRefillMs = await refillMs(page, 'Aggregate', 'aggregateSummaryScrollTableDiv');
  const comparison = name.startsWith('difference');
  if (name.endsWith('_time.html')) {
    const empty = comparison ?
      { phasename: '', Sort_LHS_WCSelf: '' } : { phasename: '', Sort_self: '' };
    const selfRank = comparison ? { Sort_LHS_WCSelf: '1' } : { Sort_self: '1' };
    figures.detailsFirstShowMs = await timed(page, "ShowTable('phaseSummary');");
    figures.detailsRefreshEmptyMs = await timed(page, setInputs(empty) + ' userInputsAction();');
    figures.detailsRefillMs = await refillMs(page, 'Detail', 'phaseSummaryScrollTableDiv');
    figures.detailsRefreshRegexMs =
      await timed(page, setInputs({ ...empty, phasename: 'task 1[0-9]$' }) + ' userInputsAction();');
    figures.detailsRefreshSortSelfMs =
      await timed(page, setInputs({ ...empty, ...selfRank }) + ' userInputsAction();');
    figures.detailsRows = await page.evaluate(() => dataView.Index.length);
    if (!comparison) {
      figures.callTreeFirstRenderMs = await timed(page, "ShowTable('callTreeSummary');");
      figures.callTreeNodes = await page.evaluate(() => nodeArray.length);
      // The first row whose node has children, collapsed and expanded again.
      const toggle = 'var p = lastStartIndex["CallTree"]; var r = 0;' +
        'while (nodeArray[CTDataView.Index[p + r]].children.length == 0) r++;' +
        'toggleCallTreeChildren(p + r, CTDataView.Index[p + r], r);';
      figures.callTreeCollapseMs = await timed(page, toggle);
      figures.callTreeExpandMs = await timed(page, toggle);
      figures.callTreeRefillMs = await refillMs(page, 'CallTree', 'callTreeSummaryScrollTableDiv');
      figures.callTreeFilterOpenAllMs =
        await timed(page, setInputs({ CT_phasename: '.' }) + ' CT_userInputsAction();');
      figures.callTreeRowsOpen = await page.evaluate(() => CTDataView.Index.length);
    }
  } else {
    await timed(page, "ShowTable('memCanvas');");
    figures.memChartRedrawMs = await redrawMs(page, comparison ? 'fakeCanvasDiffDiv' : 'fakecanvasdiv');
  }
  figures.jsHeapMB = await heapMB(page);
  const benchError = await page.evaluate(() => window.benchError);
  if (benchError || errors.length > 0) {
    figures.errors = [benchError, ...errors].filter(Boolean).join('; ');
  }
  await page.close();
  return figures;
}

function median(values) {
  const numbers = values.filter((v) => typeof v === 'number').sort((a, b) => a - b);
  if (numbers.length === 0) {
    return values.find((v) => v !== undefined) ?? null;
  }
  return numbers[Math.floor((numbers.length - 1) / 2)];
}

const browser = await chromium.launch({
  executablePath: process.env.PT_CHROMIUM || '/usr/lib/chromium/chromium',
  args: ['--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
         '--disable-background-networking', '--disable-component-update', '--disable-sync',
         '--js-flags=--max-old-space-size=8192'],
});
const runs = {};
for (let run = 0; run < repeat; run++) {
  for (const folder of folders) {
    for (const name of pages) {
      if (!existsSync(join(folder, name)) || (only && name !== only)) {
        continue;
      }
      const figures = await measure(browser, folder, name);
      const key = folder + '\t' + name;
      runs[key] = runs[key] || [];
      runs[key].push(figures);
      console.error(`run ${run + 1}: ${folder}/${name} ${JSON.stringify(figures)}`);
    }
  }
}
await browser.close();

for (const folder of folders) {
  const results = {};
  for (const name of pages) {
    const all = runs[folder + '\t' + name];
    if (!all) {
      continue;
    }
    const keys = [...new Set(all.flatMap((figures) => Object.keys(figures)))];
    results[name] = Object.fromEntries(keys.map((k) => [k, median(all.map((f) => f[k]))]));
  }
  writeFileSync(join(folder, 'page_bench.json'), JSON.stringify(results, null, 1) + '\n');
  console.log(`\n${folder} (medians of ${repeat})`);
  for (const [name, figures] of Object.entries(results)) {
    console.log(`  ${name}`);
    for (const [key, value] of Object.entries(figures)) {
      const shown = typeof value === 'number' ? value.toFixed(value < 100 ? 1 : 0) : value;
      console.log(`    ${key.padEnd(28)} ${shown}`);
    }
  }
}
