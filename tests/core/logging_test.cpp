#include "tracer_test_support.h"

namespace {

using Logging = TracerTest;
using Lines = std::vector<std::string>;

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
    // Host-language points carry no statistics type; no memory is sampled here, but every
    // live point has two zero records.
    EXPECT_EQ(store(), (Lines{"0 'parse' 'Compile' #-1 start detailed 0 0 0 0 0 basic 0 0 0",
                              "0 'parse' 'Compile' #-1 end detailed 0 0 0 0 0 basic 0 0 0"}));
    EXPECT_GT(raw()[0]->_wcTime, 0.0);
    EXPECT_LE(raw()[0]->_wcTime, raw()[1]->_wcTime);
    EXPECT_LE(raw()[0]->_cpuTime, raw()[1]->_cpuTime);
    ptEnableTracer("Compile", false);
    EXPECT_FALSE(ptLogOrviaData(grouping, "parse", true));
    EXPECT_EQ(raw().size(), 2u);
}

TEST_F(Logging, GlobalLoggingRecordsAnyGrouping) {
    ptEnableGlobalLogging(true);
    const std::size_t groupings = tableSize(PT_TABLE_GROUPING);
    EXPECT_TRUE(ptLogOrviaData("Never added", "p", true));
    EXPECT_TRUE(ptLogOrviaData(1 << 30, "p", true));
    EXPECT_TRUE(ptLogKsStartupData("boot", false));
    EXPECT_EQ(store(), (Lines{"0 'p' #-1 #-1 start detailed 0 0 0 0 0 basic 0 0 0",
                              "0 'p' #1073741824 #-1 start detailed 0 0 0 0 0 basic 0 0 0",
                              "0 'boot' #-1 #-1 end detailed 0 0 0 0 0 basic 0 0 0"}));
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
    ptEnableTracer("Kestrune Startup", false);
    EXPECT_FALSE(ptLogKsStartupData("boot", false));
    // The hot path's grouping id is that of "EvalPrms".
    const int evalPrms = KsPerformanceTracingPoint::_groupingID;
    EXPECT_FALSE(ptLogOrviaData(evalPrms, "eval", true));
    ptEnableTracer("EvalPrms", true);
    EXPECT_TRUE(ptLogOrviaData(evalPrms, "eval", true));
    EXPECT_TRUE(ptLogKestruneData(evalPrms, "m", "t", "eval", false));
    EXPECT_EQ(store(),
              (Lines{"0 'p' 'Parent' #-1 start detailed 0 0 0 0 0 basic 0 0 0",
                     "0 'p' 'Child' #-1 start detailed 0 0 0 0 0 basic 0 0 0",
                     "0 'boot' 'Kestrune Startup' #-1 start detailed 0 0 0 0 0 basic 0 0 0",
                     "0 'eval' 'EvalPrms' #-1 start detailed 0 0 0 0 0 basic 0 0 0",
                     "1 'eval' 'EvalPrms' 'm' 't' '' end detailed 0 0 0 0 0 basic 0 0 0"}));
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
    // The first point of a model without a type enters the empty type; later points see the
    // type set in between, earlier ones keep theirs.
    EXPECT_EQ(
        store(),
        (Lines{
            "1 'compile' 'Build' 'engine' 'sim' '' start detailed 0 0 0 0 0 basic 0 0 0",
            "1 'compile' 'Build' 'engine' 'sim' 'Incremental' end detailed 0 0 0 0 0 basic 0 0 0",
            "2 'transition' 'Build' 'engine' 'rtw' 'machine 1' 'chart A' 'Incremental' start "
            "detailed 0 0 0 0 0 basic 0 0 0"}));
}

}  // namespace
