#include "processing/matching_pass.h"
#include "processing/selection.h"

#include <performance_tracer/constants.h>
#include <performance_tracer/groupings.h>
#include <performance_tracer/logging.h>
#include <performance_tracer/names.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/tracer.h>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <cmath>
#include <sstream>

#include "direct_matching_pass.h"
#include "large_inputs.h"
#include "random_log.h"

namespace {

using pt::testing::copyLog;
using pt::testing::LogOptions;
using pt::testing::makePoint;
using pt::testing::randomLog;
using Names = std::vector<std::string>;

/// A pass with every row it made, in the order of the points that opened them.
struct Pass {
    PTProcessedData data;
    PTPointMap map;
    std::vector<const PTOrviaProcessedDataPoint*> rows;
    bool leftOpen = false;

    const PTOrviaProcessedDataPoint& row(std::size_t i) const { return *rows.at(i); }
};

enum class Variant { Groupings, Models, Diagnostic };

Pass run(PTRawDataVector& log, const Names& names, Variant variant = Variant::Groupings) {
    Pass pass;
    PerformanceTracer& tracer = *ptTracer();
    switch (variant) {
        case Variant::Groupings: ptMatchGroupings(tracer, log, names, pass.map, pass.data); break;
        case Variant::Models: ptMatchModels(tracer, &log, names, pass.map, pass.data); break;
        case Variant::Diagnostic:
            pass.leftOpen = ptMatchDiagnostic(tracer, &log, names.at(0), pass.map, pass.data);
            break;
    }
    std::vector<const PTDiagnosticInfo*> seen;
    for (const auto& point : log) {
        const auto found = pass.map.find(point.get());
        if (found == pass.map.end()) {
            continue;
        }
        const PTDiagnosticInfo* info = found->second.get();
        if (std::find(seen.begin(), seen.end(), info) == seen.end()) {
            seen.push_back(info);
            pass.rows.push_back(info->_point.get());
        }
    }
    return pass;
}

std::string nameOf(const PTOrviaProcessedDataPoint& row) { return ptGetPhaseStr(row._phaseID); }

class MatchingPass : public ::testing::Test {
protected:
    void SetUp() override { ptClearRawData(); }
};

TEST_F(MatchingPass, OneStartAndOneEndMakeOneRow) {
    PTRawDataVector log = {makePoint(0, "G", "A", true, 10.0, 1.0),
                           makePoint(0, "G", "A", false, 12.5, 1.75)};
    const Pass pass = run(log, {"G"});
    ASSERT_EQ(pass.rows.size(), 1u);
    const auto& row = pass.row(0);
    EXPECT_EQ(row.HTMLPhaseNumString, "1");
    EXPECT_EQ(row.HTMLRowNumber, 1);
    EXPECT_EQ(row.stackDepth, 0);
    EXPECT_EQ(row.wcStartTime, 0.0);
    EXPECT_EQ(row.wcElapsedTime, 2.5);
    EXPECT_EQ(row.cpuElapsedTime, 0.75);
    EXPECT_EQ(pass.data._totalWC, 2.5);
    EXPECT_EQ(pass.data._totalCPU, 0.75);
    EXPECT_EQ(pass.data._levelCount, 2);  // the end opens the level below as well
    EXPECT_EQ(pass.data._baseWC, 10.0);
    EXPECT_FALSE(pass.data._hasError);
}

TEST_F(MatchingPass, WaitsBetweenTopLevelPhasesAreNoRows) {
    for (double wait : {0.05, 1.0}) {
        PTRawDataVector log = {
            makePoint(0, "G", "A", true, 0.0), makePoint(0, "G", "A", false, 1.0),
            makePoint(0, "G", "B", true, 1.0 + wait), makePoint(0, "G", "B", false, 3.0 + wait)};
        const Pass pass = run(log, {"G"});
        ASSERT_EQ(pass.rows.size(), 2u) << wait;
        EXPECT_EQ(log.size(), 4u);
        EXPECT_EQ(pass.row(1).HTMLPhaseNumString, "2");
        EXPECT_EQ(pass.row(1).wcStartTime, 1.0 + wait);
        EXPECT_EQ(pass.data._totalWC, 3.0);  // the wait is in no total
    }
}

TEST_F(MatchingPass, WaitBetweenChildrenBecomesAPostRow) {
    PTRawDataVector log = {
        makePoint(1, "G", "Parent", true, 0.0), makePoint(1, "G", "a", true, 0.01),
        makePoint(1, "G", "a", false, 0.02),    makePoint(1, "G", "b", true, 1.02),
        makePoint(1, "G", "b", false, 1.03),    makePoint(1, "G", "Parent", false, 1.04)};
    const Pass pass = run(log, {"G"});
    ASSERT_EQ(pass.rows.size(), 4u);
    EXPECT_EQ(log.size(), 8u);
    const char* numbers[] = {"1", "1.1", "1.2", "1.3"};
    const char* names[] = {"Parent", "a", "a_post", "b"};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(pass.row(i).HTMLPhaseNumString, numbers[i]);
        EXPECT_EQ(nameOf(pass.row(i)), names[i]);
        EXPECT_EQ(pass.row(i).HTMLRowNumber, static_cast<std::int32_t>(i + 1));
    }
    const auto& gap = pass.row(2);
    EXPECT_TRUE(gap.gapRow);
    EXPECT_EQ(gap._pointType, 1);  // a copy of the open parent
    EXPECT_EQ(gap.stackDepth, 1);
    EXPECT_DOUBLE_EQ(gap.wcElapsedTime, 1.0);
    EXPECT_DOUBLE_EQ(gap.wcStartTime, 0.02);
    EXPECT_EQ(pass.row(0).numChildren, 3);
    EXPECT_EQ(pass.row(0).childrenIDs.toVector(), (std::vector<std::int32_t>{2, 3, 4}));
    EXPECT_EQ(pass.row(1)._parentPhaseID, pass.row(0)._phaseID);
    EXPECT_FALSE(pass.data._hasError);
    // The generated points stand in the list, before the point that followed the wait.
    EXPECT_TRUE(log[3]->_isGenerated && log[3]->_isPhaseStart);
    EXPECT_TRUE(log[4]->_isGenerated && !log[4]->_isPhaseStart);
    EXPECT_EQ(ptGetPhaseStr(log[5]->_phaseID), "b");
}

