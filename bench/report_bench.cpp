// Writing the report pages from 10^5 raw points: a Detail page of one run and a Difference
// page of two, the matching passes, aggregation and alignment included. Counters give the
// size of the page. Two runs of one workload (the second 7% slower) are the usual comparison;
// two unrelated runs make the alignment of rows quadratic, so they are measured at a smaller size.

#include <performance_tracer/reports.h>
#include <performance_tracer/tracer.h>

#include <benchmark/benchmark.h>

#include <filesystem>
#include <random>

#include <unistd.h>

#include "bench_log.h"

namespace {

const PTRawDataVector& runOf(std::int64_t points, unsigned seed) {
    return pt::bench::benchLog(points, seed);
}

/// The same run, every time stretched by 7%, as a slower build of the same workload logs it.
PTRawDataVector slowerCopy(const PTRawDataVector& run) {
    PTRawDataVector copy = pt::testing::copyLog(run);
    for (auto& point : copy) {
        point->_wcTime *= 1.07;
        point->_cpuTime *= 1.07;
    }
    return copy;
}

std::string pagePath() {
    return (std::filesystem::temp_directory_path() /
            ("pt_report_bench_" + std::to_string(getpid()) + ".html"))
        .string();
}

void BM_WriteDetailReport(benchmark::State& state) {
    const PTRawDataVector& run = runOf(state.range(0), 1);
    const std::string file = pagePath();
    for (auto _ : state) {
        state.PauseTiming();
        PTRawDataVector copy = pt::testing::copyLog(run);
        state.ResumeTiming();
        benchmark::DoNotOptimize(ptWriteDetailReport(*ptTracer(), file, "GLOBAL", "GLOBAL", "time",
                                                     true, &copy, nullptr));
    }
    state.counters["page_MB"] = static_cast<double>(std::filesystem::file_size(file)) / 1e6;
    state.SetItemsProcessed(state.iterations() * state.range(0));
    std::filesystem::remove(file);
}
BENCHMARK(BM_WriteDetailReport)->Arg(100000)->Unit(benchmark::kMillisecond)->UseRealTime();

void writeDifferenceReport(benchmark::State& state, bool related) {
    const PTRawDataVector& left = runOf(state.range(0), 1);
    const PTRawDataVector& right = runOf(state.range(0), 2);
    const std::string file = pagePath();
    for (auto _ : state) {
        state.PauseTiming();
        PTRawDataVector leftCopy = pt::testing::copyLog(left);
        PTRawDataVector rightCopy = related ? slowerCopy(left) : pt::testing::copyLog(right);
        state.ResumeTiming();
        benchmark::DoNotOptimize(ptWriteDifferenceReport(*ptTracer(), file, "GLOBAL", "LHS", "RHS",
                                                         &leftCopy, &rightCopy, nullptr, nullptr,
                                                         "time"));
    }
    state.counters["page_MB"] = static_cast<double>(std::filesystem::file_size(file)) / 1e6;
    state.SetItemsProcessed(state.iterations() * state.range(0));
    std::filesystem::remove(file);
}

void BM_WriteDifferenceReport(benchmark::State& state) { writeDifferenceReport(state, true); }
BENCHMARK(BM_WriteDifferenceReport)->Arg(100000)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_WriteDifferenceReportOfUnrelatedRuns(benchmark::State& state) {
    writeDifferenceReport(state, false);
}
BENCHMARK(BM_WriteDifferenceReportOfUnrelatedRuns)
    ->Arg(20000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
