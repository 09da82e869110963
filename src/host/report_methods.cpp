// The report methods of PerfTools.Tracer: read the pairs, take the data from a value file or
// a copy of the raw store, with the system information that goes with it, and write a page.

#include <performance_tracer/constants.h>
#include <performance_tracer/names.h>
#include <performance_tracer/reports.h>
#include <performance_tracer/tracer.h>

#include <memory>

#include "messages.h"
#include "method_frame.h"
#include "methods.h"
#include "persistence.h"
#include "report/diagnostic_report.h"
#include "report_parameters.h"
#include "system_info.h"

namespace performance_tracer {

namespace {

using Kind = ReportParameter::Kind;

/// One side's data: its points and the system information that goes with them.
struct DataSet {
    std::unique_ptr<PTRawDataVector> points = std::make_unique<PTRawDataVector>();
    SystemInfoRecord systemInfo;

    bool empty() const { return !points || points->empty(); }
};

/// A name that a file can be opened by: a NUL would end it early, and so another file would be
/// written. A writer could not open the file, and fails as it does then.
bool isFileName(const std::string& name) { return name.find('\0') == std::string::npos; }

/// The points and record of a value file.
DataSet fromFile(const std::string& file) {
    DataSet data;
    std::string root;
    if (!loadSavedData(file, *data.points, data.systemInfo, root)) {
        raise<Errors::OpenFileFailed>(file);
    }
    return data;
}

/// A copy of the raw store, with this machine's information.
DataSet fromMemory(const SystemInfoRecord& systemInfo) {
    DataSet data;
    data.points = ptTracer()->snapshotRawData();
    data.systemInfo = systemInfo;
    return data;
}

/// The settings of the single reports.
struct SingleSettings {
    std::string htmlFile;
    std::string grouping = std::string(pt::kGlobalGrouping);
    std::string hvfFile;
    bool hvfPassed = false;
    bool showmeta = true;
    std::string metric = std::string(pt::kMetricTime);
};

/// The data of a single report: the file's if one was named, else the store's.
DataSet singleReportData(const SingleSettings& settings) {
    const std::string root = queryOrviaRoot();
    DataSet data =
        settings.hvfPassed ? fromFile(settings.hvfFile) : fromMemory(collectSystemInfo());
    setPathStripRoot(root);
    return data;
}

using SingleWriter = bool (*)(::PerformanceTracer&, const std::string&, const std::string&,
                              const std::string&, const std::string&, bool, PTRawDataVector*,
                              const SystemInfoRecord*);

void generateSingleReport(std::int32_t nrhs, const hvArray** prhs, SingleWriter writer) {
    checkPairCount(nrhs, 2, "2", 8, "8");
    SingleSettings settings;
    const BadValue bad = BadValue::ParameterMismatchString;
    scanReportPairs(
        nrhs, prhs,
        {{kHtmlFileParameter, Kind::Text, bad, &settings.htmlFile},
         {kGroupingParameter, Kind::Text, bad, &settings.grouping},
         {kHvfFileParameter, Kind::Text, bad, &settings.hvfFile, nullptr, &settings.hvfPassed},
         {kShowMetaParameter, Kind::Flag, bad, nullptr, &settings.showmeta},
         {kMetricParameter, Kind::Metric, bad, &settings.metric}},
        {});
    if (settings.htmlFile.empty()) {
        raise<Errors::ExpectedNames>(std::string("'htmlfile' must be set"));
    }
    DataSet data = singleReportData(settings);
    if (data.empty()) {
        raise<Errors::NoRawTracerData>();
    }
    if (!isFileName(settings.htmlFile) ||
        !writer(*ptTracer(), settings.htmlFile, settings.grouping, settings.grouping,
                settings.metric, settings.showmeta, data.points.get(), &data.systemInfo)) {
        raise<Errors::WriteFileFailed>(settings.htmlFile);
    }
}

/// The settings of the comparisons.
struct DifferenceSettings {
    std::string htmlFile;
    std::string grouping = std::string(pt::kGlobalGrouping);
    std::string lhsFile;
    std::string rhsFile;
    std::string lhsLabel = std::string(kDefaultLhsLabel);
    std::string rhsLabel = std::string(kDefaultRhsLabel);
    std::string metric = std::string(pt::kMetricTime);
};

using DifferenceWriter = bool (*)(::PerformanceTracer&, const std::string&, const std::string&,
                                  const std::string&, const std::string&, PTRawDataVector*,
                                  PTRawDataVector*, const SystemInfoRecord*,
                                  const SystemInfoRecord*, const std::string&);

/// Both sides, each from its file or from memory, and the page.
void compare(const DifferenceSettings& settings, DifferenceWriter writer) {
    DataSet left =
        settings.lhsFile.empty() ? fromMemory(cachedSystemInfo()) : fromFile(settings.lhsFile);
    DataSet right =
        settings.rhsFile.empty() ? fromMemory(cachedSystemInfo()) : fromFile(settings.rhsFile);
    setPathStripRoot(queryOrviaRoot());
    if (left.empty()) {
        raise<Errors::NoRawTracerDataLoaded>(settings.lhsFile);
    }
    if (right.empty()) {
        raise<Errors::NoRawTracerDataLoaded>(settings.rhsFile);
    }
    if (!isFileName(settings.htmlFile) ||
        !writer(*ptTracer(), settings.htmlFile, settings.grouping, settings.lhsLabel,
                settings.rhsLabel, left.points.get(), right.points.get(), &left.systemInfo,
                &right.systemInfo, settings.metric)) {
        raise<Errors::WriteFileFailed>(settings.htmlFile);
    }
}

void generateDifferenceReport(std::int32_t nrhs, const hvArray** prhs, DifferenceWriter writer) {
    // Twelve inputs pass, although the message says eight.
    checkPairCount(nrhs, 4, "4", 12, "8");
    DifferenceSettings settings;
    const BadValue bad = BadValue::UnexpectedValue;
    scanReportPairs(
        nrhs, prhs,
        {{kGroupingParameter, Kind::Text, bad, &settings.grouping},
         {kHtmlFileParameter, Kind::Text, bad, &settings.htmlFile},
         {kLhsFileParameter, Kind::Text, bad, &settings.lhsFile},
         {kRhsFileParameter, Kind::Text, bad, &settings.rhsFile},
         {kLhsLabelParameter, Kind::Text, bad, &settings.lhsLabel},
         {kRhsLabelParameter, Kind::Text, bad, &settings.rhsLabel},
         {kMetricParameter, Kind::Metric, BadValue::ParameterMismatchString, &settings.metric}},
        {});
    if (settings.htmlFile.empty() || (settings.lhsFile.empty() && settings.rhsFile.empty())) {
        raise<Errors::ExpectedNames>(
            std::string("'htmlfile' and one of 'lhsfile' or 'rhsfile' to be set."));
    }
    compare(settings, writer);
}

}  // namespace

void PerformanceTracer_generateHTMLReport::invoke(void*, std::uint32_t&, hvArray**,
                                                  std::int32_t nrhs, const hvArray** prhs) {
    generateSingleReport(nrhs, prhs, &ptWriteDetailReport);
}

void PerformanceTracer_generateAggregateReport::invoke(void*, std::uint32_t&, hvArray**,
                                                       std::int32_t nrhs, const hvArray** prhs) {
    generateSingleReport(nrhs, prhs, &ptWriteAggregateReport);
}

void PerformanceTracer_generateKsStartupReport::invoke(void*, std::uint32_t&, hvArray**,
                                                       std::int32_t nrhs, const hvArray** prhs) {
    checkPairCount(nrhs, 0, "0", 4, "4");
    SingleSettings settings;
    settings.htmlFile = "KsStartup.html";
    const BadValue bad = BadValue::ParameterMismatchString;
    scanReportPairs(
        nrhs, prhs,
        {{kHtmlFileParameter, Kind::Text, bad, &settings.htmlFile},
         {kHvfFileParameter, Kind::Text, bad, &settings.hvfFile, nullptr, &settings.hvfPassed},
         {kMetricParameter, Kind::Metric, bad, &settings.metric}},
        {.valueFirst = true});
    // The whole store is handed on; the writer selects the startup grouping.
    DataSet data = singleReportData(settings);
    if (data.empty()) {
        raise<Errors::NoRawTracerData>();
    }
    if (!isFileName(settings.htmlFile) ||
        !ptWriteDetailReport(*ptTracer(), settings.htmlFile,
                             std::string(pt::kKestruneStartupGrouping),
                             "Kestrune Startup Performance", settings.metric, false,
                             data.points.get(), &data.systemInfo)) {
        raise<Errors::WriteFileFailed>(settings.htmlFile);
    }
}

void PerformanceTracer_generateDifferenceReport::invoke(void*, std::uint32_t&, hvArray**,
                                                        std::int32_t nrhs, const hvArray** prhs) {
    generateDifferenceReport(nrhs, prhs, &ptWriteDifferenceReport);
}

void PerformanceTracer_generateAggregateDifferenceReport::invoke(void*, std::uint32_t&, hvArray**,
                                                                 std::int32_t nrhs,
                                                                 const hvArray** prhs) {
    generateDifferenceReport(nrhs, prhs, &ptWriteAggregateDifferenceReport);
}

void PerformanceTracer_generateKsStartupDifferenceReport::invoke(void*, std::uint32_t&, hvArray**,
                                                                 std::int32_t nrhs,
                                                                 const hvArray** prhs) {
    checkPairCount(nrhs, 2, "2", 10, "10");
    DifferenceSettings settings;
    settings.htmlFile = "KsStartupDiff.html";
    settings.grouping = std::string(pt::kKestruneStartupGrouping);
    const BadValue bad = BadValue::ParameterMismatchString;
    scanReportPairs(nrhs, prhs,
                    {{kHtmlFileParameter, Kind::Text, bad, &settings.htmlFile},
                     {kLhsFileParameter, Kind::Text, bad, &settings.lhsFile},
                     {kRhsFileParameter, Kind::Text, bad, &settings.rhsFile},
                     {kLhsLabelParameter, Kind::Text, bad, &settings.lhsLabel},
                     {kRhsLabelParameter, Kind::Text, bad, &settings.rhsLabel}},
                    {});
    if (settings.lhsFile.empty() && settings.rhsFile.empty()) {
        raise<Errors::ExpectedNames>(
            std::string("at least one of 'lhsfile' or 'rhsfile' must be set"));
    }
    compare(settings, &ptWriteDifferenceReport);
}

void PerformanceTracer_diagnosticReport::invoke(void*, std::uint32_t&, hvArray**, std::int32_t nrhs,
                                                const hvArray** prhs) {
    checkPairCount(nrhs, 2, "2", 6, "6");
    std::string htmlFile;
    std::string grouping = std::string(pt::kGlobalGrouping);
    std::string hvfFile;
    bool hvfPassed = false;
    const BadValue bad = BadValue::UnexpectedValue;
    scanReportPairs(nrhs, prhs,
                    {{kHtmlFileParameter, Kind::Text, bad, &htmlFile},
                     {kGroupingParameter, Kind::Text, bad, &grouping},
                     {kHvfFileParameter, Kind::Text, bad, &hvfFile, nullptr, &hvfPassed}},
                    {.foldNames = false, .valueFirst = true});
    if (htmlFile.empty()) {
        raise<Errors::ExpectedNames>(std::string("'htmlfile' must be set."));
    }
    queryOrviaRoot();
    DataSet data = hvfPassed ? fromFile(hvfFile) : fromMemory(collectSystemInfo());
    if (!isFileName(htmlFile) ||
        !writeDiagnosticReport(*ptTracer(), htmlFile, grouping, data.points.get())) {
        raise<Errors::WriteFileFailed>(htmlFile);
    }
}

}  // namespace performance_tracer
