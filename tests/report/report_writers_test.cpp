// The four writers: the blocks of each kind of page in their order, the fixed pages that stand
// in for a report, titles, depth rules, and the failures.

#include <performance_tracer/processed_points.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/reports.h>
#include <performance_tracer/tracer.h>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include <unistd.h>

#include "processing/random_log.h"
#include "report/fragments.h"

namespace pt::report {
namespace {

using pt::testing::makePoint;

class ReportWriters : public ::testing::Test {
protected:
    void SetUp() override {
        ptClearRawData();
        _folder =
            std::filesystem::temp_directory_path() / ("pt_reports_" + std::to_string(getpid()));
        std::filesystem::create_directories(_folder);
    }
    void TearDown() override { std::filesystem::remove_all(_folder); }

    std::string path(const std::string& name) const { return (_folder / name).string(); }

    static std::string read(const std::string& file) {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    /// Two nested phases with detailed memory, under "Run".
    static PTRawDataVector run(double scale = 1.0) {
        PTRawDataVector points = {makePoint(0, "Run", "outer", true, 0.0),
                                  makePoint(1, "Run", "inner", true, 0.01 * scale),
                                  makePoint(1, "Run", "inner", false, 0.02 * scale),
                                  makePoint(0, "Run", "outer", false, 0.03 * scale)};
        for (const auto& point : points) {
            point->_detailedMem = boost::make_shared<pt::DetailedMemStats>(1e9, 2e8, 3e8, 4e7, 5e8);
        }
        return points;
    }

    /// Where each marker stands in the text, in the order given; fails on one out of order.
    static void expectInOrder(const std::string& text, const std::vector<std::string>& markers) {
        std::size_t at = 0;
        for (const std::string& marker : markers) {
            const std::size_t found = text.find(marker, at);
            ASSERT_NE(found, std::string::npos) << marker << " missing or out of order";
            at = found + marker.size();
        }
    }

    std::filesystem::path _folder;
};

TEST_F(ReportWriters, BlocksOfEachPageInTheirOrder) {
    PerformanceTracer& t = *ptTracer();
    PTRawDataVector a = run();
    ASSERT_TRUE(
        ptWriteDetailReport(t, path("detail.html"), "GLOBAL", "GLOBAL", "time", true, &a, nullptr));
    expectInOrder(read(path("detail.html")), {"<!DOCTYPE",
                                              "<head>",
                                              "<title>Full Tracer Report</title>",
                                              "<body",
                                              "<div align=\"center\">",
                                              "id=\"headerTable\"",
                                              "id=\"aggregateSummaryDiv\"",
                                              "id=\"callTreeSummaryDiv\"",
                                              "id=\"phaseSummaryDiv\"",
                                              "id=\"systemInfoTableDiv\"",
                                              "</div>\n<div id=\"aggregateSummaryScrollTableDiv\"",
                                              "</body>",
                                              "</html>",
                                              "function ShowTable",
                                              "function quicksort",
                                              "var isIE",
                                              "function renderAggregateTable",
                                              "function showInputTable",
                                              "</script>",
                                              "<script",
                                              "function createCTDataView",
                                              "</script>",
                                              "<script",
                                              "var callTreeArray",
                                              "callTreeArray[0] = createNode(0,0, [0], ",
                                              "var procData",
                                              "var Phase = [",
                                              "var aggData",
                                              "</script>"});

    PTRawDataVector b = run();
    ASSERT_TRUE(
        ptWriteAggregateReport(t, path("aggregate.html"), "Run", "Run", "time", true, &b, nullptr));
    const std::string aggregate = read(path("aggregate.html"));
    expectInOrder(aggregate,
                  {"<title>Run</title>", "id=\"aggregateSummaryDiv\"", "id=\"systemInfoTableDiv\"",
                   "</body>", "</html>", "function ShowTable", "function quicksort", "var isIE",
                   "function renderAggregateTable", "</script>", "<script", "var Phase = [",
                   "var aggData", "</script>"});
    for (const char* absent :
         {"var procData", "id=\"phaseSummaryDiv\"", "function showInputTable", "callTreeSummaryDiv",
          "createNode", "filterCTDataView", "phaseSummaryScrollTableDiv", "dataView ="}) {
        EXPECT_EQ(aggregate.find(absent), std::string::npos) << absent;
    }

    PTRawDataVector l = run(), r = run(2.0);
    ASSERT_TRUE(ptWriteDifferenceReport(t, path("difference.html"), "Run", "Old", "New", &l, &r,
                                        nullptr, nullptr, "time"));
    expectInOrder(read(path("difference.html")), {"<title>Run Performance Comparison</title>",
                                                  "id=\"headerTable\"",
                                                  "id=\"phaseSummaryDiv\"",
                                                  "id=\"aggregateSummaryDiv\"",
                                                  "id=\"systemInfoTableDiv\"",
                                                  "</div>\n<script",
                                                  "function ShowTable",
                                                  "id=\"aggregateSummaryScrollTableDiv\"",
                                                  "id=\"phaseSummaryScrollTableDiv\"",
                                                  "</body>",
                                                  "</html>",
                                                  "function quicksort",
                                                  "var isIE",
                                                  "var lhsLabel = escapeMarkup('Old')",
                                                  "var procData",
                                                  "function renderAggregateTable",
                                                  "function showInputTable",
                                                  "</script>",
                                                  "var Phase = [",
                                                  "var aggData",
                                                  "</script>"});
    // A comparison has no call tree.
    const std::string difference = read(path("difference.html"));
    for (const char* absent : {"id=\"callTreeSummaryDiv\"", "createNode", "filterCTDataView"}) {
        EXPECT_EQ(difference.find(absent), std::string::npos) << absent;
    }

    PTRawDataVector l2 = run(), r2 = run(2.0);
    ASSERT_TRUE(ptWriteAggregateDifferenceReport(t, path("aggdiff.html"), "GLOBAL", "LHS", "RHS",
                                                 &l2, &r2, nullptr, nullptr, "basicmemory"));
    const std::string aggdiff = read(path("aggdiff.html"));
    expectInOrder(aggdiff,
                  {"<title>Performance Comparison</title>", "id=\"aggregateSummaryDiv\"",
                   "id=\"systemInfoTableDiv\"", "</div>\n<script", "function ShowTable",
                   "id=\"phaseSummaryScrollTableDiv\"", "</body>", "</html>", "function quicksort",
                   "function renderAggregateTable", "</script>", "var aggData", "</script>"});
    EXPECT_EQ(aggdiff.find("var procData"), std::string::npos);
}

TEST_F(ReportWriters, FixedPagesStandInForAReport) {
    PerformanceTracer& t = *ptTracer();
    // An end without its start is broken instrumentation.
    PTRawDataVector broken = run();
    broken.erase(broken.begin());
    ASSERT_TRUE(ptWriteDetailReport(t, path("broken.html"), "GLOBAL", "GLOBAL", "time", true,
                                    &broken, nullptr));
    EXPECT_EQ(read(path("broken.html")), ptHtmlInstrumentationErrorPage());

    // Detailed memory that was not taken.
    PTRawDataVector plain = {makePoint(0, "Run", "a", true, 0.0),
                             makePoint(0, "Run", "a", false, 1.0)};
    ASSERT_TRUE(ptWriteAggregateReport(t, path("missing.html"), "GLOBAL", "GLOBAL",
                                       "detailedmemory", true, &plain, nullptr));
    EXPECT_EQ(read(path("missing.html")), ptHtmlMissingStatisticsPage(false));
    PTRawDataVector left = run(), right = {makePoint(0, "Run", "a", true, 0.0),
                                           makePoint(0, "Run", "a", false, 1.0)};
    ASSERT_TRUE(ptWriteDifferenceReport(t, path("missing_diff.html"), "GLOBAL", "LHS", "RHS", &left,
                                        &right, nullptr, nullptr, "detailedmemory"));
    EXPECT_EQ(read(path("missing_diff.html")), ptHtmlMissingStatisticsPage(true));

    // A comparison with broken instrumentation on either side leaves an empty file.
    for (int side = 0; side < 2; ++side) {
        PTRawDataVector good = run(), bad = run();
        bad.pop_back();  // a start that never ends
        const std::string file = path("broken_diff" + std::to_string(side) + ".html");
        EXPECT_FALSE(ptWriteDifferenceReport(t, file, "GLOBAL", "LHS", "RHS",
                                             side == 0 ? &bad : &good, side == 0 ? &good : &bad,
                                             nullptr, nullptr, "time"));
        EXPECT_TRUE(std::filesystem::exists(file));
        EXPECT_EQ(std::filesystem::file_size(file), 0u);
    }

    // No file to be had.
    PTRawDataVector data = run();
    EXPECT_FALSE(ptWriteDetailReport(t, path("no/such/folder.html"), "GLOBAL", "GLOBAL", "time",
                                     true, &data, nullptr));
    EXPECT_FALSE(ptWriteAggregateDifferenceReport(t, path("no/such/folder.html"), "GLOBAL", "LHS",
                                                  "RHS", &data, &data, nullptr, nullptr, "time"));
}

TEST_F(ReportWriters, DepthRulesAndTheMemoryChartsHandler) {
    PerformanceTracer& t = *ptTracer();
    std::mt19937 rng(5);
    pt::testing::LogOptions options;
    options.points = 400;
    options.maxDepth = 11;
    PTRawDataVector deep = pt::testing::randomLog(rng, options);
    PTRawDataVector shallow = run();
    PTRawDataVector deepCopy = pt::testing::copyLog(deep);
    PTRawDataVector probe = pt::testing::copyLog(deep);
    const int levels = ptGetProcessedDataForGroupings(&probe, {"GLOBAL"})._levelCount;
    ASSERT_GT(levels, 8);
    const std::string deepest = "td.phaseNameCell" + std::to_string(levels - 1) + " {";
    const std::string beyond = "td.phaseNameCell" + std::to_string(levels) + " {";
    ASSERT_TRUE(
        ptWriteDetailReport(t, path("deep.html"), "GLOBAL", "", "time", true, &deep, nullptr));
    const std::string page = read(path("deep.html"));
    EXPECT_NE(page.find("<title>Performance Tracer Report</title>"), std::string::npos);
    EXPECT_NE(page.find(deepest), std::string::npos);
    EXPECT_EQ(page.find(beyond), std::string::npos);
    // A comparison takes the deeper side.
    ASSERT_TRUE(ptWriteDifferenceReport(t, path("deep_diff.html"), "GLOBAL", "LHS", "RHS", &shallow,
                                        &deepCopy, nullptr, nullptr, "time"));
    EXPECT_NE(read(path("deep_diff.html")).find(deepest), std::string::npos);

    // No page binds a mouse handler to a chart it does not have.
    PTRawDataVector withMemory = run();
    ASSERT_TRUE(ptWriteAggregateReport(t, path("memory.html"), "GLOBAL", "GLOBAL", "detailedmemory",
                                       true, &withMemory, nullptr));
    const std::string memory = read(path("memory.html"));
    EXPECT_EQ(memory.find("onmousemove"), std::string::npos);
    EXPECT_NE(memory.find("var aggDataStruct = makeStruct(\"IsParent Phase Count Free"),
              std::string::npos);

    // A Detail page in detailed memory binds it, and its chart stands after the data.
    PTRawDataVector detailMemory = run();
    ASSERT_TRUE(ptWriteDetailReport(t, path("memory_detail.html"), "GLOBAL", "GLOBAL",
                                    "detailedmemory", true, &detailMemory, nullptr));
    const std::string chart = read(path("memory_detail.html"));
    expectInOrder(chart, {"onmousemove=\"dialogMove(event)\"", "ShowTable('memCanvas')",
                          "var procData", "var aggData", "</script>", "var canvasSupport = false;",
                          "id=\"memoryCanvasTable\"", "</script>", "<script",
                          "function renderMemChart", "</script>"});
    // So does a Difference page, with the chart of two runs in the same place.
    PTRawDataVector leftMemory = run(), rightMemory = run();
    ASSERT_TRUE(ptWriteDifferenceReport(t, path("memory_diff.html"), "GLOBAL", "LHS", "RHS",
                                        &leftMemory, &rightMemory, nullptr, nullptr,
                                        "detailedmemory"));
    expectInOrder(
        read(path("memory_diff.html")),
        {"onmousemove=\"dialogMove(event)\"", "ShowTable('memCanvas')", "var procData",
         "var aggData", "</script>", "var canvasSupport = false;", "id=\"absDevCanvasDiffDiv\"",
         "</script>", "<script", "colorsShaded", "function renderMemChart", "</script>"});
    PTRawDataVector timeRun = run();
    ASSERT_TRUE(ptWriteDetailReport(t, path("time_detail.html"), "GLOBAL", "GLOBAL", "time", true,
                                    &timeRun, nullptr));
    for (const char* absent : {"onmousemove", "memCanvas", "canvasSupport", "renderMemChart"}) {
        EXPECT_EQ(read(path("time_detail.html")).find(absent), std::string::npos) << absent;
    }
}

TEST_F(ReportWriters, SystemInformationOfEachSide) {
    PerformanceTracer& t = *ptTracer();
    SystemInfoRecord file{"file cpu", "", "", "", "", "", "", "file products"};
    PTRawDataVector a = run();
    ASSERT_TRUE(
        ptWriteDetailReport(t, path("file.html"), "GLOBAL", "GLOBAL", "time", true, &a, &file));
    EXPECT_NE(read(path("file.html")).find("<td>file cpu</td>"), std::string::npos);
    // A comparison without a left record shows its labels with no values; the right side
    // without one is this machine.
    PTRawDataVector l = run(), r = run();
    ASSERT_TRUE(ptWriteDifferenceReport(t, path("sides.html"), "GLOBAL", "LHS", "RHS", &l, &r,
                                        nullptr, nullptr, "time"));
    const std::string sides = read(path("sides.html"));
    EXPECT_NE(sides.find("<tr><td><b>Processor: </b></td><td></td></tr>"), std::string::npos);
    EXPECT_NE(sides.find("<pre></pre></td><td><pre>"), std::string::npos);
}

}  // namespace
}  // namespace pt::report