TEST_F(MatchingPass, WaitBeforeTheFirstChildBecomesASelfRow) {
    PTRawDataVector log = {
        makePoint(2, "G", "Parent", true, 0.0), makePoint(2, "G", "child", true, 1.0),
        makePoint(2, "G", "child", false, 1.5), makePoint(2, "G", "Parent", false, 1.6)};
    const Pass pass = run(log, {"G"});
    ASSERT_EQ(pass.rows.size(), 3u);
    EXPECT_EQ(nameOf(pass.row(1)), "Parent_self");
    EXPECT_EQ(pass.row(1).HTMLPhaseNumString, "1.1");
    EXPECT_EQ(pass.row(2).HTMLPhaseNumString, "1.2");
    EXPECT_DOUBLE_EQ(pass.row(1).wcElapsedTime, 1.0);
}

TEST_F(MatchingPass, AWaitOfExactlyTheThresholdIsNoGap) {
    EXPECT_EQ(kGapThreshold, 0.10000000149011612);
    for (const auto& [wait, rows] :
         {std::pair{kGapThreshold, 3u}, std::pair{std::nextafter(kGapThreshold, 1.0), 4u}}) {
        PTRawDataVector log = {
            makePoint(0, "G", "P", true, 0.0),   makePoint(0, "G", "a", true, 0.0),
            makePoint(0, "G", "a", false, 0.0),  makePoint(0, "G", "b", true, wait),
            makePoint(0, "G", "b", false, wait), makePoint(0, "G", "P", false, wait)};
        EXPECT_EQ(run(log, {"G"}).rows.size(), rows) << wait;
    }
}

