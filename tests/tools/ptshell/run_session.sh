#!/usr/bin/env bash
# Runs a scripted session of ptshell and compares what it printed, and its exit status, with
# the expected text: standard output, then "--- stderr ---" and standard error, then
# "--- exit N ---". A session is one script, or a folder of scripts that run in turn, each in a
# process of its own, in one working folder (so that a later one reads the files of an earlier
# one); the expected text then holds the parts of all, in order. PT_UPDATE_GOLDEN=1 rewrites
# the expected text.
set -uo pipefail
shell=$1 module=$2 case=${3%/}
if [ -d "$case" ]; then
  expected="$case.expected"
  steps=("$case"/*.pts)
else
  expected="${case%.pts}.expected"
  steps=("$case")
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
actual="$work/actual"
: >"$actual"
for step in "${steps[@]}"; do
  (cd "$work" && "$shell" --module "$module" "$step" >out 2>err)
  status=$?
  if [ ${#steps[@]} -gt 1 ]; then
    echo "=== $(basename "$step") ===" >>"$actual"
  fi
  { cat "$work/out"; echo "--- stderr ---"; cat "$work/err"; echo "--- exit $status ---"; } >>"$actual"
done
if [ "${PT_UPDATE_GOLDEN:-0}" = 1 ]; then
  cp "$actual" "$expected"
fi
diff -u "$expected" "$actual"
