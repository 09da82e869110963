// Saving and loading a run of 10^6 raw points through PerfTools.Tracer, as a script does, and
// the size of the file per point. pt_value_file_footprint gives the peak memory.

#include <performance_tracer/module.h>

#include <benchmark/benchmark.h>

#include "value_file_common.h"

namespace {

void BM_SaveToFile(benchmark::State& state) {
    HVInitialize_performance_tracer();
    pt::bench::logRun(state.range(0));
    const std::string file = pt::bench::benchFile();
    for (auto _ : state) {
        pt::bench::callWithFile("PerfTools.Tracer.saveToFile", file);
    }
    state.counters["bytes/point"] =
        static_cast<double>(std::filesystem::file_size(file)) / static_cast<double>(state.range(0));
    state.SetItemsProcessed(state.iterations() * state.range(0));
    std::filesystem::remove(file);
    ptClearRawData();
}
BENCHMARK(BM_SaveToFile)->Arg(1000000)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_LoadTracerData(benchmark::State& state) {
    HVInitialize_performance_tracer();
    pt::bench::logRun(state.range(0));
    const std::string file = pt::bench::benchFile();
    pt::bench::callWithFile("PerfTools.Tracer.saveToFile", file);
    for (auto _ : state) {
        state.PauseTiming();
        ptClearRawData();
        state.ResumeTiming();
        pt::bench::callWithFile("PerfTools.Tracer.loadTracerData", file);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    std::filesystem::remove(file);
    ptClearRawData();
}
BENCHMARK(BM_LoadTracerData)->Arg(1000000)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
