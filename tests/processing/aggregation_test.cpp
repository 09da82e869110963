#include <performance_tracer/aggregation.h>
#include <performance_tracer/names.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/tracer.h>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <tuple>

#include "processing/selection.h"
#include "random_log.h"

namespace {

using pt::testing::logOf;
using pt::testing::makePoint;

class Aggregation : public ::testing::Test {
protected:
    void SetUp() override { ptClearRawData(); }

    PTAggregateMap aggregate(PTRawDataVector log) {
        _data = ptProcessRaw(*ptTracer(), log, {"GLOBAL"}, false);
        EXPECT_FALSE(_data._hasError);
        return ptGetAggregateProcessedData(_data._rows);
    }

    static std::int32_t id(const char* phase) {
        return static_cast<std::int32_t>(ptNameID(PT_TABLE_PHASE, phase));
    }
    static const PTAggregateDataPoint& entry(const PTAggregateMap& map, const char* phase) {
        return *map.at(id(phase));
    }

    PTProcessedData _data;
};

TEST_F(Aggregation, ParentsHaveOnlyTheirGeneratedSelfTime) {
    // A second execution of P has a measured wait at its start; Q a wait after a child, a row
    // of its own.
    const PTAggregateMap map = aggregate(
        logOf("P+0,c+.01,c-.02,P-.03,P+1,c+1.5,c-1.75,P-1.8,Q+3,c+3,c-3,d+3.5,d-3.5,Q-3.5"));
    const auto& parent = entry(map, "P");
    // The "_self" row is no execution and no entry; "_post" rows are phases of their own.
    EXPECT_EQ(std::make_tuple(parent._isParent, parent._count, map.count(id("P_self")),
                              entry(map, "Q")._wcSelf, entry(map, "c")._count),
              std::make_tuple(true, 2, 0u, 0.0, 3));
    EXPECT_DOUBLE_EQ(parent._wcTotal, 0.83);
    EXPECT_DOUBLE_EQ(parent._wcSelf, 0.5);
    EXPECT_DOUBLE_EQ(entry(map, "c_post")._wcSelf, 0.5);
}

TEST_F(Aggregation, GeneratedRowsWithChildrenEmptyListsAndSelfRows) {
    EXPECT_TRUE(ptAggregate(*ptTracer(), PTDiagnosticInfoList()).empty());

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
    info->_point->_basicMem->procMemUsageDelta = 2.5;
    point.addSelfRow(*info->_point);
    EXPECT_EQ(std::make_tuple(point._wcSelf, point._count, point._usageDeltaSum),
              std::make_tuple(2.0, 0, 2.5L));
    point.subtractSelfRow(*info->_point);
    EXPECT_EQ(point._wcSelf, 0.0);
}

TEST_F(Aggregation, SelfInTheNameAndEntriesAcrossGroupings) {
    // "A_self" has no entry "A" to go to: dropped.
    const PTAggregateMap map = aggregate(
        logOf("G1:_selfish+0,G1:_selfish-.5,G1:A_self+1,G1:A_self-1.5,1G2:shared+2,G3:shared+2,"
              "G3:shared-2,1G2:shared-3"));
    const auto& shared = entry(map, "shared");  // in the grouping of its first row
    EXPECT_EQ(std::make_tuple(entry(map, "_selfish")._count, map.count(id("A_self")), shared._count,
                              ptNameStr(PT_TABLE_GROUPING, shared._groupingID), shared._isParent),
              std::make_tuple(1, 0u, 2, "G2", true));
    // Ascending by phase id.
    std::int32_t last = -1;
    for (const auto& [phase, aggregate] : map) {
        EXPECT_GT(phase, last);
        EXPECT_EQ(phase, aggregate->_phaseID);
        last = phase;
    }
}

TEST_F(Aggregation, MaximaNeverGoBelowZeroAndParentsAddNoDeltas) {
    PTRawDataVector log = logOf("P+0,c+.01,c-.02,P-.03");
    for (auto& point : log) {
        point->_basicMem = boost::make_shared<pt::BasicMemStats>(-5 * 1048576.0, 0, 0);
    }
    log[3]->_basicMem->procMemUsage = -1 * 1048576.0;  // the parent grows by 4 MiB
    const PTAggregateMap map = aggregate(log);
    // -1 MiB is not above the start value 0; a parent adds no deltas of its own.
    EXPECT_EQ(std::make_tuple(entry(map, "P")._usageMax, entry(map, "P")._usageDeltaSum,
                              entry(map, "c")._usageDeltaSum),
              std::make_tuple(0.0, 0.0L, 0.0L));
}

}  // namespace
