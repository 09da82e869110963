#!/usr/bin/env bash
# ptreport check on runs with known truth: unchanged runs pass, a slower phase fails the check
# with status 1 and comes first, too few runs say how many are needed (status 2), and every
# output form holds the runs' names safely.
#     check_test.sh PTREPORT WRITE_CHECK_RUNS
set -uo pipefail
ptreport=$1 writeRuns=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }

"$writeRuns" runs >/dev/null || { echo "cannot write the runs"; exit 1; }
base=(runs/base*.hvf) same=(runs/same*.hvf) new=(runs/new*.hvf)

check() {
  "$ptreport" check "$@" >out 2>err
  status=$?
}

check --base "${base[@]}" --new "${same[@]}"
[ $status -eq 0 ] || fail "unchanged runs: status $status: $(cat out err)"
grep -q "^PASSED: no phase regressed beyond 5%" out || fail "unchanged runs: $(cat out)"
grep -q "^8 base runs against 8 new runs, wall-clock time" out || fail "unchanged runs: method"

check --base "${base[@]}" --new "${new[@]}" -o summary.html
[ $status -eq 1 ] || fail "a slower phase: status $status: $(cat err)"
# The worst first: the row under the header is the 50% slower sort.
sed -n '/^phase /{n;p;q}' out | grep -q "^sort blocks  *self=total .*(+[45][0-9]\.[0-9]%.* regression$" ||
  fail "a slower phase is not first: $(cat out)"
grep -q "^outputs .* improvement$" out || fail "the faster outputs"
grep -q "^check limits .* new only$" out || fail "the new phase"
grep -q "^FAILED: .*regression.* beyond 5% (sort blocks" out || fail "headline: $(grep FAILED out)"
grep -qx "Summary page: $work/summary.html" out || fail "the page's path"
grep -q "var checkData = " summary.html || fail "the page has no data"

# The threshold lets the sort pass; the new phase fails it only when asked.
check --base "${base[@]}" --new "${new[@]}" --threshold 60%
[ $status -eq 0 ] || fail "--threshold 60%: status $status"
check --base "${base[@]}" --new "${new[@]}" --threshold 60 --fail-on-missing
[ $status -eq 1 ] || fail "--fail-on-missing: status $status"
grep -q "^FAILED: 1 phase on one side only" out || fail "--fail-on-missing: $(grep FAILED out)"

check --base "${base[@]}" --new "${new[@]}" --clock cpu --alpha 0.05
[ $status -eq 1 ] || fail "--clock cpu: status $status"
grep -q "CPU time" out || fail "--clock cpu: method"

# JSON: a valid document with the runs' names as they are.
check --base "${base[@]}" --new "${new[@]}" --json
[ $status -eq 1 ] || fail "--json: status $status"
python3 - out <<'PY' || fail "--json: $(head -c 300 out)"
import json, sys
doc = json.load(open(sys.argv[1]))
assert doc["status"] == "failed", doc["status"]
assert doc["phases"][0]["phase"] == "sort blocks"
assert len(doc["phases"][0]["base"]["times"]) == 8
assert doc["correction"] == "Holm" and doc["tests"] > 15
names = [p["phase"] for p in doc["phases"]]
assert "</script><b>\"quoted\" & 'odd'" in names, names
assert next(p for p in doc["phases"] if p["phase"] == "check limits")["base"] is None
PY
grep -q "</script>" out && fail "--json: a raw </script>"

check --base "${base[@]}" --new "${new[@]}" --markdown
[ $status -eq 1 ] || fail "--markdown: status $status"
grep -q "^| phase | time | base | new |" out || fail "--markdown: header"
grep -q "^| sort blocks | self=total |.*| \*\*regression\*\* |$" out || fail "--markdown: row"
grep -qF "&lt;/script&gt;&lt;b&gt;" out || fail "--markdown: the name is not escaped"
grep -q "<" out && fail "--markdown: raw markup"

# Three runs a side cannot be significant over this many phases: say so, and fail.
check --base "${base[@]:0:3}" --new "${new[@]:0:3}"
[ $status -eq 2 ] || fail "three runs: status $status"
grep -q "^INCONCLUSIVE" out || fail "three runs: headline"
[ "$(wc -l <err)" -eq 1 ] && grep -q "no p-value can go below 0.1, .* at least [0-9]* runs on each side" err ||
  fail "three runs: $(cat err)"

# Clean failures: status 2, nothing on standard output, one line on standard error.
refused() {
  local what=$1; shift
  check "$@"
  [ $status -eq 2 ] || fail "$what: exit status $status, not 2"
  [ ! -s out ] || fail "$what: printed $(cat out)"
  [ "$(wc -l <err)" -eq 1 ] || fail "$what: standard error is not one line: $(cat err)"
}
refused "no runs"
refused "no new runs" --base "${base[@]}"
refused "an empty list" --base --new "${new[@]}"
refused "a stray input" stray.hvf --base "${base[@]}" --new "${new[@]}"
refused "bad clock" --base "${base[@]}" --new "${new[@]}" --clock sundial
refused "bad threshold" --base "${base[@]}" --new "${new[@]}" --threshold five
refused "negative threshold" --base "${base[@]}" --new "${new[@]}" --threshold -5%
refused "bad alpha" --base "${base[@]}" --new "${new[@]}" --alpha 0
refused "two forms" --base "${base[@]}" --new "${new[@]}" --json --markdown
# (Few runs each, so that no progress line joins the message on a slow machine.)
refused "missing run" --base missing.hvf "${base[@]}" --new "${new[@]}"
grep -q "missing.hvf" err || fail "the error does not name the file"
refused "broken run" --base runs/broken.hvf "${base[@]}" --new "${new[@]}"
grep -q "ptreport diagnose runs/broken.hvf" err || fail "a broken run: $(cat err)"
refused "damaged run" --base runs/damaged.hvf --new runs/new1.hvf
grep -q "not finite numbers: the file is damaged" err || fail "a damaged run: $(cat err)"
refused "no phases" --base runs/base1.hvf --new runs/new1.hvf --grouping Nothing
refused "unwritable page" --base runs/base1.hvf --new runs/new1.hvf -o /nonexistent/folder/s.html

"$ptreport" check --help | grep -q "^usage: ptreport check --base" || fail "check --help"
"$ptreport" --help | grep -q "^  check " || fail "--help does not list check"

[ $failures -eq 0 ] && echo "ptreport check: all checks passed"
exit $((failures > 0))
