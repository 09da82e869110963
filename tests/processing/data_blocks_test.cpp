#include <performance_tracer/data_blocks.h>
#include <performance_tracer/names.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/tracer.h>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <limits>
#include <sstream>
#include <tuple>

#include "golden_text.h"
#include "processing/selection.h"
#include "random_log.h"

// The blocks of every metric, single and comparison, for a small pair of runs and for empty
// data, against the golden text in golden/data_blocks.txt. PT_UPDATE_GOLDEN=1 rewrites it.

namespace {

using pt::testing::expectGoldenText;

constexpr double kMiB = 1048576.0;

/// A run under the grouping "EvalPrms", whose id is 0 in every process, CPU times half the
/// wall-clock times; memory figures grow with each point so that every field has a value of
/// its own.
PTRawDataVector runOf(const std::string& events) {
    PTRawDataVector log = pt::testing::logOf(events, "EvalPrms", "engine");
    for (std::size_t k = 0; k < log.size(); ++k) {
        const double m = static_cast<double>(k);
        log[k]->_cpuTime = log[k]->_wcTime / 2;
        log[k]->_basicMem = boost::make_shared<pt::BasicMemStats>(
            (1 + m) * kMiB, (2 + 2 * m) * kMiB, (100 - m) * kMiB);
        log[k]->_detailedMem = boost::make_shared<pt::DetailedMemStats>(
            (50 - m) * kMiB, 10 * kMiB, (20 + m) * kMiB, 5 * kMiB, (1 + m / 4) * kMiB);
    }
    return log;
}

/// The fields of each record "new dataStruct(...)" of a block.
std::vector<std::vector<std::string>> records(const std::string& block) {
    std::vector<std::vector<std::string>> out;
    const std::string head = "new dataStruct(";
    for (std::size_t at = block.find(head); at != std::string::npos;
         at = block.find(head, at + 1)) {
        std::stringstream record(
            block.substr(at + head.size(), block.find(')', at) - at - head.size()));
        out.emplace_back();
        for (std::string field; std::getline(record, field, ',');) {
            out.back().push_back(field);
        }
    }
    return out;
}

class DataBlocks : public ::testing::Test {
protected:
    void SetUp() override {
        ptClearRawData();
        setPathStripRoot("");
        // On the left a gap before "step".
        _leftLog = runOf(
            "run+0,1compile+.01,1compile-.5,2step+1,2step-1.05,1link+1.06,1link-1.08,run-1.1,"
            "save+1.15,save-1.2");
        _rightLog = runOf(
            "run+0,1compile+.01,1compile-.3,1compile+.31,1compile-.6,2step+.62,2step-.7,run-.75,"
            "verify+.8,check+.81,check-.85,verify-.9,save+.95,save-1");
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
        for (const std::string m : {"time", "basicmemory", "detailedmemory", "elapsed"}) {
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
    const auto fields = records(ptHtmlProcDiffData(t, pairs, "time", "LHS", "RHS"));
    const auto verify = std::find_if(pairs.begin(), pairs.end(), [](const auto& pair) {
        return pair.kind == PT_ALIGN_RHS_ONLY && ptGetPhaseStr(pair.right->_phaseID) == "verify";
    });
    ASSERT_TRUE(verify != pairs.end() && verify != pairs.begin());
    const auto at = static_cast<std::size_t>(verify - pairs.begin());
    const auto &parent = fields[at], &before = fields[at - 1];
    // Fields 9 to 16: the four left texts, then RHS_WCSelf, RHS_WCSelfPlusChild, RHS_CPUSelf.
    EXPECT_EQ(std::make_tuple(parent[9], parent[13], parent[15]),
              std::make_tuple("-99.99", before[13], before[15]));
    EXPECT_NE(parent[14], before[14]);

    // A right-only parent on the first row has no row before it: its self texts start as "0".
    const std::string first =
        ptHtmlProcDiffData(t, ptAlignRows(t, {}, _right._rows), "time", "LHS", "RHS");
    const auto row = records(first).at(0);
    EXPECT_EQ(std::make_tuple(row[0], row[13], row[15]), std::make_tuple("1", "0", "0"));
    EXPECT_EQ(first.find(",,"), std::string::npos);
}

TEST_F(DataBlocks, FiguresThatAreNotFiniteAreTheScriptsOwnNumbers) {
    PerformanceTracer& t = *ptTracer();
    const double nan = std::numeric_limits<double>::quiet_NaN(),
                 inf = std::numeric_limits<double>::infinity();
    PTRawDataVector log = runOf("run+0,leaf+.1,leaf-0,run-0");
    log[2]->_wcTime = log[2]->_cpuTime = nan;
    log[3]->_wcTime = log[3]->_cpuTime = inf;
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

}  // namespace
