#include "processing/phase_times.h"

#include <performance_tracer/names.h>
#include <performance_tracer/tracer.h>

#include <cmath>

#include "processing/selection.h"

PTRunPhaseTimes ptPhaseTimes(PerformanceTracer& tracer, const PTAggregateMap& aggregates,
                             bool cpuClock) {
    PTRunPhaseTimes times;
    for (const auto& [phase, aggregate] : aggregates) {
        PTPhaseTimes& entry =
            times[ptDisplayPhaseName(tracer.idToName(PT_TABLE_PHASE, phase), true)];
        entry.self += cpuClock ? aggregate->_cpuSelf : aggregate->_wcSelf;
        entry.total += cpuClock ? aggregate->_cpuTotal : aggregate->_wcTotal;
    }
    return times;
}

const std::string* ptNonFinitePhase(const PTRunPhaseTimes& run) {
    for (const auto& [phase, times] : run) {
        if (!std::isfinite(times.self) || !std::isfinite(times.total)) {
            return &phase;
        }
    }
    return nullptr;
}

std::optional<PTRunPhaseTimes> ptRunPhaseTimes(PerformanceTracer& tracer, PTRawDataVector& raw,
                                               const std::string& grouping, bool cpuClock) {
    const PTProcessedData data = ptProcessGrouping(tracer, raw, grouping, false);
    if (data._hasError) {
        return std::nullopt;
    }
    return ptPhaseTimes(tracer, ptAggregate(tracer, data._rows), cpuClock);
}
