#include "processing/selection.h"

#include <performance_tracer/groupings.h>
#include <performance_tracer/logging.h>
#include <performance_tracer/names.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/tracer.h>

#include <gtest/gtest.h>

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

TEST_F(Selection, RowsComeInStartOrderWithTheListsOrigin) {
    PTRawDataVector log = twoGroupings();
    const PTProcessedData data = ptProcessRaw(tracer(), log, {"G"}, false);
    ASSERT_EQ(data._rows.size(), 2u);
    EXPECT_EQ(ptGetPhaseStr(data._rows[0]->_point->_phaseID), "k");
    EXPECT_EQ(ptGetPhaseStr(data._rows[1]->_point->_phaseID), "y");
    // Start times stay relative to the first point taken up; the origin moves to the list's
    // first point.
    EXPECT_NEAR(data._rows[1]->_point->wcStartTime, 0.05, 1e-12);
    EXPECT_EQ(data._baseWC, 5.0);
    EXPECT_EQ(data._baseCPU, 1.0);
    EXPECT_NEAR(data._totalWC, 0.15, 1e-12);

    PTRawDataVector again = twoGroupings();
    const PTProcessedData none = ptProcessGrouping(tracer(), again, "Nobody", false);
    EXPECT_TRUE(none._rows.empty());
    EXPECT_FALSE(none._hasError);
    EXPECT_EQ(none._baseWC, 5.0);
}

TEST_F(Selection, AnErrorAnywhereLeavesNoRows) {
    PTRawDataVector log = twoGroupings();
    log.push_back(makePoint(0, "G", "stray", false, 8.0));
    const PTProcessedData data = ptProcessRaw(tracer(), log, {"GLOBAL"}, false);
    EXPECT_TRUE(data._hasError);
    EXPECT_TRUE(data._rows.empty());
}

TEST_F(Selection, ModelSelectionLeavesOutHostLanguagePoints) {
    PTRawDataVector log = twoGroupings();
    const PTProcessedData data = ptProcessRaw(tracer(), log, {"GLOBAL"}, true);
    ASSERT_EQ(data._rows.size(), 2u);
    EXPECT_EQ(data._rows[0]->_point->_pointType, 1);
    EXPECT_EQ(data._rows[1]->_point->_pointType, 2);

    PTRawDataVector byName = twoGroupings();
    EXPECT_EQ(ptProcessRaw(tracer(), byName, {"model"}, true)._rows.size(), 2u);
    PTRawDataVector unknown = twoGroupings();
    EXPECT_TRUE(ptProcessRaw(tracer(), unknown, {"no model"}, true)._rows.empty());
}

TEST_F(Selection, NullListMeansTheLiveStore) {
    ptEnableGlobalLogging(true);
    ptAddGrouping("Live");
    ptLogKestruneData("Live", "m", "t", "phase", true);
    ptLogKestruneData("Live", "m", "t", "phase", false);
    ptLogOrviaData("Live", "host", true);
    ptLogOrviaData("Live", "host", false);
    ptEnableGlobalLogging(false);

    const PTProcessedData groupings = ptGetProcessedDataForGroupings(nullptr, {"Live"});
    EXPECT_EQ(groupings._rows.size(), 2u);
    const PTProcessedData models = ptGetProcessedDataForModels(nullptr, {"m"});
    ASSERT_EQ(models._rows.size(), 1u);
    EXPECT_EQ(ptGetModelStr(models._rows[0]->_point->modelID()), "m");
    EXPECT_EQ(tracer()._rawData->size(), 4u);  // the store itself is never changed

    // No store at all: an empty record that is no error.
    auto store = std::move(tracer()._rawData);
    const PTProcessedData nothing = ptGetProcessedDataForGroupings(nullptr, {"GLOBAL"});
    tracer()._rawData = std::move(store);
    EXPECT_TRUE(nothing._rows.empty());
    EXPECT_FALSE(nothing._hasError);
    EXPECT_EQ(nothing._totalWC, 0.0);
    EXPECT_EQ(nothing._levelCount, 0);
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
