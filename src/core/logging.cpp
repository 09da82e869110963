#include <performance_tracer/constants.h>
#include <performance_tracer/logging.h>
#include <performance_tracer/names.h>
#include <performance_tracer/tracer.h>

#include <pt_platform/ut.h>

#include <boost/make_shared.hpp>

#include <mutex>

// Each export keeps its own copy of the singleton pointer in a guarded static, so that the
// disabled path makes no call and threads that log for the first time at once agree on it.
// Everything past the gate lives in out-of-line functions, which keeps the gate itself small
// enough to inline nothing but the test.
//
// Calls from several threads at once record one at a time: past the gate, a point is named,
// stamped and appended under one lock, so the name tables and the store never see two writers
// and the store's order is the order of the clocks. The gate takes no lock.

namespace {

std::mutex& recordingMutex() {
    static std::mutex mutex;
    return mutex;
}

/// The grouping id of a name-based call, and whether the call records. The name is never
/// added, so under global logging an unknown grouping records with id -1.
bool passesGate(PerformanceTracer& tracer, const std::string& grouping, std::int32_t& id) {
    id = static_cast<std::int32_t>(tracer.nameToID(PT_TABLE_GROUPING, grouping, false));
    return tracer._globalLogging || tracer.isGroupingEnabled(id);
}

/// Stamps a point: names first, clocks last, the wall clock before the CPU clock.
void recordPoint(PerformanceTracer& tracer, PTOrviaDataPoint& point, std::int32_t groupingID,
                 const std::string& phase, bool isStart) {
    point._groupingID = groupingID;
    point._phaseID = static_cast<std::int32_t>(tracer.nameToID(PT_TABLE_PHASE, phase, true));
    point._isPhaseStart = isStart;
    point._wcTime = utRealtime();
    point._cpuTime = utCPUtime();
}

/// Model and target ids, then the model's statistics type, which a model seen for the first
/// time gets as the empty string.
void locateInModel(PerformanceTracer& tracer, PTKestruneDataPoint& point, const std::string& model,
                   const std::string& target) {
    point._modelID = static_cast<std::int32_t>(tracer.nameToID(PT_TABLE_MODEL, model, true));
    point._targetID = static_cast<std::int32_t>(tracer.nameToID(PT_TABLE_TARGET, target, true));
}

void stampStatisticsType(PerformanceTracer& tracer, PTKestruneDataPoint& point,
                         const std::string& model) {
    if (!tracer._modelStatisticsTypes) {
        tracer._modelStatisticsTypes = std::make_unique<PerformanceTracer::StatisticsTypeMap>();
    }
    const std::string& type = (*tracer._modelStatisticsTypes)[model];
    point._statisticsTypeID =
        static_cast<std::int32_t>(tracer.nameToID(PT_TABLE_STATISTICS_TYPE, type, true));
}

bool append(PerformanceTracer& tracer, boost::shared_ptr<PTOrviaDataPoint> point) noexcept {
    if (!tracer._rawData) {
        return false;
    }
    try {
        tracer._rawData->push_back(std::move(point));
    } catch (...) {
        return false;  // the measured code must never see a failure of the tracer
    }
    return true;
}

[[gnu::noinline]] bool recordOrvia(PerformanceTracer& tracer, std::int32_t groupingID,
                                   const std::string& phase, bool isStart) noexcept {
    const std::lock_guard<std::mutex> lock(recordingMutex());
    boost::shared_ptr<PTOrviaDataPoint> point;
    try {
        point = boost::make_shared<PTOrviaDataPoint>();
        recordPoint(tracer, *point, groupingID, phase, isStart);
    } catch (...) {
        return false;
    }
    return append(tracer, std::move(point));
}

[[gnu::noinline]] bool recordKestrune(PerformanceTracer& tracer, std::int32_t groupingID,
                                      const std::string& model, const std::string& target,
                                      const std::string& phase, bool isStart) noexcept {
    const std::lock_guard<std::mutex> lock(recordingMutex());
    boost::shared_ptr<PTKestruneDataPoint> point;
    try {
        point = boost::make_shared<PTKestruneDataPoint>();
        locateInModel(tracer, *point, model, target);
        stampStatisticsType(tracer, *point, model);
        recordPoint(tracer, *point, groupingID, phase, isStart);
    } catch (...) {
        return false;
    }
    return append(tracer, std::move(point));
}

[[gnu::noinline]] bool recordYlvane(PerformanceTracer& tracer, std::int32_t groupingID,
                                    const std::string& model, const std::string& target,
                                    const std::string& machine, const std::string& chart,
                                    const std::string& phase, bool isStart) noexcept {
    const std::lock_guard<std::mutex> lock(recordingMutex());
    boost::shared_ptr<PTYlvaneDataPoint> point;
    try {
        point = boost::make_shared<PTYlvaneDataPoint>();
        locateInModel(tracer, *point, model, target);
        point->_machineID =
            static_cast<std::int32_t>(tracer.nameToID(PT_TABLE_MACHINE, machine, true));
        point->_chartID = static_cast<std::int32_t>(tracer.nameToID(PT_TABLE_CHART, chart, true));
        stampStatisticsType(tracer, *point, model);
        recordPoint(tracer, *point, groupingID, phase, isStart);
    } catch (...) {
        return false;
    }
    return append(tracer, std::move(point));
}

}  // namespace

