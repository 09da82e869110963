#pragma once

// Random raw logs for property tests and benchmarks: nested phases of all three point classes
// under a few groupings, with occasional long waits, and optionally broken.

#include <performance_tracer/raw_points.h>

#include <random>
#include <string>
#include <vector>

namespace pt::testing {

struct LogOptions {
    /// Raw points before any breakage; always even for a well-formed log.
    int points = 200;
    int maxDepth = 5;
    /// Chance that the next point starts a phase rather than ending one, while both can be.
    double startChance = 0.55;
    /// Chance that the wait before a point is long enough to be a gap.
    double gapChance = 0.1;
    /// Groupings to log under; the first ones are the "selected" ones of a test.
    std::vector<std::string> groupings = {"Alpha", "Beta", "Gamma"};
    /// Chance that a phase is named "Unaccounted Phase" and logged in the last grouping.
    double unaccountedChance = 0.0;
    /// Chance that a point's times step backwards, as a corrupted file might have them.
    double backwardsChance = 0.0;
    /// Number of random faults: a dropped end, an extra end, two ends swapped, an end renamed.
    int faults = 0;
};

/// A well-formed (unless faults are asked for) log, with every name entered into the tracer's
/// tables.
PTRawDataVector randomLog(std::mt19937& rng, const LogOptions& options);

/// A deep copy, so that two passes can each change their own list.
PTRawDataVector copyLog(const PTRawDataVector& log);

/// Builds a point of a class by hand: 0 host language, 1 block diagram, 2 state chart.
boost::shared_ptr<PTOrviaDataPoint> makePoint(int pointType, const std::string& grouping,
                                              const std::string& phase, bool isStart, double wcTime,
                                              double cpuTime = 0.0,
                                              const std::string& model = "model");

/// A log from tokens "[type][grouping:]phase(+|-)wall[/cpu][~]" separated by commas, as
/// "1G:P+0.5/0.25": type 0 and the given grouping unless named, "~" for a point without memory
/// records.
PTRawDataVector logOf(const std::string& events, const std::string& grouping = "G",
                      const std::string& model = "model");

}  // namespace pt::testing