TEST_F(MatchingPass, OutlineNumbersRestartUnderEachParent) {
    PTRawDataVector log;
    double t = 0;
    for (const char* parent : {"p1", "p2"}) {
        log.push_back(makePoint(0, "G", parent, true, t += 0.01));
        for (const char* child : {"c1", "c2"}) {
            log.push_back(makePoint(0, "G", child, true, t += 0.01));
            log.push_back(makePoint(0, "G", child, false, t += 0.01));
        }
        log.push_back(makePoint(0, "G", parent, false, t += 0.01));
    }
    const Pass pass = run(log, {"G"});
    std::vector<std::string> numbers;
    for (const auto* row : pass.rows) {
        numbers.push_back(row->HTMLPhaseNumString);
    }
    EXPECT_EQ(numbers, (Names{"1", "1.1", "1.2", "2", "2.1", "2.2"}));
    EXPECT_EQ(pass.data._levelCount, 3);
}

TEST_F(MatchingPass, EveryFaceOfBrokenInstrumentation) {
    struct Event {
        int type;
        const char* phase;
        bool start;
    };
    const struct {
        const char* what;
        std::vector<Event> events;
        std::size_t rows;
        Names errorRows;
    } cases[] = {
        {"end with nothing open", {{0, "A", true}, {0, "A", false}, {0, "B", false}}, 2, {"B"}},
        {"end that does not fit",
         {{0, "A", true}, {0, "B", true}, {0, "A", false}, {0, "B", false}},
         2,
         {"A", "B"}},
        {"start that never ends", {{0, "A", true}, {0, "B", true}, {0, "B", false}}, 2, {"A"}},
        {"two kinds interleaved",
         {{0, "A", true}, {1, "A", true}, {0, "A", false}, {1, "A", false}},
         2,
         {"A", "A"}},
        {"first point an end",
         {{0, "X", false}, {0, "A", true}, {0, "B", true}, {0, "B", false}, {0, "A", false}},
         3,
         {"X"}},
    };
    for (const auto& c : cases) {
        PTRawDataVector log;
        double t = 0;
        for (const Event& e : c.events) {
            log.push_back(makePoint(e.type, "G", e.phase, e.start, t += 0.01));
        }
        const Pass pass = run(log, {"G"});
        EXPECT_TRUE(pass.data._hasError) << c.what;
        EXPECT_EQ(pass.rows.size(), c.rows) << c.what;
        Names errors;
        for (const auto* row : pass.rows) {
            if (row->errorRow) {
                errors.push_back(nameOf(*row));
            }
        }
        EXPECT_EQ(errors, c.errorRows) << c.what;
    }

    // A phase that never ends keeps zero times whatever its start.
    PTRawDataVector open = {makePoint(0, "G", "A", true, 5.0)};
    const Pass pass = run(open, {"G"});
    EXPECT_EQ(pass.row(0).wcStartTime, 0.0);
    EXPECT_EQ(pass.row(0).wcElapsedTime, 0.0);
}

TEST_F(MatchingPass, AFirstPointThatIsAnEnd) {
    PTRawDataVector log = {makePoint(0, "G", "X", false, 0.0), makePoint(0, "G", "A", true, 0.01),
                           makePoint(0, "G", "A", false, 0.02)};
    const Pass pass = run(log, {"G"});
    ASSERT_EQ(pass.rows.size(), 2u);
    EXPECT_EQ(pass.row(0).HTMLRowNumber, 1);
    EXPECT_EQ(pass.row(1).HTMLRowNumber, 1);  // the number is used again
    EXPECT_EQ(pass.row(1).stackDepth, 1);     // one level too deep for the rest of the pass
    EXPECT_EQ(pass.row(1).HTMLPhaseNumString, "0.1");  // under a level no phase started
    EXPECT_EQ(pass.data._baseWC, 0.0);
    EXPECT_TRUE(pass.data._hasError);
}

