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

TEST_F(Selection, RowsAreThoseAWalkThroughThePointMapCollects) {
    std::mt19937 rng(3);
    for (int round = 0; round < 80; ++round) {
        pt::testing::LogOptions options;
        options.points = 2 * std::uniform_int_distribution<int>(1, 100)(rng);
        options.gapChance = 0.2;
        options.faults = round % 4 == 0 ? 1 : 0;
        const PTRawDataVector log = pt::testing::randomLog(rng, options);
        const bool byModel = round % 2 == 1;
        const std::vector<std::string> names =
            byModel ? std::vector<std::string>{"engine"} : std::vector<std::string>{"Alpha", "Beta"};

        PTRawDataVector selected = pt::testing::copyLog(log);
        const PTProcessedData data = ptProcessRaw(tracer(), selected, names, byModel);

        // The direct form: the pass with its point map, then a walk of the list.
        PTRawDataVector walked = pt::testing::copyLog(log);
        PTPointMap map;
        PTProcessedData direct;
        if (byModel) {
            ptMatchModels(tracer(), &walked, names, map, direct);
        } else {
            ptMatchGroupings(tracer(), walked, names, map, direct);
        }
        ASSERT_EQ(data._hasError, direct._hasError) << round;
        if (direct._hasError) {
            EXPECT_TRUE(data._rows.empty());
            continue;
        }
        std::vector<const PTOrviaProcessedDataPoint*> expected;
        for (const auto& point : walked) {
            if (const auto row = map.find(point.get()); point->_isPhaseStart && row != map.end()) {
                expected.push_back(row->second->_point.get());
            }
        }
        ASSERT_EQ(data._rows.size(), expected.size()) << round;
        for (std::size_t i = 0; i < expected.size(); ++i) {
            const auto& got = *data._rows[i]->_point;
            EXPECT_EQ(got.HTMLRowNumber, expected[i]->HTMLRowNumber);
            EXPECT_EQ(got._phaseID, expected[i]->_phaseID);
            EXPECT_EQ(got.wcElapsedTime, expected[i]->wcElapsedTime);
        }
        EXPECT_EQ(data._totalWC, direct._totalWC);
        EXPECT_EQ(data._baseWC, walked.front()->_wcTime);
    }
}

}  // namespace
