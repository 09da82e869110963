#!/usr/bin/env bash
# Runs the example session twice, as the baseline and as the changed version, and writes its
# Detail and Difference pages and the baseline's Trace Event export with ptreport, for the
# browser tests and the README's pictures:
#     make_example_reports.sh EXAMPLE PTREPORT OUT
set -euo pipefail
example=$1 ptreport=$2 out=$3
rm -rf "$out"
mkdir -p "$out"
cd "$out"
"$example" baseline.hvf >/dev/null
"$example" --changed changed.hvf >/dev/null
"$ptreport" detail baseline.hvf -o detail.html >/dev/null
"$ptreport" diff baseline.hvf changed.hvf --labels Baseline,Changed -o difference.html >/dev/null
"$ptreport" export baseline.hvf -o baseline.json >/dev/null
