#include "tracer_test_support.h"

namespace {

using Groupings = TracerTest;
using Names = std::vector<std::string>;
using States = std::vector<EPTGroupingEnabled>;
constexpr EPTGroupingEnabled kOn = PT_GROUPING_ON, kOff = PT_GROUPING_OFF,
                             kUnset = PT_GROUPING_UNSET;

std::int32_t idOf(const std::string& grouping) {
    return static_cast<std::int32_t>(ptTracer()->nameToID(PT_TABLE_GROUPING, grouping, false));
}

States statesOf(const Names& groupings) {
    States states;
    for (const std::string& grouping : groupings) {
        states.push_back(ptTracer()->groupingState(idOf(grouping)));
    }
    return states;
}

const Names* childrenOf(const std::string& grouping) {
    const auto& map = *ptTracer()->_groupings;
    const auto found = map.find(idOf(grouping));
    return found == map.end() ? nullptr : found->second.get();
}

/// Which of the names are groupings (have a list of children), as a text of 0 and 1.
std::string areGroupings(const Names& names) {
    std::string result;
    for (const std::string& name : names) {
        result += childrenOf(name) ? '1' : '0';
    }
    return result;
}

TEST_F(Groupings, AddingLeavesAndParents) {
    const auto next = static_cast<std::int32_t>(tableSize(PT_TABLE_GROUPING));
    EXPECT_EQ(ptAddGrouping("Leaf"), next);
    EXPECT_EQ(statesOf({"Leaf"}), States{kUnset});
    ptEnableTracer("Leaf", true);
    EXPECT_EQ(ptAddGrouping("Leaf"), next);  // adding again is harmless and keeps the state
    EXPECT_TRUE(ptIsTracerEnabled(next));

    // A parent is added once; the single-name form refuses it and leaves it as it is.
    EXPECT_EQ(ptAddGrouping("A", {"B", "C"}), "");
    EXPECT_EQ(ptAddGrouping("A", {"D"}), "Group: A");
    EXPECT_EQ(ptAddGrouping("A", Names{}), "Group: A");
    const std::int32_t id = groupingID("A");
    EXPECT_EQ(ptAddGrouping("A"), -1);
    EXPECT_EQ(groupingID("A"), id);
    EXPECT_EQ(*childrenOf("A"), (Names{"B", "C"}));
    EXPECT_EQ(childrenOf("D"), nullptr);

    // A sub-grouping that has children of its own stops the add where it stands.
    ASSERT_EQ(ptAddGrouping("Q", {"Q1"}), "");
    EXPECT_EQ(ptAddGrouping("P", {"X", "Q", "Y"}), "Sub group: Q");
    EXPECT_EQ(*childrenOf("P"), (Names{"X", "Q", "Y"}));
    EXPECT_EQ(areGroupings({"X", "Y"}), "10");
    EXPECT_EQ(ptGetGroupingList("P"), (Names{"X", "Q1", "Q", "P"}));
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
    // The leaf "On" kept its state on becoming a parent.
    EXPECT_EQ(statesOf({"OnChild", "OffChild", "KeepsOn", "KeepsOff", "NewChild", "On"}),
              (States{kOn, kOff, kOn, kOff, kUnset, kOn}));
}

TEST_F(Groupings, EnablingFlowsDownAndCreatesMissingGroupings) {
    const std::size_t before = tableSize(PT_TABLE_GROUPING);
    ptEnableTracer("Unknown", true);
    ptEnableTracer("Unknown off", false);
    EXPECT_EQ(tableSize(PT_TABLE_GROUPING), before + 2);
    ASSERT_NE(childrenOf("Unknown"), nullptr);
    EXPECT_TRUE(childrenOf("Unknown")->empty());
    EXPECT_EQ(statesOf({"Unknown", "Unknown off"}), (States{kOn, kOff}));

    ptAddGrouping("Root", {"Mid"});
    ptUpdateGrouping("Mid", {"Deep"});  // Deep is only a name until the tree is enabled
    ptAddGrouping("Mid", {"ignored"});
    EXPECT_EQ(areGroupings({"Deep"}), "0");
    ptEnableTracer("Root", true);
    EXPECT_EQ(statesOf({"Root", "Mid", "Deep"}), (States{kOn, kOn, kOn}));
    EXPECT_EQ(areGroupings({"Deep"}), "1");
    ptEnableTracer("Mid", false);  // leaves its parent as it was
    EXPECT_EQ(statesOf({"Root", "Mid", "Deep"}), (States{kOn, kOff, kOff}));
}

TEST_F(Groupings, ListingRemovingAndUpdating) {
    ptAddGrouping("A", {"B", "C"});
    ptUpdateGrouping("B", {"D"});
    ptEnableTracer("B", true);
    ptUpdateGrouping("C", {"not a grouping"});
    EXPECT_EQ(ptGetGroupingList("A"), (Names{"D", "B", "C", "A"}));  // post-order
    EXPECT_EQ(ptGetGroupingList("D"), (Names{"D"}));
    EXPECT_EQ(ptGetGroupingList("nobody"), Names{});
    // A name under two parents, or twice under one, is listed each time.
    ptUpdateGrouping("C", {"D"});
    EXPECT_EQ(ptGetGroupingList("A"), (Names{"D", "B", "D", "C", "A"}));
    ptAddGrouping("Twice", {"E", "E"});
    EXPECT_EQ(ptGetGroupingList("Twice"), (Names{"E", "E", "Twice"}));

    // Removing takes the subtree and its states; names and ids stay in the table.
    ptEnableTracer("A", true);
    const std::int32_t d = groupingID("D");
    EXPECT_TRUE(ptRemoveGrouping("A"));
    EXPECT_EQ(areGroupings({"A", "B", "C", "D"}), "0000");
    EXPECT_EQ(statesOf({"A", "B", "C", "D"}), States(4, kUnset));
    EXPECT_FALSE(ptRemoveGrouping("A"));
    EXPECT_EQ(ptAddGrouping("D"), d);
    const std::size_t names = tableSize(PT_TABLE_GROUPING);
    EXPECT_FALSE(ptRemoveGrouping("never a grouping"));
    EXPECT_TRUE(ptUpdateGrouping("unknown name", {"x"}));
    EXPECT_EQ(tableSize(PT_TABLE_GROUPING), names);

    // Updating replaces the children, which stop being groupings.
    ptAddGrouping("P", {"Old1", "Old2"});
    ptEnableTracer("P", true);
    EXPECT_TRUE(ptUpdateGrouping("P", {"New"}));
    EXPECT_EQ(areGroupings({"Old1", "Old2", "New"}), "000");
    EXPECT_EQ(*childrenOf("P"), (Names{"New"}));
    EXPECT_EQ(statesOf({"P"}), States{kOn});
    EXPECT_EQ(ptGetGroupingList("P"), (Names{"P"}));
    // A name that is not a grouping does not become one, and loses its state.
    ptRemoveGrouping("D");
    ptTracer()->setGroupingEnabled(d, PT_GROUPING_ON);
    EXPECT_TRUE(ptUpdateGrouping("D", {"x"}));
    EXPECT_EQ(areGroupings({"D"}), "0");
    EXPECT_EQ(statesOf({"D"}), States{kUnset});
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
    EXPECT_EQ(statesOf({"A", "B", "C"}), States(3, kOff));
    EXPECT_EQ(ptGetGroupingList("A"), (Names{"C", "B", "A"}));
    EXPECT_EQ(ptGetGroupingList("B"), (Names{"A", "C", "B"}));
    // Updating a grouping whose children lead back to it removes it with them.
    EXPECT_TRUE(ptUpdateGrouping("A", {"Z"}));
    EXPECT_EQ(areGroupings({"A", "B", "C"}), "000");
}

TEST_F(Groupings, AChainAHundredThousandLongEnablesListsAndRemoves) {
    // Each walk once recursed per level and ran out of stack on chains this long.
    constexpr int kLength = 100000;
    const auto name = [](int i) { return "chain" + std::to_string(i); };
    for (int i = 0; i + 1 < kLength; ++i) {
        ASSERT_EQ(ptAddGrouping(name(i), {name(i + 1)}), "");
    }
    const Names probes = {name(0), name(1), name(kLength / 2), name(kLength - 1)};
    ptEnableTracer(name(0), true);
    EXPECT_EQ(statesOf(probes), States(4, kOn));
    const Names list = ptGetGroupingList(name(0));
    ASSERT_EQ(list.size(), static_cast<std::size_t>(kLength));
    EXPECT_EQ(list.front(), name(kLength - 1));
    EXPECT_EQ(list.back(), name(0));

    // Closed into a ring, every walk still visits each grouping once.
    ptUpdateGrouping(name(kLength - 1), {name(0)});
    ptEnableTracer(name(kLength / 2), false);
    EXPECT_EQ(statesOf({name(0)}), States{kOff});
    EXPECT_EQ(ptGetGroupingList(name(1)).size(), static_cast<std::size_t>(kLength));
    EXPECT_TRUE(ptRemoveGrouping(name(0)));
    EXPECT_EQ(areGroupings(probes), "0000");
    EXPECT_EQ(statesOf(probes), States(4, kUnset));
}

}  // namespace
