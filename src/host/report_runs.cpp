// The work of the report methods once their pairs are read.

#include "report_runs.h"

#include <performance_tracer/names.h>
#include <performance_tracer/reports.h>
#include <performance_tracer/tracer.h>

#include <memory>

#include "messages.h"
#include "persistence.h"
#include "report/diagnostic_report.h"
#include "system_info.h"

namespace performance_tracer {

namespace {

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

/// The data of a single report: the file's if one was named, else the store's.
DataSet singleReportData(const SingleReportSettings& settings) {
    const std::string root = queryOrviaRoot();
    DataSet data =
        settings.hvfPassed ? fromFile(settings.hvfFile) : fromMemory(collectSystemInfo());
    setPathStripRoot(root);
    return data;
}

using SingleWriter = bool (*)(::PerformanceTracer&, const std::string&, const std::string&,
                              const std::string&, const std::string&, bool, PTRawDataVector*,
                              const SystemInfoRecord*);

using DifferenceWriter = bool (*)(::PerformanceTracer&, const std::string&, const std::string&,
                                  const std::string&, const std::string&, PTRawDataVector*,
                                  PTRawDataVector*, const SystemInfoRecord*,
                                  const SystemInfoRecord*, const std::string&);

/// Both sides, each from its file or from memory, and the page.
void compare(const DifferenceReportSettings& settings, DifferenceWriter writer) {
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

}  // namespace

void writeSingleReport(const SingleReportSettings& settings, SinglePage page) {
    if (settings.htmlFile.empty()) {
        raise<Errors::ExpectedNames>(std::string("'htmlfile' must be set"));
    }
    DataSet data = singleReportData(settings);
    if (data.empty()) {
        raise<Errors::NoRawTracerData>();
    }
    const SingleWriter writer =
        page == SinglePage::Detail ? &ptWriteDetailReport : &ptWriteAggregateReport;
    if (!isFileName(settings.htmlFile) ||
        !writer(*ptTracer(), settings.htmlFile, settings.grouping, settings.grouping,
                settings.metric, settings.showmeta, data.points.get(), &data.systemInfo)) {
        raise<Errors::WriteFileFailed>(settings.htmlFile);
    }
}

void writeKsStartupReport(const SingleReportSettings& settings) {
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

void writeDifferenceReport(const DifferenceReportSettings& settings, DifferencePage page) {
    if (settings.htmlFile.empty() || (settings.lhsFile.empty() && settings.rhsFile.empty())) {
        raise<Errors::ExpectedNames>(
            std::string("'htmlfile' and one of 'lhsfile' or 'rhsfile' to be set."));
    }
    compare(settings, page == DifferencePage::Difference ? &ptWriteDifferenceReport
                                                         : &ptWriteAggregateDifferenceReport);
}

void writeKsStartupDifferenceReport(const DifferenceReportSettings& settings) {
    if (settings.lhsFile.empty() && settings.rhsFile.empty()) {
        raise<Errors::ExpectedNames>(
            std::string("at least one of 'lhsfile' or 'rhsfile' must be set"));
    }
    DifferenceReportSettings startup = settings;
    startup.grouping = std::string(pt::kKestruneStartupGrouping);
    startup.metric = std::string(pt::kMetricTime);
    compare(startup, &ptWriteDifferenceReport);
}

void writeDiagnostic(const std::string& htmlFile, const std::string& grouping,
                     const std::string& hvfFile, bool hvfPassed) {
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
