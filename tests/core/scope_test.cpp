#include <performance_tracer/scope.h>

#include <stdexcept>

#include "tracer_test_support.h"

namespace {

using ScopeGuards = TracerTest;
void assemble(bool fail) {
    PT_PHASE("Solver", "assemble");
    {
        PT_KESTRUNE_PHASE("Solver", "plant", "sim", "factor");
        PT_YLVANE_PHASE("Solver", "plant", "sim", "machine", "chart", "step");
        if (fail) {
            throw std::runtime_error("singular");
        }
    }
}

TEST_F(ScopeGuards, EveryWayOutOfAScopeEndsItsPhases) {
    assemble(false);  // disabled: nothing is recorded, nothing is copied
    EXPECT_TRUE(raw().empty());

    ptEnableTracer("Solver", true);
    assemble(false);
    EXPECT_THROW(assemble(true), std::runtime_error);
    const std::string once = "assemble+ factor+ step+ step- factor- assemble-";
    EXPECT_EQ(flow(), once + " " + once);
    // Each guard logs its own class of point.
    EXPECT_EQ(describe(*raw()[2]).substr(0, 52),
              "2 'step' 'Solver' 'plant' 'sim' 'machine' 'chart' ''");
    EXPECT_EQ(raw()[0]->_pointType, 0);
    EXPECT_EQ(raw()[1]->_pointType, 1);
}

TEST_F(ScopeGuards, OnlyARecordedStartGetsAnEnd) {
    const std::int32_t grouping = ptAddGrouping("Late");
    {
        pt::OrviaPhase outer(grouping, "outer");
        EXPECT_FALSE(outer.recorded());
        ptEnableTracer("Late", true);
        pt::OrviaPhase inner(grouping, "inner");
        EXPECT_TRUE(inner.recorded());
    }
    // The outer phase started before its grouping was enabled: no end without a start.
    EXPECT_EQ(flow(), "inner+ inner-");
}

}  // namespace