bool ptLogOrviaData(int groupingID, const std::string& phase, bool isStart) noexcept {
    static PerformanceTracer* const tracer = ptTracer();
    if (!tracer->_globalLogging && !tracer->isGroupingEnabled(groupingID)) {
        return false;
    }
    return recordOrvia(*tracer, groupingID, phase, isStart);
}

bool ptLogOrviaData(const std::string& grouping, const std::string& phase, bool isStart) noexcept {
    static PerformanceTracer* const tracer = ptTracer();
    std::int32_t groupingID;
    if (!passesGate(*tracer, grouping, groupingID)) {
        return false;
    }
    return recordOrvia(*tracer, groupingID, phase, isStart);
}

bool ptLogKestruneData(int groupingID, const std::string& model, const std::string& target,
                       const std::string& phase, bool isStart) noexcept {
    static PerformanceTracer* const tracer = ptTracer();
    if (!tracer->_globalLogging && !tracer->isGroupingEnabled(groupingID)) {
        return false;
    }
    return recordKestrune(*tracer, groupingID, model, target, phase, isStart);
}

bool ptLogKestruneData(const std::string& grouping, const std::string& model,
                       const std::string& target, const std::string& phase, bool isStart) noexcept {
    static PerformanceTracer* const tracer = ptTracer();
    std::int32_t groupingID;
    if (!passesGate(*tracer, grouping, groupingID)) {
        return false;
    }
    return recordKestrune(*tracer, groupingID, model, target, phase, isStart);
}

bool ptLogKsStartupData(const std::string& phase, bool isStart) noexcept {
    static PerformanceTracer* const tracer = ptTracer();
    static const std::string grouping(pt::kKestruneStartupGrouping);
    std::int32_t groupingID;
    if (!passesGate(*tracer, grouping, groupingID)) {
        return false;
    }
    return recordOrvia(*tracer, groupingID, phase, isStart);
}

bool ptLogYlvaneData(int groupingID, const std::string& model, const std::string& target,
                     const std::string& machine, const std::string& chart, const std::string& phase,
                     bool isStart) noexcept {
    static PerformanceTracer* const tracer = ptTracer();
    if (!tracer->_globalLogging && !tracer->isGroupingEnabled(groupingID)) {
        return false;
    }
    return recordYlvane(*tracer, groupingID, model, target, machine, chart, phase, isStart);
}

bool ptLogYlvaneData(const std::string& grouping, const std::string& model,
                     const std::string& target, const std::string& machine,
                     const std::string& chart, const std::string& phase, bool isStart) noexcept {
    static PerformanceTracer* const tracer = ptTracer();
    std::int32_t groupingID;
    if (!passesGate(*tracer, grouping, groupingID)) {
        return false;
    }
    return recordYlvane(*tracer, groupingID, model, target, machine, chart, phase, isStart);
}
