#include "tracer_test_support.h"

namespace {

using Groupings = TracerTest;
using Names = std::vector<std::string>;

/// Each name with its state (":on", ":off", nothing when unset) and, if it is a grouping, its
/// children in brackets: "A:on[B,C] B:on[] C".
std::string tree(const Names& names) {
    std::string text;
    for (const std::string& name : names) {
        const auto id =
            static_cast<std::int32_t>(ptTracer()->nameToID(PT_TABLE_GROUPING, name, false));
        const EPTGroupingEnabled state = ptTracer()->groupingState(id);
        text += " " + name +
                (state == PT_GROUPING_ON    ? ":on"
                 : state == PT_GROUPING_OFF ? ":off"
                                            : "");
        if (const auto found = ptTracer()->_groupings->find(id);
            found != ptTracer()->_groupings->end()) {
            std::string children;
            for (const std::string& child : *found->second) {
                children += "," + child;
            }
            text += "[" + children.substr(children.empty() ? 0 : 1) + "]";
        }
    }
    return text.substr(1);
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
    EXPECT_EQ(tree({"On", "OnChild", "OffChild", "KeepsOn", "KeepsOff", "NewChild"}),
              "On:on[OnChild] OnChild:on[] OffChild:off[] KeepsOn:on[] KeepsOff:off[] NewChild[]");
    // Enabling flows down past explicit states, and leaves the parent as it was.
    ptEnableTracer("Untouched", false);
    ptEnableTracer("KeepsOn", true);
    EXPECT_EQ(
        tree({"Untouched", "KeepsOn", "KeepsOff", "NewChild"}),
        "Untouched:off[KeepsOn,KeepsOff,NewChild] KeepsOn:on[] KeepsOff:off[] NewChild:off[]");
}

TEST_F(Groupings, ListingRemovingAndUpdating) {
    ptAddGrouping("A", {"B", "C"});
    EXPECT_EQ(ptAddGrouping("A"), -1);  // the single-name form refuses a parent
    ptUpdateGrouping("B", {"D"});
    ptEnableTracer("B", true);
    ptUpdateGrouping("C", {"not a grouping"});
    EXPECT_EQ(ptGetGroupingList("A"), (Names{"D", "B", "C", "A"}));  // post-order
    // A name under two parents is listed each time.
    ptUpdateGrouping("C", {"D"});
    EXPECT_EQ(ptGetGroupingList("A"), (Names{"D", "B", "D", "C", "A"}));

    // Removing takes the subtree and its states; names and ids stay in the table.
    ptEnableTracer("A", true);
    const std::int32_t d = groupingID("D");
    EXPECT_TRUE(ptRemoveGrouping("A"));
    EXPECT_EQ(tree({"A", "B", "C", "D"}), "A B C D");
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
    EXPECT_EQ(tree({"P", "Old1", "Old2", "New"}), "P:on[New] Old1 Old2 New");
    // A name that is not a grouping does not become one, and loses its state.
    ptRemoveGrouping("D");
    ptTracer()->setGroupingEnabled(d, PT_GROUPING_ON);
    EXPECT_TRUE(ptUpdateGrouping("D", {"x"}));
    EXPECT_EQ(tree({"D"}), "D");
}

TEST_F(Groupings, CyclesEndEveryWalk) {
    // A failed add leaves a grouping that lists itself.
    EXPECT_EQ(ptAddGrouping("Self", {"Self"}), "Sub group: Self");
    ptEnableTracer("Self", true);
    EXPECT_EQ(tree({"Self"}), "Self:on[Self]");
    EXPECT_EQ(ptGetGroupingList("Self"), (Names{"Self"}));
    EXPECT_TRUE(ptRemoveGrouping("Self"));
    EXPECT_EQ(tree({"Self"}), "Self");

    // Update can close a loop through several groupings.
    ptAddGrouping("A", {"B"});
    ptAddGrouping("B", {});
    ptUpdateGrouping("B", {"C"});
    ptEnableTracer("B", true);  // makes C
    ptUpdateGrouping("C", {"A"});
    ptEnableTracer("A", false);
    EXPECT_EQ(tree({"A", "B", "C"}), "A:off[B] B:off[C] C:off[A]");
    EXPECT_EQ(ptGetGroupingList("A"), (Names{"C", "B", "A"}));
    // Updating a grouping whose children lead back to it removes it with them.
    EXPECT_TRUE(ptUpdateGrouping("A", {"Z"}));
    EXPECT_EQ(tree({"A", "B", "C"}), "A B C");
}

TEST_F(Groupings, AChainAHundredThousandLongEnablesListsAndRemoves) {
    // Each walk once recursed per level and ran out of stack on chains this long.
    constexpr int kLength = 100000;
    const auto name = [](int i) { return "chain" + std::to_string(i); };
    for (int i = 0; i + 1 < kLength; ++i) {
        ASSERT_EQ(ptAddGrouping(name(i), {name(i + 1)}), "");
    }
    const Names probes = {name(0), name(kLength / 2), name(kLength - 1)};
    ptEnableTracer(name(0), true);
    EXPECT_EQ(tree(probes), "chain0:on[chain1] chain50000:on[chain50001] chain99999:on[]");
    const Names list = ptGetGroupingList(name(0));
    ASSERT_EQ(list.size(), static_cast<std::size_t>(kLength));
    EXPECT_EQ(list.front(), name(kLength - 1));
    EXPECT_EQ(list.back(), name(0));

    // Closed into a ring, every walk still visits each grouping once.
    ptUpdateGrouping(name(kLength - 1), {name(0)});
    ptEnableTracer(name(kLength / 2), false);
    EXPECT_EQ(tree({name(0)}), "chain0:off[chain1]");
    EXPECT_EQ(ptGetGroupingList(name(1)).size(), static_cast<std::size_t>(kLength));
    EXPECT_TRUE(ptRemoveGrouping(name(0)));
    EXPECT_EQ(tree(probes), "chain0 chain50000 chain99999");
}

}  // namespace
