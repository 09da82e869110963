// The matching pass and the aggregation over large logs: nesting about five deep, with a wait
// long enough to become a generated row before about one point in ten; and the pass over one
// phase nested in another thousands of levels deep.

#include <performance_tracer/aggregation.h>
#include <performance_tracer/processed_points.h>
#include <performance_tracer/raw_store.h>

#include <benchmark/benchmark.h>

#include "bench_log.h"

namespace {

const PTRawDataVector& logOf(std::int64_t points) { return pt::bench::benchLog(points, 42); }

void BM_MatchingPass(benchmark::State& state) {
    const PTRawDataVector& log = logOf(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        PTRawDataVector copy = pt::testing::copyLog(log);
        state.ResumeTiming();
        PTProcessedData data = ptGetProcessedDataForGroupings(&copy, {"GLOBAL"});
        benchmark::DoNotOptimize(data._rows.data());
        state.PauseTiming();
        data = PTProcessedData();
        copy.clear();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_MatchingPass)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

/// Each phase starts inside the one before: depth starts, then as many ends.
PTRawDataVector chainOf(std::int64_t depth) {
    PTRawDataVector log;
    for (std::int64_t i = 0; i < 2 * depth; ++i) {
        log.push_back(
            pt::testing::makePoint(0, "Deep", "p", i < depth, static_cast<double>(i) * 1e-6));
    }
    return log;
}

void BM_DeepNesting(benchmark::State& state) {
    const PTRawDataVector log = chainOf(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        PTRawDataVector copy = pt::testing::copyLog(log);
        state.ResumeTiming();
        PTProcessedData data = ptGetProcessedDataForGroupings(&copy, {"Deep"});
        benchmark::DoNotOptimize(data._rows.data());
        state.PauseTiming();
        data = PTProcessedData();
        copy.clear();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * 2 * state.range(0));
}
BENCHMARK(BM_DeepNesting)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

void BM_Aggregation(benchmark::State& state) {
    PTRawDataVector copy = pt::testing::copyLog(logOf(state.range(0)));
    PTProcessedData data = ptGetProcessedDataForGroupings(&copy, {"GLOBAL"});
    for (auto _ : state) {
        PTAggregateMap map = ptGetAggregateProcessedData(data._rows);
        benchmark::DoNotOptimize(map.size());
    }
    // Items are raw points, as for the pass; the rows are a little over half as many.
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_Aggregation)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
