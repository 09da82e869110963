#include <performance_tracer/data_blocks.h>
#include <performance_tracer/names.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/tracer.h>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <limits>

#include "golden_text.h"
#include "processing/selection.h"
#include "random_log.h"

// The blocks of every metric, single and comparison, for a small pair of runs and for empty
// data, against the golden text in golden/data_blocks.txt. PT_UPDATE_GOLDEN=1 rewrites it.

namespace {

using pt::testing::expectGoldenText;
using pt::testing::makePoint;

constexpr double kMiB = 1048576.0;
const char* const kMetrics[] = {"time", "basicmemory", "detailedmemory", "elapsed"};

struct Event {
    int type;
    const char* phase;
    bool start;
    double time;
};

/// A run under the grouping "EvalPrms", whose id is 0 in every process; memory figures grow
/// with each point so that every field has a value of its own.
PTRawDataVector runOf(const std::vector<Event>& events) {
    PTRawDataVector log;
    double k = 0;
    for (const Event& e : events) {
        auto point = makePoint(e.type, "EvalPrms", e.phase, e.start, e.time, e.time / 2, "engine");
        point->_basicMem = boost::make_shared<pt::BasicMemStats>((1 + k) * kMiB, (2 + 2 * k) * kMiB,
                                                                 (100 - k) * kMiB);
        point->_detailedMem = boost::make_shared<pt::DetailedMemStats>(
            (50 - k) * kMiB, 10 * kMiB, (20 + k) * kMiB, 5 * kMiB, (1 + k / 4) * kMiB);
        log.push_back(point);
        ++k;
    }
    return log;
}

class DataBlocks : public ::testing::Test {
protected:
    void SetUp() override {
        ptClearRawData();
        setPathStripRoot("");
        _leftLog = runOf({{0, "run", true, 0.0},
                          {1, "compile", true, 0.01},
                          {1, "compile", false, 0.5},
                          {2, "step", true, 1.0},  // a gap before
                          {2, "step", false, 1.05},
                          {1, "link", true, 1.06},
                          {1, "link", false, 1.08},
                          {0, "run", false, 1.1},
                          {0, "save", true, 1.15},
                          {0, "save", false, 1.2}});
        _rightLog = runOf({{0, "run", true, 0.0},
                           {1, "compile", true, 0.01},
                           {1, "compile", false, 0.3},
                           {1, "compile", true, 0.31},
                           {1, "compile", false, 0.6},
                           {2, "step", true, 0.62},
                           {2, "step", false, 0.7},
                           {0, "run", false, 0.75},
                           {0, "verify", true, 0.8},
                           {0, "check", true, 0.81},
                           {0, "check", false, 0.85},
                           {0, "verify", false, 0.9},
                           {0, "save", true, 0.95},
                           {0, "save", false, 1.0}});
        PerformanceTracer& t = *ptTracer();
        _left = ptProcessRaw(t, _leftLog, {"GLOBAL"}, false);
        _right = ptProcessRaw(t, _rightLog, {"GLOBAL"}, false);
        ASSERT_FALSE(_left._hasError || _right._hasError);
        _leftAggregates = ptAggregate(t, _left._rows);
        _rightAggregates = ptAggregate(t, _right._rows);
    }

    /// Every block, each under a heading.
    std::string allBlocks() {
        PerformanceTracer& t = *ptTracer();
        const auto rowPairs = ptAlignRows(t, _left._rows, _right._rows);
        const auto aggregatePairs = ptAlignAggregates(t, _leftAggregates, _rightAggregates);
        std::string text;
        const auto section = [&text](const std::string& title, const std::string& block) {
            text += "=== " + title + " ===\n" + block;
        };
        for (const char* metric : kMetrics) {
            const std::string m = metric;
            section("procData " + m, ptHtmlProcData(t, _left, m));
            section("aggData " + m, ptHtmlAggData(t, _leftAggregates, m, false));
            section("procData comparison " + m, ptHtmlProcDiffData(t, rowPairs, m, "LHS", "RHS"));
            section("aggData comparison " + m,
                    ptHtmlAggDiffData(t, aggregatePairs, m, "LHS", "RHS"));
        }
        section("aggData aggregate-only time", ptHtmlAggData(t, _leftAggregates, "time", true));
        section("procData empty", ptHtmlProcData(t, PTProcessedData(), "time"));
        section("aggData empty", ptHtmlAggData(t, PTAggregateMap(), "time", false));
        section("procData comparison empty", ptHtmlProcDiffData(t, {}, "time", "LHS", "RHS"));
        section("aggData comparison empty", ptHtmlAggDiffData(t, {}, "time", "LHS", "RHS"));
        return text;
    }

