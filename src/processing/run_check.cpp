#include "processing/run_check.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <stdexcept>
#include <string>
#include <tuple>

#include "processing/statistics.h"

namespace {

using pt::CheckSide;
using pt::CheckVerdict;
using pt::PhaseCheck;

// Times below a microsecond are below what the clocks resolve: they count as one microsecond,
// so that a phase that took no time in some runs still has a ratio.
constexpr double kResolution = 1e-6;

/// The times of a phase in each run of a side; 0 for a run without it.
std::vector<double> timesOf(const std::vector<PTRunPhaseTimes>& runs, const std::string& key,
                            double PTPhaseTimes::*time) {
    std::vector<double> times;
    times.reserve(runs.size());
    for (const PTRunPhaseTimes& run : runs) {
        const auto found = run.find(key);
        times.push_back(found == run.end() ? 0.0 : found->second.*time);
    }
    return times;
}

bool hasPhase(const std::vector<PTRunPhaseTimes>& runs, const std::string& key) {
    return std::any_of(runs.begin(), runs.end(),
                       [&](const PTRunPhaseTimes& run) { return run.count(key) > 0; });
}

CheckSide sideOf(std::vector<double> times) {
    CheckSide side;
    const pt::stats::Spread spread = pt::stats::spreadOf(times);
    side.times = std::move(times);
    side.min = spread.min;
    side.q1 = spread.q1;
    side.median = spread.median;
    side.q3 = spread.q3;
    side.max = spread.max;
    return side;
}

/// The logarithms on which the ratio is estimated. The rank test reads the same values: it
/// is the same test on the times, as the logarithm keeps their order.
std::vector<double> logsOf(const std::vector<double>& times) {
    std::vector<double> logs;
    logs.reserve(times.size());
    for (double t : times) {
        logs.push_back(std::log(std::max(t, kResolution)));
    }
    return logs;
}

PhaseCheck compared(const std::string& phase, const char* time, std::vector<double> base,
                    std::vector<double> changed, double confidence) {
    PhaseCheck check;
    check.phase = phase;
    check.time = time;
    const std::vector<double> x = logsOf(base);
    const std::vector<double> y = logsOf(changed);
    check.base = sideOf(std::move(base));
    check.changed = sideOf(std::move(changed));
    const auto range = std::minmax_element(x.begin(), x.end());
    const double lowest = *range.first;
    check.tested = lowest != *range.second ||
                   std::any_of(y.begin(), y.end(), [lowest](double v) { return v != lowest; });
    if (check.tested) {
        check.p = pt::stats::mannWhitney(x, y).p;
    }
    const pt::stats::Shift shift = pt::stats::hodgesLehmann(x, y, confidence);
    check.ratio = std::exp(shift.estimate);
    check.ratioLow = std::exp(shift.low);
    check.ratioHigh = std::exp(shift.high);
    return check;
}

PhaseCheck oneSided(const std::string& phase, const std::vector<PTRunPhaseTimes>& runs,
                    bool isBase) {
    PhaseCheck check;
    check.phase = phase;
    std::vector<double> total = timesOf(runs, phase, &PTPhaseTimes::total);
    check.time = timesOf(runs, phase, &PTPhaseTimes::self) == total ? "self=total" : "total";
    (isBase ? check.base : check.changed) = sideOf(std::move(total));
    check.verdict = isBase ? CheckVerdict::BaseOnly : CheckVerdict::NewOnly;
    return check;
}

bool allZero(const std::vector<double>& times) {
    return std::all_of(times.begin(), times.end(), [](double t) { return t == 0.0; });
}

/// The comparisons of a phase that both sides have: one if it has no children in any run,
/// else its total and, where it has any, its self time.
void addComparisons(std::vector<PhaseCheck>& checks, const std::string& phase,
                    const std::vector<PTRunPhaseTimes>& base,
                    const std::vector<PTRunPhaseTimes>& changed, double confidence) {
    std::vector<double> baseTotal = timesOf(base, phase, &PTPhaseTimes::total);
    std::vector<double> newTotal = timesOf(changed, phase, &PTPhaseTimes::total);
    std::vector<double> baseSelf = timesOf(base, phase, &PTPhaseTimes::self);
    std::vector<double> newSelf = timesOf(changed, phase, &PTPhaseTimes::self);
    if (baseSelf == baseTotal && newSelf == newTotal) {
        checks.push_back(
            compared(phase, "self=total", std::move(baseTotal), std::move(newTotal), confidence));
        return;
    }
    checks.push_back(
        compared(phase, "total", std::move(baseTotal), std::move(newTotal), confidence));
    if (!allZero(baseSelf) || !allZero(newSelf)) {
        checks.push_back(
            compared(phase, "self", std::move(baseSelf), std::move(newSelf), confidence));
    }
}

CheckVerdict verdictOf(const PhaseCheck& check, const pt::CheckOptions& options) {
    if (!check.tested || check.adjustedP > options.alpha) {
        return CheckVerdict::NoSignificantChange;
    }
    if (check.ratio > 1.0 + options.threshold) {
        return CheckVerdict::Regression;
    }
    if (check.ratio < 1.0 / (1.0 + options.threshold)) {
        return CheckVerdict::Improvement;
    }
    return CheckVerdict::WithinThreshold;
}

/// Regressions first, then phases of one side only, then the rest; by ratio within each.
bool worseFirst(const PhaseCheck& a, const PhaseCheck& b) {
    const auto rank = [](CheckVerdict verdict) {
        switch (verdict) {
            case CheckVerdict::Regression: return 0;
            case CheckVerdict::NewOnly: return 1;
            case CheckVerdict::BaseOnly: return 2;
            default: return 3;
        }
    };
    return std::make_tuple(rank(a.verdict), -a.ratio, a.phase, a.time) <
           std::make_tuple(rank(b.verdict), -b.ratio, b.phase, b.time);
}

}  // namespace

