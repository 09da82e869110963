#include "tracer_test_support.h"

namespace {

using Enabling = TracerTest;

TEST_F(Enabling, NothingIsEnabledByDefault) {
    for (int id : {-1, 0, 1, 19, 20, 1000000}) {
        EXPECT_FALSE(ptIsTracerEnabled(id)) << id;
    }
    for (const char* name : {"GLOBAL", "EvalPrms", "never heard of"}) {
        EXPECT_FALSE(ptIsTracerEnabled(std::string(name))) << name;
    }
    EXPECT_EQ(groupingID("never heard of"), -1);
}

TEST_F(Enabling, GlobalLoggingAnswersTrueWithoutTouchingTheTable) {
    const std::size_t groupings = tableSize(PT_TABLE_GROUPING);
    EXPECT_TRUE(ptEnableGlobalLogging(true));
    for (int id : {-1, 1, 1000000}) {
        EXPECT_TRUE(ptIsTracerEnabled(id)) << id;
    }
    EXPECT_TRUE(ptIsTracerEnabled(std::string("not a grouping")));
    EXPECT_EQ(tableSize(PT_TABLE_GROUPING), groupings);

    EXPECT_FALSE(ptEnableGlobalLogging(false));
    EXPECT_FALSE(ptIsTracerEnabled(std::string("not a grouping")));
}

TEST_F(Enabling, GlobalGroupingIsOnlyAName) {
    ptEnableTracer("GLOBAL", true);
    EXPECT_FALSE(tracer()._globalLogging);
    EXPECT_TRUE(ptIsTracerEnabled(std::string("GLOBAL")));
    EXPECT_FALSE(ptIsTracerEnabled(std::string("Other")));
}

TEST_F(Enabling, StateVectorGrowsWithUnsetEntries) {
    PerformanceTracer& t = tracer();
    const std::size_t before = t._groupingEnabled->size();
    const auto id = static_cast<std::int32_t>(std::max<std::size_t>(25, before + 5));
    t.setGroupingEnabled(id, PT_GROUPING_ON);

    ASSERT_EQ(t._groupingEnabled->size(), static_cast<std::size_t>(id) + 1);
    for (std::size_t i = before; i < static_cast<std::size_t>(id); ++i) {
        EXPECT_EQ((*t._groupingEnabled)[i], PT_GROUPING_UNSET) << i;
        EXPECT_FALSE(ptIsTracerEnabled(static_cast<int>(i)));
    }
    EXPECT_TRUE(ptIsTracerEnabled(id));
    EXPECT_FALSE(ptIsTracerEnabled(id + 1));

    // Only the value 1 traces.
    t.setGroupingEnabled(id, PT_GROUPING_OFF);
    EXPECT_FALSE(ptIsTracerEnabled(id));
    t.setGroupingEnabled(-1, PT_GROUPING_ON);  // an unknown name's id has no state
    EXPECT_FALSE(ptIsTracerEnabled(-1));
}

TEST_F(Enabling, DetailedMemStatsIsAFlagOnly) {
    const std::size_t points = raw().size();
    EXPECT_TRUE(ptEnableDetailedMemStats(true));
    EXPECT_TRUE(tracer()._detailedMemStats);
    EXPECT_FALSE(tracer()._globalLogging);
    EXPECT_EQ(raw().size(), points);
    EXPECT_FALSE(ptEnableDetailedMemStats(false));
}

TEST_F(Enabling, SingletonIsBuiltCompletely) {
    PerformanceTracer& t = tracer();
    EXPECT_EQ(&t, ptTracer());
    EXPECT_TRUE(t._rawData && t._systemInfo && t._modelStatisticsTypes && t._groupings);
    for (std::uint32_t kind = 0; kind < PT_TABLE_COUNT; ++kind) {
        EXPECT_NE(t.nameTable(kind), nullptr) << kind;
    }
    ASSERT_TRUE(t._groupingEnabled);
    EXPECT_GE(t._groupingEnabled->size(), 20u);
    EXPECT_EQ(t._groupings->count(0), 1u);  // "EvalPrms", added while the library loaded
}

}  // namespace
