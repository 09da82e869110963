#include "processing/selection.h"

#include <performance_tracer/groupings.h>
#include <performance_tracer/logging.h>
#include <performance_tracer/names.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/tracer.h>

#include <gtest/gtest.h>

#include "processing/matching_pass.h"
#include "random_log.h"

namespace {

using pt::testing::makePoint;

class Selection : public ::testing::Test {
protected:
    void SetUp() override { ptClearRawData(); }
    PerformanceTracer& tracer() { return *ptTracer(); }
};

PTRawDataVector twoGroupings() {
    return {makePoint(0, "Other", "o", true, 5.0, 1.0), makePoint(0, "Other", "o", false, 5.5),
            makePoint(1, "G", "k", true, 6.0, 2.0),     makePoint(2, "G", "y", true, 6.05, 2.5),
            makePoint(2, "G", "y", false, 6.1),         makePoint(1, "G", "k", false, 6.15)};
}

std::string phases(const PTProcessedData& data) {
    std::string text;
    for (const auto& row : data._rows) {
        text += ptGetPhaseStr(row->_point->_phaseID) + std::to_string(row->_point->_pointType);
    }
    return text;
}

TEST_F(Selection, RowsInStartOrderWithTheListsOrigin) {
    PTRawDataVector log = twoGroupings();
    const PTProcessedData data = ptProcessRaw(tracer(), log, {"G"}, false);
    EXPECT_EQ(phases(data), "k1y2");
    // Start times stay relative to the first point taken up; the origin moves to the list's
    // first point.
    EXPECT_NEAR(data._rows[1]->_point->wcStartTime, 0.05, 1e-12);
    EXPECT_EQ(std::make_pair(data._baseWC, data._baseCPU), std::make_pair(5.0, 1.0));
    EXPECT_NEAR(data._totalWC, 0.15, 1e-12);

    PTRawDataVector again = twoGroupings();
    const PTProcessedData none = ptProcessGrouping(tracer(), again, "Nobody", false);
    EXPECT_TRUE(none._rows.empty());
    EXPECT_FALSE(none._hasError);
    EXPECT_EQ(none._baseWC, 5.0);

    // Model selections leave out host-language points.
    const struct {
        const char* model;
        const char* rows;
    } models[] = {{"GLOBAL", "k1y2"}, {"model", "k1y2"}, {"no model", ""}};
    for (const auto& [model, rows] : models) {
        PTRawDataVector copy = twoGroupings();
        EXPECT_EQ(phases(ptProcessRaw(tracer(), copy, {model}, true)), rows) << model;
    }

    // An error anywhere leaves no rows.
    log = twoGroupings();
    log.push_back(makePoint(0, "G", "stray", false, 8.0));
    const PTProcessedData broken = ptProcessRaw(tracer(), log, {"GLOBAL"}, false);
    EXPECT_TRUE(broken._hasError);
    EXPECT_TRUE(broken._rows.empty());
}

TEST_F(Selection, NullListsMeanTheLiveStore) {
    PerformanceTracer& t = tracer();
    PTPointMap map;
    PTProcessedData empty, diagnostic, models, unknown;
    ptMatchModels(t, nullptr, {"GLOBAL"}, map, empty);
    EXPECT_TRUE(empty._hasError);  // an empty store
    EXPECT_TRUE(ptMatchDiagnostic(t, nullptr, "G", map, diagnostic));
    EXPECT_FALSE(diagnostic._hasError);

    ptEnableGlobalLogging(true);
    ptAddGrouping("Live");
    ptLogKestruneData("Live", "m", "t", "phase", true);
    ptLogKestruneData("Live", "m", "t", "phase", false);
    ptLogOrviaData("Live", "host", true);
    ptLogOrviaData("Live", "host", false);
    ptEnableGlobalLogging(false);

    ptMatchModels(t, nullptr, {"m"}, map, models);
    EXPECT_FALSE(models._hasError);
    EXPECT_EQ(map.size(), 2u);
    map.clear();
    EXPECT_FALSE(ptMatchDiagnostic(t, nullptr, "never added", map, unknown));
    EXPECT_TRUE(map.empty());
    EXPECT_EQ(phases(ptGetProcessedDataForGroupings(nullptr, {"Live"})), "phase1host0");
    const PTProcessedData byModel = ptGetProcessedDataForModels(nullptr, {"m"});
    ASSERT_EQ(byModel._rows.size(), 1u);
    EXPECT_EQ(ptGetModelStr(byModel._rows[0]->_point->modelID()), "m");
    EXPECT_EQ(t._rawData->size(), 4u);  // the store itself is never changed

    // No store at all: an empty record that is no error.
    auto store = std::move(t._rawData);
    const PTProcessedData nothing = ptGetProcessedDataForGroupings(nullptr, {"GLOBAL"});
    t._rawData = std::move(store);
    EXPECT_TRUE(nothing._rows.empty());
    EXPECT_FALSE(nothing._hasError);
    EXPECT_EQ(std::make_pair(nothing._totalWC, nothing._levelCount), std::make_pair(0.0, 0));
}

TEST_F(Selection, APointListedTwiceGivesItsLastRowEachTime) {
    // A hand-made list may hold one point twice; each start then stands for the last row made
    // for it, as a map from points to rows has it.
    const auto start = makePoint(0, "G", "again", true, 0.0);
    const auto end = makePoint(0, "G", "again", false, 0.05);
    PTRawDataVector twice = {start, end, start, end};
    const PTProcessedData data = ptGetProcessedDataForGroupings(&twice, {"G"});
    ASSERT_EQ(data._rows.size(), 2u);
    EXPECT_EQ(data._rows[0], data._rows[1]);
    EXPECT_EQ(data._rows[0]->_point->HTMLRowNumber, 2);
}

}  // namespace
