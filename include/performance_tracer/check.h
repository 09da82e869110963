#pragma once

// A check of many saved runs of a baseline against many runs of a changed version: which
// phases became slower beyond a threshold, with statistics that tell a change from the noise
// of the machine. One run against one run cannot: the same binary run twice easily differs by
// tens of percent in a phase.
//
//     pt::CheckOptions options;
//     options.baseFiles = {"base1.hvf", "base2.hvf", "base3.hvf", ...};
//     options.newFiles = {"new1.hvf", "new2.hvf", "new3.hvf", ...};
//     const pt::CheckResult result = pt::checkRuns(options);
//     pt::writeCheckSummary("check.html", result);
//     return result.failed() ? 1 : 0;
//
// Phases are keyed as the Aggregate Difference page keys them: by the phase's shown name with
// customisation folders stripped, whatever its grouping. Each run gives a phase the sums of
// its executions, self and total time of the chosen clock, and a phase that a run lacks took
// no time in it. Per phase, the runs of the two sides are compared by the two-sided
// Mann-Whitney U test, whose p-values are adjusted by Holm's method for the number of
// comparisons, and the ratio new / base is the Hodges-Lehmann estimate on the logarithms of the
// times, with the distribution-free interval that goes with the test.

#include <performance_tracer/export.h>

#include <cstddef>
#include <string>
#include <vector>

namespace pt {

struct CheckOptions {
    /// The baseline's runs and the changed version's runs, value files (.hvf) each.
    std::vector<std::string> baseFiles;
    std::vector<std::string> newFiles;
    /// "wall" or "cpu".
    std::string clock = "wall";
    /// A phase has regressed when its ratio is above 1 + threshold (0.05: more than 5% slower)
    /// and the change is significant; it has improved when the ratio is below
    /// 1 / (1 + threshold) and the change is significant.
    double threshold = 0.05;
    /// The family-wise error rate: the chance that runs without any change flag a phase at
    /// all. Between 0 and 0.5.
    double alpha = 0.01;
    /// The grouping compared, with the groupings below it; "GLOBAL" compares all.
    std::string grouping = "GLOBAL";
    /// A phase that one side lacks fails the check too.
    bool failOnMissing = false;
};

enum class CheckVerdict {
    /// Significantly slower, by more than the threshold.
    Regression,
    /// Significantly faster, by more than the threshold.
    Improvement,
    /// A significant change, but not beyond the threshold.
    WithinThreshold,
    NoSignificantChange,
    /// In the runs of one side only.
    BaseOnly,
    NewOnly,
};

/// "regression", "improvement", "within threshold", "no significant change", "base only",
/// "new only".
PT_API const char* checkVerdictName(CheckVerdict verdict);

/// One side's figures of a phase, in seconds.
struct CheckSide {
    /// One time per run, in the order of the files; empty for a side without the phase.
    std::vector<double> times;
    double min = 0.0;
    double q1 = 0.0;
    double median = 0.0;
    double q3 = 0.0;
    double max = 0.0;

    bool present() const { return !times.empty(); }
};

/// The comparison of one time of one phase.
struct PhaseCheck {
    std::string phase;
    /// "total", "self", or "self=total" where the phase's self time is its total time in
    /// every run (it has no children), so that the two are one comparison.
    std::string time;
    CheckSide base;
    CheckSide changed;
    /// Whether the test was made: both sides have the phase and their times are not all
    /// equal. Only tests made count in the adjustment.
    bool tested = false;
    /// New / base: the Hodges-Lehmann estimate and its interval (0 and infinity when the runs
    /// are too few for the interval's confidence). 1 where one side lacks the phase.
    double ratio = 1.0;
    double ratioLow = 1.0;
    double ratioHigh = 1.0;
    /// The two-sided Mann-Whitney p-value, and after Holm's adjustment; 1 if not tested.
    double p = 1.0;
    double adjustedP = 1.0;
    CheckVerdict verdict = CheckVerdict::NoSignificantChange;
};

struct CheckResult {
    CheckOptions options;
    /// The confidence of the ratios' intervals, 1 - alpha, each interval on its own.
    double confidence = 0.99;
    /// How many comparisons were tested: the number the p-values are adjusted for.
    std::size_t tests = 0;
    /// The smallest p-value that the runs' numbers allow at all, and whether it reaches
    /// alpha / tests, the level that Holm's method asks of the most significant result.
    double smallestPossibleP = 0.0;
    bool significancePossible = true;
    /// When it is not: the fewest runs on each side with which it would be.
    std::size_t runsNeeded = 0;
    /// Worst first: regressions by ratio, phases of one side only, then the others by ratio.
    std::vector<PhaseCheck> phases;

    std::size_t count(CheckVerdict verdict) const {
        std::size_t n = 0;
        for (const PhaseCheck& phase : phases) {
            n += phase.verdict == verdict ? 1 : 0;
        }
        return n;
    }
    /// A regression, or, with failOnMissing, a phase that one side lacks.
    bool failed() const {
        return count(CheckVerdict::Regression) > 0 ||
               (options.failOnMissing &&
                count(CheckVerdict::BaseOnly) + count(CheckVerdict::NewOnly) > 0);
    }
};

/// Loads the runs and compares them. Raises pt::Error (runs.h) for a file that cannot be read,
/// a run without points, with broken instrumentation or with times that are not finite, or
/// runs without any phase; std::invalid_argument for options out of range or an empty side.
PT_API CheckResult checkRuns(const CheckOptions& options);

/// Writes a page with the verdicts and, per phase, the times of both sides' runs drawn beside
/// each other. Raises pt::Error if the file cannot be written.
PT_API void writeCheckSummary(const std::string& htmlFile, const CheckResult& result);

/// The result as a JSON document (times in seconds; null for an interval that is unbounded
/// or a side without the phase).
PT_API std::string checkResultJson(const CheckResult& result);

}  // namespace pt
