#!/usr/bin/env bash
# Writes the summary pages of `ptreport check` that the browser tests open, from runs with
# known truth: a failed check, a passed one, and one with too few runs.
#     make_check_summary.sh PTREPORT WRITE_CHECK_RUNS OUT
set -uo pipefail
ptreport=$1 writeRuns=$2 out=$3
rm -rf "$out"
mkdir -p "$out"
cd "$out" || exit 1
"$writeRuns" runs >/dev/null || exit 1
expect() {
  local want=$1; shift
  "$ptreport" check "$@" >/dev/null 2>&1
  local got=$?
  [ $got -eq "$want" ] || { echo "ptreport check $*: status $got, not $want"; exit 1; }
}
expect 1 --base runs/base*.hvf --new runs/new*.hvf -o failed.html
expect 0 --base runs/base*.hvf --new runs/same*.hvf -o passed.html
expect 2 --base runs/base[123].hvf --new runs/new[123].hvf -o inconclusive.html
