#pragma once

#include <performance_tracer/performance_tracer.h>

#include <gtest/gtest.h>

#include <algorithm>

#include "core/name_table.h"

/// Starts each test from an empty store, cleared tables (but the grouping table, which never
/// clears), no enabled grouping and no global logging.
class TracerTest : public ::testing::Test {
protected:
    void SetUp() override {
        ptEnableGlobalLogging(false);
        ptClearRawData();
        auto& states = *tracer()._groupingEnabled;
        std::fill(states.begin(), states.end(), PT_GROUPING_UNSET);
        setPathStripRoot("");
    }

    static PerformanceTracer& tracer() { return *ptTracer(); }
    static PTRawDataVector& raw() { return *tracer()._rawData; }
    static std::size_t tableSize(std::uint32_t kind) { return tracer().nameTable(kind)->size(); }
    static std::int32_t groupingID(const std::string& name) {
        return static_cast<std::int32_t>(tracer().nameToID(PT_TABLE_GROUPING, name, false));
    }
    /// The raw point at index as its own class.
    template <typename Point>
    static const Point& pointAt(std::size_t index) {
        return dynamic_cast<const Point&>(*raw().at(index));
    }
};
