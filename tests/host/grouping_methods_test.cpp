#include "method_test_support.h"

namespace pt::testing {
namespace {

using GroupingMethods = MethodTest;

TEST_F(GroupingMethods, AddAndRemove) {
    const std::string add = "PerfTools.Tracer.addGrouping";
    call(add, valuesOf(text("Parent"), texts({"A", "B"})));
    EXPECT_EQ(ptGetGroupingList("Parent"), (std::vector<std::string>{"A", "B", "Parent"}));
    call(add, valuesOf(text("Empty"), cellOf({})));
    EXPECT_EQ(ptGetGroupingList("Empty"), (std::vector<std::string>{"Empty"}));

    for (auto& wrong : wrongValues()) {
        expectRefused(add, valuesOf(std::move(wrong), texts({"x"})), tracerError("InvalidNames"));
    }
    for (auto& wrong : wrongValues()) {
        if (hvIsCell(wrong.get())) {
            continue;
        }
        expectRefused(add, valuesOf(text("New"), std::move(wrong)),
                      tracerError("UnexpectedValue", {"New"}));
    }
    expectRefused(add, valuesOf(text("New"), cellOf(valuesOf(text("x"), number(1)))),
                  tracerError("AddGroupingExpectedString"));
    // The grouping layer's refusal: what it did before refusing stays.
    EXPECT_EQ(errorOf(add, valuesOf(text("Parent"), texts({"C"}))),
              tracerError("AddGroupingError", {"Group: Parent"}));
    EXPECT_EQ(errorOf(add, valuesOf(text("Other"), texts({"X", "Parent"}))),
              tracerError("AddGroupingError", {"Sub group: Parent"}));
    // The list stays as given, with the refused sub-grouping and its subtree in it.
    EXPECT_EQ(ptGetGroupingList("Other"),
              (std::vector<std::string>{"X", "A", "B", "Parent", "Other"}));

    const std::string remove = "PerfTools.Tracer.removeGrouping";
    call(remove, valuesOf(text("Parent")));
    EXPECT_TRUE(ptGetGroupingList("A").empty());
    expectRefused(remove, valuesOf(text("Parent")), tracerError("RemoveGroupingError", {"Parent"}));
    for (auto& wrong : wrongValues()) {
        expectRefused(remove, valuesOf(std::move(wrong)),
                      tracerError("ParameterMismatchString", {"grouping"}));
    }
}

/// A store with host points in G1 and G2 and model points in G1 with models M1 and M2.
void logMixed() {
    ptAddGrouping("G1");
    ptAddGrouping("G2");
    ptEnableGlobalLogging(true);
    ptLogOrviaData("G1", "o1", true);
    ptLogOrviaData("G2", "o2", true);
    ptLogKestruneData("G1", "M1", "T1", "k11", true);
    ptLogKestruneData("G1", "M1", "T2", "k12", true);
    ptLogKestruneData("G1", "M2", "T1", "k21", true);
    ptEnableGlobalLogging(false);
}

TEST_F(GroupingMethods, ClearChoosesByTheNamesGiven) {
    const std::string clear = "PerfTools.Tracer.clearRawData";
    const struct {
        Values inputs;
        std::vector<std::string> left;
    } cases[] = {
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
    for (const auto& c : cases) {
        logMixed();
        call(clear, c.inputs);
        EXPECT_EQ(rawPhases(), c.left);
        ptClearRawData();
    }

    logMixed();
    expectRefused(clear, valuesOf(text("target"), text("T1")), tracerError("InvalidNames"));
    expectRefused(clear, valuesOf(text("grouping"), text("G1"), text("phase"), text("x")),
                  tracerError("InvalidNames"));
    expectRefused(clear, valuesOf(number(1), text("G1")), tracerError("InvalidNames"));
    expectRefused(clear, valuesOf(text("grouping")), tracerError("ExpectedEvenNumberOfParameters"));
    expectRefused(clear, valuesOf(number(1), number(2), number(3)),
                  tracerError("ExpectedEvenNumberOfParameters"));
    Values eight;
    for (int i = 0; i < 4; ++i) {
        eight.push_back(text("grouping"));
        eight.push_back(text("G1"));
    }
    expectRefused(clear, eight, tracerError("MaxParamsExceeded", {"6"}));

    call(clear, {});  // everything, with no test at all
    EXPECT_TRUE(ptTracer()->_rawData->empty());
}

TEST_F(GroupingMethods, StatisticsTypes) {
    const std::string set = "PerfTools.Tracer.setStatisticsTypeForModel";
    call(set, valuesOf(text("M"), text("Accelerated")));
    EXPECT_EQ(ptTracer()->_modelStatisticsTypes->at("M"), "Accelerated");
    expectRefused(set, valuesOf(text(""), text("x")), tracerError("InvalidNames"));
    expectRefused(set, valuesOf(text("M"), number(3)), tracerError("InvalidNames"));
    EXPECT_EQ(errorOf(set, valuesOf(text("M"))).substr(0, 19), "vos:NotEnoughInputs");
}

}  // namespace
}  // namespace pt::testing
