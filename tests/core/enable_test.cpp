#include "tracer_test_support.h"

namespace {

using Enabling = TracerTest;

TEST_F(Enabling, StatesByIdAndNameAndGlobalLogging) {
    for (int id : {-1, 0, 1, 19, 20, 1000000}) {
        EXPECT_FALSE(ptIsTracerEnabled(id)) << id;
    }
    for (const char* name : {"GLOBAL", "EvalPrms", "never heard of"}) {
        EXPECT_FALSE(ptIsTracerEnabled(std::string(name))) << name;
    }

    // Global logging answers true for any id or name without adding the name.
    const std::size_t groupings = tableSize(PT_TABLE_GROUPING);
    EXPECT_TRUE(ptEnableGlobalLogging(true));
    EXPECT_TRUE(ptIsTracerEnabled(-1) && ptIsTracerEnabled(1000000));
    EXPECT_TRUE(ptIsTracerEnabled(std::string("not a grouping")));
    EXPECT_EQ(tableSize(PT_TABLE_GROUPING), groupings);
    EXPECT_FALSE(ptEnableGlobalLogging(false));
    EXPECT_FALSE(ptIsTracerEnabled(std::string("not a grouping")));

    // "GLOBAL" is only a grouping name.
    ptEnableTracer("GLOBAL", true);
    EXPECT_FALSE(tracer()._globalLogging);
    EXPECT_TRUE(ptIsTracerEnabled(std::string("GLOBAL")));
    EXPECT_FALSE(ptIsTracerEnabled(std::string("Other")));

    // Detailed memory statistics are a flag only.
    const std::size_t points = raw().size();
    EXPECT_TRUE(ptEnableDetailedMemStats(true));
    EXPECT_TRUE(tracer()._detailedMemStats && !tracer()._globalLogging);
    EXPECT_EQ(raw().size(), points);
    EXPECT_FALSE(ptEnableDetailedMemStats(false));
}

TEST_F(Enabling, TheStateVectorGrowsWithUnsetEntries) {
    PerformanceTracer& t = tracer();
    EXPECT_EQ(t._groupings->count(0), 1u);  // "EvalPrms", added while the library loaded
    const std::size_t before = t._groupingEnabled->size();
    EXPECT_GE(before, 20u);
    const auto id = static_cast<std::int32_t>(before + 5);
    t.setGroupingEnabled(id, PT_GROUPING_ON);
    const auto& states = *t._groupingEnabled;
    const auto U = PT_GROUPING_UNSET;
    EXPECT_EQ(std::vector(states.begin() + static_cast<std::ptrdiff_t>(before), states.end()),
              (std::vector{U, U, U, U, U, PT_GROUPING_ON}));
    EXPECT_TRUE(ptIsTracerEnabled(id));
    EXPECT_FALSE(ptIsTracerEnabled(id + 1));
    t.setGroupingEnabled(id, PT_GROUPING_OFF);  // only the value 1 traces
    EXPECT_FALSE(ptIsTracerEnabled(id));
    t.setGroupingEnabled(-1, PT_GROUPING_ON);  // an unknown name's id has no state
    EXPECT_FALSE(ptIsTracerEnabled(-1));
}

}  // namespace
