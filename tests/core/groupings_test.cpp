#include "tracer_test_support.h"

namespace {

using Groupings = TracerTest;
using Names = std::vector<std::string>;

EPTGroupingEnabled stateOf(const std::string& grouping) {
    return ptTracer()->groupingState(
        static_cast<std::int32_t>(ptTracer()->nameToID(PT_TABLE_GROUPING, grouping, false)));
}

const Names* childrenOf(const std::string& grouping) {
    const auto& map = *ptTracer()->_groupings;
    const auto found = map.find(
        static_cast<std::int32_t>(ptTracer()->nameToID(PT_TABLE_GROUPING, grouping, false)));
    return found == map.end() ? nullptr : found->second.get();
}

TEST_F(Groupings, AddingALeafGivesTheNextDenseId) {
    const auto next = static_cast<std::int32_t>(tableSize(PT_TABLE_GROUPING));
    EXPECT_EQ(ptAddGrouping("Leaf"), next);
    EXPECT_EQ(stateOf("Leaf"), PT_GROUPING_UNSET);
    EXPECT_FALSE(ptIsTracerEnabled(next));

    ptEnableTracer("Leaf", true);
    EXPECT_EQ(ptAddGrouping("Leaf"), next);  // adding again is harmless and keeps the state
    EXPECT_TRUE(ptIsTracerEnabled(next));
}

TEST_F(Groupings, AddingAParentTwiceIsRefused) {
    EXPECT_EQ(ptAddGrouping("A", {"B", "C"}), "");
    EXPECT_EQ(ptAddGrouping("A", {"D"}), "Group: A");
    EXPECT_EQ(ptAddGrouping("A", Names{}), "Group: A");
    EXPECT_EQ(*childrenOf("A"), (Names{"B", "C"}));
    EXPECT_EQ(childrenOf("D"), nullptr);

    // The single-name form refuses a parent, which stays as it is.
    const std::int32_t id = groupingID("A");
    EXPECT_EQ(ptAddGrouping("A"), -1);
    EXPECT_EQ(groupingID("A"), id);
    EXPECT_EQ(*childrenOf("A"), (Names{"B", "C"}));
}

TEST_F(Groupings, ASubGroupingWithChildrenStopsTheAdd) {
    ASSERT_EQ(ptAddGrouping("B", {"B1"}), "");
    EXPECT_EQ(ptAddGrouping("A", {"X", "B", "Y"}), "Sub group: B");
    EXPECT_EQ(*childrenOf("A"), (Names{"X", "B", "Y"}));
    EXPECT_NE(childrenOf("X"), nullptr);
    EXPECT_EQ(childrenOf("Y"), nullptr);
    EXPECT_EQ(ptGetGroupingList("A"), (Names{"X", "B1", "B", "A"}));
}

TEST_F(Groupings, NewChildrenInheritTheParentsExplicitState) {
    ptAddGrouping("On");
    ptEnableTracer("On", true);
    ptAddGrouping("Off");
    ptEnableTracer("Off", false);
    ptAddGrouping("Untouched");
    ptEnableTracer("KeepsOn", true);
    ptEnableTracer("KeepsOff", false);

    EXPECT_EQ(ptAddGrouping("On", {"OnChild"}), "");
    EXPECT_EQ(ptAddGrouping("Off", {"OffChild"}), "");
    EXPECT_EQ(ptAddGrouping("Untouched", {"KeepsOn", "KeepsOff", "NewChild"}), "");

    EXPECT_EQ(stateOf("OnChild"), PT_GROUPING_ON);
    EXPECT_EQ(stateOf("OffChild"), PT_GROUPING_OFF);
    EXPECT_EQ(stateOf("KeepsOn"), PT_GROUPING_ON);
    EXPECT_EQ(stateOf("KeepsOff"), PT_GROUPING_OFF);
    EXPECT_EQ(stateOf("NewChild"), PT_GROUPING_UNSET);
    EXPECT_EQ(stateOf("On"), PT_GROUPING_ON);  // the leaf kept its state on becoming a parent
}

TEST_F(Groupings, EnablingFlowsDownAndCreatesMissingGroupings) {
    const std::size_t before = tableSize(PT_TABLE_GROUPING);
    ptEnableTracer("Unknown", true);
    EXPECT_EQ(tableSize(PT_TABLE_GROUPING), before + 1);
    ASSERT_NE(childrenOf("Unknown"), nullptr);
    EXPECT_TRUE(childrenOf("Unknown")->empty());
    EXPECT_TRUE(ptIsTracerEnabled(std::string("Unknown")));
    ptEnableTracer("Unknown off", false);
    EXPECT_NE(childrenOf("Unknown off"), nullptr);
    EXPECT_EQ(stateOf("Unknown off"), PT_GROUPING_OFF);

    ptAddGrouping("Root", {"Mid"});
    ptUpdateGrouping("Mid", {"Deep"});  // Deep is only a name until the tree is enabled
    ptAddGrouping("Mid", {"ignored"});
    EXPECT_EQ(childrenOf("Deep"), nullptr);
    ptEnableTracer("Root", true);
    for (const char* name : {"Root", "Mid", "Deep"}) {
        EXPECT_TRUE(ptIsTracerEnabled(std::string(name))) << name;
    }
    EXPECT_NE(childrenOf("Deep"), nullptr);

    // Disabling a child leaves its parent as it was.
    ptEnableTracer("Mid", false);
    EXPECT_TRUE(ptIsTracerEnabled(std::string("Root")));
    EXPECT_FALSE(ptIsTracerEnabled(std::string("Mid")));
    EXPECT_FALSE(ptIsTracerEnabled(std::string("Deep")));
}

TEST_F(Groupings, ListingIsPostOrder) {
    ptAddGrouping("A", {"B", "C"});
    ptUpdateGrouping("B", {"D"});
    ptEnableTracer("B", true);
    ptUpdateGrouping("C", {"not a grouping"});
    EXPECT_EQ(ptGetGroupingList("A"), (Names{"D", "B", "C", "A"}));
    EXPECT_EQ(ptGetGroupingList("D"), (Names{"D"}));
    EXPECT_EQ(ptGetGroupingList("nobody"), Names{});

    // A name under two parents is listed under both.
    ptUpdateGrouping("C", {"D"});
    EXPECT_EQ(ptGetGroupingList("A"), (Names{"D", "B", "D", "C", "A"}));
    ptAddGrouping("Twice", {"E", "E"});
    EXPECT_EQ(ptGetGroupingList("Twice"), (Names{"E", "E", "Twice"}));
}

TEST_F(Groupings, RemovingTakesTheSubtree) {
    ptAddGrouping("A", {"B", "C"});
    ptUpdateGrouping("B", {"D"});
    ptEnableTracer("A", true);
    const std::int32_t d = groupingID("D");

    EXPECT_TRUE(ptRemoveGrouping("A"));
    for (const char* name : {"A", "B", "C", "D"}) {
        EXPECT_EQ(childrenOf(name), nullptr) << name;
        EXPECT_FALSE(ptIsTracerEnabled(std::string(name))) << name;
        EXPECT_EQ(stateOf(name), PT_GROUPING_UNSET) << name;
    }
    EXPECT_FALSE(ptRemoveGrouping("A"));
    EXPECT_EQ(ptAddGrouping("D"), d);  // names and ids stay in the table

    const std::size_t before = tableSize(PT_TABLE_GROUPING);
    EXPECT_FALSE(ptRemoveGrouping("never a grouping"));
    EXPECT_EQ(tableSize(PT_TABLE_GROUPING), before);
}

TEST_F(Groupings, UpdateReplacesTheChildren) {
    ptAddGrouping("P", {"Old1", "Old2"});
    ptEnableTracer("P", true);
    EXPECT_TRUE(ptUpdateGrouping("P", {"New"}));
    EXPECT_EQ(childrenOf("Old1"), nullptr);
    EXPECT_EQ(childrenOf("Old2"), nullptr);
    EXPECT_EQ(*childrenOf("P"), (Names{"New"}));
    EXPECT_EQ(stateOf("P"), PT_GROUPING_ON);
    EXPECT_EQ(ptGetGroupingList("P"), (Names{"P"}));  // New is no grouping yet

    // A name that is not a grouping does not become one, and loses its state.
    ptEnableTracer("Leaf", true);
    ptRemoveGrouping("Leaf");
    ptTracer()->setGroupingEnabled(groupingID("Leaf"), PT_GROUPING_ON);
    EXPECT_TRUE(ptUpdateGrouping("Leaf", {"x"}));
    EXPECT_EQ(childrenOf("Leaf"), nullptr);
    EXPECT_EQ(stateOf("Leaf"), PT_GROUPING_UNSET);

    const std::size_t before = tableSize(PT_TABLE_GROUPING);
    EXPECT_TRUE(ptUpdateGrouping("unknown name", {"x"}));
    EXPECT_EQ(tableSize(PT_TABLE_GROUPING), before);
}

TEST_F(Groupings, CyclesEndEveryWalk) {
    // A failed add leaves a grouping that lists itself.
    EXPECT_EQ(ptAddGrouping("Self", {"Self"}), "Sub group: Self");
    ptEnableTracer("Self", true);
    EXPECT_TRUE(ptIsTracerEnabled(std::string("Self")));
    EXPECT_EQ(ptGetGroupingList("Self"), (Names{"Self"}));
    EXPECT_TRUE(ptRemoveGrouping("Self"));
    EXPECT_EQ(childrenOf("Self"), nullptr);

    // Update can close a loop through several groupings.
    ptAddGrouping("A", {"B"});
    ptAddGrouping("B", {});
    ptUpdateGrouping("B", {"C"});
    ptEnableTracer("B", true);  // makes C
    ptUpdateGrouping("C", {"A"});
    ptEnableTracer("A", false);
    for (const char* name : {"A", "B", "C"}) {
        EXPECT_EQ(stateOf(name), PT_GROUPING_OFF) << name;
    }
    EXPECT_EQ(ptGetGroupingList("A"), (Names{"C", "B", "A"}));
    EXPECT_EQ(ptGetGroupingList("B"), (Names{"A", "C", "B"}));

    // Updating a grouping whose children lead back to it removes it with them.
    EXPECT_TRUE(ptUpdateGrouping("A", {"Z"}));
    for (const char* name : {"A", "B", "C"}) {
        EXPECT_EQ(childrenOf(name), nullptr) << name;
    }
}

TEST_F(Groupings, AChainAHundredThousandLongEnablesListsAndRemoves) {
    // Each walk once recursed per level and ran out of stack on chains this long.
    constexpr int kLength = 100000;
    const auto name = [](int i) { return "chain" + std::to_string(i); };
    for (int i = 0; i + 1 < kLength; ++i) {
        ASSERT_EQ(ptAddGrouping(name(i), {name(i + 1)}), "");
    }
    ptEnableTracer(name(0), true);
    for (const int i : {0, 1, kLength / 2, kLength - 1}) {
        EXPECT_EQ(stateOf(name(i)), PT_GROUPING_ON) << i;
    }
    const Names list = ptGetGroupingList(name(0));
    ASSERT_EQ(list.size(), static_cast<std::size_t>(kLength));
    EXPECT_EQ(list.front(), name(kLength - 1));
    EXPECT_EQ(list.back(), name(0));

    // Closed into a ring, every walk still visits each grouping once.
    ptUpdateGrouping(name(kLength - 1), {name(0)});
    ptEnableTracer(name(kLength / 2), false);
    EXPECT_EQ(stateOf(name(0)), PT_GROUPING_OFF);
    EXPECT_EQ(ptGetGroupingList(name(1)).size(), static_cast<std::size_t>(kLength));

    EXPECT_TRUE(ptRemoveGrouping(name(0)));
    for (const int i : {0, 1, kLength / 2, kLength - 1}) {
        EXPECT_EQ(childrenOf(name(i)), nullptr) << i;
        EXPECT_EQ(stateOf(name(i)), PT_GROUPING_UNSET) << i;
    }
}

}  // namespace
