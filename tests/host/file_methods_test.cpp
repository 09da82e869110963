// Saves and loads of runs through the methods, and the reading of rows of every form.

#include <pt_platform/hvf.h>

#include <boost/make_shared.hpp>

#include "host/persistence.h"
#include "method_test_support.h"

namespace pt::testing {
namespace {

class FileMethods : public FileMethodTest {
protected:
    /// The shared run, with memory figures and a generated point.
    static void logRunWithMemory() {
        logRun();
        auto& raw = *ptTracer()->_rawData;
        raw[1]->_basicMem = boost::make_shared<pt::BasicMemStats>(1e6, 2e6, 3e6);
        raw[2]->_detailedMem = boost::make_shared<pt::DetailedMemStats>(5, 4, 3, 2, 1);
        raw[0]->_isGenerated = true;  // not saved
    }
};

TEST_F(FileMethods, ARunSurvivesASaveAndALoad) {
    logRunWithMemory();
    const std::string file = path("run.hvf");
    call("PerfTools.Tracer.saveToFile", valuesOf(text(file)));
    const std::vector<std::string> saved = describe(*ptTracer()->_rawData);

    // Another run, whose tables give other ids to the same names.
    ptClearRawData();
    ptNameID(PT_TABLE_PHASE, "something else first");
    ptNameID(PT_TABLE_MODEL, "another model");
    ptEnableGlobalLogging(true);
    ptLogOrviaData("Run", "replaced", true);
    ptEnableGlobalLogging(false);
    ptEnableTracer("Run", true);
    call("PerfTools.Tracer.loadTracerData", valuesOf(text(file)));

    // The root goes from phase names, _isGenerated is not kept, and the rows of host-language
    // points carry no detailed memory figures.
    std::vector<std::string> expected = saved;
    expected[0].replace(expected[0].find("/opt/orvia/"), 11, "").back() = '0';
    expected[5].replace(expected[5].find("/opt/orvia/"), 11, "");
    for (const std::size_t orvia : {0, 5, 6, 7}) {
        expected[orvia].erase(expected[orvia].find("|d0 0"), 5);
    }
    EXPECT_EQ(describe(*ptTracer()->_rawData), expected);
    EXPECT_EQ(ptTracer()->_systemInfo->totalPhysMemStr, "N/A");

    // Logging goes on after the loaded points; the groupings and their states are as they were.
    ptLogOrviaData("Run", "after", true);
    ptEnableTracer("Run", false);
    EXPECT_EQ(ptTracer()->_rawData->size(), saved.size() + 1);
}

TEST_F(FileMethods, AFileWithoutTheVariablesEmptiesTheStore) {
    logRun();
    hvFile* other = hvfOpen(path("other.hvf").c_str(), "w");
    const hvUniqueArray value(hvCreateDoubleScalar(1));
    hvfPutVariable(other, "unrelated", value.get());
    hvfClose(other);
    // The root is stored before the input is looked at; a failed load keeps nothing else.
    setPathStripRoot("");
    EXPECT_EQ(errorOf("PerfTools.Tracer.loadTracerData", valuesOf(number(1))),
              tracerError("ParameterMismatchString", {"Filename"}));
    EXPECT_EQ(ptDisplayPhaseName("/opt/orvia/x", false), "x");
    call("PerfTools.Tracer.loadTracerData", valuesOf(text(path("other.hvf"))));
    EXPECT_TRUE(ptTracer()->_rawData->empty());
}

TEST_F(FileMethods, RowsAreReadByTheirElementCount) {
    // A 17-element row is the older form of a block-diagram point, and a host-language point
    // reads it: what lies past its own cells is lost.
    hvUniqueArray old(hvCreateCellMatrix(1, 17));
    hvSetCell(old.get(), 0, hvCreateDoubleScalar(1));  // no version text: the older form
    for (std::size_t i = 1; const char* s : {"old phase", "Run", "model"}) {
        hvSetCell(old.get(), i++, hvCreateString(s));
    }
    hvUniqueArray cells(hvCreateCellMatrix(1, 4));
    hvSetCell(cells.get(), 0, old.release());
    PTYlvaneDataPoint chart;
    chart._phaseID = static_cast<std::int32_t>(ptNameID(PT_TABLE_PHASE, "chart phase"));
    hvSetCell(cells.get(), 1, chart.toRow());
    // An empty element hides itself and all after it.
    hvSetCell(cells.get(), 3, PTKestruneDataPoint().toRow());

    PTRawDataVector points;
    performance_tracer::readRawDataCells(cells.get(), points);
    ASSERT_EQ(points.size(), 2u);
    const PTOrviaDataPoint& first = *points[0];
    const PTOrviaDataPoint& second = *points[1];
    EXPECT_EQ(typeid(first), typeid(PTOrviaDataPoint));
    EXPECT_EQ(ptGetPhaseStr(points[0]->_phaseID), "old phase");
    EXPECT_EQ(ptGetStatisticsTypeStr(points[0]->_statisticsTypeID), "model");
    EXPECT_EQ(typeid(second), typeid(PTYlvaneDataPoint));

    performance_tracer::readRawDataCells(nullptr, points);
    EXPECT_EQ(points.size(), 2u);
    const hvUniqueArray notCells(hvCreateDoubleMatrix(1, 5));
    performance_tracer::readRawDataCells(notCells.get(), points);
    EXPECT_EQ(points.size(), 2u);

    SystemInfoRecord record;
    record.processorStr = "kept";
    performance_tracer::readSystemInfoStruct(notCells.get(), record);
    EXPECT_EQ(record.processorStr, "kept");
    const char* names[] = {"a", "b"};
    const hvUniqueArray partial(hvCreateStructMatrix(1, 1, 2, names));
    hvSetFieldByNumber(partial.get(), 0, 0, hvCreateString("by position"));
    hvSetFieldByNumber(partial.get(), 0, 1, hvCreateDoubleScalar(3));
    performance_tracer::readSystemInfoStruct(partial.get(), record);
    EXPECT_EQ(record.processorStr, "by position");
    EXPECT_EQ(record.cpuSpeedStr, "");           // no text
    EXPECT_EQ(record.installedProductsStr, "");  // no such field
}

}  // namespace
}  // namespace pt::testing
