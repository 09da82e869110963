#include <performance_tracer/aggregation.h>
#include <performance_tracer/names.h>
#include <performance_tracer/tracer.h>

#include <boost/unordered_map.hpp>

#include <algorithm>
#include <string_view>

namespace {

constexpr std::string_view kSelfSuffix = "_self";

/// Where a phase's rows go: to its own entry, or (a generated "_self" row) to the entry of the
/// phase it was cut from. Names never change during an aggregation, so this is worked out once
/// per phase id.
struct PhaseRoute {
    bool isSelfRow;
    std::int32_t target;
};

PhaseRoute routeOf(PerformanceTracer& tracer, std::int32_t phaseID) {
    std::string name = tracer.idToName(PT_TABLE_PHASE, phaseID);
    const std::size_t at = name.find(kSelfSuffix);
    if (at == std::string::npos || at == 0) {
        return {false, phaseID};
    }
    name.erase(at, kSelfSuffix.size());
    return {true, static_cast<std::int32_t>(tracer.nameToID(PT_TABLE_PHASE, name, true))};
}

}  // namespace

PTAggregateDataPoint::PTAggregateDataPoint(std::int32_t groupingID, std::int32_t phaseID,
                                           bool hasChildren)
    : _groupingID(groupingID), _phaseID(phaseID), _isParent(hasChildren) {}

PTAggregateDataPoint::~PTAggregateDataPoint() = default;

void PTAggregateDataPoint::addSelf(const PTOrviaProcessedDataPoint& row, double sign) {
    _wcSelf += sign * row.wcElapsedTime;
    _cpuSelf += sign * row.cpuElapsedTime;
    _usageDeltaSum += sign * row._basicMem->procMemUsageDelta;
    _peakDeltaSum += sign * row._basicMem->procMemUsagePeakDelta;
    _vmDeltaSum += sign * row._basicMem->procVMSizeDelta;
}

void PTAggregateDataPoint::addRow(const PTOrviaProcessedDataPoint& row) {
    if (row.numChildren == 0) {
        addSelf(row, 1.0);
    }
    _wcTotal += row.wcElapsedTime;
    _cpuTotal += row.cpuElapsedTime;
    const pt::BasicProcessedMemStats& basic = *row._basicMem;
    const pt::DetailedProcessedMemStats& detailed = *row._detailedMem;
    // A figure that is not greater (NaN included) leaves the maximum.
    const auto raise = [](double& max, double figure) {
        if (figure > max) {
            max = figure;
        }
    };
    raise(_usageMax, basic.procMemUsage);
    raise(_peakMax, basic.procMemUsagePeak);
    raise(_vmMax, basic.procVMSize);
    raise(_freeMax, detailed.freeMem);
    raise(_reservedMax, detailed.resMem);
    raise(_committedMax, detailed.commitMem);
    raise(_dllsMax, detailed.dllsMem);
    raise(_nonProcessMax, detailed.nonprocessMem);
    ++_count;
}

void PTAggregateDataPoint::addSelfRow(const PTOrviaProcessedDataPoint& row) { addSelf(row, 1.0); }

void PTAggregateDataPoint::subtractSelfRow(const PTOrviaProcessedDataPoint& row) {
    addSelf(row, -1.0);
}

PTAggregateMap ptAggregate(PerformanceTracer& tracer, const PTDiagnosticInfoList& rows) {
    PTAggregateMap aggregates;
    boost::unordered_map<std::int32_t, PhaseRoute> routes;
    for (const auto& info : rows) {
        const PTOrviaProcessedDataPoint& row = *info->_point;
        if (row.gapRow && row.numChildren >= 1) {
            continue;
        }
        std::int32_t phase, model, chart;
        row.nameIDs(phase, model, chart);
        auto route = routes.find(phase);
        if (route == routes.end()) {
            route = routes.emplace(phase, routeOf(tracer, phase)).first;
        }
        if (!route->second.isSelfRow) {
            auto& entry = aggregates[phase];
            if (!entry) {
                entry = std::make_unique<PTAggregateDataPoint>(row._groupingID, row._phaseID,
                                                               row.numChildren >= 1);
            }
            entry->addRow(row);
        } else if (const auto parent = aggregates.find(route->second.target);
                   parent != aggregates.end()) {
            parent->second->addSelfRow(row);
        }
    }
    return aggregates;
}

PTAggregateMap ptGetAggregateProcessedData(PTDiagnosticInfoList& rows) {
    return ptAggregate(*ptTracer(), rows);
}
