#pragma once

// The report writers: each writes one self-contained HTML page for a data set (a list of raw
// points, which receives the generated points of the matching pass; null for a snapshot of
// the raw store) or for two of them. A page that cannot be made is replaced by a fixed page
// that says why (broken instrumentation, detailed memory statistics that were not taken).
// Each answers false when the file cannot be opened, and a comparison also when either data
// set has broken instrumentation.

#include <performance_tracer/export.h>
#include <performance_tracer/raw_points.h>
#include <performance_tracer/system_info_record.h>

#include <string>

class PerformanceTracer;

/// The page with the Aggregate, Details and System Info tabs. A null system information record
/// stands for this machine's.
PT_API bool ptWriteDetailReport(PerformanceTracer& tracer, const std::string& htmlFile,
                                const std::string& grouping, const std::string& title,
                                const std::string& metric, bool showmeta, PTRawDataVector* data,
                                const SystemInfoRecord* systemInfo);
/// The page with the Aggregate and System Info tabs.
PT_API bool ptWriteAggregateReport(PerformanceTracer& tracer, const std::string& htmlFile,
                                   const std::string& grouping, const std::string& title,
                                   const std::string& metric, bool showmeta, PTRawDataVector* data,
                                   const SystemInfoRecord* systemInfo);
/// The comparison of two data sets, left the baseline, with the Aggregate, Details and System
/// Info tabs. A null right record stands for this machine's; a null left one for no record.
PT_API bool ptWriteDifferenceReport(PerformanceTracer& tracer, const std::string& htmlFile,
                                    const std::string& grouping, const std::string& lhsLabel,
                                    const std::string& rhsLabel, PTRawDataVector* lhsData,
                                    PTRawDataVector* rhsData, const SystemInfoRecord* lhsSystemInfo,
                                    const SystemInfoRecord* rhsSystemInfo,
                                    const std::string& metric);
/// The comparison with the Aggregate and System Info tabs.
PT_API bool ptWriteAggregateDifferenceReport(
    PerformanceTracer& tracer, const std::string& htmlFile, const std::string& grouping,
    const std::string& lhsLabel, const std::string& rhsLabel, PTRawDataVector* lhsData,
    PTRawDataVector* rhsData, const SystemInfoRecord* lhsSystemInfo,
    const SystemInfoRecord* rhsSystemInfo, const std::string& metric);