    PTRawDataVector _leftLog, _rightLog;
    PTProcessedData _left, _right;
    PTAggregateMap _leftAggregates, _rightAggregates;
};

TEST_F(DataBlocks, GoldenTextOfEveryBlock) {
    expectGoldenText(PT_GOLDEN_DIR, "data_blocks", allBlocks());
}

TEST_F(DataBlocks, CarryOversOfTheComparisonWriter) {
    PerformanceTracer& t = *ptTracer();
    // A right-only parent keeps the right self texts of the row before it.
    const auto pairs = ptAlignRows(t, _left._rows, _right._rows);
    const std::string block = ptHtmlProcDiffData(t, pairs, "time", "LHS", "RHS");
    std::vector<std::string> records;
    for (std::size_t at = block.find("new dataStruct("); at != std::string::npos;
         at = block.find("new dataStruct(", at + 1)) {
        records.push_back(block.substr(at, block.find(')', at) - at));
    }
    const auto fields = [](const std::string& record) {
        std::vector<std::string> out;
        std::stringstream stream(record.substr(std::string("new dataStruct(").size()));
        for (std::string field; std::getline(stream, field, ',');) {
            out.push_back(field);
        }
        return out;
    };
    std::size_t verify = 0;
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        if (pairs[i].kind == PT_ALIGN_RHS_ONLY &&
            ptGetPhaseStr(pairs[i].right->_phaseID) == "verify") {
            verify = i;
        }
    }
    ASSERT_GT(verify, 0u);
    const auto before = fields(records[verify - 1]);
    const auto parent = fields(records[verify]);
    // Fields 9 to 16: the four left texts, then RHS_WCSelf, RHS_WCSelfPlusChild, RHS_CPUSelf.
    EXPECT_EQ(parent[9], "-99.99");
    EXPECT_EQ(parent[13], before[13]);
    EXPECT_EQ(parent[15], before[15]);
    EXPECT_NE(parent[14], before[14]);

    // A right-only parent on the first row has no row before it: its self texts start as "0".
    const auto rightOnly = ptAlignRows(t, PTDiagnosticInfoList(), _right._rows);
    const std::string first = ptHtmlProcDiffData(t, rightOnly, "time", "LHS", "RHS");
    const std::size_t at = first.find("new dataStruct(");
    const auto row = fields(first.substr(at, first.find(')', at) - at));
    EXPECT_EQ(row[0], "1");
    EXPECT_EQ(row[13], "0");
    EXPECT_EQ(row[15], "0");
    EXPECT_EQ(first.find(",,"), std::string::npos);
}