TEST_F(MatchingPass, PhasesNestedAHundredThousandDeep) {
    // Outline numbers and descendant lists once grew with the square of the depth.
    constexpr std::int32_t kDepth = pt::testing::largeSize(100000, 20000);
    PTRawDataVector log;
    for (std::int32_t i = 0; i < 2 * kDepth; ++i) {
        log.push_back(makePoint(0, "G", "p", i < kDepth, i * 1e-6));
    }
    const PTProcessedData data = ptGetProcessedDataForGroupings(&log, {"G"});
    ASSERT_FALSE(data._hasError);
    ASSERT_EQ(data._rows.size(), static_cast<std::size_t>(kDepth));
    EXPECT_EQ(data._levelCount, kDepth + 1);
    std::string deepest = "1";
    for (std::int32_t depth = 1; depth < kDepth; ++depth) {
        deepest += ".1";
    }
    for (const std::int32_t depth : {0, 1, 2, kDepth / 2, kDepth - 2, kDepth - 1}) {
        const PTOrviaProcessedDataPoint& row = *data._rows[static_cast<std::size_t>(depth)]->_point;
        EXPECT_EQ(row.stackDepth, depth);
        EXPECT_EQ(row.HTMLPhaseNumString,
                  deepest.substr(0, 2 * static_cast<std::size_t>(depth) + 1));
        EXPECT_EQ(row.numChildren, depth + 1 < kDepth ? 1 : 0);
        EXPECT_EQ(row.childrenIDs,
                  PTRowRun(depth + 2, static_cast<std::size_t>(kDepth - depth - 1)));
        EXPECT_NEAR(row.wcElapsedTime, (2 * (kDepth - depth) - 1) * 1e-6, 1e-9);
    }
    if (!pt::testing::kSanitized) {
        EXPECT_LT(pt::testing::peakResidentBytes(), pt::testing::kGiB);
    }
}

TEST_F(MatchingPass, PointsTakenUpByTheUnaccountedName) {
    ptNameID(PT_TABLE_PHASE, std::string(pt::kUnaccountedPhase));
    // The "_self" cut from such a phase is taken up when its grouping is selected too.
    PTRawDataVector log = {makePoint(0, "Other", "Unaccounted Phase", true, 0.0),
                           makePoint(0, "Other", "child", true, 1.0),
                           makePoint(0, "Other", "child", false, 1.05),
                           makePoint(0, "Other", "Unaccounted Phase", false, 1.1)};
    const Pass selected = run(log, {"Other"});
    ASSERT_EQ(selected.rows.size(), 3u);
    EXPECT_EQ(nameOf(selected.row(1)), "Unaccounted Phase_self");

    // A point the filter skips changes nothing: the wait is measured from the last point taken
    // up, though the generated points are placed right before the point after the wait.
    PTRawDataVector skipped = {
        makePoint(0, "G", "P", true, 0.0),  makePoint(0, "G", "a", true, 0.0),
        makePoint(0, "G", "a", false, 0.0), makePoint(0, "Skipped", "s", true, 0.5),
        makePoint(0, "G", "b", true, 1.0),  makePoint(0, "G", "b", false, 1.0),
        makePoint(0, "G", "P", false, 1.0)};
    const Pass pass = run(skipped, {"G"});
    ASSERT_EQ(pass.rows.size(), 4u);
    EXPECT_EQ(nameOf(pass.row(2)), "a_post");
    EXPECT_DOUBLE_EQ(pass.row(2).wcElapsedTime, 1.0);
    EXPECT_EQ(ptGetPhaseStr(skipped[3]->_phaseID), "s");
    EXPECT_TRUE(skipped[4]->_isGenerated);

    // The last point taken up decides _hasDetailedMem; NaN counts as not 0.
    PTRawDataVector nan = {makePoint(0, "G", "n", true, 0.0), makePoint(0, "G", "n", false, 0.0)};
    nan[1]->_detailedMem->freeMem = std::nan("");
    EXPECT_TRUE(run(nan, {"G"}).data._hasDetailedMem);
}

TEST_F(MatchingPass, NullListsMeanTheLiveStore) {
    PerformanceTracer& tracer = *ptTracer();
    PTPointMap map;
    PTProcessedData data;
    ptMatchModels(tracer, nullptr, {"GLOBAL"}, map, data);
    EXPECT_TRUE(data._hasError);  // an empty store
    PTProcessedData diagnostic;
    EXPECT_TRUE(ptMatchDiagnostic(tracer, nullptr, "G", map, diagnostic));
    EXPECT_FALSE(diagnostic._hasError);

    ptEnableGlobalLogging(true);
    ptAddGrouping("Live");
    ptLogKestruneData("Live", "m", "t", "p", true);
    ptLogKestruneData("Live", "m", "t", "p", false);
    ptEnableGlobalLogging(false);
    PTProcessedData models;
    ptMatchModels(tracer, nullptr, {"m"}, map, models);
    EXPECT_FALSE(models._hasError);
    EXPECT_EQ(map.size(), 2u);
    map.clear();
    PTProcessedData unknown;
    EXPECT_FALSE(ptMatchDiagnostic(tracer, nullptr, "never added", map, unknown));
    EXPECT_TRUE(map.empty());
}

