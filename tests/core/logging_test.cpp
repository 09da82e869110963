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

TEST_F(Logging, GlobalLoggingEachGroupingAndStatisticsTypes) {
    // Under global logging an unknown grouping records with id -1 and adds no name.
    ptEnableGlobalLogging(true);
    const std::size_t groupings = tableSize(PT_TABLE_GROUPING);
    EXPECT_TRUE(ptLogOrviaData("Never added", "p", true));
    EXPECT_TRUE(ptLogOrviaData(1 << 30, "p", true));
    EXPECT_EQ(tableSize(PT_TABLE_GROUPING), groupings);
    EXPECT_TRUE(ptIsTracerEnabled("Never added") && ptIsTracerEnabled(1 << 30));
    ptEnableGlobalLogging(false);
    EXPECT_FALSE(ptIsTracerEnabled("Never added") || ptIsTracerEnabled(1 << 30));

    // A grouping is decided on its own, not by its parent's state; the hot path's id is that
    // of "EvalPrms".
    ptAddGrouping("Parent", {"Child"});
    ptEnableTracer("Parent", true);
    ptEnableTracer("Child", false);
    EXPECT_FALSE(ptLogOrviaData("Child", "p", true));
    ptEnableTracer("EvalPrms", true);
    EXPECT_TRUE(ptLogOrviaData(KsPerformanceTracingPoint::_groupingID, "eval", true));

    // The first point of a model without a type enters the empty type; later points see the
    // type set in between, earlier ones keep theirs.
    EXPECT_TRUE(ptLogKestruneData("Parent", "engine", "sim", "compile", true));
    EXPECT_EQ(tracer()._modelStatisticsTypes->at("engine"), "");
    ptSetStatisticsTypeForModel("engine", "Incremental");
    EXPECT_TRUE(ptLogYlvaneData(groupingID("Parent"), "engine", "rtw", "machine 1", "chart A",
                                "transition", false));
    Lines store;
    for (const auto& point : raw()) {
        store.push_back(describe(*point, false));
    }
    EXPECT_EQ(store,
              (Lines{"0 'p' #-1 #-1 start detailed 0 0 0 0 0 basic 0 0 0",
                     "0 'p' #1073741824 #-1 start detailed 0 0 0 0 0 basic 0 0 0",
                     "0 'eval' 'EvalPrms' #-1 start detailed 0 0 0 0 0 basic 0 0 0",
                     "1 'compile' 'Parent' 'engine' 'sim' '' start detailed 0 0 0 0 0 basic 0 0 0",
                     "2 'transition' 'Parent' 'engine' 'rtw' 'machine 1' 'chart A' 'Incremental' "
                     "end detailed 0 0 0 0 0 basic 0 0 0"}));
    EXPECT_TRUE(raw()[0]->_wcTime > 0 && raw()[0]->_wcTime <= raw()[4]->_wcTime &&
                raw()[0]->_cpuTime <= raw()[4]->_cpuTime);
}

}  // namespace
