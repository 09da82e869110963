// The four writers: the blocks each kind of page leaves out, the fixed pages that stand in for a
// report, depth rules, the machines shown, and the failures.

#include <performance_tracer/processed_points.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/reports.h>
#include <performance_tracer/tracer.h>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <list>
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

    /// Two nested phases under "Run", with detailed memory unless told otherwise.
    PTRawDataVector* run(double scale = 1.0, bool memory = true) {
        PTRawDataVector& points =
            _runs.emplace_back(PTRawDataVector{makePoint(0, "Run", "outer", true, 0.0),
                                               makePoint(1, "Run", "inner", true, 0.01 * scale),
                                               makePoint(1, "Run", "inner", false, 0.02 * scale),
                                               makePoint(0, "Run", "outer", false, 0.03 * scale)});
        for (const auto& point : points) {
            if (memory) {
                point->_detailedMem =
                    boost::make_shared<pt::DetailedMemStats>(1e9, 2e8, 3e8, 4e7, 5e8);
            }
        }
        return &points;
    }

    /// The text of the page the writer makes, which it must be able to write.
    template <typename Write, typename... Args>
    std::string page(Write write, const Args&... args) {
        const std::string file = path("page.html");
        EXPECT_TRUE(write(*ptTracer(), file, args...));
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    /// Each of the markers, parted by '|', is found in the text, or none is.
    static void expectFound(bool present, const std::string& text, const std::string& markers) {
        for (std::size_t from = 0, bar = 0; from <= markers.size(); from = bar + 1) {
            bar = std::min(markers.find('|', from), markers.size());
            const std::string marker = markers.substr(from, bar - from);
            EXPECT_EQ(text.find(marker) != std::string::npos, present) << marker;
        }
    }

    std::filesystem::path _folder;
    std::list<PTRawDataVector> _runs;
};

TEST_F(ReportWriters, PagesLeaveOutTheBlocksOfTabsAndChartsTheyDoNotHave) {
    const struct {
        std::string text;
        const char* absent;
    } cases[] = {
        {page(ptWriteAggregateReport, "Run", "Run", "time", true, run(), nullptr),
         "var procData|id=\"phaseSummaryDiv\"|function showInputTable|callTreeSummaryDiv|"
         "createNode|filterCTDataView|phaseSummaryScrollTableDiv|dataView ="},
        {page(ptWriteDifferenceReport, "Run", "Old", "New", run(), run(2.0), nullptr, nullptr,
              "time"),
         "id=\"callTreeSummaryDiv\"|createNode|filterCTDataView"},
        {page(ptWriteAggregateDifferenceReport, "GLOBAL", "LHS", "RHS", run(), run(2.0), nullptr,
              nullptr, "basicmemory"),
         "var procData"},
        // No page binds a mouse handler to a chart it does not have.
        {page(ptWriteAggregateReport, "GLOBAL", "GLOBAL", "detailedmemory", true, run(), nullptr),
         "onmousemove"},
        {page(ptWriteDetailReport, "GLOBAL", "GLOBAL", "time", true, run(), nullptr),
         "onmousemove|memCanvas|canvasSupport|renderMemChart"},
    };
    for (const auto& c : cases) {
        expectFound(false, c.text, c.absent);
    }
}

TEST_F(ReportWriters, NameCellsIndentAsDeepAsTheDeeperSide) {
    std::mt19937 rng(5);
    PTRawDataVector deep = pt::testing::randomLog(rng, {.points = 400, .maxDepth = 11});
    PTRawDataVector deepCopy = pt::testing::copyLog(deep);
    PTRawDataVector probe = pt::testing::copyLog(deep);
    const int levels = ptGetProcessedDataForGroupings(&probe, {"GLOBAL"})._levelCount;
    ASSERT_GT(levels, 8);
    for (const std::string& text :
         {page(ptWriteDetailReport, "GLOBAL", "", "time", true, &deep, nullptr),
          page(ptWriteDifferenceReport, "GLOBAL", "LHS", "RHS", run(), &deepCopy, nullptr, nullptr,
               "time")}) {
        expectFound(true, text, "td.phaseNameCell" + std::to_string(levels - 1) + " {");
        expectFound(false, text, "td.phaseNameCell" + std::to_string(levels) + " {");
    }
}

TEST_F(ReportWriters, FixedPagesStandInForAReport) {
    // An end without its start is broken instrumentation.
    PTRawDataVector* broken = run();
    broken->erase(broken->begin());
    EXPECT_EQ(page(ptWriteDetailReport, "GLOBAL", "GLOBAL", "time", true, broken, nullptr),
              ptHtmlInstrumentationErrorPage());

    // Detailed memory that was not taken.
    EXPECT_EQ(page(ptWriteAggregateReport, "GLOBAL", "GLOBAL", "detailedmemory", true,
                   run(1.0, false), nullptr),
              ptHtmlMissingStatisticsPage(false));
    EXPECT_EQ(page(ptWriteDifferenceReport, "GLOBAL", "LHS", "RHS", run(), run(1.0, false), nullptr,
                   nullptr, "detailedmemory"),
              ptHtmlMissingStatisticsPage(true));

    // A comparison with broken instrumentation on either side leaves an empty file.
    PerformanceTracer& t = *ptTracer();
    for (int side = 0; side < 2; ++side) {
        PTRawDataVector* good = run();
        PTRawDataVector* bad = run();
        bad->pop_back();  // a start that never ends
        const std::string file = path("broken" + std::to_string(side) + ".html");
        EXPECT_FALSE(ptWriteDifferenceReport(t, file, "GLOBAL", "LHS", "RHS",
                                             side == 0 ? bad : good, side == 0 ? good : bad,
                                             nullptr, nullptr, "time"));
        EXPECT_EQ(std::filesystem::file_size(file), 0u);
    }

    // No file to be had.
    const std::string nowhere = path("no/such/folder.html");
    EXPECT_FALSE(ptWriteDetailReport(t, nowhere, "GLOBAL", "GLOBAL", "time", true, run(), nullptr));
    EXPECT_FALSE(ptWriteAggregateDifferenceReport(t, nowhere, "GLOBAL", "LHS", "RHS", run(), run(),
                                                  nullptr, nullptr, "time"));
}

TEST_F(ReportWriters, SystemInformationOfEachSide) {
    SystemInfoRecord file{"file cpu", "", "", "", "", "", "", "file products"};
    expectFound(true, page(ptWriteDetailReport, "GLOBAL", "GLOBAL", "time", true, run(), &file),
                "<td>file cpu</td>");
    // A comparison without a left record shows its labels with no values; the right side
    // without one is this machine.
    expectFound(true,
                page(ptWriteDifferenceReport, "GLOBAL", "LHS", "RHS", run(), run(), nullptr,
                     nullptr, "time"),
                "<tr><td><b>Processor: </b></td><td></td></tr>|<pre></pre></td><td><pre>");
}

}  // namespace
}  // namespace pt::report
