// The report subcommands: each writes one page with the same call as the method of
// PerfTools.Tracer that makes it, so that its page is the method's, byte for byte.

#include <performance_tracer/runs.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "commands.h"
#include "progress.h"

namespace ptreport {

namespace {

namespace fs = std::filesystem;

/// The page's name when no -o is given: beside nothing, in the current folder, named after the
/// run (the new run of a comparison) and the kind of page.
std::string outputFile(const Arguments& arguments, const std::string& run, const char* suffix) {
    if (arguments.has("output")) {
        return arguments.value("output");
    }
    return fs::path(run).stem().string() + suffix + ".html";
}

void requireInputs(const Arguments& arguments, std::size_t count, const char* what) {
    if (arguments.inputs().size() != count) {
        throw UsageError(std::string("expects ") + what);
    }
}

bool showMeta(const Arguments& arguments) {
    const std::string value = arguments.value("showmeta", "yes");
    if (value == "yes" || value == "true" || value == "on") {
        return true;
    }
    if (value == "no" || value == "false" || value == "off") {
        return false;
    }
    throw UsageError("--showmeta takes yes or no, not '" + value + "'");
}

/// The labels of a comparison: "--labels BASE,NEW", else the runs' file names.
void labels(const Arguments& arguments, pt::DifferenceOptions& options) {
    options.baseLabel = fs::path(options.baseFile).stem().string();
    options.newLabel = fs::path(options.newFile).stem().string();
    if (arguments.has("labels")) {
        const std::string text = arguments.value("labels");
        const std::size_t comma = text.find(',');
        if (comma == std::string::npos || text.find(',', comma + 1) != std::string::npos) {
            throw UsageError("--labels takes two labels separated by a comma: BASE,NEW");
        }
        options.baseLabel = text.substr(0, comma);
        options.newLabel = text.substr(comma + 1);
    }
}

/// Runs the writer under a progress line and says where the page is.
template <typename Write>
int writePage(const std::string& htmlFile, Write write) {
    {
        const Progress progress("writing " + htmlFile);
        write();
    }
    std::error_code error;
    const fs::path written = fs::absolute(htmlFile, error);
    std::printf("%s\n", error ? htmlFile.c_str() : written.c_str());
    return exit_status::kSuccess;
}

pt::ReportOptions singleOptions(const Arguments& arguments) {
    pt::ReportOptions options;
    options.runFile = arguments.inputs().front();
    options.grouping = arguments.value("grouping", options.grouping);
    options.metric = arguments.value("metric", options.metric);
    options.showMeta = showMeta(arguments);
    return options;
}

pt::DifferenceOptions differenceOptions(const Arguments& arguments) {
    pt::DifferenceOptions options;
    options.baseFile = arguments.inputs()[0];
    options.newFile = arguments.inputs()[1];
    options.grouping = arguments.value("grouping", options.grouping);
    options.metric = arguments.value("metric", options.metric);
    labels(arguments, options);
    return options;
}

int detail(const Arguments& arguments) {
    requireInputs(arguments, 1, "one run: RUN.hvf");
    const pt::ReportOptions options = singleOptions(arguments);
    const std::string html = outputFile(arguments, options.runFile, "");
    return writePage(html, [&] { pt::writeDetailReport(html, options); });
}

int aggregate(const Arguments& arguments) {
    requireInputs(arguments, 1, "one run: RUN.hvf");
    const pt::ReportOptions options = singleOptions(arguments);
    const std::string html = outputFile(arguments, options.runFile, "-aggregate");
    return writePage(html, [&] { pt::writeAggregateReport(html, options); });
}

int ksstartup(const Arguments& arguments) {
    requireInputs(arguments, 1, "one run: RUN.hvf");
    pt::ReportOptions options;
    options.runFile = arguments.inputs().front();
    options.metric = arguments.value("metric", options.metric);
    const std::string html = outputFile(arguments, options.runFile, "-ksstartup");
    return writePage(html, [&] { pt::writeKsStartupReport(html, options); });
}

int diff(const Arguments& arguments) {
    requireInputs(arguments, 2, "two runs: BASE.hvf NEW.hvf");
    const pt::DifferenceOptions options = differenceOptions(arguments);
    const std::string html = outputFile(arguments, options.newFile, "-diff");
    return writePage(html, [&] { pt::writeDifferenceReport(html, options); });
}

int aggdiff(const Arguments& arguments) {
    requireInputs(arguments, 2, "two runs: BASE.hvf NEW.hvf");
    const pt::DifferenceOptions options = differenceOptions(arguments);
    const std::string html = outputFile(arguments, options.newFile, "-aggdiff");
    return writePage(html, [&] { pt::writeAggregateDifferenceReport(html, options); });
}

int ksdiff(const Arguments& arguments) {
    requireInputs(arguments, 2, "two runs: BASE.hvf NEW.hvf");
    pt::DifferenceOptions options;
    options.baseFile = arguments.inputs()[0];
    options.newFile = arguments.inputs()[1];
    labels(arguments, options);
    const std::string html = outputFile(arguments, options.newFile, "-ksdiff");
    return writePage(html, [&] { pt::writeKsStartupDifferenceReport(html, options); });
}

int diagnose(const Arguments& arguments) {
    requireInputs(arguments, 1, "one run: RUN.hvf");
    pt::ReportOptions options;
    options.runFile = arguments.inputs().front();
    options.grouping = arguments.value("grouping", options.grouping);
    const std::string html = outputFile(arguments, options.runFile, "-diagnose");
    return writePage(html, [&] { pt::writeDiagnosticReport(html, options); });
}

const OptionSpec kOutput{"output"};
const OptionSpec kGrouping{"grouping"};
const OptionSpec kMetric{"metric"};
const OptionSpec kLabels{"labels"};
const OptionSpec kShowMeta{"showmeta"};

}  // namespace

std::vector<Command> reportCommands() {
    return {
        {"detail",
         "the Detail page of a run: aggregate, call tree, details, system",
         "usage: ptreport detail RUN.hvf [-o FILE] [--grouping G] [--metric M] [--showmeta "
         "yes|no]\n"
         "\n"
         "Writes the Detail page of a saved run: the Aggregate, Call Tree and Details tabs, the\n"
         "MemChart tab with --metric detailedmemory, and the System Info tab.\n"
         "\n"
         "  -o, --output FILE  the page (default: RUN.html in the current folder)\n"
         "  --grouping G       show G and the groupings below it (default: GLOBAL, all)\n"
         "  --metric M         time (default), basicmemory or detailedmemory\n"
         "  --showmeta yes|no  show the data's meta information in the header (default: yes)\n",
         {kOutput, kGrouping, kMetric, kShowMeta},
         detail},
        {"aggregate",
         "the Aggregate page of a run: per phase only",
         "usage: ptreport aggregate RUN.hvf [-o FILE] [--grouping G] [--metric M]\n"
         "                          [--showmeta yes|no]\n"
         "\n"
         "Writes the Aggregate page of a saved run: every phase once, with its count and times.\n"
         "\n"
         "  -o, --output FILE  the page (default: RUN-aggregate.html in the current folder)\n"
         "  --grouping G       show G and the groupings below it (default: GLOBAL, all)\n"
         "  --metric M         time (default), basicmemory or detailedmemory\n"
         "  --showmeta yes|no  show the data's meta information in the header (default: yes)\n",
         {kOutput, kGrouping, kMetric, kShowMeta},
         aggregate},
        {"diff",
         "the Difference page of two runs, row by row",
         "usage: ptreport diff BASE.hvf NEW.hvf [-o FILE] [--grouping G] [--metric M]\n"
         "                     [--labels BASE,NEW]\n"
         "\n"
         "Writes the Difference page: the rows of both runs aligned, with the absolute and the\n"
         "relative deviation of NEW from BASE.\n"
         "\n"
         "  -o, --output FILE  the page (default: NEW-diff.html in the current folder)\n"
         "  --grouping G       compare G and the groupings below it (default: GLOBAL, all)\n"
         "  --metric M         time (default), basicmemory or detailedmemory\n"
         "  --labels BASE,NEW  the two sides' labels (default: the files' names)\n",
         {kOutput, kGrouping, kMetric, kLabels},
         diff},
        {"aggdiff",
         "the Aggregate Difference page of two runs: per phase only",
         "usage: ptreport aggdiff BASE.hvf NEW.hvf [-o FILE] [--grouping G] [--metric M]\n"
         "                        [--labels BASE,NEW]\n"
         "\n"
         "Writes the Aggregate Difference page: every phase once, both runs side by side.\n"
         "\n"
         "  -o, --output FILE  the page (default: NEW-aggdiff.html in the current folder)\n"
         "  --grouping G       compare G and the groupings below it (default: GLOBAL, all)\n"
         "  --metric M         time (default), basicmemory or detailedmemory\n"
         "  --labels BASE,NEW  the two sides' labels (default: the files' names)\n",
         {kOutput, kGrouping, kMetric, kLabels},
         aggdiff},
        {"ksstartup",
         "the Detail page of the \"Kestrune Startup\" grouping of a run",
         "usage: ptreport ksstartup RUN.hvf [-o FILE] [--metric M]\n"
         "\n"
         "Writes the Detail page of the grouping \"Kestrune Startup\" of a saved run.\n"
         "\n"
         "  -o, --output FILE  the page (default: RUN-ksstartup.html in the current folder)\n"
         "  --metric M         time (default), basicmemory or detailedmemory\n",
         {kOutput, kMetric},
         ksstartup},
        {"ksdiff",
         "the Difference page of the \"Kestrune Startup\" grouping of two runs",
         "usage: ptreport ksdiff BASE.hvf NEW.hvf [-o FILE] [--labels BASE,NEW]\n"
         "\n"
         "Writes the Difference page of the grouping \"Kestrune Startup\" of two saved runs.\n"
         "\n"
         "  -o, --output FILE  the page (default: NEW-ksdiff.html in the current folder)\n"
         "  --labels BASE,NEW  the two sides' labels (default: the files' names)\n",
         {kOutput, kLabels},
         ksdiff},
        {"diagnose",
         "the diagnostic table of a run's raw points, for broken instrumentation",
         "usage: ptreport diagnose RUN.hvf [-o FILE] [--grouping G]\n"
         "\n"
         "Writes the diagnostic page: every raw point in logged order, the points whose start or\n"
         "end is missing in red. Use it when another page says the instrumentation is broken.\n"
         "\n"
         "  -o, --output FILE  the page (default: RUN-diagnose.html in the current folder)\n"
         "  --grouping G       the points of G only (default: GLOBAL, all)\n",
         {kOutput, kGrouping},
         diagnose},
    };
}

}  // namespace ptreport
