// Checks of many runs from C++ (performance_tracer/check.h): each value file is loaded as the
// report methods load one, reduced to its times per phase and dropped, so that many long runs
// need no more memory than one.

#include <performance_tracer/check.h>
#include <performance_tracer/constants.h>
#include <performance_tracer/names.h>
#include <performance_tracer/runs.h>
#include <performance_tracer/tracer.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "messages.h"
#include "persistence.h"
#include "processing/run_check.h"
#include "report/check_summary.h"
#include "system_info.h"

namespace pt {

namespace {

namespace host = performance_tracer;

template <typename Work>
auto guarded(Work work) {
    try {
        return work();
    } catch (const foundation::core::except::IMsgIDException& error) {
        throw Error(error.getErrorID(), error.getMessageText());
    }
}

PTRunPhaseTimes runTimes(const std::string& file, const CheckOptions& options) {
    PTRawDataVector points;
    guarded([&] {
        SystemInfoRecord systemInfo;
        std::string root;
        host::loadSavedData(file, points, systemInfo, root);
        if (points.empty()) {
            host::raise<host::Errors::NoRawTracerDataLoaded>(file);
        }
    });
    auto times = ptRunPhaseTimes(*ptTracer(), points, options.grouping, options.clock == "cpu");
    if (!times) {
        throw Error("performance_tracer:Check:BrokenInstrumentation",
                    "the instrumentation of " + file +
                        " is broken: a phase's start or end is missing; its diagnostic report "
                        "('ptreport diagnose " +
                        file + "') shows where");
    }
    if (const std::string* phase = ptNonFinitePhase(*times)) {
        throw Error("performance_tracer:Check:DamagedRun",
                    "the times of '" + *phase + "' in " + file +
                        " are not finite numbers: the file is damaged");
    }
    return std::move(*times);
}

std::vector<PTRunPhaseTimes> loadSide(const std::vector<std::string>& files,
                                      const CheckOptions& options, const char* side) {
    if (files.empty()) {
        throw std::invalid_argument(std::string("no runs on the ") + side + " side");
    }
    std::vector<PTRunPhaseTimes> runs;
    runs.reserve(files.size());
    for (const std::string& file : files) {
        runs.push_back(runTimes(file, options));
    }
    return runs;
}

}  // namespace

CheckResult checkRuns(const CheckOptions& options) {
    ptValidateCheckOptions(options);
    // Phase names are compared without the root folder, as the pages show them.
    setPathStripRoot(host::queryOrviaRoot());
    const std::vector<PTRunPhaseTimes> base = loadSide(options.baseFiles, options, "base");
    const std::vector<PTRunPhaseTimes> changed = loadSide(options.newFiles, options, "new");
    CheckResult result = ptCheckRuns(base, changed, options);
    if (result.phases.empty()) {
        throw Error(
            "performance_tracer:Check:NoPhases",
            options.grouping == pt::kGlobalGrouping
                ? std::string("the runs have no phases")
                : "the runs have no phases in the grouping '" + options.grouping + "' or below it");
    }
    return result;
}

void writeCheckSummary(const std::string& htmlFile, const CheckResult& result) {
    guarded([&] {
        if (!report::writeCheckSummary(htmlFile, result)) {
            host::raise<host::Errors::WriteFileFailed>(htmlFile);
        }
    });
}

}  // namespace pt
