#pragma once

#include <performance_tracer/performance_tracer.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

#include "core/name_table.h"

/// A point in one line: its type, the names of its ids ('name', or #id where the table has
/// none), start or end, the clocks and the memory figures.
inline std::string describe(const PTOrviaDataPoint& point, bool clocks = true) {
    std::ostringstream out;
    out << std::setprecision(17) << point._pointType;
    std::vector<std::pair<std::uint32_t, std::int32_t>> ids = {
        {PT_TABLE_PHASE, point._phaseID}, {PT_TABLE_GROUPING, point._groupingID}};
    if (const auto* model = dynamic_cast<const PTKestruneDataPoint*>(&point)) {
        ids.insert(ids.end(),
                   {{PT_TABLE_MODEL, model->_modelID}, {PT_TABLE_TARGET, model->_targetID}});
    }
    if (const auto* chart = dynamic_cast<const PTYlvaneDataPoint*>(&point)) {
        ids.insert(ids.end(),
                   {{PT_TABLE_MACHINE, chart->_machineID}, {PT_TABLE_CHART, chart->_chartID}});
    }
    ids.emplace_back(PT_TABLE_STATISTICS_TYPE, point._statisticsTypeID);
    for (const auto& [kind, id] : ids) {
        const bool named =
            id >= 0 && static_cast<std::size_t>(id) < ptTracer()->nameTable(kind)->size();
        out << (named ? " '" + ptNameStr(kind, id) + "'" : " #" + std::to_string(id));
    }
    out << (point._isPhaseStart ? " start" : " end") << (point._isGenerated ? " generated" : "");
    if (clocks) {
        out << " " << point._wcTime << " " << point._cpuTime;
    }
    if (const auto& mem = point._detailedMem) {
        out << " detailed " << mem->freeMem << " " << mem->resMem << " " << mem->commitMem << " "
            << mem->dllsMem << " " << mem->nonprocessMem;
    } else {
        out << " no detailed";
    }
    if (const auto& mem = point._basicMem) {
        out << " basic " << mem->procMemUsage << " " << mem->procMemUsagePeak << " "
            << mem->procVMSize;
    } else {
        out << " no basic";
    }
    return out.str();
}

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
    static std::vector<std::size_t> tableSizes() {
        std::vector<std::size_t> sizes;
        for (std::uint32_t kind = 0; kind < PT_TABLE_COUNT; ++kind) {
            sizes.push_back(tableSize(kind));
        }
        return sizes;
    }
    /// The phases of the store in order, each with + for a start or - for an end.
    static std::string flow() {
        std::string text;
        for (const auto& point : raw()) {
            text += (text.empty() ? "" : " ") + ptGetPhaseStr(point->_phaseID) +
                    (point->_isPhaseStart ? "+" : "-");
        }
        return text;
    }
};
