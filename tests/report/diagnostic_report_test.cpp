#include "report/diagnostic_report.h"

#include <performance_tracer/names.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/tracer.h>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <filesystem>
#include <fstream>
#include <sstream>

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
        std::stringstream text;
        text << in.rdbuf();
        return text.str();
    }

    std::string _file;
};

TEST_F(DiagnosticReport, GoldenPageWithAnErrorRowAndAllThreeClasses) {
    PTRawDataVector points = {
        makePoint(0, "Build", "run", true, 1.5, 0.25),
        makePoint(1, "Build", "compile", true, 12.0, 0.123),
        makePoint(2, "Build", "step", true, 12.01),
        makePoint(2, "Build", "step", false, 12.02),
        makePoint(1, "Build", "compile", false, 12.03),
        makePoint(0, "Build", "stray", false, 12.04),  // does not fit the open "run"
        makePoint(0, "Build", "run", false, 12.05),
    };
    points[0]->_detailedMem =
        boost::make_shared<pt::DetailedMemStats>(1048576.0, 0, 2097152.0, 0, 0);
    points[5]->_detailedMem.reset();
    for (int i : {1, 2, 3, 4}) {
        auto* model = dynamic_cast<PTKestruneDataPoint*>(points[i].get());
        model->_modelID = static_cast<std::int32_t>(ptNameID(PT_TABLE_MODEL, "engine"));
    }
    for (int i : {2, 3}) {
        dynamic_cast<PTYlvaneDataPoint&>(*points[i])._chartID =
            static_cast<std::int32_t>(ptNameID(PT_TABLE_CHART, "chart <1>"));
    }
    pt::testing::expectGoldenText(PT_REPORT_GOLDEN_DIR, "diagnostic_report",
                                  write(points, "Build"));
}

std::size_t count(const std::string& text, const std::string& what) {
    std::size_t n = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) {
        ++n;
    }
    return n;
}

TEST_F(DiagnosticReport, ColumnsFollowTheWidestPointOfTheGrouping) {
    PTRawDataVector points = {
        makePoint(0, "Host", "a", true, 0),  makePoint(0, "Host", "a", false, 0),
        makePoint(1, "Model", "b", true, 0), makePoint(1, "Model", "b", false, 0),
        makePoint(2, "Chart", "c", true, 0), makePoint(2, "Chart", "c", false, 0)};
    PerformanceTracer& tracer = *ptTracer();
    EXPECT_EQ(maxPointType(tracer, &points, "Host"), 0);
    EXPECT_EQ(maxPointType(tracer, &points, "Model"), 1);
    EXPECT_EQ(maxPointType(tracer, &points, "GLOBAL"), 2);
    EXPECT_EQ(maxPointType(tracer, nullptr, "GLOBAL"), 0);

    const std::string host = write(points, "Host");
    EXPECT_EQ(host.find("<th>Model</th>"), std::string::npos);
    EXPECT_EQ(host.find("&nbsp;"), std::string::npos);

    // At level 1 the host-language rows get two blank cells; the state-chart rows are left out
    // below level 2.
    PTRawDataVector mixed = {
        makePoint(0, "M", "a", true, 0),     makePoint(1, "M", "b", true, 0),
        makePoint(2, "Chart", "c", true, 0), makePoint(2, "Chart", "c", false, 0),
        makePoint(1, "M", "b", false, 0),    makePoint(0, "M", "a", false, 0)};
    const std::string level1 = write(mixed, "M");
    EXPECT_NE(level1.find("<th>Target</th>"), std::string::npos);
    EXPECT_EQ(level1.find("<th>Machine</th>"), std::string::npos);
    EXPECT_NE(level1.find("<td>Orvia</td>\n                <td>M</td>\n                "
                          "<td>&nbsp;</td>\n                <td>&nbsp;</td>\n"
                          "                <td>a</td>"),
              std::string::npos);
    EXPECT_EQ(level1.find("Ylvane"), std::string::npos);

    // No data is a header alone; without a list the pass takes a snapshot of the (empty) store.
    PTRawDataVector none;
    EXPECT_NE(
        write(none, "GLOBAL").find("<th>Non-process</th>\n            </tr>\n        </table>"),
        std::string::npos);
    EXPECT_FALSE(writeDiagnosticReport(tracer, "/nonexistent-folder/x.html", "G", &none));
    EXPECT_TRUE(writeDiagnosticReport(tracer, _file, "G", nullptr));
}

TEST_F(DiagnosticReport, AWaitBetweenTopLevelPhasesAndGeneratedRows) {
    // Nothing is open during the wait between the two phases; the wait inside the second one
    // makes generated points, which have no row.
    PTRawDataVector points = {
        makePoint(0, "G", "first", true, 0.0),  makePoint(0, "G", "first", false, 0.5),
        makePoint(0, "G", "second", true, 5.0), makePoint(0, "G", "inner", true, 6.0),
        makePoint(0, "G", "inner", false, 6.5), makePoint(0, "G", "second", false, 6.6)};
    const std::string page = write(points, "G");
    EXPECT_EQ(points.size(), 8u);
    EXPECT_EQ(count(page, "<tr>"), 7u);  // the header and six logged points
    EXPECT_EQ(page.find("_self"), std::string::npos);
    EXPECT_EQ(page.find("#FF1A00"), std::string::npos);
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
