// The calibration of `ptreport check`: how often its test and correction flag a change that is
// there, and how often they flag one that is not.
//
//     pt_check_calibration [TRIALS_OF_POWER] [TRIALS_OF_REAL_RUNS]     (default 2000 and 200)
//
// 1. Power. Twenty phases, each run's time of each a log-normal draw; in the new runs one
//    phase is 10% slower. For 5, 10 and 20 runs a side and 2, 5 and 10% noise: how often that
//    phase is flagged (significant after the adjustment and beyond the 5% threshold), how
//    often it is significant at all, and how often runs without any change fail the check.
// 2. Runs with known truth made from a real log of twenty phases (tests/processing/
//    synthetic_runs.h), 5% noise, 20 runs a side: how often the check fails with no change,
//    and how often one phase 10% slower (a different leaf in turn) is flagged.
// All at the defaults of the command: alpha 0.01, threshold 5%, wall-clock time.

#include <performance_tracer/raw_store.h>
#include <performance_tracer/tracer.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "processing/phase_times.h"
#include "processing/random_log.h"
#include "processing/run_check.h"
#include "processing/synthetic_runs.h"

namespace {

using pt::CheckVerdict;

struct Rates {
    int flagged = 0;
    int significant = 0;
    int falseAlarms = 0;
};

const pt::PhaseCheck& rowOf(const pt::CheckResult& result, const std::string& phase) {
    for (const pt::PhaseCheck& check : result.phases) {
        if (check.phase == phase) {
            return check;
        }
    }
    std::fprintf(stderr, "no row of %s\n", phase.c_str());
    std::exit(1);
}

/// Runs of twenty independent phases; "phase 1" is changed by the factor.
std::vector<PTRunPhaseTimes> independentRuns(int runs, double noise, double change,
                                             std::mt19937& rng) {
    std::normal_distribution<double> normal(0.0, noise);
    std::vector<PTRunPhaseTimes> side(static_cast<std::size_t>(runs));
    for (PTRunPhaseTimes& run : side) {
        for (int phase = 1; phase <= 20; ++phase) {
            const double typical = 0.001 * phase;  // from 1 ms to 20 ms
            const double time = typical * std::exp(normal(rng)) * (phase == 1 ? change : 1.0);
            run["phase " + std::to_string(phase)] = {time, time};
        }
    }
    return side;
}

void power(int trials, std::mt19937& rng) {
    std::printf("1. Power: one phase of twenty 10%% slower, %d trials a cell\n\n", trials);
    std::printf("%-14s %-7s %9s %12s %14s\n", "runs per side", "noise", "flagged", "significant",
                "false alarms");
    const pt::CheckOptions options;
    for (int runs : {5, 10, 20}) {
        for (double noise : {0.02, 0.05, 0.10}) {
            Rates rates;
            for (int trial = 0; trial < trials; ++trial) {
                const auto base = independentRuns(runs, noise, 1.0, rng);
                const pt::CheckResult changed =
                    ptCheckRuns(base, independentRuns(runs, noise, 1.1, rng), options);
                const pt::PhaseCheck& slowed = rowOf(changed, "phase 1");
                rates.flagged += slowed.verdict == CheckVerdict::Regression;
                rates.significant += slowed.adjustedP <= options.alpha && slowed.ratio > 1.0;
                rates.falseAlarms +=
                    ptCheckRuns(base, independentRuns(runs, noise, 1.0, rng), options).failed();
            }
            const auto percent = [&](int count) { return 100.0 * count / trials; };
            std::printf("%-14d %5.0f%% %8.1f%% %11.1f%% %13.2f%%\n", runs, noise * 100,
                        percent(rates.flagged), percent(rates.significant),
                        percent(rates.falseAlarms));
        }
    }
}

void realRuns(int trials, std::mt19937& rng) {
    const PTRawDataVector log = pt::testing::recordSession();
    const std::vector<std::string> leaves = pt::testing::leafPhases(log);
    const auto side = [&](const pt::testing::Synthesis& synthesis) {
        std::vector<PTRunPhaseTimes> runs;
        for (int i = 0; i < 20; ++i) {
            PTRawDataVector run = pt::testing::synthesizeRun(log, synthesis, rng);
            runs.push_back(*ptRunPhaseTimes(*ptTracer(), run, "GLOBAL", false));
        }
        return runs;
    };
    const pt::CheckOptions options;
    Rates rates;
    std::size_t tests = 0;
    for (int trial = 0; trial < trials; ++trial) {
        pt::testing::Synthesis synthesis;  // 5% noise
        rates.falseAlarms += ptCheckRuns(side(synthesis), side(synthesis), options).failed();
        const std::string slowed = leaves[static_cast<std::size_t>(trial) % leaves.size()];
        const std::vector<PTRunPhaseTimes> base = side(synthesis);
        synthesis.change = {{slowed, 1.1}};
        const pt::CheckResult result = ptCheckRuns(base, side(synthesis), options);
        rates.flagged += rowOf(result, slowed).verdict == CheckVerdict::Regression;
        tests = result.tests;
    }
    PTRawDataVector original = pt::testing::copyLog(log);
    const std::size_t phases = ptRunPhaseTimes(*ptTracer(), original, "GLOBAL", false)->size();
    std::printf(
        "\n2. Runs made from a real log: %zu phases (%zu leaves), %zu comparisons, 5%% "
        "noise, 20 runs a side, %d trials each\n\n",
        phases, leaves.size(), tests, trials);
    std::printf("no change: the check failed in %d of %d trials (%.1f%%)\n", rates.falseAlarms,
                trials, 100.0 * rates.falseAlarms / trials);
    std::printf("one leaf 10%% slower: flagged in %d of %d trials (%.1f%%)\n", rates.flagged,
                trials, 100.0 * rates.flagged / trials);
}

}  // namespace

int main(int argc, char** argv) {
    const int powerTrials = argc > 1 ? std::atoi(argv[1]) : 2000;
    const int realTrials = argc > 2 ? std::atoi(argv[2]) : 200;
    if (powerTrials < 1 || realTrials < 1) {
        std::fprintf(stderr,
                     "usage: pt_check_calibration [TRIALS_OF_POWER] [TRIALS_OF_REAL_RUNS]\n");
        return 2;
    }
    std::mt19937 rng(20);
    const auto start = std::chrono::steady_clock::now();
    power(powerTrials, rng);
    realRuns(realTrials, rng);
    std::printf("\n(%.1f s)\n",
                std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    return 0;
}
