#!/usr/bin/env bash
# ptreport against the methods of PerfTools.Tracer: every kind of page it writes is the
# method's page byte for byte, and it fails cleanly, with exit status 2 and one line on standard
# error, on a usage error or a file it cannot read or write.
set -uo pipefail
ptreport=$1 shell=$2 module=$3 scripts=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }

"$shell" --module "$module" "$scripts/make_runs.pts" >/dev/null || { echo "cannot make the runs"; exit 1; }

# The same page from the method and from ptreport.
same_page() {
  local name=$1 method=$2; shift 2
  "$shell" --module "$module" -e "PerfTools.Tracer.$method('htmlfile', 'm_$name.html', $(cat))" \
    >/dev/null 2>"m_$name.err" || { fail "$name: the method failed: $(cat "m_$name.err")"; return; }
  "$ptreport" "$@" -o "r_$name.html" >out 2>err || { fail "$name: ptreport failed: $(cat err)"; return; }
  grep -qx "$work/r_$name.html" out || fail "$name: ptreport did not print the page's path: $(cat out)"
  cmp -s "m_$name.html" "r_$name.html" || fail "$name: the pages differ"
}
same_page detail generateHTMLReport detail a.hvf <<<"'hvffile', 'a.hvf'"
same_page detail_compile generateHTMLReport detail a.hvf --grouping Compile --showmeta no \
  <<<"'hvffile', 'a.hvf', 'grouping', 'Compile', 'showmeta', false"
same_page aggregate generateAggregateReport aggregate a.hvf --metric basicmemory \
  <<<"'hvffile', 'a.hvf', 'metric', 'basicmemory'"
same_page ksstartup generateKsStartupReport ksstartup a.hvf <<<"'hvffile', 'a.hvf'"
same_page diff generateDifferenceReport diff a.hvf b.hvf \
  <<<"'lhsfile', 'a.hvf', 'rhsfile', 'b.hvf', 'lhslabel', 'a', 'rhslabel', 'b'"
same_page aggdiff generateAggregateDifferenceReport aggdiff a.hvf b.hvf --labels Old,New \
  <<<"'lhsfile', 'a.hvf', 'rhsfile', 'b.hvf', 'lhslabel', 'Old', 'rhslabel', 'New'"
same_page ksdiff generateKsStartupDifferenceReport ksdiff a.hvf b.hvf \
  <<<"'lhsfile', 'a.hvf', 'rhsfile', 'b.hvf', 'lhslabel', 'a', 'rhslabel', 'b'"
same_page diagnose diagnosticReport diagnose b.hvf --grouping Compile \
  <<<"'hvffile', 'b.hvf', 'grouping', 'Compile'"

# Without -o, the page is named after the run, in the current folder.
"$ptreport" detail a.hvf >out 2>err && [ -s a.html ] || fail "detail without -o: $(cat err)"

# The export: JSON that any reader takes, one complete event per phase of the selection.
phases() {  # the names of the complete events of a trace, sorted
  python3 -c 'import json, sys
events = json.load(open(sys.argv[1]))["traceEvents"]
assert all(all(k in e for k in ("name", "ph", "ts", "pid", "tid")) for e in events)
print(" ".join(sorted(e["name"] for e in events if e["ph"] == "X")))' "$1"
}
exported() {
  local what=$1 expected=$2; shift 2
  "$ptreport" export "$@" >out 2>err || { fail "$what: ptreport failed: $(cat err)"; return; }
  [ ! -s err ] || fail "$what: said $(cat err)"
  local json; json=$(cat out)
  [ "$(phases "$json")" = "$expected" ] || fail "$what: exported $(phases "$json")"
}
exported "export" "build load libraries parse update" a.hvf -o a_all.json
grep -qx "$work/a_all.json" out || fail "export did not print the trace's path: $(cat out)"
exported "export without -o" "build load libraries parse update" a.hvf
[ "$(cat out)" = "$work/a.json" ] || fail "export without -o wrote $(cat out)"
exported "export of a grouping" "parse update" a.hvf --grouping Compile -o a_compile.json
exported "export of a model" "update" a.hvf --model engine -o a_engine.json
# A phase left open: the rest is exported, and standard error says how many were left out.
"$shell" --module "$module" -e "PerfTools.Tracer.enable('Build', true);
  PerfTools.Tracer.logOrviaData('Build', 'open', true);
  PerfTools.Tracer.logOrviaData('Build', 'closed', true);
  PerfTools.Tracer.logOrviaData('Build', 'closed', false);
  PerfTools.Tracer.saveToFile('broken.hvf');" >/dev/null
"$ptreport" export broken.hvf -o broken.json >out 2>err || fail "export of a broken run: $(cat err)"
[ "$(phases broken.json)" = "closed" ] || fail "export of a broken run: $(phases broken.json)"
grep -q "1 phase left out, 1 exported; 'ptreport diagnose broken.hvf'" err ||
  fail "export of a broken run said: $(cat err)"

# Clean failures: status 2, nothing on standard output, one line on standard error.
refused() {
  local what=$1; shift
  "$ptreport" "$@" >out 2>err
  local status=$?
  [ $status -eq 2 ] || fail "$what: exit status $status, not 2"
  [ ! -s out ] || fail "$what: printed $(cat out)"
  [ "$(wc -l <err)" -eq 1 ] || fail "$what: standard error is not one line: $(cat err)"
}
refused "no subcommand"
refused "unknown subcommand" frobnicate a.hvf
refused "unknown option" detail a.hvf --colour red
refused "missing value" detail a.hvf --grouping
refused "missing run" detail
refused "one run too many" detail a.hvf b.hvf
refused "bad showmeta" detail a.hvf --showmeta maybe
refused "bad labels" diff a.hvf b.hvf --labels one
refused "bad metric" detail a.hvf --metric speed
refused "missing file" detail missing.hvf
printf 'not a value file' >junk.hvf
refused "damaged file" diff a.hvf junk.hvf
refused "unwritable page" detail a.hvf -o /nonexistent/folder/page.html
refused "export by grouping and model" export a.hvf --grouping Build --model engine
refused "export of a missing file" export missing.hvf
refused "unwritable trace" export a.hvf -o /nonexistent/folder/trace.json
grep -q "missing.hvf" <("$ptreport" detail missing.hvf 2>&1) || fail "the error does not name the file"

for sub in detail aggregate diff aggdiff ksstartup ksdiff diagnose export; do
  "$ptreport" $sub --help | grep -q "^usage: ptreport $sub" || fail "$sub --help"
done
"$ptreport" --help | grep -q diagnose || fail "--help does not list the subcommands"

[ $failures -eq 0 ] && echo "ptreport: all checks passed"
exit $((failures > 0))
