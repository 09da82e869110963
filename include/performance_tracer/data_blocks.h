#pragma once

// The data blocks of a report page: script source that declares the records of the row table
// (procData) and of the aggregate table (aggData), each for one data set or for a comparison.
// The page scripts read these records by field name, so the field lists and number texts here
// are the contract between the library and the pages.

#include <performance_tracer/aggregation.h>
#include <performance_tracer/comparison.h>
#include <performance_tracer/export.h>
#include <performance_tracer/processed_points.h>

#include <string>
#include <vector>

class PerformanceTracer;

/// The procData block of one data set, rows in order, with the fields of the metric ("time",
/// "basicmemory", "detailedmemory"; any other metric gives the fixed fields alone).
PT_API std::string ptHtmlProcData(PerformanceTracer& tracer, const PTProcessedData& data,
                                  const std::string& metric);
/// The procData block of a comparison, one record per aligned pair. The labels are not used.
PT_API std::string ptHtmlProcDiffData(PerformanceTracer& tracer,
                                      const std::vector<PTAlignedPair>& pairs,
                                      const std::string& metric, const std::string& lhs,
                                      const std::string& rhs);
/// The aggregate tab's page variables and its aggData block, by ascending phase id; an
/// aggregate-only page counts no call tree and detail rows.
PT_API std::string ptHtmlAggData(PerformanceTracer& tracer, const PTAggregateMap& aggregates,
                                 const std::string& metric, bool aggregateOnly);
/// The aggregate tab's variables and aggData block of a comparison.
PT_API std::string ptHtmlAggDiffData(PerformanceTracer& tracer,
                                     const std::vector<PTAlignedAggregatePair>& pairs,
                                     const std::string& metric, const std::string& lhs,
                                     const std::string& rhs);
