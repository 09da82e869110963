#include "tracer_test_support.h"

namespace {

using Logging = TracerTest;

TEST_F(Logging, DisabledCallsLeaveNoTrace) {
    const std::int32_t grouping = ptAddGrouping("Quiet");
    const std::vector<std::size_t> sizes = tableSizes();
    const std::size_t models = tracer()._modelStatisticsTypes->size();
    EXPECT_FALSE(ptLogOrviaData("Quiet", "p", true));
    EXPECT_FALSE(ptLogOrviaData(grouping, "p", true));
    EXPECT_FALSE(ptLogKestruneData("Quiet", "m", "t", "p", true));
    EXPECT_FALSE(ptLogKestruneData(grouping, "m", "t", "p", true));
    EXPECT_FALSE(ptLogYlvaneData("Quiet", "m", "t", "mc", "c", "p", true));
    EXPECT_FALSE(ptLogYlvaneData(grouping, "m", "t", "mc", "c", "p", true));
    EXPECT_FALSE(ptLogKsStartupData("p", true));
    EXPECT_FALSE(ptLogOrviaData(-1, "p", true));
    EXPECT_FALSE(ptLogOrviaData(1 << 30, "p", true));
    EXPECT_TRUE(raw().empty());
    EXPECT_EQ(tableSizes(), sizes);
    EXPECT_EQ(tracer()._modelStatisticsTypes->size(), models);
}

TEST_F(Logging, EnabledGroupingRecordsAStartEndPair) {
    const std::int32_t grouping = ptAddGrouping("Compile");
    ptEnableTracer("Compile", true);
    EXPECT_TRUE(ptLogOrviaData("Compile", "parse", true));
    EXPECT_TRUE(ptLogOrviaData(grouping, "parse", false));

    ASSERT_EQ(raw().size(), 2u);
    const auto& start = pointAt<PTOrviaDataPoint>(0);
    const auto& end = pointAt<PTOrviaDataPoint>(1);
    EXPECT_EQ(start._pointType, 0);
    EXPECT_TRUE(start._groupingID == grouping && end._groupingID == grouping);
    EXPECT_EQ(phases(), (std::vector<std::string>{"parse", "parse"}));
    EXPECT_TRUE(start._isPhaseStart && !end._isPhaseStart);
    EXPECT_FALSE(start._isGenerated || end._isGenerated);
    EXPECT_GT(start._wcTime, 0.0);
    EXPECT_LE(start._wcTime, end._wcTime);
    EXPECT_LE(start._cpuTime, end._cpuTime);
    EXPECT_EQ(start._statisticsTypeID, -1);  // host-language points carry no statistics type
    // No memory is sampled here, but every live point has two zero records.
    ASSERT_TRUE(start._basicMem && start._detailedMem);
    EXPECT_EQ(start._basicMem->procMemUsage, 0.0);
    EXPECT_EQ(start._detailedMem->commitMem, 0.0);

    ptEnableTracer("Compile", false);
    EXPECT_FALSE(ptLogOrviaData(grouping, "parse", true));
    EXPECT_EQ(raw().size(), 2u);
}

TEST_F(Logging, GlobalLoggingRecordsAnyGrouping) {
    ptEnableGlobalLogging(true);
    const std::size_t groupings = tableSize(PT_TABLE_GROUPING);
    EXPECT_TRUE(ptLogOrviaData("Never added", "p", true));
    EXPECT_TRUE(ptLogOrviaData(99, "p", true));
    EXPECT_TRUE(ptLogKsStartupData("boot", false));
    ASSERT_EQ(raw().size(), 3u);
    EXPECT_EQ(raw()[0]->_groupingID, -1);
    EXPECT_EQ(raw()[1]->_groupingID, 99);
    EXPECT_EQ(tableSize(PT_TABLE_GROUPING), groupings);
}

TEST_F(Logging, EachGroupingIsDecidedOnItsOwn) {
    ptAddGrouping("Parent", {"Child"});
    ptEnableTracer("Parent", true);
    ptEnableTracer("Child", false);
    EXPECT_TRUE(ptLogOrviaData("Parent", "p", true));
    EXPECT_FALSE(ptLogOrviaData("Child", "p", true));
    ptEnableTracer("Parent", false);
    ptEnableTracer("Child", true);
    EXPECT_TRUE(ptLogOrviaData("Child", "p", true));
    EXPECT_FALSE(ptLogOrviaData("Parent", "p", true));

    // Startup logging has a grouping of its own.
    ptEnableTracer("Kestrune Startup", true);
    EXPECT_TRUE(ptLogKsStartupData("boot", true));
    EXPECT_EQ(raw().back()->_pointType, 0);
    EXPECT_EQ(ptNameStr(PT_TABLE_GROUPING, raw().back()->_groupingID), "Kestrune Startup");
    ptEnableTracer("Kestrune Startup", false);
    EXPECT_FALSE(ptLogKsStartupData("boot", false));

    // The hot path's grouping id is that of "EvalPrms".
    const int evalPrms = KsPerformanceTracingPoint::_groupingID;
    EXPECT_FALSE(ptLogOrviaData(evalPrms, "eval", true));
    ptEnableTracer("EvalPrms", true);
    EXPECT_TRUE(ptLogOrviaData(evalPrms, "eval", true));
    EXPECT_TRUE(ptLogKestruneData(evalPrms, "m", "t", "eval", false));
    EXPECT_EQ(raw().size(), 5u);
}

TEST_F(Logging, ModelPointsCarryNamesAndStatisticsTypes) {
    ptEnableTracer("Build", true);
    EXPECT_TRUE(ptLogKestruneData("Build", "engine", "sim", "compile", true));
    ASSERT_EQ(tracer()._modelStatisticsTypes->count("engine"), 1u);  // a model seen is entered
    EXPECT_EQ(tracer()._modelStatisticsTypes->at("engine"), "");
    ptSetStatisticsTypeForModel("engine", "Incremental");
    EXPECT_TRUE(ptLogKestruneData("Build", "engine", "sim", "compile", false));
    EXPECT_TRUE(ptLogYlvaneData(groupingID("Build"), "engine", "rtw", "machine 1", "chart A",
                                "transition", true));

    ASSERT_EQ(raw().size(), 3u);
    const auto& first = pointAt<PTKestruneDataPoint>(0);
    EXPECT_EQ(first._pointType, 1);
    EXPECT_EQ(ptGetModelStr(first._modelID), "engine");
    EXPECT_EQ(ptGetTargetStr(first._targetID), "sim");
    // The first point of a model without a type enters the empty type; later points see the
    // type set in between, earlier ones keep theirs.
    EXPECT_NE(first._statisticsTypeID, -1);
    EXPECT_EQ(ptGetStatisticsTypeStr(first._statisticsTypeID), "");
    EXPECT_EQ(ptGetStatisticsTypeStr(pointAt<PTKestruneDataPoint>(1)._statisticsTypeID),
              "Incremental");

    const auto& chart = pointAt<PTYlvaneDataPoint>(2);
    EXPECT_EQ(chart._pointType, 2);
    EXPECT_EQ(chart._modelID, first._modelID);
    EXPECT_EQ(ptGetTargetStr(chart._targetID), "rtw");
    EXPECT_EQ(ptGetMachineStr(chart._machineID), "machine 1");
    EXPECT_EQ(ptGetChartStr(chart._chartID), "chart A");
    EXPECT_EQ(ptGetPhaseStr(chart._phaseID), "transition");
    EXPECT_EQ(ptGetStatisticsTypeStr(chart._statisticsTypeID), "Incremental");
}

}  // namespace