namespace pt {

const char* checkVerdictName(CheckVerdict verdict) {
    switch (verdict) {
        case CheckVerdict::Regression: return "regression";
        case CheckVerdict::Improvement: return "improvement";
        case CheckVerdict::WithinThreshold: return "within threshold";
        case CheckVerdict::NoSignificantChange: return "no significant change";
        case CheckVerdict::BaseOnly: return "base only";
        case CheckVerdict::NewOnly: return "new only";
    }
    return "";
}

}  // namespace pt

void ptValidateCheckOptions(const pt::CheckOptions& options) {
    if (options.clock != "wall" && options.clock != "cpu") {
        throw std::invalid_argument("the clock is wall or cpu, not '" + options.clock + "'");
    }
    if (!(options.threshold >= 0.0 && options.threshold <= 10.0)) {
        throw std::invalid_argument("the threshold lies between 0% and 1000%");
    }
    if (!(options.alpha > 0.0 && options.alpha <= 0.5)) {
        throw std::invalid_argument("alpha lies above 0 and at most 0.5");
    }
}

pt::CheckResult ptCheckRuns(const std::vector<PTRunPhaseTimes>& base,
                            const std::vector<PTRunPhaseTimes>& changed,
                            const pt::CheckOptions& options) {
    ptValidateCheckOptions(options);
    if (base.empty() || changed.empty()) {
        throw std::invalid_argument(std::string("no runs on the ") +
                                    (base.empty() ? "base" : "new") + " side");
    }
    for (const auto* side : {&base, &changed}) {
        for (const PTRunPhaseTimes& run : *side) {
            if (const std::string* phase = ptNonFinitePhase(run)) {
                throw std::invalid_argument("the times of '" + *phase + "' are not finite numbers");
            }
        }
    }
    pt::CheckResult result;
    result.options = options;
    result.confidence = 1.0 - options.alpha;

    std::set<std::string> phases;
    for (const auto* side : {&base, &changed}) {
        for (const PTRunPhaseTimes& run : *side) {
            for (const auto& entry : run) {
                phases.insert(entry.first);
            }
        }
    }
    std::vector<PhaseCheck>& checks = result.phases;
    for (const std::string& phase : phases) {
        const bool inBase = hasPhase(base, phase);
        const bool inNew = hasPhase(changed, phase);
        if (inBase && inNew) {
            addComparisons(checks, phase, base, changed, result.confidence);
        } else {
            checks.push_back(inBase ? oneSided(phase, base, true)
                                    : oneSided(phase, changed, false));
        }
    }

    std::vector<double> p;
    for (const PhaseCheck& check : checks) {
        if (check.tested) {
            p.push_back(check.p);
        }
    }
    const std::vector<double> adjusted = pt::stats::holm(p);
    auto next = adjusted.begin();
    for (PhaseCheck& check : checks) {
        if (check.tested) {
            check.adjustedP = *next++;
            check.verdict = verdictOf(check, options);
        }
    }
    std::sort(checks.begin(), checks.end(), worseFirst);

    result.tests = p.size();
    result.smallestPossibleP = pt::stats::smallestPValue(base.size(), changed.size());
    const double level =
        result.tests == 0 ? 1.0 : options.alpha / static_cast<double>(result.tests);
    result.significancePossible = result.smallestPossibleP <= level;
    result.runsNeeded = result.significancePossible ? 0 : pt::stats::runsNeeded(level);
    return result;
}
