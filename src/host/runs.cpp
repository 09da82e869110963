// Runs from C++. Saving and loading invoke the methods of PerfTools.Tracer through the class
// system, as a host would; the reports do the methods' own work after their name-value scan
// (report_runs.h), which spares the pairs and the methods' limits on how many of them a call
// takes. Either way the files, pages and errors are the methods'.

#include <performance_tracer/module.h>
#include <performance_tracer/runs.h>

#include <pt_platform/except.h>
#include <pt_platform/hv.h>
#include <pt_platform/vos.h>

#include <mutex>
#include <utility>
#include <vector>

#include "report_parameters.h"
#include "report_runs.h"

namespace pt {

Error::Error(std::string id, const std::string& message)
    : std::runtime_error(message), _id(std::move(id)) {}

namespace {

namespace host = performance_tracer;

/// Runs a piece of the binding with its errors turned into pt::Error.
template <typename Work>
void guarded(Work work) {
    try {
        work();
    } catch (const foundation::core::except::IMsgIDException& error) {
        throw Error(error.getErrorID(), error.getMessageText());
    }
}

/// Invokes a method with one text input.
void callWithFile(const char* method, const std::string& file) {
    static std::once_flag registered;
    std::call_once(registered, [] { HVInitialize_performance_tracer(); });
    const hvUniqueArray name(hvCreateString(file));
    guarded([&] {
        vos::invoke(std::string("PerfTools.Tracer.") + method, 0,
                    std::vector<const hvArray*>{name.get()});
    });
}

host::SingleReportSettings singleSettings(const std::string& htmlFile,
                                          const ReportOptions& options) {
    host::SingleReportSettings settings;
    settings.htmlFile = htmlFile;
    settings.grouping = options.grouping;
    settings.hvfFile = options.runFile;
    settings.hvfPassed = !options.runFile.empty();
    settings.showmeta = options.showMeta;
    settings.metric = host::checkedMetric(options.metric);
    return settings;
}

host::DifferenceReportSettings differenceSettings(const std::string& htmlFile,
                                                  const DifferenceOptions& options) {
    host::DifferenceReportSettings settings;
    settings.htmlFile = htmlFile;
    settings.grouping = options.grouping;
    settings.lhsFile = options.baseFile;
    settings.rhsFile = options.newFile;
    settings.lhsLabel = options.baseLabel;
    settings.rhsLabel = options.newLabel;
    settings.metric = host::checkedMetric(options.metric);
    return settings;
}

}  // namespace

void saveRun(const std::string& file) { callWithFile("saveToFile", file); }

void saveKsStartupRun(const std::string& file) { callWithFile("saveKsStartupData", file); }

void loadRun(const std::string& file) { callWithFile("loadTracerData", file); }

void writeDetailReport(const std::string& htmlFile, const ReportOptions& options) {
    guarded([&] {
        host::writeSingleReport(singleSettings(htmlFile, options), host::SinglePage::Detail);
    });
}

void writeAggregateReport(const std::string& htmlFile, const ReportOptions& options) {
    guarded([&] {
        host::writeSingleReport(singleSettings(htmlFile, options), host::SinglePage::Aggregate);
    });
}

void writeKsStartupReport(const std::string& htmlFile, const ReportOptions& options) {
    guarded([&] { host::writeKsStartupReport(singleSettings(htmlFile, options)); });
}

void writeDifferenceReport(const std::string& htmlFile, const DifferenceOptions& options) {
    guarded([&] {
        host::writeDifferenceReport(differenceSettings(htmlFile, options),
                                    host::DifferencePage::Difference);
    });
}

void writeAggregateDifferenceReport(const std::string& htmlFile, const DifferenceOptions& options) {
    guarded([&] {
        host::writeDifferenceReport(differenceSettings(htmlFile, options),
                                    host::DifferencePage::AggregateDifference);
    });
}

void writeKsStartupDifferenceReport(const std::string& htmlFile, const DifferenceOptions& options) {
    DifferenceOptions startup = options;
    startup.metric = "time";  // the startup comparison has no metric of its own
    guarded([&] { host::writeKsStartupDifferenceReport(differenceSettings(htmlFile, startup)); });
}

void writeDiagnosticReport(const std::string& htmlFile, const ReportOptions& options) {
    guarded([&] {
        host::writeDiagnostic(htmlFile, options.grouping, options.runFile,
                              !options.runFile.empty());
    });
}

}  // namespace pt
