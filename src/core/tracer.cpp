#include <performance_tracer/names.h>
#include <performance_tracer/tracer.h>

#include "name_table.h"

namespace {

/// Enable states the singleton starts with, so that the first groupings need no growth.
constexpr std::size_t kInitialGroupingStates = 20;

/// Never freed: the tracer lives until the process ends.
PerformanceTracer* gTracer = nullptr;

}  // namespace

PerformanceTracer* ptTracer() {
    if (!gTracer) {
        // The pointer is published before the members exist, as the singleton is made while
        // the library loads and nothing can reach it concurrently.
        gTracer = new PerformanceTracer();
        gTracer->constructMembers();
    }
    return gTracer;
}

PerformanceTracer::PerformanceTracer() = default;

PerformanceTracer::~PerformanceTracer() { cleanup(); }

void PerformanceTracer::constructMembers() {
    _rawData = std::make_unique<PTRawDataVector>();
    _systemInfo = std::make_unique<SystemInfoRecord>();
    _modelStatisticsTypes = std::make_unique<StatisticsTypeMap>();
    _groupings = std::make_unique<GroupingMap>();
    for (auto* table : {&_phaseTable, &_groupingTable, &_statisticsTypeTable, &_modelTable,
                        &_targetTable, &_machineTable, &_chartTable}) {
        *table = std::make_unique<PTNameTable>();
    }
    _groupingEnabled = std::make_unique<std::vector<EPTGroupingEnabled>>(kInitialGroupingStates,
                                                                         PT_GROUPING_UNSET);
}

void PerformanceTracer::cleanup() {
    if (_groupings) {
        for (auto& entry : *_groupings) {
            entry.second.reset();
        }
    }
    _rawData.reset();
    _groupingEnabled.reset();
    _systemInfo.reset();
    _modelStatisticsTypes.reset();
    _groupings.reset();
    for (auto* table : {&_phaseTable, &_groupingTable, &_statisticsTypeTable, &_modelTable,
                        &_targetTable, &_machineTable, &_chartTable}) {
        table->reset();
    }
}

PTNameTable* PerformanceTracer::nameTable(std::uint32_t kind) const {
    switch (kind) {
        case PT_TABLE_PHASE: return _phaseTable.get();
        case PT_TABLE_GROUPING: return _groupingTable.get();
        case PT_TABLE_STATISTICS_TYPE: return _statisticsTypeTable.get();
        case PT_TABLE_MODEL: return _modelTable.get();
        case PT_TABLE_TARGET: return _targetTable.get();
        case PT_TABLE_MACHINE: return _machineTable.get();
        case PT_TABLE_CHART: return _chartTable.get();
        default: return nullptr;
    }
}

std::uint32_t PerformanceTracer::nameToID(std::uint32_t kind, const std::string& name, bool add) {
    PTNameTable* table = nameTable(kind);
    if (!table) {
        return PT_NO_ID;
    }
    if (const std::int32_t id = table->find(name); id >= 0) {
        return static_cast<std::uint32_t>(id);
    }
    return add ? static_cast<std::uint32_t>(table->add(name)) : PT_NO_ID;
}

std::string PerformanceTracer::idToName(std::uint32_t kind, std::int32_t id) const {
    const PTNameTable* table = nameTable(kind);
    const std::string* name = table ? table->find(id) : nullptr;
    return name ? *name : std::string();
}

void PerformanceTracer::setGroupingEnabled(std::int32_t id, EPTGroupingEnabled state) {
    if (id < 0) {
        return;  // the id of an unknown name has no state
    }
    if (!_groupingEnabled) {
        _groupingEnabled = std::make_unique<std::vector<EPTGroupingEnabled>>();
    }
    auto& states = *_groupingEnabled;
    const auto index = static_cast<std::size_t>(id);
    if (index >= states.size()) {
        states.resize(index + 1, PT_GROUPING_UNSET);
    }
    states[index] = state;
}

EPTGroupingEnabled PerformanceTracer::groupingState(std::int32_t id) const {
    if (!_groupingEnabled || id < 0 || static_cast<std::size_t>(id) >= _groupingEnabled->size()) {
        return PT_GROUPING_UNSET;
    }
    return (*_groupingEnabled)[static_cast<std::size_t>(id)];
}
