#pragma once

// Two related data sets for the comparison benchmarks: random runs of the same shape whose
// rows share most of their keys, like two runs of one workload.

#include <performance_tracer/processed_points.h>

#include <map>

#include "processing/random_log.h"

namespace pt::bench {

struct ComparisonSets {
    PTRawDataVector leftLog, rightLog;
    PTProcessedData left, right;
};

/// Sets of about `rows` rows each, made once per size.
inline const ComparisonSets& comparisonSets(int rows) {
    static std::map<int, ComparisonSets> cache;
    ComparisonSets& sets = cache[rows];
    if (sets.left._rows.empty()) {
        pt::testing::LogOptions options;
        options.points = rows * 9 / 5;  // gaps add about one row in ten
        options.gapChance = 0.1;
        std::mt19937 leftRng(1);
        std::mt19937 rightRng(2);
        sets.leftLog = pt::testing::randomLog(leftRng, options);
        sets.rightLog = pt::testing::randomLog(rightRng, options);
        sets.left = ptGetProcessedDataForGroupings(&sets.leftLog, {"GLOBAL"});
        sets.right = ptGetProcessedDataForGroupings(&sets.rightLog, {"GLOBAL"});
    }
    return sets;
}

}  // namespace pt::bench
