#pragma once

// Runs with known truth, made from a real log: in each run every phase's own time (the spans
// in which it is the innermost open phase) is the log's, times a log-normal factor drawn once
// per phase and run, times the phase's true change. Time outside every phase varies the same
// way. Parents thus vary with their children, as they do in real runs.

#include <performance_tracer/raw_points.h>

#include <map>
#include <random>
#include <string>
#include <vector>

namespace pt::testing {

struct Synthesis {
    /// The standard deviation of the logarithm of the factors: 0.05 is 5% noise.
    double noise = 0.05;
    /// True changes of phases' own times by name: 1.1 is 10% slower.
    std::map<std::string, double> change;
};

/// A real log of twenty phases, six of them parents, measured by the tracer's clocks while
/// it runs a small session (about 25 ms of computing) under the grouping "Session". The raw
/// store is cleared before; the points leave it, their names stay in the tables.
PTRawDataVector recordSession();

/// A new run from a well-formed log; the log is not changed.
PTRawDataVector synthesizeRun(const PTRawDataVector& log, const Synthesis& synthesis,
                              std::mt19937& rng);

/// The names of the phases of a log that have no children anywhere in it, in log order.
std::vector<std::string> leafPhases(const PTRawDataVector& log);

}  // namespace pt::testing
