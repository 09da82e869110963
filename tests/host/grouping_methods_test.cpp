#include "method_test_support.h"

namespace pt::testing {
namespace {

using GroupingMethods = MethodTest;

TEST_F(GroupingMethods, AddRemoveAndStatisticsTypes) {
    const std::string add = "PerfTools.Tracer.addGrouping";
    call(add, valuesOf(text("Parent"), texts({"Left", "Right"})));
    EXPECT_EQ(ptGetGroupingList("Parent"), (std::vector<std::string>{"Left", "Right", "Parent"}));
    call(add, valuesOf(text("Empty"), cellOf({})));
    EXPECT_EQ(ptGetGroupingList("Empty"), (std::vector<std::string>{"Empty"}));
    // The grouping layer's refusal: what it did before refusing stays.
    EXPECT_EQ(errorOf(add, valuesOf(text("Parent"), texts({"C"}))),
              tracerError("AddGroupingError", {"Group: Parent"}));
    EXPECT_EQ(errorOf(add, valuesOf(text("Other"), texts({"X", "Parent"}))),
              tracerError("AddGroupingError", {"Sub group: Parent"}));
    // The list stays as given, with the refused sub-grouping and its subtree in it.
    EXPECT_EQ(ptGetGroupingList("Other"),
              (std::vector<std::string>{"X", "Left", "Right", "Parent", "Other"}));

    call("PerfTools.Tracer.removeGrouping", valuesOf(text("Parent")));
    EXPECT_TRUE(ptGetGroupingList("Left").empty());

    call("PerfTools.Tracer.setStatisticsTypeForModel", valuesOf(text("M"), text("Accelerated")));
    EXPECT_EQ(ptTracer()->_modelStatisticsTypes->at("M"), "Accelerated");
}

TEST_F(GroupingMethods, ClearChoosesByTheNamesGiven) {
    const struct {
        Values inputs;
        std::vector<std::string> left;
    } cases[] = {
        {{}, {}},  // everything, with no test at all
        {valuesOf(text("GROUPING"), text("G2")), {"o1", "k11", "k12", "k21"}},
        {valuesOf(text("grouping"), text("G1"), text("target"), text("T1")), {"o2"}},
        {valuesOf(text("model"), text("M1")), {"o1", "o2", "k21"}},
        {valuesOf(text("Model"), text("M1"), text("target"), text("T2")), {"o1", "o2", "k21"}},
        {valuesOf(text("grouping"), text("G1"), text("model"), text("M2")),
         {"o1", "o2", "k11", "k12"}},
        // The two-name clear follows the three-name one, so the target narrows nothing.
        {valuesOf(text("grouping"), text("G1"), text("model"), text("M1"), text("target"),
                  text("T1")),
         {"o1", "o2", "k21"}},
        // The last pair of a name wins.
        {valuesOf(text("grouping"), text("G1"), text("grouping"), text("G2")),
         {"o1", "k11", "k12", "k21"}},
        {valuesOf(text("grouping"), text("")), {"o1", "o2", "k11", "k12", "k21"}},
    };
    ptAddGrouping("G1");
    ptAddGrouping("G2");
    for (const auto& c : cases) {
        // Host points in G1 and G2, and model points in G1 with models M1 and M2.
        ptEnableGlobalLogging(true);
        ptLogOrviaData("G1", "o1", true);
        ptLogOrviaData("G2", "o2", true);
        ptLogKestruneData("G1", "M1", "T1", "k11", true);
        ptLogKestruneData("G1", "M1", "T2", "k12", true);
        ptLogKestruneData("G1", "M2", "T1", "k21", true);
        ptEnableGlobalLogging(false);
        call("PerfTools.Tracer.clearRawData", c.inputs);
        std::vector<std::string> phases;
        for (const auto& p : *ptTracer()->_rawData) {
            phases.push_back(ptGetPhaseStr(p->_phaseID));
        }
        EXPECT_EQ(phases, c.left);
        ptClearRawData();
    }
}

}  // namespace
}  // namespace pt::testing
