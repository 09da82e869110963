// The report methods through the class system: count checks, the pairs and their errors,
// defaults, data from memory and from files, and what a report leaves behind.

#include <pt_platform/hvf.h>
#include <pt_platform/hvx.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include <unistd.h>

#include "method_test_support.h"

namespace pt::testing {
namespace {

class ReportMethods : public MethodTest {
protected:
    void SetUp() override {
        MethodTest::SetUp();
        _folder = std::filesystem::temp_directory_path() /
                  ("pt_report_methods_" + std::to_string(getpid()));
        std::filesystem::create_directories(_folder);
        _previous = std::filesystem::current_path();
        std::filesystem::current_path(_folder);
        hvxSetHostFunction("orviaroot", [](int, hvArray** plhs, int, hvArray**) {
            plhs[0] = hvCreateString("/opt/orvia");
            return 0;
        });
    }
    void TearDown() override {
        hvxRestoreHostFunctions();
        std::filesystem::current_path(_previous);
        std::filesystem::remove_all(_folder);
    }

    static void logRun() {
        ptAddGrouping("Run");
        ptEnableGlobalLogging(true);
        ptLogOrviaData("Run", "/opt/orvia/toolbox/a.m", true);
        ptLogKestruneData("Run", "m", "t", "b", true);
        ptLogKestruneData("Run", "m", "t", "b", false);
        ptLogOrviaData("Run", "/opt/orvia/toolbox/a.m", false);
        ptEnableGlobalLogging(false);
    }

