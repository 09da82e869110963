#include <iterator>
#include <sstream>

#include "method_test_support.h"

namespace pt::testing {
namespace {

std::vector<std::string> words(const std::string& text) {
    std::istringstream in(text);
    return {std::istream_iterator<std::string>(in), {}};
}

class ExportMethods : public MethodTest {
protected:
    /// Two phases of host-language code and one of each model class.
    static void logRun() {
        ptAddGrouping("A", {"A1"});
        ptAddGrouping("B");
        ptEnableGlobalLogging(true);
        ptLogOrviaData("A", "a", true);
        ptLogOrviaData("A", "a", false);
        ptLogKestruneData("A1", "m1", "t", "k", true);
        ptLogKestruneData("A1", "m1", "t", "k", false);
        ptLogYlvaneData("B", "m2", "t", "mc", "c", "y", true);
        ptLogYlvaneData("B", "m2", "t", "mc", "c", "y", false);
        ptEnableGlobalLogging(false);
    }

    /// The phase names of a result's structures, read from a field.
    static std::vector<std::string> column(const Values& result, const char* field) {
        std::vector<std::string> out;
        const hvArray* cells = result.at(0).get();
        for (std::size_t i = 0; i < hvGetNumberOfElements(cells); ++i) {
            out.push_back(hvArrayToStdString(hvGetField(hvGetCell(cells, i), 0, field)));
        }
        return out;
    }
};

TEST_F(ExportMethods, PairsRecomputeAndTheLastWins) {
    logRun();
    const struct {
        Values inputs;
        const char *field, *values;
    } cases[] = {
        {valuesOf(text("grouping"), text("A")), "phaseIDStr", "a k"},  // A and all below it
        {valuesOf(text("GROUPING"), text("A"), text("grouping"), text("B")), "phaseIDStr", "y"},
        // "GLOBAL" as a pair goes through the grouping list, where it is no grouping.
        {valuesOf(text("grouping"), text("GLOBAL")), "phaseIDStr", ""},
        {valuesOf(text("grouping"), texts({"B", "A1"})), "phaseIDStr", "k y"},
        // Model texts add up; a cell replaces them.
        {valuesOf(text("model"), text("m1"), text("model"), text("m2")), "modelStr", "m1 m2"},
        {valuesOf(text("model"), text("m1"), text("model"), texts({"m2"})), "modelStr", "m2"},
        {valuesOf(text("model"), texts({"m2"}), text("model"), text("m1")), "modelStr", "m1 m2"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(column(call("PerfTools.Tracer.getProcessedData", c.inputs, 1), c.field),
                  words(c.values));
    }

    const std::string aggregate = "PerfTools.Tracer.getAggregateProcessedData";
    const Values sums = call(aggregate, valuesOf(text("model"), text("m1")), 1);
    ASSERT_EQ(hvGetN(sums.at(0).get()), 1u);
    const hvArray* entry = hvGetCell(sums.at(0).get(), 0);
    std::vector<std::string> fields;
    for (int f = 0; f < hvGetNumberOfFields(entry); ++f) {
        fields.push_back(hvGetFieldNameByNumber(entry, f));
    }
    EXPECT_EQ(fields, words("pointType grouping phaseID wcElapsedTime cpuElapsedTime "
                            "procMemUsageDelta procMemUsagePeakDelta procVMSizeDelta "
                            "Count"));
    EXPECT_EQ(hvArrayToStdString(hvGetField(entry, 0, "phaseID")), "k");
    EXPECT_EQ(hvArrayToStdString(hvGetField(entry, 0, "grouping")), "A1");
    EXPECT_EQ(hvGetClassID(hvGetField(entry, 0, "Count")), hvClassID::UInt32);
    EXPECT_EQ(hvGetScalar(hvGetField(entry, 0, "Count")), 1.0);
    EXPECT_EQ(hvGetN(call(aggregate, {}, 1).at(0).get()), 3u);
}

}  // namespace
}  // namespace pt::testing
