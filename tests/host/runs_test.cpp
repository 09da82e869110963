// Runs from C++: a save and a load give back the run, and a refused call reaches the caller as
// pt::Error with the method's error id and text.

#include "method_test_support.h"

namespace pt::testing {
namespace {

namespace fs = std::filesystem;
using Runs = FileMethodTest;

/// The id of the error a call raises, or "none".
std::string errorOf(const std::function<void()>& refused) {
    try {
        refused();
    } catch (const pt::Error& error) {
        EXPECT_NE(std::string(error.what()), "") << error.id();
        return error.id();
    }
    return "none";
}

TEST_F(Runs, SaveLoadAndReportWithoutTheHost) {
    ptEnableTracer("Build", true);
    {
        PT_PHASE("Build", "compile");
        PT_PHASE("Build", "parse");
    }
    pt::saveRun(path("run.hvf"));
    ptClearRawData();
    pt::loadRun(path("run.hvf"));
    const auto points = ptTracer()->snapshotRawData();
    ASSERT_EQ(points->size(), 4u);
    EXPECT_EQ(ptGetPhaseStr((*points)[1]->_phaseID), "parse");

    pt::writeDetailReport(path("detail.html"), {path("run.hvf")});
    pt::writeDifferenceReport(path("diff.html"), {path("run.hvf"), ""});  // against memory
    pt::writeDiagnosticReport(path("diag.html"));
    for (const char* page : {"detail.html", "diff.html", "diag.html"}) {
        EXPECT_GT(fs::file_size(path(page)), 1000u) << page;
    }
}

TEST_F(Runs, ExportOfARunAndOfItsSelections) {
    ptEnableTracer("Build", true);
    ptLogOrviaData("Build", "build", true);
    ptLogKestruneData("Build", "engine", "sim", "update", true);
    ptLogKestruneData("Build", "engine", "sim", "update", false);
    ptLogOrviaData("Build", "build", false);
    ptLogOrviaData("Build", "never ends", true);  // broken: no end
    pt::saveRun(path("run.hvf"));
    const struct {
        pt::ExportOptions options;
        std::size_t phases;
        std::size_t leftOut;
    } cases[] = {
        {pt::ExportOptions(path("run.hvf")), 2, 1},
        {pt::ExportOptions(), 2, 1},  // the points in memory
        {pt::ExportOptions(path("run.hvf")).withModel("engine"), 1, 0},
        {pt::ExportOptions(path("run.hvf")).withGrouping("Other"), 0, 0},
    };
    for (const auto& c : cases) {
        const pt::ExportSummary summary = pt::exportTraceEvents(path("run.json"), c.options);
        EXPECT_EQ(summary.phases, c.phases) << c.options.runFile << " " << c.options.grouping;
        EXPECT_EQ(summary.leftOut, c.leftOut) << c.options.runFile << " " << c.options.grouping;
        EXPECT_GT(fs::file_size(path("run.json")), 100u);
    }

    EXPECT_THROW(pt::exportTraceEvents(
                     path("t.json"),
                     pt::ExportOptions(path("run.hvf")).withGrouping("Build").withModel("engine")),
                 std::invalid_argument);
}

TEST_F(Runs, RefusedCallsRaiseTheMethodsErrors) {
    const std::pair<std::function<void()>, const char*> refusals[] = {
        {[&] { pt::loadRun(path("missing.hvf")); }, "OpenFileFailed"},
        {[&] { pt::saveRun(path("no folder/run.hvf")); }, "OpenFileFailed"},
        {[&] { pt::writeDetailReport(""); }, "ExpectedNames"},
        {[&] { pt::writeDetailReport(path("empty.html")); }, "NoRawTracerData"},
        {[&] { pt::writeDifferenceReport(path("d.html"), {}); }, "ExpectedNames"},
        {[&] { pt::writeDetailReport(path("m.html"), pt::ReportOptions().withMetric("speed")); },
         "InvalidMetric"},
        {[&] { pt::exportTraceEvents(path("t.json")); }, "NoRawTracerData"},
        {[&] { pt::exportTraceEvents(path("t.json"), {path("missing.hvf")}); }, "OpenFileFailed"},
        {[&] { pt::exportTraceEvents(path("no folder/t.json"), {path("run.hvf")}); },
         "WriteFileFailed"},
        {[&] { pt::exportTraceEvents("", {path("run.hvf")}); }, "ExpectedNames"},
    };
    ptEnableTracer("Build", true);
    ptLogOrviaData("Build", "build", true);
    pt::saveRun(path("run.hvf"));
    ptClearRawData();
    for (const auto& [refused, id] : refusals) {
        EXPECT_EQ(errorOf(refused), tracerError(id));
    }
}

}  // namespace
}  // namespace pt::testing
