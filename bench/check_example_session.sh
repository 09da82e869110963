#!/usr/bin/env bash
# The example session against itself and against its changed version, on this machine: RUNS
# runs of each of baseline, changed and baseline again, interleaved, so that the machine's
# drift falls on all three; then `ptreport check` of the two baselines (which should pass)
# and of the baseline against the changed version (which should flag the changed phases).
#     bench/check_example_session.sh [BUILD_DIR] [RUNS]     (default build and 10)
set -euo pipefail
build=$(cd "${1:-build}" && pwd)
runs=${2:-10}
example=$build/examples/pt_session_example ptreport=$build/tools/ptreport/ptreport
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
for i in $(seq "$runs"); do
    "$example" "base$i.hvf" >/dev/null
    "$example" --changed "new$i.hvf" >/dev/null
    "$example" "again$i.hvf" >/dev/null
done
base=() again=() new=()
for i in $(seq "$runs"); do base+=("base$i.hvf"); again+=("again$i.hvf"); new+=("new$i.hvf"); done

status=0
echo "== baseline against baseline"
"$ptreport" check --base "${base[@]}" --new "${again[@]}" || status=$?
echo "(exit status $status)"
status=0
echo
echo "== baseline against --changed"
"$ptreport" check --base "${base[@]}" --new "${new[@]}" || status=$?
echo "(exit status $status)"
