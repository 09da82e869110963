#pragma once

// The raw logs the processing and report benchmarks run over: nesting about six deep, with a
// wait long enough to become a generated row before about one point in ten. Each size and
// seed is made once per process.

#include <cstdint>
#include <map>
#include <random>
#include <utility>

#include "processing/random_log.h"

namespace pt::bench {

inline const PTRawDataVector& benchLog(std::int64_t points, unsigned seed) {
    static std::map<std::pair<std::int64_t, unsigned>, PTRawDataVector> logs;
    PTRawDataVector& log = logs[{points, seed}];
    if (log.empty()) {
        std::mt19937 rng(seed);
        pt::testing::LogOptions options;
        options.points = static_cast<int>(points);
        options.maxDepth = 6;
        options.startChance = 0.6;
        options.gapChance = 0.1;
        log = pt::testing::randomLog(rng, options);
    }
    return log;
}

}  // namespace pt::bench
