// The cost of a logging call, disabled and enabled, for each point class.

#include <performance_tracer/performance_tracer.h>

#include <pt_platform/ut.h>

#include <benchmark/benchmark.h>

namespace {

const std::string kPhase = "benchmark phase";
const std::string kModel = "model";
const std::string kTarget = "target";

/// A grouping that stays disabled, and one that is enabled for the recording benchmarks.
struct Groupings {
    int off = ptAddGrouping("Bench Off");
    int on = ptAddGrouping("Bench On");
    Groupings() { ptEnableTracer("Bench On", true); }
};

const Groupings& groupings() {
    static const Groupings instance;
    return instance;
}

void BM_DisabledById(benchmark::State& state) {
    const int grouping = groupings().off;
    for (auto _ : state) {
        benchmark::DoNotOptimize(ptLogOrviaData(grouping, kPhase, true));
    }
}
BENCHMARK(BM_DisabledById);

void BM_DisabledByName(benchmark::State& state) {
    groupings();
    const std::string grouping = "Bench Off";
    for (auto _ : state) {
        benchmark::DoNotOptimize(ptLogOrviaData(grouping, kPhase, true));
    }
}
BENCHMARK(BM_DisabledByName);

// A scope guard against the two plain calls it stands for, while nothing is enabled: the
// macro resolves its grouping once, then tests it on entry and its own flag on exit.
void BM_DisabledPairById(benchmark::State& state) {
    const int grouping = groupings().off;
    for (auto _ : state) {
        benchmark::DoNotOptimize(ptLogOrviaData(grouping, kPhase, true));
        benchmark::DoNotOptimize(ptLogOrviaData(grouping, kPhase, false));
    }
}
BENCHMARK(BM_DisabledPairById);

void BM_DisabledScopeMacro(benchmark::State& state) {
    groupings();
    for (auto _ : state) {
        PT_PHASE("Bench Off", "benchmark phase");
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_DisabledScopeMacro);

/// Enabled calls append to the store; it is cleared outside the timing every so often so that
/// the benchmark measures logging, not a store of millions of points.
template <typename Log>
void recordLoop(benchmark::State& state, Log log) {
    constexpr int kBatch = 1 << 16;
    int inBatch = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(log());
        if (++inBatch == kBatch) {
            state.PauseTiming();
            ptClearRawGroupingData("Bench On");
            inBatch = 0;
            state.ResumeTiming();
        }
    }
    ptClearRawGroupingData("Bench On");
}

void BM_EnabledOrvia(benchmark::State& state) {
    const int grouping = groupings().on;
    recordLoop(state, [&] { return ptLogOrviaData(grouping, kPhase, true); });
}
BENCHMARK(BM_EnabledOrvia);

void BM_EnabledKestrune(benchmark::State& state) {
    const int grouping = groupings().on;
    recordLoop(state, [&] { return ptLogKestruneData(grouping, kModel, kTarget, kPhase, true); });
}
BENCHMARK(BM_EnabledKestrune);

void BM_EnabledYlvane(benchmark::State& state) {
    const int grouping = groupings().on;
    recordLoop(state, [&] {
        return ptLogYlvaneData(grouping, kModel, kTarget, "machine", "chart", kPhase, true);
    });
}
BENCHMARK(BM_EnabledYlvane);

void BM_EnabledPairById(benchmark::State& state) {
    const int grouping = groupings().on;
    recordLoop(state, [&] {
        return ptLogOrviaData(grouping, kPhase, true) && ptLogOrviaData(grouping, kPhase, false);
    });
}
BENCHMARK(BM_EnabledPairById);

void BM_EnabledScopeMacro(benchmark::State& state) {
    groupings();
    recordLoop(state, [] {
        PT_PHASE("Bench On", "benchmark phase");
        return true;
    });
}
BENCHMARK(BM_EnabledScopeMacro);

// The two clock readings that every enabled call takes; the CPU clock is a system call.
void BM_ClockWall(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(utRealtime());
    }
}
BENCHMARK(BM_ClockWall);

void BM_ClockCPU(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(utCPUtime());
    }
}
BENCHMARK(BM_ClockCPU);

}  // namespace

BENCHMARK_MAIN();