TEST_F(MatchingPass, EmptyListsAndSelections) {
    PTRawDataVector empty;
    EXPECT_TRUE(run(empty, {"G"}).data._hasError);
    EXPECT_TRUE(run(empty, {"GLOBAL"}, Variant::Models).data._hasError);
    const Pass diagnostic = run(empty, {"G"}, Variant::Diagnostic);
    EXPECT_TRUE(diagnostic.leftOpen);
    EXPECT_FALSE(diagnostic.data._hasError);

    PTRawDataVector log = {makePoint(0, "G", "A", true, 0), makePoint(0, "G", "A", false, 1)};
    const Pass none = run(log, {"Other"});
    EXPECT_TRUE(none.rows.empty());
    EXPECT_FALSE(none.data._hasError);
    EXPECT_TRUE(run(log, {"GLOBAL"}, Variant::Models).rows.empty());  // no model points
}

TEST_F(MatchingPass, DiagnosticPassEndsOnAWaitWithNothingOpen) {
    PTRawDataVector log = {makePoint(0, "G", "A", true, 0.0), makePoint(0, "G", "A", false, 0.5),
                           makePoint(0, "G", "B", true, 2.0), makePoint(0, "G", "B", false, 2.5)};
    const Pass pass = run(log, {"G"}, Variant::Diagnostic);
    EXPECT_FALSE(pass.leftOpen);
    EXPECT_EQ(pass.rows.size(), 2u);
    EXPECT_EQ(log.size(), 4u);
    EXPECT_EQ(pass.data._totalWC, 0.0);

    // Phases left open are marked, but the diagnostic pass is no error.
    log.push_back(makePoint(0, "G", "C", true, 3.0));
    const Pass open = run(log, {"G"}, Variant::Diagnostic);
    EXPECT_TRUE(open.leftOpen);
    EXPECT_TRUE(open.rows.back()->errorRow);
    EXPECT_FALSE(open.data._hasError);
}

TEST_F(MatchingPass, GapPointsTheFilterWouldSkipAreNotInserted) {
    // A phase named "Unaccounted Phase" in an unselected grouping is taken up by its name,
    // but the "_self" row cut from it would belong to that grouping.
    ptNameID(PT_TABLE_PHASE, std::string(pt::kUnaccountedPhase));
    PTRawDataVector log = {makePoint(0, "Unselected", "Unaccounted Phase", true, 0.0),
                           makePoint(0, "Selected", "child", true, 1.0),
                           makePoint(0, "Selected", "child", false, 1.5),
                           makePoint(0, "Unselected", "Unaccounted Phase", false, 1.6)};
    const Pass pass = run(log, {"Selected"});
    EXPECT_EQ(pass.rows.size(), 2u);
    EXPECT_EQ(log.size(), 4u);
    EXPECT_FALSE(pass.data._hasError);

    // A model selection never takes up the host-language points that stand in for a gap
    // after a point without memory records.
    PTRawDataVector models = {
        makePoint(1, "G", "P", true, 0.0),  makePoint(1, "G", "a", true, 0.0),
        makePoint(1, "G", "a", false, 0.0), makePoint(1, "G", "b", true, 1.0),
        makePoint(1, "G", "b", false, 1.0), makePoint(1, "G", "P", false, 1.0)};
    models[2]->_basicMem.reset();
    const Pass byModel = run(models, {"GLOBAL"}, Variant::Models);
    EXPECT_EQ(byModel.rows.size(), 3u);
    EXPECT_EQ(models.size(), 6u);

    // The same wait under a grouping selection is shown as "Unaccounted Phase".
    PTRawDataVector host = copyLog(models);
    host[2]->_basicMem.reset();
    const Pass byGrouping = run(host, {"GLOBAL"});
    ASSERT_EQ(byGrouping.rows.size(), 4u);
    EXPECT_EQ(nameOf(byGrouping.row(2)), "Unaccounted Phase");
    EXPECT_EQ(byGrouping.row(2)._pointType, 0);
    EXPECT_EQ(byGrouping.row(2)._groupingID, -1);
}

