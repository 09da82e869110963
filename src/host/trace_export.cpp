// Export of a run to the Trace Event format from C++: the run comes from a value file or a
// copy of the raw store, as a report's data would, and the writer of src/report/ walks it.

#include <performance_tracer/names.h>
#include <performance_tracer/runs.h>
#include <performance_tracer/tracer.h>

#include <pt_platform/except.h>

#include <filesystem>
#include <memory>
#include <stdexcept>

#include "messages.h"
#include "persistence.h"
#include "report/trace_events.h"
#include "system_info.h"

namespace pt {

namespace {

namespace host = performance_tracer;

/// How the selection reads in a viewer, as the name of the thread that holds the phases.
std::string selectionName(const ExportOptions& options) {
    if (options.models.empty()) {
        return options.grouping;
    }
    std::string name = options.models.size() == 1 ? "model " : "models ";
    for (std::size_t i = 0; i < options.models.size(); ++i) {
        name += (i == 0 ? "" : ", ") + options.models[i];
    }
    return name;
}

ExportSummary exportRun(const std::string& jsonFile, const ExportOptions& options) {
    if (jsonFile.empty()) {
        host::raise<host::Errors::ExpectedNames>(std::string("'jsonfile' must be set"));
    }
    const std::string root = host::queryOrviaRoot();
    std::unique_ptr<PTRawDataVector> points = std::make_unique<PTRawDataVector>();
    SystemInfoRecord systemInfo;
    if (!options.runFile.empty()) {
        std::string fileRoot;
        if (!host::loadSavedData(options.runFile, *points, systemInfo, fileRoot)) {
            host::raise<host::Errors::OpenFileFailed>(options.runFile);
        }
    } else {
        points = ptTracer()->snapshotRawData();
        systemInfo = host::collectSystemInfo();
    }
    setPathStripRoot(root);
    if (!points || points->empty()) {
        host::raise<host::Errors::NoRawTracerData>();
    }

    report::TraceEventsRequest request;
    request.byModel = !options.models.empty();
    request.names = request.byModel ? options.models : std::vector<std::string>{options.grouping};
    request.processName = options.runFile.empty()
                              ? std::string("points in memory")
                              : std::filesystem::path(options.runFile).stem().string();
    request.threadName = selectionName(options);
    request.systemInfo = &systemInfo;
    report::TraceEventsSummary written;
    if (!report::writeTraceEvents(*ptTracer(), jsonFile, *points, request, written)) {
        host::raise<host::Errors::WriteFileFailed>(jsonFile);
    }
    return {written.phases, written.leftOut};
}

}  // namespace

ExportSummary exportTraceEvents(const std::string& jsonFile, const ExportOptions& options) {
    if (!options.models.empty() && options.grouping != "GLOBAL") {
        throw std::invalid_argument("an export selects by grouping or by model, not by both");
    }
    try {
        return exportRun(jsonFile, options);
    } catch (const foundation::core::except::IMsgIDException& error) {
        throw Error(error.getErrorID(), error.getMessageText());
    }
}

}  // namespace pt
