#include <performance_tracer/names.h>
#include <performance_tracer/tracer.h>

bool ptEnableGlobalLogging(bool enable) { return ptTracer()->_globalLogging = enable; }

bool ptEnableDetailedMemStats(bool enable) { return ptTracer()->_detailedMemStats = enable; }

bool ptIsTracerEnabled(int groupingID) noexcept {
    static PerformanceTracer* const tracer = ptTracer();
    return tracer->_globalLogging || tracer->isGroupingEnabled(groupingID);
}

bool ptIsTracerEnabled(const std::string& grouping) noexcept {
    static PerformanceTracer* const tracer = ptTracer();
    if (tracer->_globalLogging) {
        return true;
    }
    const auto id = static_cast<std::int32_t>(tracer->nameToID(PT_TABLE_GROUPING, grouping, false));
    return tracer->isGroupingEnabled(id);
}
