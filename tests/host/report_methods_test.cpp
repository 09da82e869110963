// The report methods through the class system: names and defaults, data from memory and from
// files, and what a report leaves behind. Their refusals are in method_errors_test.cpp.

#include <pt_platform/hvf.h>

#include "method_test_support.h"

namespace pt::testing {
namespace {

using ReportMethods = FileMethodTest;

const std::string kHtml = std::string(kTracer) + "generateHTMLReport";
const std::string kDiff = std::string(kTracer) + "generateDifferenceReport";

TEST_F(ReportMethods, DataFromMemoryAndFromFiles) {
    expectRefused(kHtml, valuesOf(text("htmlfile"), text("r.html")),
                  tracerError("NoRawTracerData"));  // nothing logged yet
    logRun();
    call(std::string(kTracer) + "saveToFile", valuesOf(text("run.hvf")));
    const std::vector<std::string> before = tracerState();
    setPathStripRoot("");
    // Names in any case; the last value wins.
    call(kHtml, valuesOf(text("HtmlFile"), text("first.html"), text("htmlfile"), text("r.html"),
                         text("GROUPING"), text("Run")));
    EXPECT_FALSE(std::filesystem::exists("first.html"));
    const std::string page = bytesOf("r.html");
    EXPECT_NE(page.find("<title>Run</title>"), std::string::npos);
    EXPECT_NE(page.find("\"toolbox/setup.m\""), std::string::npos);  // the root was queried
    EXPECT_EQ(tracerState(), before) << "a report changes no data";

    // One side from the file, the other from memory; the memory side has the empty text.
    const auto diffOf = [](Values more) {
        Values inputs =
            valuesOf(text("htmlfile"), text("d.html"), text("lhsfile"), text("run.hvf"));
        std::move(more.begin(), more.end(), std::back_inserter(inputs));
        return errorOf(kDiff, inputs);
    };
    EXPECT_EQ(diffOf({}), "none");
    EXPECT_NE(bytesOf("d.html").find("<title>Performance Comparison</title>"), std::string::npos);
    // Loading a side enters its names in the tables, so these refusals leave more names behind.
    ptClearRawData();
    EXPECT_EQ(diffOf({}), tracerError("NoRawTracerDataLoaded", {""}));

    // A file without the variables is an empty data set, not a file error.
    hvfClose(hvfOpen("other.hvf", "w"));
    expectRefused(kHtml,
                  valuesOf(text("htmlfile"), text("r.html"), text("hvffile"), text("other.hvf")),
                  tracerError("NoRawTracerData"));
    EXPECT_EQ(diffOf(valuesOf(text("rhsfile"), text("other.hvf"))),
              tracerError("NoRawTracerDataLoaded", {"other.hvf"}));

    // From the file alone: its points and its machine.
    call(kHtml, valuesOf(text("htmlfile"), text("f.html"), text("hvffile"), text("run.hvf"),
                         text("metric"), text("basicmemory"), text("showmeta"), flag(false)));
    EXPECT_NE(bytesOf("f.html").find("var procData = [new dataStruct"), std::string::npos);
    expectRefused(
        kHtml,
        valuesOf(text("htmlfile"), text("no/such/folder/r.html"), text("hvffile"), text("run.hvf")),
        tracerError("WriteFileFailed", {"no/such/folder/r.html"}));
}

TEST_F(ReportMethods, StartupReportsAndTheDiagnosticReport) {
    // No input at all: the default file in the working folder, from the startup grouping.
    call(std::string(kTracer) + "enableKsStartupLogging", valuesOf(flag(true)), 1);
    ptLogKsStartupData("boot", true);
    ptLogKsStartupData("boot", false);
    call(std::string(kTracer) + "enableKsStartupLogging", valuesOf(flag(false)), 1);
    call(std::string(kTracer) + "generateKsStartupReport", {});
    EXPECT_NE(bytesOf("KsStartup.html").find("<title>Kestrune Startup Performance</title>"),
              std::string::npos);

    call(std::string(kTracer) + "saveKsStartupData", {});
    call(std::string(kTracer) + "generateKsStartupDifferenceReport",
         valuesOf(text("lhsfile"), text("KsStartupData.hvf")));
    EXPECT_NE(bytesOf("KsStartupDiff.html")
                  .find("<title>Kestrune Startup Performance Comparison</title>"),
              std::string::npos);

    // The diagnostic report of an empty tracer is still a file.
    ptClearRawData();
    call(std::string(kTracer) + "diagnosticReport", valuesOf(text("htmlfile"), text("diag.html")));
    EXPECT_TRUE(std::filesystem::exists("diag.html"));
}

}  // namespace
}  // namespace pt::testing