TEST_F(MatchingPass, EndTimesAndMemoryOfAMatchedPhase) {
    PTRawDataVector log = {makePoint(0, "G", "P", true, 0.0), makePoint(0, "G", "c", true, 0.01),
                           makePoint(0, "G", "c", false, 0.02),
                           makePoint(0, "G", "P", false, 0.03)};
    constexpr double kMiB = 1048576.0;
    log[0]->_detailedMem = boost::make_shared<pt::DetailedMemStats>(8 * kMiB, 0, 2 * kMiB, 0, 0);
    log[0]->_basicMem = boost::make_shared<pt::BasicMemStats>(kMiB, 3 * kMiB, 0);
    log[3]->_detailedMem = boost::make_shared<pt::DetailedMemStats>(6 * kMiB, 0, 5 * kMiB, 0, 0);
    log[3]->_basicMem = boost::make_shared<pt::BasicMemStats>(2 * kMiB, 4 * kMiB, 0);
    const Pass pass = run(log, {"G"});
    const auto& parent = pass.row(0);
    EXPECT_EQ(parent._basicMem->procMemUsage, 2.0);
    EXPECT_EQ(parent._basicMem->procMemUsageDelta, 1.0);
    EXPECT_EQ(parent._basicMem->procMemUsagePeakOverUsage, 3.0);
    EXPECT_EQ(parent._detailedMem->freeMem, 6.0);
    EXPECT_EQ(parent._detailedMem->freeMemDelta, -2.0);
    EXPECT_EQ(parent._startDetailedMem->freeMem, 8.0);  // kept for a phase with children
    EXPECT_EQ(parent._startDetailedMem->commitMem, 2.0);
    EXPECT_EQ(pass.row(1)._startDetailedMem->freeMem, 0.0);
    EXPECT_TRUE(pass.data._hasDetailedMem);  // the last point's free figure is not 0
}

// ---- Properties over random logs ----

/// Gaps that a pass over the whole log must fill: a wait above the threshold while a phase is
/// open, unless it lies between a start and the end that follows it.
std::size_t expectedGaps(const PTRawDataVector& log) {
    std::size_t gaps = 0;
    int open = 0;
    for (std::size_t i = 0; i < log.size(); ++i) {
        if (i > 0 && open > 0 && log[i]->_wcTime - log[i - 1]->_wcTime > kGapThreshold &&
            !(log[i - 1]->_isPhaseStart && !log[i]->_isPhaseStart)) {
            ++gaps;
        }
        open += log[i]->_isPhaseStart ? 1 : -1;
    }
    return gaps;
}