TEST_F(DataBlocks, FiguresThatAreNotFiniteAreTheScriptsOwnNumbers) {
    PerformanceTracer& t = *ptTracer();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    PTRawDataVector log = runOf({{0, "run", true, 0.0},
                                 {0, "leaf", true, 0.1},
                                 {0, "leaf", false, nan},
                                 {0, "run", false, inf}});
    log[2]->_detailedMem = boost::make_shared<pt::DetailedMemStats>(inf, -inf, nan, 1.0, 2.0);
    log[2]->_basicMem = boost::make_shared<pt::BasicMemStats>(nan, inf, -inf);
    const PTProcessedData data = ptProcessRaw(t, log, {"GLOBAL"}, false);
    ASSERT_FALSE(data._hasError);
    const PTAggregateMap aggregates = ptAggregate(t, data._rows);
    const auto rows = ptAlignRows(t, data._rows, _left._rows);
    const auto aggregatePairs = ptAlignAggregates(t, aggregates, _leftAggregates);
    for (const char* metric : {"time", "basicmemory", "detailedmemory"}) {
        const std::string blocks = ptHtmlProcData(t, data, metric) +
                                   ptHtmlAggData(t, aggregates, metric, false) +
                                   ptHtmlProcDiffData(t, rows, metric, "L", "R") +
                                   ptHtmlAggDiffData(t, aggregatePairs, metric, "L", "R");
        for (const char* unknown : {"nan", "inf", ",,"}) {
            EXPECT_EQ(blocks.find(unknown), std::string::npos) << metric << ": " << unknown;
        }
        EXPECT_NE(blocks.find(",NaN"), std::string::npos) << metric;
        EXPECT_NE(blocks.find("Infinity"), std::string::npos) << metric;
    }
    EXPECT_NE(ptHtmlProcData(t, data, "detailedmemory").find(",-Infinity,"), std::string::npos);
}

TEST_F(DataBlocks, IdenticalRunsCompareAsEqual) {
    PerformanceTracer& t = *ptTracer();
    const auto pairs = ptAlignRows(t, _left._rows, _left._rows);
    for (const auto& pair : pairs) {
        EXPECT_EQ(pair.kind, PT_ALIGN_BOTH);
    }
    const std::string block = ptHtmlProcDiffData(t, pairs, "time", "LHS", "RHS");
    std::size_t classes = 0;
    for (std::size_t at = block.find("\" B"); at != std::string::npos;
         at = block.find("\" B", at + 1)) {
        EXPECT_EQ(block.compare(at, 13, "\" BETWN_M5_0\""), 0);
        ++classes;
    }
    EXPECT_EQ(classes, 4 * pairs.size());

    // An aggregate on one side only counts all its executions.
    const auto aggregates = ptAlignAggregates(t, _rightAggregates, PTAggregateMap());
    const std::string agg = ptHtmlAggDiffData(t, aggregates, "elapsed", "LHS", "RHS");
    EXPECT_NE(agg.find("new aggDataStruct(0,1,2,-99.99,2)"), std::string::npos);  // compile, twice
}

TEST_F(DataBlocks, ModelIdsCarryOverFromTheLastChartRowUntilAHostRow) {
    PerformanceTracer& t = *ptTracer();
    const auto row = [](int type, const char* phase, const char* model) {
        auto raw = makePoint(type, "EvalPrms", phase, true, 0.0, 0.0, model);
        return boost::make_shared<PTDiagnosticInfo>(raw, 1, 0);
    };
    // A chart row in model "a", a block-diagram row in model "b", a host row, then "b" again.
    const PTDiagnosticInfoList rows = {row(2, "chart", "a"), row(1, "block", "b"),
                                       row(0, "host", "a"), row(1, "block", "b")};
    const auto a = static_cast<std::int32_t>(ptNameID(PT_TABLE_MODEL, "a"));
    const auto b = static_cast<std::int32_t>(ptNameID(PT_TABLE_MODEL, "b"));
    const std::string block =
        ptHtmlProcDiffData(t, ptAlignRows(t, rows, PTDiagnosticInfoList()), "elapsed", "", "");
    const std::string ids[] = {"," + std::to_string(a) + ",0,0,0)",
                               "," + std::to_string(a) + ",0,0,0)", ",-1,-1,-1,-1)",
                               "," + std::to_string(b) + ",0,-1,-1)"};
    std::size_t at = 0;
    for (const std::string& expected : ids) {
        at = block.find("new dataStruct(", at + 1);
        ASSERT_NE(at, std::string::npos);
        EXPECT_EQ(block.substr(block.find(')', at) - expected.size() + 1, expected.size()),
                  expected)
            << block.substr(at, block.find(')', at) - at + 1);
    }
}

}  // namespace
