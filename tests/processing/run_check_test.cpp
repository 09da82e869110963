#include "processing/run_check.h"

#include <performance_tracer/names.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/tracer.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <stdexcept>
#include <tuple>

#include "processing/phase_times.h"
#include "processing/random_log.h"
#include "processing/synthetic_runs.h"

namespace {

using V = pt::CheckVerdict;

class RunCheck : public ::testing::Test {
protected:
    void SetUp() override {
        ptClearRawData();
        setPathStripRoot("");
    }

    static const pt::PhaseCheck& find(const pt::CheckResult& result, const std::string& phase,
                                      const std::string& time) {
        const auto found = std::find_if(
            result.phases.begin(), result.phases.end(),
            [&](const pt::PhaseCheck& c) { return c.phase == phase && c.time == time; });
        if (found == result.phases.end()) {
            throw std::runtime_error("no row " + phase + " " + time);
        }
        return *found;
    }
};

/// Eight runs a side of steady phases, each run a little slower than the one before; new
/// runs fall between the base runs, so that only a true change separates the sides.
std::vector<PTRunPhaseTimes> side(const std::map<std::string, PTPhaseTimes>& phases, bool isNew,
                                  const std::map<std::string, double>& change = {}) {
    std::vector<PTRunPhaseTimes> runs(8);
    for (std::size_t i = 0; i < runs.size(); ++i) {
        const double drift = 1.0 + 0.001 * (static_cast<double>(i) + (isNew ? 0.5 : 0.0));
        for (const auto& [name, times] : phases) {
            const auto changed = change.find(name);
            const double factor = drift * (changed == change.end() ? 1.0 : changed->second);
            runs[i][name] = {times.self * factor, times.total * factor};
        }
    }
    return runs;
}

TEST_F(RunCheck, VerdictsThresholdsAndTheWorstFirst) {
    const std::map<std::string, PTPhaseTimes> common = {
        {"slow", {0.2, 0.2}},   {"fast", {0.1, 0.1}},    {"nudged", {0.3, 0.3}},
        {"steady", {0.4, 0.4}}, {"parent", {0.05, 1.0}}, {"quiet parent", {0.0, 2.0}}};
    std::vector<PTRunPhaseTimes> base = side(common, false);
    std::vector<PTRunPhaseTimes> changed =
        side(common, true, {{"slow", 1.3}, {"fast", 0.7}, {"nudged", 1.03}});
    for (auto& run : base) {
        run["gone"] = {0.01, 0.01};
    }
    changed[3]["added"] = {0.02, 0.02};
    base[2].erase("steady");  // a run without the phase: it took no time there

    pt::CheckOptions options;
    const pt::CheckResult result = ptCheckRuns(base, changed, options);

    const std::tuple<const char*, const char*, V, double> expected[] = {
        {"slow", "self=total", V::Regression, 1.3},
        {"added", "self=total", V::NewOnly, 1.0},
        {"gone", "self=total", V::BaseOnly, 1.0},
        {"nudged", "self=total", V::WithinThreshold, 1.03},
        {"parent", "self", V::NoSignificantChange, 1.0},
        {"parent", "total", V::NoSignificantChange, 1.0},
        {"quiet parent", "total", V::NoSignificantChange, 1.0},
        {"steady", "self=total", V::NoSignificantChange, 1.0},
        {"fast", "self=total", V::Improvement, 0.7}};
    ASSERT_EQ(result.phases.size(), std::size(expected));
    for (const auto& [phase, time, verdict, ratio] : expected) {
        const pt::PhaseCheck& check = find(result, phase, time);
        EXPECT_EQ(check.verdict, verdict) << phase << " " << time;
        EXPECT_NEAR(check.ratio, ratio, 0.002) << phase << " " << time;
        EXPECT_TRUE(!check.tested || verdict == V::NoSignificantChange ||
                    (check.ratioLow <= ratio && ratio <= check.ratioHigh))
            << phase;
    }
    // The order: regressions, one side only, then the rest by ratio.
    EXPECT_EQ(result.phases.front().phase + result.phases[1].phase + result.phases.back().phase,
              "slowaddedfast");
    const pt::PhaseCheck& steady = find(result, "steady", "self=total");
    EXPECT_EQ(std::make_pair(steady.base.times[2], steady.base.min), std::make_pair(0.0, 0.0));
    EXPECT_FALSE(find(result, "gone", "self=total").changed.present());

    // Tested: everything on both sides; the quiet parent has no self row at all.
    EXPECT_EQ(std::make_tuple(result.tests, result.significancePossible, result.failed()),
              std::make_tuple(7u, true, true));
    EXPECT_NEAR(find(result, "slow", "self=total").p, 2.0 / 12870.0, 1e-12);

    options.threshold = 0.5;  // 30% slower is within it; 30% faster is too
    const pt::CheckResult lenient = ptCheckRuns(base, changed, options);
    EXPECT_EQ(std::make_tuple(find(lenient, "slow", "self=total").verdict,
                              find(lenient, "fast", "self=total").verdict, lenient.failed()),
              std::make_tuple(V::WithinThreshold, V::WithinThreshold, false));
    options.failOnMissing = true;
    EXPECT_TRUE(ptCheckRuns(base, changed, options).failed());
}

TEST_F(RunCheck, OptionsOutOfRangeAndDamagedTimesAreRefused) {
    const std::vector<PTRunPhaseTimes> runs(3, PTRunPhaseTimes{{"a", {1.0, 1.0}}});
    const auto refused = [&](auto change) {
        pt::CheckOptions options;
        change(options);
        EXPECT_THROW(ptCheckRuns(runs, runs, options), std::invalid_argument);
    };
    refused([](pt::CheckOptions& o) { o.clock = "sundial"; });
    refused([](pt::CheckOptions& o) { o.threshold = -0.01; });
    refused([](pt::CheckOptions& o) { o.threshold = std::nan(""); });
    refused([](pt::CheckOptions& o) { o.alpha = 0.0; });
    refused([](pt::CheckOptions& o) { o.alpha = 0.6; });
    EXPECT_THROW(ptCheckRuns(runs, {}, pt::CheckOptions()), std::invalid_argument);
    // Only a damaged file holds such times; they would make the ranks meaningless.
    std::vector<PTRunPhaseTimes> damaged = runs;
    damaged[1]["b"] = {1.0, std::nan("")};
    EXPECT_THROW(ptCheckRuns(runs, damaged, pt::CheckOptions()), std::invalid_argument);
    damaged[1]["b"] = {std::numeric_limits<double>::infinity(), 1.0};
    EXPECT_THROW(ptCheckRuns(damaged, runs, pt::CheckOptions()), std::invalid_argument);
}

/// The calibration of the check, small and seeded: runs with known truth made from a real
/// log, twenty runs a side at 5% noise. The full calibration (bench/check_calibration.cpp)
/// runs 200 trials of each.
TEST_F(RunCheck, SyntheticRunsFromARealLogKeepTheirTruth) {
    const PTRawDataVector log = pt::testing::recordSession();
    const std::vector<std::string> leaves = pt::testing::leafPhases(log);
    ASSERT_EQ(leaves.size(), 14u);
    std::mt19937 rng(2024);

    // Without noise, a changed phase changes by its factor and nothing else changes.
    const pt::testing::Synthesis exact{0.0, {{"sort blocks", 1.1}}};
    PTRawDataVector original = pt::testing::copyLog(log);
    PTRawDataVector slower = pt::testing::synthesizeRun(log, exact, rng);
    const auto before = ptRunPhaseTimes(*ptTracer(), original, "GLOBAL", false),
               after = ptRunPhaseTimes(*ptTracer(), slower, "GLOBAL", false);
    ASSERT_TRUE(before && after);
    EXPECT_EQ(before->size(), 20u);
    EXPECT_NEAR(after->at("sort blocks").total / before->at("sort blocks").total, 1.1, 1e-9);
    EXPECT_NEAR(after->at("parse").total, before->at("parse").total, 1e-12);
    EXPECT_GT(after->at("compile").total, before->at("compile").total);

    const auto runs = [&](const pt::testing::Synthesis& synthesis) {
        std::vector<PTRunPhaseTimes> times;
        for (int i = 0; i < 20; ++i) {
            PTRawDataVector run = pt::testing::synthesizeRun(log, synthesis, rng);
            times.push_back(*ptRunPhaseTimes(*ptTracer(), run, "GLOBAL", false));
        }
        return times;
    };
    int falseAlarms = 0, detected = 0;
    constexpr int kTrials = 10;
    for (int trial = 0; trial < kTrials; ++trial) {
        pt::testing::Synthesis noise;
        const std::vector<PTRunPhaseTimes> base = runs(noise);
        falseAlarms += ptCheckRuns(base, runs(noise), pt::CheckOptions()).failed() ? 1 : 0;
        const std::string slowed = leaves[static_cast<std::size_t>(trial) % leaves.size()];
        noise.change = {{slowed, 1.1}};
        const pt::CheckResult result = ptCheckRuns(base, runs(noise), pt::CheckOptions());
        detected += find(result, slowed, "self=total").verdict == V::Regression;
    }
    EXPECT_LE(falseAlarms, 1);
    EXPECT_GE(detected, kTrials - 1);
}

}  // namespace
