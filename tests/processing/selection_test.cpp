#include "processing/selection.h"

#include <performance_tracer/groupings.h>
#include <performance_tracer/logging.h>
#include <performance_tracer/names.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/tracer.h>

#include <gtest/gtest.h>

#include <tuple>

#include "processing/matching_pass.h"
#include "random_log.h"

namespace {

class Selection : public ::testing::Test {
protected:
    void SetUp() override { ptClearRawData(); }
};

std::string phases(const PTProcessedData& data) {
    std::string text;
    for (const auto& row : data._rows) {
        text += ptGetPhaseStr(row->_point->_phaseID) + std::to_string(row->_point->_pointType);
    }
    return text;
}

TEST_F(Selection, NullListsMeanTheLiveStore) {
    PerformanceTracer& t = *ptTracer();
    PTPointMap map;
    PTProcessedData empty, diagnostic, models, unknown;
    ptMatchModels(t, nullptr, {"GLOBAL"}, map, empty);  // an empty store: an error
    const bool open = ptMatchDiagnostic(t, nullptr, "G", map, diagnostic);
    EXPECT_EQ(std::make_tuple(empty._hasError, open, diagnostic._hasError),
              std::make_tuple(true, true, false));

    ptEnableGlobalLogging(true);
    ptAddGrouping("Live");
    ptLogKestruneData("Live", "m", "t", "phase", true);
    ptLogKestruneData("Live", "m", "t", "phase", false);
    ptLogOrviaData("Live", "host", true);
    ptLogOrviaData("Live", "host", false);
    ptEnableGlobalLogging(false);

    ptMatchModels(t, nullptr, {"m"}, map, models);
    EXPECT_EQ(std::make_tuple(models._hasError, map.size()), std::make_tuple(false, 2u));
    map.clear();
    EXPECT_FALSE(ptMatchDiagnostic(t, nullptr, "never added", map, unknown) || !map.empty());
    EXPECT_EQ(phases(ptGetProcessedDataForGroupings(nullptr, {"Live"})), "phase1host0");
    const PTProcessedData byModel = ptGetProcessedDataForModels(nullptr, {"m"});
    ASSERT_EQ(byModel._rows.size(), 1u);
    EXPECT_EQ(ptGetModelStr(byModel._rows[0]->_point->modelID()), "m");
    EXPECT_EQ(t._rawData->size(), 4u);  // the store itself is never changed

    // No store at all: an empty record that is no error.
    auto store = std::move(t._rawData);
    const PTProcessedData nothing = ptGetProcessedDataForGroupings(nullptr, {"GLOBAL"});
    t._rawData = std::move(store);
    EXPECT_EQ(std::make_tuple(nothing._rows.size(), nothing._hasError, nothing._totalWC,
                              nothing._levelCount),
              std::make_tuple(0u, false, 0.0, 0));
}

}  // namespace
