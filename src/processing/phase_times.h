#pragma once

// One run's times per phase, as a check of many runs compares them: the aggregate of the run,
// keyed as the Aggregate Difference page keys its rows, by the phase's shown name with the
// customisation folders stripped, whatever the grouping.

#include <performance_tracer/aggregation.h>
#include <performance_tracer/raw_points.h>

#include <map>
#include <optional>
#include <string>

class PerformanceTracer;

/// The sums of a phase's executions in one run, of one clock, in seconds.
struct PTPhaseTimes {
    double self = 0.0;
    double total = 0.0;
};

/// A run's phases by key, in the order of the keys.
using PTRunPhaseTimes = std::map<std::string, PTPhaseTimes>;

/// The times of the aggregate rows, of CPU time with cpuClock, else of wall-clock time.
/// Phases whose keys are equal (names that differ only in stripped folders) are added up: a
/// key can tell them apart in no run.
PTRunPhaseTimes ptPhaseTimes(PerformanceTracer& tracer, const PTAggregateMap& aggregates,
                             bool cpuClock);

/// The first phase of a run whose self or total time is not a finite number (only a damaged
/// file holds such times, or sums beyond the range of a double); null if there is none.
const std::string* ptNonFinitePhase(const PTRunPhaseTimes& run);

/// The matching pass over a run for a grouping (and those below it), its aggregate and its
/// times; nothing if the run's instrumentation is broken. The list receives the pass's
/// generated points.
std::optional<PTRunPhaseTimes> ptRunPhaseTimes(PerformanceTracer& tracer, PTRawDataVector& raw,
                                               const std::string& grouping, bool cpuClock);
