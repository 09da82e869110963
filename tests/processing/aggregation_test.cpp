#include <performance_tracer/aggregation.h>
#include <performance_tracer/names.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/tracer.h>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include "processing/selection.h"
#include "random_log.h"

namespace {

using pt::testing::makePoint;

class Aggregation : public ::testing::Test {
protected:
    void SetUp() override { ptClearRawData(); }

    PTAggregateMap aggregate(PTRawDataVector log) {
        _data = ptProcessRaw(*ptTracer(), log, {"GLOBAL"}, false);
        EXPECT_FALSE(_data._hasError);
        return ptGetAggregateProcessedData(_data._rows);
    }

    static const PTAggregateDataPoint& entry(const PTAggregateMap& map, const char* phase) {
        return *map.at(static_cast<std::int32_t>(ptNameID(PT_TABLE_PHASE, phase)));
    }

    PTProcessedData _data;
};

TEST_F(Aggregation, LeavesSumAllTheirTime) {
    PTRawDataVector log;
    for (int i = 0; i < 3; ++i) {
        log.push_back(makePoint(0, "G", "leaf", true, i, i / 2.0));
        log.push_back(makePoint(0, "G", "leaf", false, i + 0.25 * (i + 1), i / 2.0 + 0.1));
    }
    log[5]->_basicMem = boost::make_shared<pt::BasicMemStats>(1048576.0, 0, 0);
    const PTAggregateMap map = aggregate(log);
    ASSERT_EQ(map.size(), 1u);
    const auto& leaf = entry(map, "leaf");
    EXPECT_EQ(leaf._count, 3);
    EXPECT_DOUBLE_EQ(leaf._wcTotal, 1.5);
    EXPECT_EQ(leaf._wcSelf, leaf._wcTotal);
    EXPECT_DOUBLE_EQ(leaf._cpuSelf, 0.3);
    EXPECT_EQ(leaf._usageMax, 1.0);
    EXPECT_EQ(leaf._usageDeltaSum, 1.0L);
    EXPECT_FALSE(leaf._isParent);
}

TEST_F(Aggregation, ParentsHaveOnlyTheirGeneratedSelfTime) {
    PTRawDataVector log = {makePoint(0, "G", "P", true, 0.0), makePoint(0, "G", "c", true, 0.01),
                           makePoint(0, "G", "c", false, 0.02), makePoint(0, "G", "P", false, 0.03),
                           // a second execution with a measured wait at its start
                           makePoint(0, "G", "P", true, 1.0), makePoint(0, "G", "c", true, 1.5),
                           makePoint(0, "G", "c", false, 1.75), makePoint(0, "G", "P", false, 1.8),
                           // a wait after a child, as a row of its own
                           makePoint(0, "G", "Q", true, 3.0), makePoint(0, "G", "c", true, 3.0),
                           makePoint(0, "G", "c", false, 3.0), makePoint(0, "G", "d", true, 3.5),
                           makePoint(0, "G", "d", false, 3.5), makePoint(0, "G", "Q", false, 3.5)};
    const PTAggregateMap map = aggregate(log);
    const auto& parent = entry(map, "P");
    EXPECT_TRUE(parent._isParent);
    EXPECT_EQ(parent._count, 2);  // the "_self" row is no execution
    EXPECT_DOUBLE_EQ(parent._wcTotal, 0.83);
    EXPECT_DOUBLE_EQ(parent._wcSelf, 0.5);
    EXPECT_EQ(map.count(static_cast<std::int32_t>(ptNameID(PT_TABLE_PHASE, "P_self"))), 0u);
    EXPECT_EQ(entry(map, "Q")._wcSelf, 0.0);
    EXPECT_DOUBLE_EQ(entry(map, "c_post")._wcSelf, 0.5);  // "_post" rows are phases of their own
    EXPECT_EQ(entry(map, "c")._count, 3);
}

TEST_F(Aggregation, SelfInTheNameAndEntriesAcrossGroupings) {
    PTRawDataVector log = {
        makePoint(0, "G1", "_selfish", true, 0.0), makePoint(0, "G1", "_selfish", false, 0.5),
        makePoint(0, "G1", "A_self", true, 1.0),  // no entry "A": dropped
        makePoint(0, "G1", "A_self", false, 1.5),  makePoint(1, "G2", "shared", true, 2.0),
        makePoint(0, "G3", "shared", true, 2.0),   makePoint(0, "G3", "shared", false, 2.0),
        makePoint(1, "G2", "shared", false, 3.0)};
    const PTAggregateMap map = aggregate(log);
    EXPECT_EQ(entry(map, "_selfish")._count, 1);
    EXPECT_EQ(map.count(static_cast<std::int32_t>(ptNameID(PT_TABLE_PHASE, "A_self"))), 0u);
    const auto& shared = entry(map, "shared");
    EXPECT_EQ(shared._count, 2);
    EXPECT_EQ(ptNameStr(PT_TABLE_GROUPING, shared._groupingID), "G2");  // the first row's
    EXPECT_TRUE(shared._isParent);
    // Ascending by phase id.
    std::int32_t last = -1;
    for (const auto& [phase, aggregate] : map) {
        EXPECT_GT(phase, last);
        EXPECT_EQ(phase, aggregate->_phaseID);
        last = phase;
    }
}

TEST_F(Aggregation, GeneratedRowsWithChildrenAndEmptyLists) {
    PTDiagnosticInfoList none;
    EXPECT_TRUE(ptAggregate(*ptTracer(), none).empty());

    auto raw = makePoint(0, "G", "gap", true, 0.0);
    raw->_isGenerated = true;
    auto info = boost::make_shared<PTDiagnosticInfo>(raw, 1, 0);
    info->_point->numChildren = 1;
    PTDiagnosticInfoList rows = {info};
    EXPECT_TRUE(ptAggregate(*ptTracer(), rows).empty());
    info->_point->numChildren = 0;
    EXPECT_EQ(ptAggregate(*ptTracer(), rows).size(), 1u);

    // Removing a self row undoes adding it.
    PTAggregateDataPoint point(0, 0, true);
    info->_point->wcElapsedTime = 2.0;
    point.addSelfRow(*info->_point);
    EXPECT_EQ(point._wcSelf, 2.0);
    EXPECT_EQ(point._count, 0);
    point.subtractSelfRow(*info->_point);
    EXPECT_EQ(point._wcSelf, 0.0);
}

TEST_F(Aggregation, MaximaNeverGoBelowZeroAndParentsAddNoDeltas) {
    PTRawDataVector log = {makePoint(0, "G", "P", true, 0.0), makePoint(0, "G", "c", true, 0.01),
                           makePoint(0, "G", "c", false, 0.02),
                           makePoint(0, "G", "P", false, 0.03)};
    for (auto& point : log) {
        point->_basicMem = boost::make_shared<pt::BasicMemStats>(-5 * 1048576.0, 0, 0);
    }
    log[3]->_basicMem->procMemUsage = -1 * 1048576.0;  // the parent grows by 4 MiB
    const PTAggregateMap map = aggregate(log);
    const auto& parent = entry(map, "P");
    EXPECT_EQ(parent._usageMax, 0.0);        // -1 MiB is not above the start value 0
    EXPECT_EQ(parent._usageDeltaSum, 0.0L);  // a parent adds no deltas of its own
    EXPECT_EQ(entry(map, "c")._usageDeltaSum, 0.0L);

    PTAggregateDataPoint self(0, 0, true);
    PTOrviaProcessedDataPoint gap(*log[0]);
    gap._basicMem->procMemUsageDelta = 2.5;
    self.addSelfRow(gap);
    EXPECT_EQ(self._usageDeltaSum, 2.5L);
}

}  // namespace
