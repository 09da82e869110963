// Alignment and comparison blocks of two data sets of about 10^4 rows each.

#include <performance_tracer/aggregation.h>
#include <performance_tracer/comparison.h>
#include <performance_tracer/data_blocks.h>
#include <performance_tracer/processed_points.h>
#include <performance_tracer/tracer.h>

#include <benchmark/benchmark.h>

#include "comparison_data.h"

namespace {

void BM_AlignRows(benchmark::State& state) {
    const auto& sets = pt::bench::comparisonSets(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        auto pairs = ptAlignRows(*ptTracer(), sets.left._rows, sets.right._rows);
        benchmark::DoNotOptimize(pairs.data());
    }
    state.counters["left rows"] = static_cast<double>(sets.left._rows.size());
    state.counters["right rows"] = static_cast<double>(sets.right._rows.size());
}
BENCHMARK(BM_AlignRows)->Arg(10000)->Unit(benchmark::kMillisecond);

void BM_ComparisonBlocks(benchmark::State& state) {
    const auto& sets = pt::bench::comparisonSets(static_cast<int>(state.range(0)));
    PerformanceTracer& tracer = *ptTracer();
    for (auto _ : state) {
        const PTAggregateMap left = ptAggregate(tracer, sets.left._rows);
        const PTAggregateMap right = ptAggregate(tracer, sets.right._rows);
        const auto rows = ptAlignRows(tracer, sets.left._rows, sets.right._rows);
        const auto aggregates = ptAlignAggregates(tracer, left, right);
        std::string page = ptHtmlProcDiffData(tracer, rows, "time", "LHS", "RHS");
        page += ptHtmlAggDiffData(tracer, aggregates, "time", "LHS", "RHS");
        benchmark::DoNotOptimize(page.data());
    }
}
BENCHMARK(BM_ComparisonBlocks)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
