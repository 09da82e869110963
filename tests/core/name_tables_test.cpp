#include "tracer_test_support.h"

namespace {

using NameTables = TracerTest;

TEST_F(NameTables, IdsAreDenseMissesAddNothingAndEachExportReadsItsTable) {
    PerformanceTracer& t = tracer();
    EXPECT_EQ(t.nameToID(PT_TABLE_PHASE, "load", true), 0u);
    EXPECT_EQ(t.nameToID(PT_TABLE_PHASE, "load", true), 0u);
    EXPECT_EQ(t.nameToID(PT_TABLE_PHASE, "unseen", false), PT_NO_ID);
    EXPECT_EQ(t.nameToID(PT_TABLE_PHASE, "compile", true), 1u);
    EXPECT_EQ(tableSize(PT_TABLE_PHASE), 2u);
    for (int id : {-1, -2, 2, 1000}) {
        EXPECT_EQ(ptGetPhaseStr(id), "") << id;
    }
    // No folding of any kind: these are two names.
    EXPECT_EQ(t.nameToID(PT_TABLE_MODEL, "Model", true), 0u);
    EXPECT_EQ(t.nameToID(PT_TABLE_MODEL, "model", true), 1u);
    // The empty string is a name like any other, and its name can't be told from a miss.
    EXPECT_EQ(t.nameToID(PT_TABLE_CHART, "", true), 0u);
    EXPECT_EQ(tableSize(PT_TABLE_CHART), 1u);
    EXPECT_EQ(t.nameToID(7, "x", true), PT_NO_ID);  // no such kind
    EXPECT_EQ(t.idToName(7, 0), "");

    ptNameID(PT_TABLE_STATISTICS_TYPE, "stats");
    ptNameID(PT_TABLE_TARGET, "target");
    ptNameID(PT_TABLE_MACHINE, "machine");
    const std::vector<std::string> firsts = {
        ptGetPhaseStr(0),  ptGetStatisticsTypeStr(0), ptGetModelStr(0), ptGetModelStr(1),
        ptGetTargetStr(0), ptGetMachineStr(0),        ptGetChartStr(0)};
    EXPECT_EQ(firsts, (std::vector<std::string>{"load", "stats", "Model", "model", "target",
                                                "machine", ""}));

    PerformanceTracer hollow;  // a tracer whose members were never made
    EXPECT_EQ(hollow.nameToID(PT_TABLE_PHASE, "x", true), PT_NO_ID);
    EXPECT_EQ(hollow.idToName(PT_TABLE_PHASE, 0), "");
    hollow.cleanup();  // tolerates every null member
}

TEST_F(NameTables, ClearRestartsPhaseIdsWhileGroupingIdsStay) {
    EXPECT_EQ(KsPerformanceTracingPoint::_groupingID, 0);
    EXPECT_EQ(ptNameStr(PT_TABLE_GROUPING, 0), "EvalPrms");
    const std::int32_t grouping = ptAddGrouping("Clearing");
    ptEnableTracer("Clearing", true);
    ptLogOrviaData(grouping, "first", true);
    ptLogOrviaData(grouping, "second", true);
    EXPECT_EQ(raw().back()->_phaseID, 1);
    ptClearRawData();
    ptLogOrviaData(grouping, "second", true);
    EXPECT_EQ(raw().back()->_phaseID, 0);
    EXPECT_EQ(groupingID("Clearing"), grouping);
}

TEST_F(NameTables, DisplayPhaseName) {
    const struct {
        const char* root;
        const char* name;
        bool strip;
        const char* shown;
    } cases[] = {
        {"/opt/app", "\\opt\\app\\toolbox\\f", true, "toolbox/f"},
        {"/opt/app", "\\opt\\app\\toolbox\\f", false, "toolbox/f"},
        {"\\opt\\app", "/opt/app/toolbox/f", false, "toolbox/f"},
        {"", "a/ks_customization/b", true, "a/b"},
        {"", "a/ks_customization/b", false, "a/ks_customization/b"},
        {"", "/ks_customization", true, "ks_customization"},
        {"", "x/ks_internal_customization/ks_customization/y", true, "x/y"},
        {"", "/ks_internal_customization", true, "ks_internal_customization"},
        // Only a slash that is the last one goes when the flag is false.
        {"", "//f", false, "f"},
        {"", "//a/f", false, "/a/f"},
        {"", "//a/f", true, "/a/f"},
        // The root is a plain prefix of the text, not of path components.
        {"/opt/app", "/opt/apple/f", false, "le/f"},
        {"/opt/app", "plain", true, "plain"},
        {"", "", false, ""},
    };
    for (const auto& c : cases) {
        setPathStripRoot(c.root);
        EXPECT_EQ(ptDisplayPhaseName(c.name, c.strip), c.shown)
            << "root '" << c.root << "', name '" << c.name << "', strip " << c.strip;
    }
}

}  // namespace
