#include "tracer_test_support.h"

namespace {

using NameTables = TracerTest;

TEST_F(NameTables, IdsAreDenseMissesAddNothingAndEachExportReadsItsTable) {
    PerformanceTracer& t = tracer();
    // No folding of any kind: "Model" and "model" are two names; "" is a name like any other.
    for (const char* name : {"load", "load", "Model", "model", ""}) {
        t.nameToID(PT_TABLE_PHASE, name, true);
    }
    EXPECT_EQ(t.nameToID(PT_TABLE_PHASE, "unseen", false), PT_NO_ID);
    EXPECT_EQ(tableSize(PT_TABLE_PHASE), 4u);
    EXPECT_EQ(t.nameToID(7, "x", true), PT_NO_ID);  // no such kind
    for (std::uint32_t kind = PT_TABLE_STATISTICS_TYPE; kind < PT_TABLE_COUNT; ++kind) {
        ptNameID(kind, "k" + std::to_string(kind));
    }
    const std::vector<std::string> names = {
        ptGetPhaseStr(2), ptGetPhaseStr(-1), ptGetPhaseStr(4),   ptGetStatisticsTypeStr(0),
        ptGetModelStr(0), ptGetTargetStr(0), ptGetMachineStr(0), ptGetChartStr(0)};
    EXPECT_EQ(names, (std::vector<std::string>{"model", "", "", "k2", "k3", "k4", "k5", "k6"}));

    PerformanceTracer hollow;  // a tracer whose members were never made
    EXPECT_EQ(hollow.nameToID(PT_TABLE_PHASE, "x", true), PT_NO_ID);
    EXPECT_EQ(hollow.idToName(PT_TABLE_PHASE, 0), "");
    hollow.cleanup();  // tolerates every null member
}

TEST_F(NameTables, DisplayPhaseName) {
    const struct {
        const char* root;
        const char* name;
        bool strip;
        const char* shown;
    } cases[] = {
        {"/opt/app", "\\opt\\app\\toolbox\\f", false, "toolbox/f"},
        {"\\opt\\app", "/opt/app/toolbox/f", false, "toolbox/f"},
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
