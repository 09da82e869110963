// The export subcommands: a run in a format that other tools read.

#include <performance_tracer/runs.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "commands.h"
#include "progress.h"

namespace ptreport {

namespace {

namespace fs = std::filesystem;

int exportRun(const Arguments& arguments) {
    if (arguments.inputs().size() != 1) {
        throw UsageError("expects one run: RUN.hvf");
    }
    pt::ExportOptions options(arguments.inputs().front());
    options.models = arguments.values("model");
    if (arguments.has("grouping")) {
        if (!options.models.empty()) {
            throw UsageError("selects by --grouping or by --model, not by both");
        }
        options.grouping = arguments.value("grouping");
    }
    const std::string json = arguments.has("output")
                                 ? arguments.value("output")
                                 : fs::path(options.runFile).stem().string() + ".json";
    pt::ExportSummary summary;
    {
        const Progress progress("writing " + json);
        summary = pt::exportTraceEvents(json, options);
    }
    if (summary.leftOut > 0) {
        std::string diagnose = "ptreport diagnose " + options.runFile;
        if (arguments.has("grouping")) {
            diagnose += " --grouping " + options.grouping;
        }
        std::fprintf(stderr,
                     "ptreport export: the instrumentation of %s is broken; %zu phase%s left "
                     "out, %zu exported; '%s' shows where\n",
                     options.runFile.c_str(), summary.leftOut, summary.leftOut == 1 ? "" : "s",
                     summary.phases, diagnose.c_str());
    } else if (summary.phases == 0) {
        std::fprintf(stderr, "ptreport export: no phase of %s is in the selection\n",
                     options.runFile.c_str());
    }
    std::error_code error;
    const fs::path written = fs::absolute(json, error);
    std::printf("%s\n", error ? json.c_str() : written.c_str());
    return exit_status::kSuccess;
}

}  // namespace

std::vector<Command> exportCommands() {
    return {
        {"export",
         "a run as Trace Event JSON, for timeline and flame graph viewers",
         "usage: ptreport export RUN.hvf [-o FILE] [--grouping G | --model M ...]\n"
         "\n"
         "Writes a saved run in the Trace Event format, which the common trace viewers open as\n"
         "a timeline and a flame graph: one complete event per phase, in microseconds from the\n"
         "start of the first phase, with the grouping as category and the model, target,\n"
         "machine, chart, statistics type, CPU time and outline number as arguments. Unaccounted\n"
         "time shows as phases of the category \"unaccounted\"; memory figures, where the run\n"
         "has any, as counters. Where the instrumentation is broken, the phases it touched are\n"
         "left out, and standard error says how many.\n"
         "\n"
         "  -o, --output FILE  the trace (default: RUN.json in the current folder)\n"
         "  --grouping G       the phases logged under G (default: GLOBAL, all)\n"
         "  --model M          the phases of model M instead; repeat it for more models.\n"
         "                     Host-language phases have no model and are left out.\n",
         {{"output"}, {"grouping"}, {"model", true, true}},
         exportRun},
    };
}

}  // namespace ptreport
