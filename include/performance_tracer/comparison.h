#pragma once

// Comparison of two data sets: the rows of a baseline (left) and a new run (right) are aligned
// as two sequences of keys by a longest common subsequence, and every aligned pair is compared
// metric by metric.

#include <performance_tracer/aggregation.h>
#include <performance_tracer/export.h>
#include <performance_tracer/processed_points.h>

#include <cstdint>
#include <string>
#include <vector>

class PerformanceTracer;

enum EPTAlignKind : std::int32_t {
    PT_ALIGN_BOTH = 0,
    PT_ALIGN_LHS_ONLY = 1,
    PT_ALIGN_RHS_ONLY = 2,
};

/// A left row, a right row (either null when absent) and which of them there are.
template <typename Row>
struct PTAlignedPairOf {
    const Row* left;
    const Row* right;
    std::int32_t kind;

    bool operator==(const PTAlignedPairOf&) const = default;
};
using PTAlignedPair = PTAlignedPairOf<PTOrviaProcessedDataPoint>;
using PTAlignedAggregatePair = PTAlignedPairOf<PTAggregateDataPoint>;

/// One metric of a compared pair.
struct PTDeviation {
    /// The value of each side as the report writes it, or "-99.99" for a missing side.
    std::string leftText;
    std::string rightText;
    /// Relative deviation in percent.
    double rel = 0.0;
    double abs = 0.0;
    /// The colour class, with its leading blank.
    std::string colour;
};

/// The deviations of a compared row (and, with fewer of them filled, of an aggregate row).
/// One record serves all rows of a report, so a text the writer does not set stays as the
/// previous row left it.
struct PTCompareRecord {
    PTDeviation WCSelf, WCSC, CPUSelf, CPUSC;
    PTDeviation Free, FreeStart, Reserved, ReservedStart, Committed, CommittedStart, Dlls,
        DllsStart, NonProcess, NonProcessStart;
    PTDeviation UsageDelta, UsagePeak, UsagePeakDelta, Usage;
    std::string leftCountText;
    std::string rightCountText;
};

/// Aligns two row lists by their alignment keys. Pairs come in the order of both lists; in a
/// stretch without common keys the left-only rows come before the right-only ones.
PT_API std::vector<PTAlignedPair> ptAlignRows(PerformanceTracer& tracer,
                                              const PTDiagnosticInfoList& left,
                                              const PTDiagnosticInfoList& right);
/// Aligns two aggregate maps, in their order, by phase name (customisation folders stripped).
PT_API std::vector<PTAlignedAggregatePair> ptAlignAggregates(PerformanceTracer& tracer,
                                                             const PTAggregateMap& left,
                                                             const PTAggregateMap& right);

/// Fills the deviations of the report's metric ("time", "basicmemory", "detailedmemory") for
/// a pair; a null side counts as zeros. Texts are the writer's business.
PT_API void ptCompareRows(PerformanceTracer& tracer, const PTOrviaProcessedDataPoint* left,
                          const PTOrviaProcessedDataPoint* right, PTCompareRecord& record,
                          const std::string& metric);
PT_API void ptCompareAggregates(PerformanceTracer& tracer, const PTAggregateDataPoint* left,
                                const PTAggregateDataPoint* right, PTCompareRecord& record,
                                const std::string& metric);

/// The absolute and relative deviation of right from left and its colour class. Values below
/// 0.01 are rounded to hundredths first; "basicmemory" keeps signs, the other metrics compare
/// magnitudes and treat differences within the single-precision 0.01 as none.
PT_API void ptDeviation(PerformanceTracer& tracer, double& abs, double& rel, std::string& colour,
                        const std::string& metric, double left, double right);
/// The colour class of a relative deviation: " GT50" down to " LTM50" in steps of 5, with no
/// step between 30 and 35, and 0 itself in " BETWN_M5_0".
PT_API std::string ptDeviationClass(PerformanceTracer& tracer, double rel);
/// Rounds to hundredths, halves away from zero.
PT_API double ptRoundHundredths(PerformanceTracer& tracer, double value);