TEST_F(MatchingPass, WellFormedLogsGiveConsistentRows) {
    std::mt19937 rng(20261121);
    for (int round = 0; round < 60; ++round) {
        LogOptions options;
        options.points = 2 * std::uniform_int_distribution<int>(1, 150)(rng);
        options.gapChance = round % 3 == 0 ? 0.0 : 0.15;
        PTRawDataVector log = randomLog(rng, options);
        double topLevel = 0;
        std::vector<double> starts;
        for (const auto& point : log) {
            if (point->_isPhaseStart) {
                starts.push_back(point->_wcTime);
            } else {
                const double start = starts.back();
                starts.pop_back();
                topLevel += starts.empty() ? point->_wcTime - start : 0.0;
            }
        }
        const std::size_t gaps = expectedGaps(log);
        const std::size_t logged = log.size();

        const Pass pass = run(log, {"GLOBAL"});
        ASSERT_FALSE(pass.data._hasError) << round;
        ASSERT_EQ(pass.rows.size(), logged / 2 + gaps) << round;
        EXPECT_EQ(log.size(), logged + 2 * gaps);
        EXPECT_NEAR(pass.data._totalWC, topLevel, 1e-9);

        // Rows in start order, outline numbers counted per parent, descendants listed.
        std::vector<std::pair<std::string, int>> parents;  // number and children so far
        std::size_t gapRows = 0;
        for (std::size_t i = 0; i < pass.rows.size(); ++i) {
            const auto& row = pass.row(i);
            ASSERT_EQ(row.HTMLRowNumber, static_cast<std::int32_t>(i + 1));
            parents.resize(static_cast<std::size_t>(row.stackDepth));
            if (!parents.empty()) {
                EXPECT_EQ(row.HTMLPhaseNumString,
                          parents.back().first + "." + std::to_string(++parents.back().second));
            }
            std::vector<std::int32_t> descendants;
            int children = 0;
            for (std::size_t j = i + 1;
                 j < pass.rows.size() && pass.row(j).stackDepth > row.stackDepth; ++j) {
                descendants.push_back(pass.row(j).HTMLRowNumber);
                children += pass.row(j).stackDepth == row.stackDepth + 1;
            }
            EXPECT_EQ(row.childrenIDs.toVector(), descendants);
            EXPECT_EQ(row.numChildren, children);
            if (row.gapRow) {
                ++gapRows;
                EXPECT_GT(row.wcElapsedTime, kGapThreshold);
                EXPECT_EQ(row.numChildren, 0);
                const std::string name = nameOf(row);
                EXPECT_TRUE(name.ends_with("_self") || name.ends_with("_post")) << name;
            }
            parents.emplace_back(row.HTMLPhaseNumString, 0);
        }
        EXPECT_EQ(gapRows, gaps);
        // Top-level numbers run 1, 2, 3 ...
        int top = 0;
        for (const auto* row : pass.rows) {
            if (row->stackDepth == 0) {
                EXPECT_EQ(row->HTMLPhaseNumString, std::to_string(++top));
            }
        }
    }
}

TEST_F(MatchingPass, SelectionsOfWellFormedLogsHaveNoErrorAndAlwaysEnd) {
    std::mt19937 rng(7);
    ptNameID(PT_TABLE_PHASE, std::string(pt::kUnaccountedPhase));
    for (int round = 0; round < 40; ++round) {
        LogOptions options;
        options.points = 300;
        options.gapChance = 0.3;
        options.unaccountedChance = 0.2;  // named so, in the unselected grouping "Gamma"
        PTRawDataVector log = randomLog(rng, options);
        PTRawDataVector diagnostic = copyLog(log);
        PTRawDataVector models = copyLog(log);
        EXPECT_FALSE(run(log, {"Alpha", "Beta"}).data._hasError) << round;
        EXPECT_FALSE(run(diagnostic, {"Alpha"}, Variant::Diagnostic).leftOpen) << round;
        EXPECT_FALSE(run(models, {"engine"}, Variant::Models).data._hasError) << round;
    }
}

/// A row as text, with every field a pass sets.
std::string describe(const PTOrviaProcessedDataPoint& r) {
    std::ostringstream s;
    s.precision(17);
    s << ptGetPhaseStr(r._phaseID) << '|' << ptNameStr(PT_TABLE_GROUPING, r._groupingID) << '|'
      << r._pointType << '|' << r.HTMLRowNumber << '|' << r.HTMLPhaseNumString << '|'
      << r.stackDepth << '|' << r.numChildren << '|' << r.errorRow << r.gapRow << '|'
      << r.wcStartTime << '|' << r.wcElapsedTime << '|' << r.cpuStartTime << '|' << r.cpuElapsedTime
      << '|' << r._basicMem->procMemUsage << ',' << r._basicMem->procMemUsageDelta << ','
      << r._detailedMem->freeMem << ',' << r._detailedMem->freeMemDelta << ','
      << r._startDetailedMem->freeMem << '|' << r._parentPhaseID << '|';
    for (std::int32_t child : r.childrenIDs) {
        s << child << ',';
    }
    return s.str();
}

