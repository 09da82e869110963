// The Details tab's sort against the recursive quicksort it replaces, on random and on large views.
// Runs in node alone: the page file is evaluated with a procData and a Phase of its own.

import { test } from 'node:test';
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import vm from 'node:vm';

const source = readFileSync(new URL('../../src/report/pages/quicksort.js', import.meta.url), 'utf8');

/// The key of a row as the recursive quicksort made it.
const createKeyForData = (context, row, sortCols) => sortCols.map((col) => col == 'Phase'
  ? context.Phase[context.procData[row].Phase].toLowerCase()
  : ('' + parseInt(100000000 - (col == 'ExecOrder' ? row : context.procData[row][col]) * 100)).padStart(10, '0')).join('');

/// The recursive quicksort whose order the page keeps: the pivot is taken out of the middle,
/// and a row of the pivot's key goes left when it stood before the pivot.
function recursiveQuicksort(keyOf, arr) {
  if (arr.length <= 1) return arr;
  const pivotIndex = Math.floor(arr.length / 2), pivotVal = arr.splice(pivotIndex, 1)[0], pivotKey = keyOf(pivotVal);
  const less = [], greater = [];
  arr.forEach((row, x) => (keyOf(row) < pivotKey || (keyOf(row) == pivotKey && x < pivotIndex) ? less : greater).push(row));
  return recursiveQuicksort(keyOf, less).concat([pivotVal], recursiveQuicksort(keyOf, greater));
}

/// A small random generator with a seed, so that a failure can be replayed.
function generator(seed) {
  let state = seed >>> 0;
  return (n) => (state = (Math.imul(state, 1664525) + 1013904223) >>> 0) % n;
}

/// The page's sort over rows drawn from few distinct figures and names.
function page(random, rows) {
  const Phase = ['init', 'Init', 'solve', 'step 1', 'step 10', 'step 2', 'zeta', ''];
  // Figures whose keys are cut, negative, in exponent form (the last three), or not numbers.
  const figures = [0, 0.004, 0.005, 0.01, 1.5, 1.505, 12, 99999.99, 2e6, -3, 1e6, 999999.995,
                   999999.9999999999, 1e20, -1e20, NaN];
  const procData = Array.from({ length: rows }, () => ({
    Phase: random(Phase.length), Model: random(3) - 1, Target: random(2) - 1,
    WCSelf: figures[random(figures.length)], WCElapsed: figures[random(4)],
  }));
  const context = vm.createContext({ Phase, procData });
  return vm.runInContext(source, context), context;
}

const columnSets = [
  ['WCSelf'], ['Phase'], ['WCElapsed', 'Phase'], ['Phase', 'WCSelf', 'Model'],
  // Ranks 1 and 3 without 2: the hole adds the same part to every key.
  ['WCSelf', undefined, 'Target'], ['ExecOrder'], ['Model', 'Target'],
];

test('the same order as the recursive quicksort on random views with many equal keys', () => {
  for (let seed = 1; seed <= 60; seed++) {
    const random = generator(seed);
    const context = page(random, 1 + random(400));
    // A view is some rows in some order, as a filter and an earlier sort leave it.
    const view = [];
    context.procData.forEach((_, i) => { if (random(4) > 0) view.splice(random(view.length + 1), 0, i); });
    const columns = columnSets[seed % columnSets.length];
    const expected = recursiveQuicksort((row) => createKeyForData(context, row, columns), view.slice());
    const before = view.slice();
    // The view given is left as it was.
    assert.deepEqual([Array.from(context.quicksort(view, columns)), view], [expected, before], `seed ${seed}`);
  }
});

test('a view of 100,000 rows with eight keys sorts, equal keys in view order', () => {
  const context = page(generator(7), 100000);
  context.procData.forEach((record, i) => { record.WCSelf = i % 8; });
  const sorted = context.quicksort([...context.procData.keys()].reverse(), ['WCSelf']);
  const figure = (i) => context.procData[sorted[i]].WCSelf;
  const outOfOrder = sorted.findIndex((row, i) => i > 0 && !(figure(i - 1) > figure(i) || (figure(i - 1) === figure(i) && sorted[i - 1] > row)));
  assert.deepEqual([sorted.length, outOfOrder], [100000, -1]);
});
