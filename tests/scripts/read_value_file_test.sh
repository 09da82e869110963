#!/usr/bin/env bash
# A run saved through the shell, read back by scripts/read_value_file.py, which knows only the
# documented format: the rows, their classes and names, the system information and the root.
set -euo pipefail
shell=$1 module=$2 reader=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
"$shell" --module "$module" -e "
PerfTools.Tracer.enable('Build', true);
PerfTools.Tracer.logOrviaData('Build', 'café', true);
PerfTools.Tracer.logKestruneData('Build', 'engine', 'sim', 'update', true);
PerfTools.Tracer.logYlvaneData('Build', 'engine', 'sim', 'Machine', 'Chart', 'step', true);
PerfTools.Tracer.saveToFile('run.hvf')"
python3 "$reader" run.hvf >run.json
python3 - run.json <<'PY'
import json, sys
variables = json.load(open(sys.argv[1]))
assert sorted(variables) == ["OrviaRoot", "PerformanceTracingRawDataVector",
                             "PerformanceTracingSystemInfo"], sorted(variables)
rows = variables["PerformanceTracingRawDataVector"]
assert rows["class"] == "cell" and rows["dims"] == [1, 3], rows["dims"]
counts = [len(row["value"]) for row in rows["value"]]
assert counts == [16, 18, 20], counts
first = [cell["value"] for cell in rows["value"][0]["value"]]
assert first[:4] == ["1", [0], "café", "Build"], first[:4]
assert first[5] == [True] and len(first[6]) == 1 and first[6][0] > 0, first[5:7]
chart = [cell["value"] for cell in rows["value"][2]["value"]]
assert chart[1] == [2] and chart[4:8] == ["engine", "sim", "Machine", "Chart"], chart[:9]
assert [cell["class"] for cell in rows["value"][1]["value"]][:3] == ["char", "int32", "char"]
info = variables["PerformanceTracingSystemInfo"]
assert info["class"] == "struct" and info["dims"] == [1, 1]
assert list(info["value"][0]) == ["processorStr", "cpuSpeedStr", "numCoresStr", "totalPhysMemStr",
                                  "operatingSystemStr", "OrviaVersionStr", "javaVMVersionStr",
                                  "installedProductsStr"], list(info["value"][0])
assert info["value"][0]["totalPhysMemStr"]["value"] == "N/A"
assert variables["OrviaRoot"]["class"] == "char"
print("read", len(counts), "rows")
PY