    static std::string read(const std::string& file) {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    std::filesystem::path _folder;
    std::filesystem::path _previous;
};

TEST_F(ReportMethods, CountsComeFirst) {
    const std::string html = std::string(kTracer) + "generateHTMLReport";
    const std::string diff = std::string(kTracer) + "generateDifferenceReport";
    const std::string ksDiff = std::string(kTracer) + "generateKsStartupDifferenceReport";
    const std::string ks = std::string(kTracer) + "generateKsStartupReport";
    const std::string diag = std::string(kTracer) + "diagnosticReport";
    const auto many = [](int n) {
        Values values;
        for (int i = 0; i < n; ++i) {
            values.push_back(number(i));  // no text at all: only the count is looked at
        }
        return values;
    };
    expectRefused(html, many(1), tracerError("MinParamsNotReached", {"2"}));
    expectRefused(html, many(10), tracerError("MaxParamsExceeded", {"8"}));
    expectRefused(html, many(3), tracerError("ExpectedEvenNumberOfParameters"));
    expectRefused(diff, many(2), tracerError("MinParamsNotReached", {"4"}));
    // Twelve inputs pass the count; fourteen are refused with a maximum of "8".
    expectRefused(diff, many(14), tracerError("MaxParamsExceeded", {"8"}));
    expectRefused(diff, many(12), tracerError("InvalidNames"));
    expectRefused(ksDiff, many(0), tracerError("MinParamsNotReached", {"2"}));
    expectRefused(ksDiff, many(12), tracerError("MaxParamsExceeded", {"10"}));
    expectRefused(ks, many(6), tracerError("MaxParamsExceeded", {"4"}));
    expectRefused(ks, many(1), tracerError("ExpectedEvenNumberOfParameters"));
    expectRefused(diag, many(0), tracerError("MinParamsNotReached", {"2"}));
    expectRefused(diag, many(8), tracerError("MaxParamsExceeded", {"6"}));
    expectRefused(diag, many(5), tracerError("ExpectedEvenNumberOfParameters"));
}

TEST_F(ReportMethods, PairsAndTheirErrors) {
    logRun();
    const std::string html = std::string(kTracer) + "generateHTMLReport";
    const std::string aggregate = std::string(kTracer) + "generateAggregateReport";
    const std::string diff = std::string(kTracer) + "generateDifferenceReport";
    const std::string ksDiff = std::string(kTracer) + "generateKsStartupDifferenceReport";
    const std::string ks = std::string(kTracer) + "generateKsStartupReport";
    const std::string diag = std::string(kTracer) + "diagnosticReport";

    expectRefused(html, valuesOf(number(1), text("x")), tracerError("InvalidNames"));
    expectRefused(html, valuesOf(text("nosuchname"), text("x")), tracerError("InvalidNames"));
    expectRefused(html, valuesOf(text("HTMLFILE"), number(1)),
                  tracerError("ParameterMismatchString", {"htmlfile"}));
    expectRefused(html, valuesOf(text("htmlfile"), text("r.html"), text("showmeta"), text("yes")),
                  tracerError("ParameterMismatchString", {"showmeta"}));
    expectRefused(html, valuesOf(text("htmlfile"), text("r.html"), text("metric"), text("speed")),
                  tracerError("InvalidMetric", {"time", "basicmemory", "detailedmemory"}));
    expectRefused(html, valuesOf(text("htmlfile"), text("")),
                  tracerError("ExpectedNames", {"'htmlfile' must be set"}));
    expectRefused(html, valuesOf(text("grouping"), text("Run")),
                  tracerError("ExpectedNames", {"'htmlfile' must be set"}));
    // The value is tested before the name in two methods.
    expectRefused(ks, valuesOf(text("nosuchname"), number(1)),
                  tracerError("ParameterMismatchString", {"nosuchname"}));
    expectRefused(diag, valuesOf(text("nosuchname"), number(1)),
                  tracerError("UnexpectedValue", {"nosuchname"}));
    // diagnosticReport alone takes names as they stand.
    expectRefused(diag, valuesOf(text("HTMLFILE"), text("d.html")), tracerError("InvalidNames"));
    expectRefused(diag, valuesOf(text("grouping"), text("Run")),
                  tracerError("ExpectedNames", {"'htmlfile' must be set."}));
    // The comparisons: another error for the same mistake in two of them.
    expectRefused(diff, valuesOf(text("htmlfile"), text("d.html"), text("lhslabel"), number(2)),
                  tracerError("UnexpectedValue", {"lhslabel"}));
    expectRefused(ksDiff, valuesOf(text("lhslabel"), number(2)),
                  tracerError("ParameterMismatchString", {"lhslabel"}));
    expectRefused(diff, valuesOf(text("htmlfile"), text("d.html"), text("metric"), number(2)),
                  tracerError("ParameterMismatchString", {"metric"}));
    expectRefused(
        diff, valuesOf(text("htmlfile"), text("d.html"), text("grouping"), text("Run")),
        tracerError("ExpectedNames", {"'htmlfile' and one of 'lhsfile' or 'rhsfile' to be set."}));
    expectRefused(
        ksDiff, valuesOf(text("htmlfile"), text("d.html")),
        tracerError("ExpectedNames", {"at least one of 'lhsfile' or 'rhsfile' must be set"}));
    EXPECT_FALSE(std::filesystem::exists("r.html"));
    EXPECT_FALSE(std::filesystem::exists("d.html"));

    // Upper-case names and metrics pass; a repeated name keeps its last value.
    call(aggregate, valuesOf(text("HtmlFile"), text("first.html"), text("METRIC"),
                             text("BasicMemory"), text("htmlfile"), text("last.html")));
    EXPECT_FALSE(std::filesystem::exists("first.html"));
    EXPECT_NE(read("last.html").find("makeStruct(\"IsParent Phase Count UsageDelta"),
              std::string::npos);
}

TEST_F(ReportMethods, DataFromMemoryAndFromFiles) {
    const std::string html = std::string(kTracer) + "generateHTMLReport";
    const std::string diff = std::string(kTracer) + "generateDifferenceReport";
    // Nothing logged yet.
    expectRefused(html, valuesOf(text("htmlfile"), text("r.html")), tracerError("NoRawTracerData"));
    expectRefused(diff,
                  valuesOf(text("htmlfile"), text("d.html"), text("lhsfile"), text("absent.hvf")),
                  tracerError("OpenFileFailed", {"absent.hvf"}));

    logRun();
    call(std::string(kTracer) + "saveToFile", valuesOf(text("run.hvf")));
    const StateFingerprint before = StateFingerprint::take();
    setPathStripRoot("");
    call(html, valuesOf(text("htmlfile"), text("r.html"), text("grouping"), text("Run")));
    const std::string page = read("r.html");
    EXPECT_NE(page.find("<title>Run</title>"), std::string::npos);
    EXPECT_NE(page.find("\"toolbox/a.m\""), std::string::npos);  // the root was queried and stored
    EXPECT_TRUE(StateFingerprint::take() == before) << "a report changes no data";

    // One side from the file, the other from memory; the memory side has the empty text.
    call(diff, valuesOf(text("htmlfile"), text("d.html"), text("lhsfile"), text("run.hvf")));
    EXPECT_NE(read("d.html").find("<title>Performance Comparison</title>"), std::string::npos);
    // Loading a side enters its names in the tables, so these refusals leave more names behind.
    ptClearRawData();
    EXPECT_EQ(
        errorOf(diff, valuesOf(text("htmlfile"), text("d.html"), text("lhsfile"), text("run.hvf"))),
        tracerError("NoRawTracerDataLoaded", {""}));

    // A file without the variables is an empty data set, not a file error.
    hvFile* other = hvfOpen("other.hvf", "w");
    hvfClose(other);
    expectRefused(html,
                  valuesOf(text("htmlfile"), text("r.html"), text("hvffile"), text("other.hvf")),
                  tracerError("NoRawTracerData"));
    EXPECT_EQ(errorOf(diff, valuesOf(text("htmlfile"), text("d.html"), text("lhsfile"),
                                     text("run.hvf"), text("rhsfile"), text("other.hvf"))),
              tracerError("NoRawTracerDataLoaded", {"other.hvf"}));

    // From the file alone: its points and its machine.
    call(html, valuesOf(text("htmlfile"), text("f.html"), text("hvffile"), text("run.hvf"),
                        text("metric"), text("basicmemory"), text("showmeta"), flag(false)));
    EXPECT_NE(read("f.html").find("var procData = [new dataStruct"), std::string::npos);
    expectRefused(
        html,
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
    const std::string page = read("KsStartup.html");
    EXPECT_NE(page.find("<title>Kestrune Startup Performance</title>"), std::string::npos);

    call(std::string(kTracer) + "saveKsStartupData", {});
    call(std::string(kTracer) + "generateKsStartupDifferenceReport",
         valuesOf(text("lhsfile"), text("KsStartupData.hvf")));
    EXPECT_NE(
        read("KsStartupDiff.html").find("<title>Kestrune Startup Performance Comparison</title>"),
        std::string::npos);

    // The diagnostic report of an empty tracer is still a file.
    ptClearRawData();
    call(std::string(kTracer) + "diagnosticReport", valuesOf(text("htmlfile"), text("diag.html")));
    EXPECT_TRUE(std::filesystem::exists("diag.html"));
    expectRefused(std::string(kTracer) + "diagnosticReport",
                  valuesOf(text("htmlfile"), text("no/such/diag.html")),
                  tracerError("WriteFileFailed", {"no/such/diag.html"}));
}

}  // namespace
}  // namespace pt::testing
