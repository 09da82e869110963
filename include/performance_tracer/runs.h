#pragma once

// Runs from C++: save the raw points of this process, load a saved run, and write every kind of
// report, one call each. Each call does exactly what the method of PerfTools.Tracer with the
// same settings does (the pages are the same, byte for byte); the module needs no set-up by
// hand and no header of the host layer is involved.
//
//     pt::saveRun("build.hvf");
//     pt::writeDetailReport("build.html", {"build.hvf"});
//     pt::writeDifferenceReport("diff.html", {"old.hvf", "build.hvf"});
//
// A failure raises pt::Error with the id and the text of the method's error.

#include <performance_tracer/export.h>

#include <cstddef>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace pt {

/// A refused call: `id()` is the error's identifier, such as
/// "performance_tracer:PerformanceTracer:OpenFileFailed", and `what()` its message.
class PT_API Error : public std::runtime_error {
public:
    Error(std::string id, const std::string& message);
    const std::string& id() const noexcept { return _id; }

private:
    std::string _id;
};

/// The data and the form of a report of one run:
///     pt::ReportOptions("run.hvf").withGrouping("Solver").withMetric("basicmemory")
struct ReportOptions {
    ReportOptions() = default;
    /// A report of a saved run; an empty name takes the points in memory.
    ReportOptions(std::string runFile) : runFile(std::move(runFile)) {}  // NOLINT: {"run.hvf"}

    ReportOptions& withGrouping(std::string name) {
        grouping = std::move(name);
        return *this;
    }
    ReportOptions& withMetric(std::string name) {
        metric = std::move(name);
        return *this;
    }
    ReportOptions& withShowMeta(bool show) {
        showMeta = show;
        return *this;
    }

    /// A saved run; empty for the points in memory.
    std::string runFile;
    /// The grouping shown with everything below it; "GLOBAL" shows all.
    std::string grouping = "GLOBAL";
    /// "time", "basicmemory" or "detailedmemory".
    std::string metric = "time";
    /// Whether the header shows the data's meta information.
    bool showMeta = true;
};

/// The two runs of a comparison; the base (left) is the baseline. An empty file name takes the
/// points in memory for that side; at least one side must be a file:
///     pt::DifferenceOptions("old.hvf", "new.hvf").withLabels("Before", "After")
struct DifferenceOptions {
    DifferenceOptions() = default;
    DifferenceOptions(std::string baseFile, std::string newFile)
        : baseFile(std::move(baseFile)), newFile(std::move(newFile)) {}

    DifferenceOptions& withLabels(std::string base, std::string changed) {
        baseLabel = std::move(base);
        newLabel = std::move(changed);
        return *this;
    }
    DifferenceOptions& withGrouping(std::string name) {
        grouping = std::move(name);
        return *this;
    }
    DifferenceOptions& withMetric(std::string name) {
        metric = std::move(name);
        return *this;
    }

    std::string baseFile;
    std::string newFile;
    std::string baseLabel = "LHS";
    std::string newLabel = "RHS";
    std::string grouping = "GLOBAL";
    std::string metric = "time";
};

/// Writes the raw points in memory, this machine's system information and the host's root
/// folder to a value file (PerfTools.Tracer.saveToFile).
PT_API void saveRun(const std::string& file);
/// Writes the points of the grouping "Kestrune Startup" (PerfTools.Tracer.saveKsStartupData).
PT_API void saveKsStartupRun(const std::string& file = "KsStartupData.hvf");
/// Replaces the raw points in memory with those of a value file
/// (PerfTools.Tracer.loadTracerData).
PT_API void loadRun(const std::string& file);

/// The Detail page: Aggregate, Call Tree, Details[, MemChart] and System Info tabs
/// (generateHTMLReport).
PT_API void writeDetailReport(const std::string& htmlFile, const ReportOptions& options = {});
/// The Aggregate page (generateAggregateReport).
PT_API void writeAggregateReport(const std::string& htmlFile, const ReportOptions& options = {});
/// The Detail page of the grouping "Kestrune Startup" (generateKsStartupReport); the options'
/// grouping and showMeta do not apply.
PT_API void writeKsStartupReport(const std::string& htmlFile, const ReportOptions& options = {});
/// The Difference page (generateDifferenceReport).
PT_API void writeDifferenceReport(const std::string& htmlFile, const DifferenceOptions& options);
/// The Aggregate Difference page (generateAggregateDifferenceReport).
PT_API void writeAggregateDifferenceReport(const std::string& htmlFile,
                                           const DifferenceOptions& options);
/// The Difference page of "Kestrune Startup" (generateKsStartupDifferenceReport); the options'
/// grouping and metric do not apply.
PT_API void writeKsStartupDifferenceReport(const std::string& htmlFile,
                                           const DifferenceOptions& options);
/// The plain table of raw points for broken instrumentation (diagnosticReport); options.metric
/// and options.showMeta do not apply.
PT_API void writeDiagnosticReport(const std::string& htmlFile, const ReportOptions& options = {});

/// The run and the selection of an export to the Trace Event format:
///     pt::ExportOptions("run.hvf").withGrouping("Solver")
///     pt::ExportOptions("run.hvf").withModel("plant").withModel("controller")
struct ExportOptions {
    ExportOptions() = default;
    /// An export of a saved run; an empty name takes the points in memory.
    ExportOptions(std::string runFile) : runFile(std::move(runFile)) {}  // NOLINT: {"run.hvf"}

    ExportOptions& withGrouping(std::string name) {
        grouping = std::move(name);
        return *this;
    }
    /// Adds a model to the selection by model.
    ExportOptions& withModel(std::string name) {
        models.push_back(std::move(name));
        return *this;
    }

    /// A saved run; empty for the points in memory.
    std::string runFile;
    /// The phases logged under this grouping, as the reports select them; "GLOBAL" takes all.
    std::string grouping = "GLOBAL";
    /// When not empty, the phases of these models ("GLOBAL" for all) instead of a grouping, as
    /// getProcessedData selects them: host-language phases, which have no model, are left out.
    std::vector<std::string> models;
};

/// What an export wrote.
struct ExportSummary {
    /// Phases written, one complete event each.
    std::size_t phases = 0;
    /// Phases left out because the instrumentation is broken there; writeDiagnosticReport (or
    /// `ptreport diagnose`) shows where.
    std::size_t leftOut = 0;
};

/// Writes a run as Trace Event JSON, which the common trace viewers open: a complete event per
/// phase, in microseconds from the start of the first phase, with the phase's grouping as its
/// category and its model, target, machine, chart, statistics type, CPU time and outline number
/// as arguments. The file is written as the phases are read, so that the memory an export takes
/// does not grow with the file. Raises std::invalid_argument for a grouping other than
/// "GLOBAL" beside models.
PT_API ExportSummary exportTraceEvents(const std::string& jsonFile,
                                       const ExportOptions& options = {});

}  // namespace pt