/// The list as text, and for each point the row it maps to.
template <typename Map>
std::string describe(const PTRawDataVector& log, const Map& map) {
    std::ostringstream s;
    s.precision(17);
    for (const auto& p : log) {
        s << ptGetPhaseStr(p->_phaseID) << '/' << p->_groupingID << '/' << p->_pointType << '/'
          << p->_isPhaseStart << p->_isGenerated << '/' << p->_wcTime << " -> ";
        const auto row = map.find(p.get());
        s << (row == map.end() ? "-" : describe(*row->second->_point)) << '\n';
    }
    return s.str();
}

std::string describe(const PTProcessedData& d) {
    std::ostringstream s;
    s.precision(17);
    s << d._totalWC << ' ' << d._totalCPU << ' ' << d._levelCount << ' ' << d._baseWC << ' '
      << d._baseCPU << ' ' << d._hasError << ' ' << d._hasDetailedMem;
    return s.str();
}

std::string describe(const PTDiagnosticInfoList& rows) {
    std::string text;
    for (const auto& row : rows) {
        text += describe(*row->_point) + "\n";
    }
    return text;
}

TEST_F(MatchingPass, GivesWhatTheDirectFormGives) {
    using Direct = pt::testing::DirectMatchingPass;
    std::mt19937 rng(99);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    ptNameID(PT_TABLE_PHASE, std::string(pt::kUnaccountedPhase));
    for (int round = 0; round < 400; ++round) {
        LogOptions options;
        options.points = 2 * std::uniform_int_distribution<int>(1, 80)(rng);
        options.gapChance = 0.3;
        options.unaccountedChance = round % 2 ? 0.15 : 0.0;
        options.backwardsChance = round % 5 == 0 ? 0.1 : 0.0;
        options.faults = round % 3 == 0 ? 2 : 0;
        PTRawDataVector log = randomLog(rng, options);
        // Memory records of every kind: missing, zero and real.
        for (auto& point : log) {
            const double basic = unit(rng);
            if (basic < 0.1) {
                point->_basicMem.reset();
            } else {
                point->_basicMem =
                    boost::make_shared<pt::BasicMemStats>(std::floor(unit(rng) * 1e6), 0, 0);
            }
            const double detailed = unit(rng);
            if (detailed < 0.2) {
                point->_detailedMem.reset();
            } else if (detailed < 0.6) {
                point->_detailedMem = boost::make_shared<pt::DetailedMemStats>(
                    std::floor(unit(rng) * 1e6), 0, 0, 0, 0);
            }
        }
        const struct {
            Variant variant;
            Direct::Variant direct;
            Names names;
        } selections[] = {{Variant::Groupings, Direct::Variant::Groupings, {"GLOBAL"}},
                          {Variant::Groupings, Direct::Variant::Groupings, {"Alpha", "Beta"}},
                          {Variant::Models, Direct::Variant::Models, {"engine"}},
                          {Variant::Models, Direct::Variant::Models, {"GLOBAL"}},
                          {Variant::Diagnostic, Direct::Variant::Diagnostic, {"Alpha"}},
                          {Variant::Diagnostic, Direct::Variant::Diagnostic, {"GLOBAL"}}};
        for (const auto& selection : selections) {
            const std::string what = "round " + std::to_string(round) + ", " + selection.names[0];
            PTRawDataVector expectedLog = copyLog(log);
            Direct direct(selection.direct, selection.names);
            direct.run(expectedLog);

            PTRawDataVector actualLog = copyLog(log);
            const Pass pass = run(actualLog, selection.names, selection.variant);
            ASSERT_EQ(describe(actualLog, pass.map), describe(expectedLog, direct.map)) << what;
            ASSERT_EQ(describe(pass.data), describe(direct.out)) << what;
            EXPECT_EQ(pass.leftOpen, selection.variant == Variant::Diagnostic && direct.leftOpen);

            if (selection.variant != Variant::Diagnostic) {
                PTRawDataVector selected = copyLog(log);
                const PTProcessedData data = ptProcessRaw(*ptTracer(), selected, selection.names,
                                                          selection.variant == Variant::Models);
                ASSERT_EQ(data._hasError, direct.out._hasError) << what;
                if (!data._hasError) {
                    ASSERT_EQ(describe(data._rows), describe(direct.startRows(expectedLog)))
                        << what;
                }
            }
        }
    }
}

}  // namespace
