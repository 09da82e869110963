#!/usr/bin/env bash
# Writes the value files and the reports that the browser tests open:
#     make_reports.sh PTSHELL MODULE WRITE_RUNS OUT
set -euo pipefail
shell=$1 module=$2 writeRuns=$3 out=$4
here=$(cd "$(dirname "$0")" && pwd)
rm -rf "$out"
mkdir -p "$out"
"$writeRuns" "$out"
cd "$out"
"$shell" --module "$module" "$here/make_reports.pts"
