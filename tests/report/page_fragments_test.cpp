// The page text whose bytes are fixed: the start of every page, the tab bars, the containers
// and strips, the fixed pages, the System Info tab and the name arrays, against
// golden/page_fragments.txt.

#include <performance_tracer/names.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/tracer.h>

#include <gtest/gtest.h>

#include "golden_text.h"
#include "report/escape.h"
#include "report/fragments.h"

namespace pt::report {
namespace {

TEST(PageFragments, GoldenTextOfTheFixedParts) {
    std::string text;
    const auto section = [&text](const std::string& name, const std::string& body) {
        text += "=== " + name + " ===\n" + body;
    };
    section("doctype", ptHtmlDoctype());
    section("head of a page of depth 0", ptHtmlHead(0, "GLOBAL", false));
    section("head of a comparison of depth 3", ptHtmlHead(3, "Build Performance Comparison", true));
    section("head titles", ptHtmlHead(2, "", false).substr(0, 60) + "\n" +
                               ptHtmlHead(2, "a \"b\" <c>", false).substr(0, 60) + "\n");
    for (const char* metric : {"time", "detailedmemory"}) {
        section(std::string("bars of a Detail page, ") + metric,
                ptHtmlHeaderTable(false, metric, false));
        section(std::string("bars of a Difference page, ") + metric,
                ptHtmlHeaderTable(true, metric, false));
    }
    section("bars of an Aggregate page", ptHtmlHeaderTable(false, "time", true));
    section("bars of an Aggregate Difference page", ptHtmlHeaderTable(true, "time", true));
    section("body, time", ptHtmlBodyOpen("time", true, false));
    section("body, detailed memory", ptHtmlBodyOpen("detailedmemory", true, false));
    section("body, aggregate page with detailed memory",
            ptHtmlBodyOpen("detailedmemory", true, true));
    section("aggregate container", ptHtmlAggregateDiv());
    for (bool comparison : {false, true}) {
        for (bool aggregate : {false, true}) {
            section(std::string("strips") + (comparison ? ", comparison" : "") +
                        (aggregate ? ", aggregate" : ""),
                    ptHtmlScrollDivs(comparison, aggregate));
        }
    }
    section("instrumentation error page", ptHtmlInstrumentationErrorPage());
    section("missing statistics page", ptHtmlMissingStatisticsPage(false));
    section("missing statistics page of a comparison", ptHtmlMissingStatisticsPage(true));

    SystemInfoRecord record{"cpu", "2.3 GHz", "2", "N/A", "Linux <x>", "1.0", "none", "a & b"};
    section("System Info tab", ptHtmlSystemInfoTab(&record));
    section("System Info tab without a record", ptHtmlSystemInfoTab(nullptr));
    section("System Info tab of a comparison", ptHtmlSystemInfoDiffTab(&record, &record));
    for (bool comparison : {false, true}) {
        for (const char* metric : {"time", "basicmemory", "detailedmemory"}) {
            section(std::string("Details panel, ") + metric + (comparison ? ", comparison" : ""),
                    ptHtmlPhasePanel(metric, comparison));
        }
    }
    section("Call Tree panel", ptHtmlCallTreePanel());
    section("memory chart's elements", ptHtmlCanvasShell(true));
    section("difference memory chart's elements", ptHtmlCanvasShellDiff(true));
    pt::testing::expectGoldenText(PT_REPORT_GOLDEN_DIR, "page_fragments", text);
}

TEST(PageFragments, NameArraysCarryEveryNameAsText) {
    ptClearRawData();
    setPathStripRoot("/opt/orvia");
    ptNameID(PT_TABLE_PHASE, "/opt/orvia/toolbox/a.m");
    ptNameID(PT_TABLE_PHASE, "say \"hi\"\nand 'bye' </script>");
    ptNameID(PT_TABLE_PHASE, "C:\\work\\b.m");
    ptNameID(PT_TABLE_MODEL, "m\\1");
    const std::string arrays = ptHtmlNameArrays(*ptTracer());
    EXPECT_NE(arrays.find("        var Phase = [\"toolbox/a.m\", \n"
                          "\"say \\\"hi\\\" and \\'bye\\' \\x3C/script>\", \n"
                          "\"C:/work/b.m\"];\n"),
              std::string::npos)
        << arrays;
    EXPECT_NE(arrays.find("        var Model = [\"m\\\\1\"];\n"), std::string::npos);
    // Every kind's array, the statistics types excepted, then the page's variables.
    std::size_t at = 0;
    for (const char* name : {"var Phase = [", "var Grouping = [", "var Model = [", "var Target = [",
                             "var Machine = [", "var Chart = [", "var PhaseLengths = new Array();",
                             "var ExpandStr = [", "var groupingStr = \"\";"}) {
        const std::size_t found = arrays.find(name, at);
        ASSERT_NE(found, std::string::npos) << name;
        at = found;
    }
    EXPECT_EQ(arrays.find("StatisticsType"), std::string::npos);
    setPathStripRoot("");
    ptClearRawData();
}

TEST(PageFragments, EscapesLeaveOrdinaryTextAlone) {
    EXPECT_EQ(markupText("plain text 1.2"), "plain text 1.2");
    EXPECT_EQ(markupText("a&b <c> \"d\" 'e'"), "a&amp;b &lt;c&gt; &quot;d&quot; &#39;e&#39;");
    EXPECT_EQ(scriptString("plain text"), "plain text");
    EXPECT_EQ(scriptString("a\\b \"c\" 'd' </script>\nx"),
              "a\\\\b \\\"c\\\" \\'d\\' \\x3C/script> x");
    // Every other character that ends a line, and with it a script string; the other letters
    // of the same UTF-8 lead byte stay as they are.
    EXPECT_EQ(scriptString("a\rb\r\n\u2028c\u2029"), "a\\rb\\r \\u2028c\\u2029");
    EXPECT_EQ(scriptString("\u2026 \u2018\xE2\x80"), "\u2026 \u2018\xE2\x80");
}

}  // namespace
}  // namespace pt::report
