#!/usr/bin/env bash
# Runs one scripted session of ptshell and compares what it printed, and its exit status, with
# the expected text: standard output, then "--- stderr ---" and standard error, then
# "--- exit N ---". PT_UPDATE_GOLDEN=1 rewrites the expected text.
set -uo pipefail
shell=$1 module=$2 case=$3
expected="${case%.pts}.expected"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
(cd "$work" && "$shell" --module "$module" "$case" >out 2>err)
status=$?
actual="$work/actual"
{ cat "$work/out"; echo "--- stderr ---"; cat "$work/err"; echo "--- exit $status ---"; } >"$actual"
if [ "${PT_UPDATE_GOLDEN:-0}" = 1 ]; then
  cp "$actual" "$expected"
fi
diff -u "$expected" "$actual"
