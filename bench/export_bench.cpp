// Export to the Trace Event format against the Detail page, both of the same run of 10^6 raw
// points held in the tracer's store, both through the C++ API as a program calls it: each takes
// a copy of the store, runs the matching pass and writes its file. Counters give the size of
// the file.

#include <performance_tracer/runs.h>
#include <performance_tracer/tracer.h>

#include <benchmark/benchmark.h>

#include <filesystem>

#include <unistd.h>

#include "bench_log.h"

namespace {

constexpr std::int64_t kPoints = 1000000;

/// The benchmarks' random run, in the store.
void storeRun(std::int64_t points) {
    static std::int64_t stored = 0;
    if (stored != points) {
        ptTracer()->_rawData =
            std::make_unique<PTRawDataVector>(pt::testing::copyLog(pt::bench::benchLog(points, 1)));
        stored = points;
    }
}

std::string outputPath(const char* extension) {
    return (std::filesystem::temp_directory_path() /
            ("pt_export_bench_" + std::to_string(getpid()) + extension))
        .string();
}

template <typename Write>
void writeFile(benchmark::State& state, const char* extension, Write write) {
    storeRun(state.range(0));
    const std::string file = outputPath(extension);
    for (auto _ : state) {
        write(file);
    }
    state.counters["file_MB"] = static_cast<double>(std::filesystem::file_size(file)) / 1e6;
    state.SetItemsProcessed(state.iterations() * state.range(0));
    std::filesystem::remove(file);
}

void BM_DetailPage(benchmark::State& state) {
    writeFile(state, ".html", [](const std::string& file) { pt::writeDetailReport(file); });
}
BENCHMARK(BM_DetailPage)->Arg(kPoints)->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_ExportTraceEvents(benchmark::State& state) {
    writeFile(state, ".json", [](const std::string& file) { pt::exportTraceEvents(file); });
}
BENCHMARK(BM_ExportTraceEvents)
    ->Arg(kPoints)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
