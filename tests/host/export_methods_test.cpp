#include <boost/make_shared.hpp>

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

    static std::vector<std::string> fieldsOf(const hvArray* structure) {
        std::vector<std::string> names;
        for (int f = 0; f < hvGetNumberOfFields(structure); ++f) {
            names.push_back(hvGetFieldNameByNumber(structure, f));
        }
        return names;
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

TEST_F(ExportMethods, RawRowsAndProcessedStructuresByClass) {
    logRun();
    const Values raw = call("PerfTools.Tracer.getRawData", {}, 1);
    const hvArray* cells = raw.at(0).get();
    ASSERT_TRUE(hvIsCell(cells));
    ASSERT_EQ(hvGetN(cells), 6u);
    EXPECT_EQ(hvGetN(hvGetCell(cells, 0)), 16u);
    EXPECT_EQ(hvGetN(hvGetCell(cells, 2)), 18u);
    EXPECT_EQ(hvGetN(hvGetCell(cells, 4)), 20u);
    EXPECT_EQ(hvArrayToStdString(hvGetCell(hvGetCell(cells, 4), 7)), "c");

    const Values processed = call("PerfTools.Tracer.getProcessedData", {}, 1);
    cells = processed.at(0).get();
    ASSERT_EQ(hvGetN(cells), 3u);
    const auto expected = [](std::string head) {
        return words(
            head +
            " wcStartTime wcElapsedTime cpuStartTime cpuElapsedTime freeMem resMem commitMem "
            "dllsMem nonprocessMem freeMemDelta resMemDelta commitMemDelta dllsMemDelta "
            "nonprocessMemDelta procMemUsage procMemUsagePeak procVMSize procMemUsageDelta "
            "procMemUsagePeakDelta procVMSizeDelta errorRow gapRow HTMLPhaseNumString "
            "HTMLRowNumber numChildren stackDepth childrenIDs");
    };
    EXPECT_EQ(fieldsOf(hvGetCell(cells, 0)),
              expected("pointType groupingStr phaseIDStr statisticsTypeStr"));
    EXPECT_EQ(fieldsOf(hvGetCell(cells, 1)),
              expected("pointType groupingStr phaseIDStr modelStr targetStr statisticsTypeStr"));
    EXPECT_EQ(fieldsOf(hvGetCell(cells, 2)),
              expected("pointType groupingStr phaseIDStr modelStr targetStr machineStr chartStr "
                       "statisticsTypeStr"));

    const hvArray* chart = hvGetCell(cells, 2);
    const auto classOf = [chart](const char* field) {
        return hvGetClassID(hvGetField(chart, 0, field));
    };
    EXPECT_EQ(classOf("pointType"), hvClassID::UInt32);
    EXPECT_EQ(hvGetScalar(hvGetField(chart, 0, "pointType")), 2.0);
    EXPECT_EQ(classOf("chartStr"), hvClassID::Char);
    EXPECT_EQ(hvArrayToStdString(hvGetField(chart, 0, "machineStr")), "mc");
    EXPECT_EQ(classOf("wcElapsedTime"), hvClassID::Double);
    EXPECT_EQ(classOf("procVMSizeDelta"), hvClassID::Double);
    EXPECT_EQ(classOf("errorRow"), hvClassID::Logical);
    EXPECT_EQ(classOf("HTMLPhaseNumString"), hvClassID::Char);
    EXPECT_EQ(hvArrayToStdString(hvGetField(chart, 0, "HTMLPhaseNumString")), "3");
    EXPECT_EQ(classOf("stackDepth"), hvClassID::UInt32);
    EXPECT_EQ(classOf("childrenIDs"), hvClassID::Cell);
    EXPECT_EQ(hvGetN(hvGetField(chart, 0, "childrenIDs")), 0u);

    ptClearRawData();
    const Values none = call("PerfTools.Tracer.getRawData", {}, 1);
    EXPECT_TRUE(hvIsCell(none.at(0).get()));
    EXPECT_EQ(hvGetN(none.at(0).get()), 0u);
}

TEST_F(ExportMethods, ChildrenMemoryAndSelfTimes) {
    ptAddGrouping("A");
    ptEnableGlobalLogging(true);
    ptLogOrviaData("A", "parent", true);
    ptLogOrviaData("A", "child", true);
    ptLogOrviaData("A", "child", false);
    ptLogOrviaData("A", "parent", false);
    ptEnableGlobalLogging(false);
    auto& raw = *ptTracer()->_rawData;
    raw[0]->_basicMem.reset();  // a point that never had memory statistics
    raw[2]->_basicMem = boost::make_shared<pt::BasicMemStats>(2 * 1048576.0, 0, 0);

    const Values result = call("PerfTools.Tracer.getProcessedData", {}, 1);
    const hvArray* parent = hvGetCell(result.at(0).get(), 0);
    const hvArray* child = hvGetCell(result.at(0).get(), 1);
    const hvArray* children = hvGetField(parent, 0, "childrenIDs");
    ASSERT_EQ(hvGetN(children), 1u);
    EXPECT_EQ(hvGetClassID(hvGetCell(children, 0)), hvClassID::Int32);
    EXPECT_EQ(hvGetScalar(hvGetCell(children, 0)), 2.0);  // the child's row number
    EXPECT_EQ(hvGetScalar(hvGetField(parent, 0, "numChildren")), 1.0);
    EXPECT_EQ(hvGetScalar(hvGetField(child, 0, "stackDepth")), 1.0);
    EXPECT_FALSE(hvIsLogicalScalarTrue(hvGetField(child, 0, "gapRow")));
    // Figures in MiB: the child ends at 2 MiB of usage; the parent's start had none at all.
    EXPECT_EQ(hvGetScalar(hvGetField(child, 0, "procMemUsage")), 2.0);
    EXPECT_EQ(hvGetScalar(hvGetField(parent, 0, "freeMem")), 0.0);

    // The aggregate's times are self times: all of a leaf's, and of a parent only what a
    // generated "_self" row reports, none here.
    const Values sums = call("PerfTools.Tracer.getAggregateProcessedData", {}, 1);
    ASSERT_EQ(hvGetN(sums.at(0).get()), 2u);
    const hvArray* parentSum = hvGetCell(sums.at(0).get(), 0);
    const hvArray* childSum = hvGetCell(sums.at(0).get(), 1);
    EXPECT_EQ(hvArrayToStdString(hvGetField(parentSum, 0, "phaseID")), "parent");
    EXPECT_EQ(hvGetClassID(hvGetField(parentSum, 0, "wcElapsedTime")), hvClassID::Double);
    EXPECT_EQ(hvGetScalar(hvGetField(parentSum, 0, "wcElapsedTime")), 0.0);
    EXPECT_EQ(hvGetScalar(hvGetField(childSum, 0, "wcElapsedTime")),
              hvGetScalar(hvGetField(child, 0, "wcElapsedTime")));
    EXPECT_EQ(hvGetScalar(hvGetField(childSum, 0, "procMemUsageDelta")), 2.0);
}

TEST_F(ExportMethods, PairsRecomputeAndTheLastWins) {
    logRun();
    const struct {
        Values inputs;
        const char* field;
        const char* values;
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
    EXPECT_EQ(fieldsOf(entry), words("pointType grouping phaseID wcElapsedTime cpuElapsedTime "
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
