#include "report/diagnostic_report.h"

#include <performance_tracer/names.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/tracer.h>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include <unistd.h>

#include "golden_text.h"
#include "large_inputs.h"
#include "processing/random_log.h"

namespace {

using pt::testing::makePoint;

class DiagnosticReport : public ::testing::Test {
protected:
    void SetUp() override {
        ptClearRawData();
        _file = (std::filesystem::temp_directory_path() /
                 ("pt_diagnostic_" + std::to_string(::getpid()) + ".html"))
                    .string();
    }
    void TearDown() override { std::filesystem::remove(_file); }

    std::string write(PTRawDataVector& points, const std::string& grouping) {
        EXPECT_TRUE(writeDiagnosticReport(*ptTracer(), _file, grouping, &points));
        std::ifstream in(_file);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    std::string _file;
};

// The pages of: all three classes, with an error row; host-language rows alone (no model
// columns); level 1 (two blank cells for host-language rows, no state-chart rows); a wait between
// top-level phases and one inside a phase (generated points, which have no row); no data.
TEST_F(DiagnosticReport, GoldenPagesOfEachWidthAndOfWaits) {
    PTRawDataVector points = {
        makePoint(0, "Build", "run", true, 1.5, 0.25),
        makePoint(1, "Build", "compile", true, 12.0, 0.123, "engine"),
        makePoint(2, "Build", "step", true, 12.01, 0.0, "engine"),
        makePoint(2, "Build", "step", false, 12.02, 0.0, "engine"),
        makePoint(1, "Build", "compile", false, 12.03, 0.0, "engine"),
        makePoint(0, "Build", "stray", false, 12.04),  // does not fit the open "run"
        makePoint(0, "Build", "run", false, 12.05),
    };
    points[0]->_detailedMem =
        boost::make_shared<pt::DetailedMemStats>(1048576.0, 0, 2097152.0, 0, 0);
    points[5]->_detailedMem.reset();
    for (int i : {2, 3}) {
        dynamic_cast<PTYlvaneDataPoint&>(*points[i])._chartID =
            static_cast<std::int32_t>(ptNameID(PT_TABLE_CHART, "chart <1>"));
    }
    std::string text = "=== all three classes ===\n" + write(points, "Build");

    PTRawDataVector widths = {
        makePoint(0, "Host", "a", true, 0),  makePoint(0, "Host", "a", false, 0),
        makePoint(1, "Model", "b", true, 0), makePoint(1, "Model", "b", false, 0),
        makePoint(2, "Chart", "c", true, 0), makePoint(2, "Chart", "c", false, 0)};
    PerformanceTracer& tracer = *ptTracer();
    EXPECT_EQ(
        (std::vector{maxPointType(tracer, &widths, "Host"), maxPointType(tracer, &widths, "Model"),
                     maxPointType(tracer, &widths, "GLOBAL")}),
        (std::vector{0, 1, 2}));
    text += "=== host-language rows alone ===\n" + write(widths, "Host");
    PTRawDataVector mixed = {
        makePoint(0, "M", "a", true, 0),     makePoint(1, "M", "b", true, 0),
        makePoint(2, "Chart", "c", true, 0), makePoint(2, "Chart", "c", false, 0),
        makePoint(1, "M", "b", false, 0),    makePoint(0, "M", "a", false, 0)};
    text += "=== level 1 ===\n" + write(mixed, "M");
    PTRawDataVector waits = {
        makePoint(0, "G", "first", true, 0.0),  makePoint(0, "G", "first", false, 0.5),
        makePoint(0, "G", "second", true, 5.0), makePoint(0, "G", "inner", true, 6.0),
        makePoint(0, "G", "inner", false, 6.5), makePoint(0, "G", "second", false, 6.6)};
    text += "=== waits ===\n" + write(waits, "G");
    PTRawDataVector none;
    text += "=== no data ===\n" + write(none, "GLOBAL");
    pt::testing::expectGoldenText(PT_REPORT_GOLDEN_DIR, "diagnostic_report", text);

    // Without a list the pass takes a snapshot of the (empty) store; no file, no report.
    EXPECT_TRUE(writeDiagnosticReport(tracer, _file, "G", nullptr));
    EXPECT_FALSE(writeDiagnosticReport(tracer, "/nonexistent-folder/x.html", "G", &none));
}

std::size_t count(const std::string& text, const std::string& what) {
    std::size_t n = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) {
        ++n;
    }
    return n;
}

TEST_F(DiagnosticReport, PhasesNestedAHundredThousandDeep) {
    // The report of broken data never refuses: a log this deep once ran out of memory building
    // outline numbers and descendant lists that the report does not show.
    constexpr int kDepth = pt::testing::largeSize(100000, 20000);
    PTRawDataVector points;
    for (int i = 0; i < 2 * kDepth - 1; ++i) {  // the outermost phase never ends
        points.push_back(makePoint(0, "G", "p", i < kDepth, i * 1e-6));
    }
    const std::string page = write(points, "G");
    EXPECT_EQ(count(page, "<tr"), static_cast<std::size_t>(2 * kDepth));  // header, every point
    // A phase that never ends is red: the outermost start, alone.
    const std::size_t red = page.find("<tr style=\"background:#FF1A00\">");
    EXPECT_EQ(red, page.find("<tr", page.find("</th>")));
    EXPECT_EQ(count(page, "#FF1A00"), 1u);
    if (!pt::testing::kSanitized) {
        EXPECT_LT(pt::testing::peakResidentBytes(), pt::testing::kGiB);
    }
}

}  // namespace
