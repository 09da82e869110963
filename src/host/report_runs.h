#pragma once

// The work of the report methods once their pairs are read: take each side's data from a value
// file or a copy of the raw store, with the system information that goes with it, and write the
// page. The methods of PerfTools.Tracer and the C++ API (runs.h) both end here, so that their
// pages and errors are the same.

#include <performance_tracer/constants.h>

#include <string>

#include "method_frame.h"

namespace performance_tracer {

/// The settings of the single reports.
struct SingleReportSettings {
    std::string htmlFile;
    std::string grouping = std::string(pt::kGlobalGrouping);
    std::string hvfFile;
    bool hvfPassed = false;
    bool showmeta = true;
    std::string metric = std::string(pt::kMetricTime);
};

/// The settings of the comparisons.
struct DifferenceReportSettings {
    std::string htmlFile;
    std::string grouping = std::string(pt::kGlobalGrouping);
    std::string lhsFile;
    std::string rhsFile;
    std::string lhsLabel = std::string(kDefaultLhsLabel);
    std::string rhsLabel = std::string(kDefaultRhsLabel);
    std::string metric = std::string(pt::kMetricTime);
};

enum class SinglePage { Detail, Aggregate };
enum class DifferencePage { Difference, AggregateDifference };

/// generateHTMLReport and generateAggregateReport after the scan.
void writeSingleReport(const SingleReportSettings& settings, SinglePage page);
/// generateKsStartupReport after the scan.
void writeKsStartupReport(const SingleReportSettings& settings);
/// generateDifferenceReport and generateAggregateDifferenceReport after the scan.
void writeDifferenceReport(const DifferenceReportSettings& settings, DifferencePage page);
/// generateKsStartupDifferenceReport after the scan.
void writeKsStartupDifferenceReport(const DifferenceReportSettings& settings);
/// diagnosticReport after the scan.
void writeDiagnostic(const std::string& htmlFile, const std::string& grouping,
                     const std::string& hvfFile, bool hvfPassed);

}  // namespace performance_tracer
