// Line coverage of the page scripts (src/report/pages/*.js) as Chromium runs them.
//
// record(browser, folder) makes every page of a playwright browser record which lines of each
// page script ran, and write them into folder as it closes: { "file.js": [line, ...] } per
// page. Run as a program, it sums such a folder:
//     node scripts/page_coverage.mjs FOLDER
//
// A page file holds the variants of its text between directive lines ("//@if ...") and values
// that the writer puts in ("@@name@@"); each run of lines between them is found whole in a
// page's scripts when the page has it. Lines of code are those that are not blank, not only a
// comment and hold no value.

import { mkdirSync, readdirSync, readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';

const pagesFolder = fileURLToPath(new URL('../src/report/pages/', import.meta.url));
const pageScripts = readdirSync(pagesFolder).filter((name) => name.endsWith('.js')).sort()
  .map((name) => ({ name, text: readFileSync(join(pagesFolder, name), 'utf8') }));

function blocksOf(text) {
  const blocks = [];
  let block = null;
  text.replace(/\n$/, '').split('\n').forEach((line, index) => {
    const start = line.trimStart();
    if (start.startsWith('//@') || start.startsWith('/*@') || line.includes('@@')) {
      block = null;
    } else {
      if (!block) blocks.push((block = { first: index + 1, lines: [] }));
      block.lines.push(line);
    }
  });
  return blocks.map((b) => ({ ...b, text: b.lines.join('\n') + '\n' }));
}

/// The lines of a page file's blocks, found in order in a script, whose first character ran:
/// the count of an offset is the count of the smallest range that holds it.
function linesRun(source, ranges, blocks) {
  const run = [];
  let cursor = 0;
  for (const block of blocks) {
    let at = source.indexOf(block.text, cursor);
    while (at > 0 && source[at - 1] != '\n' && source[at - 1] != '>') {
      at = source.indexOf(block.text, at + 1);
    }
    if (at < 0) continue;
    cursor = at + block.text.length;
    block.lines.forEach((line, index) => {
      const first = line.search(/\S/);
      if (first >= 0) {
        let count = 0;
        for (const r of ranges) if (r.startOffset <= at + first && at + first < r.endOffset) count = r.count;
        if (count > 0) run.push(block.first + index);
      }
      at += line.length + 1;
    });
  }
  return run;
}

let files = 0;

export function record(browser, folder) {
  mkdirSync(folder, { recursive: true });
  const scripts = pageScripts.map(({ name, text }) => ({ name, blocks: blocksOf(text) }));
  const open = new Set();
  const save = async (page) => {
    if (!open.delete(page)) return;
    const lines = {};
    for (const entry of await page.coverage.stopJSCoverage()) {
      if (!entry.source) continue;
      const ranges = entry.functions.flatMap((f) => f.ranges)
        .sort((a, b) => (b.endOffset - b.startOffset) - (a.endOffset - a.startOffset));
      for (const script of scripts) {
        const run = linesRun(entry.source, ranges, script.blocks);
        if (run.length) (lines[script.name] ??= []).push(...run);
      }
    }
    writeFileSync(join(folder, `${process.pid}-${files++}.json`), JSON.stringify(lines));
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
  browser.close = async () => {
    for (const page of [...open]) await save(page);
    return closeBrowser();
  };
}

function summary(folder) {
  const run = {};
  for (const file of readdirSync(folder)) {
    for (const [name, lines] of Object.entries(JSON.parse(readFileSync(join(folder, file), 'utf8')))) {
      run[name] ??= new Set();
      lines.forEach((line) => run[name].add(line));
    }
  }
  let all = 0, covered = 0;
  for (const { name, text } of pageScripts) {
    const lines = text.split('\n').map((line, i) => [i + 1, line.trim()])
      .filter(([, t]) => t && !t.startsWith('//') && !t.startsWith('/*') && !t.startsWith('*') &&
                         !t.includes('@@'));
    const hit = lines.filter(([n]) => run[name]?.has(n)).length;
    all += lines.length;
    covered += hit;
    console.log(`  ${name.padEnd(22)} ${(100 * hit / lines.length).toFixed(1).padStart(5)}% of ${lines.length}`);
  }
  console.log(`  ${'all'.padEnd(22)} ${(100 * covered / all).toFixed(1).padStart(5)}% of ${all}`);
}

if (process.argv[1] === fileURLToPath(import.meta.url)) summary(process.argv[2]);
