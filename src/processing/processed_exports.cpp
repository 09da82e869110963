// Processed points and aggregates as host values: the rows and structures that scripts get.
// Names are read from the tables at export, the phase as stored, with no path treatment.

#include <performance_tracer/aggregation.h>
#include <performance_tracer/names.h>
#include <performance_tracer/processed_points.h>

#include <pt_platform/hv.h>

#include <cstring>

#include "core/host_cells.h"

namespace {

using Names = std::vector<std::pair<std::uint32_t, std::int32_t>>;

/// The fields every class shares after its names.
constexpr const char* kTimeFields[] = {"wcStartTime", "wcElapsedTime", "cpuStartTime",
                                       "cpuElapsedTime"};
constexpr const char* kMemoryFields[] = {"freeMem",
                                         "resMem",
                                         "commitMem",
                                         "dllsMem",
                                         "nonprocessMem",
                                         "freeMemDelta",
                                         "resMemDelta",
                                         "commitMemDelta",
                                         "dllsMemDelta",
                                         "nonprocessMemDelta",
                                         "procMemUsage",
                                         "procMemUsagePeak",
                                         "procVMSize",
                                         "procMemUsageDelta",
                                         "procMemUsagePeakDelta",
                                         "procVMSizeDelta"};
constexpr const char* kStateFields[] = {"errorRow",      "gapRow",      "HTMLPhaseNumString",
                                        "HTMLRowNumber", "numChildren", "stackDepth",
                                        "childrenIDs"};

std::vector<const char*> withSharedFields(std::vector<const char*> names) {
    names.insert(names.end(), std::begin(kTimeFields), std::end(kTimeFields));
    names.insert(names.end(), std::begin(kMemoryFields), std::end(kMemoryFields));
    names.insert(names.end(), std::begin(kStateFields), std::end(kStateFields));
    return names;
}

/// Sets a field to a copy of a scratch double scalar holding the figure.
void putFigure(hvArray* structure, int field, hvArray* scratch, double figure) {
    std::memcpy(hvGetData(scratch), &figure, sizeof figure);
    hvSetFieldByNumber(structure, 0, field, hvDuplicateArray(scratch));
}

hvArray* childrenCells(const PTRowRun& ids) {
    hvUniqueArray children(hvCreateCellMatrix(1, ids.size()));
    for (std::size_t i = 0; i < ids.size(); ++i) {
        hvSetCell(children.get(), i, pt::makeInt32(ids[i]));
    }
    return children.release();
}

}  // namespace

Names PTOrviaProcessedDataPoint::namesInOrder() const {
    return {{PT_TABLE_GROUPING, _groupingID},
            {PT_TABLE_PHASE, _phaseID},
            {PT_TABLE_STATISTICS_TYPE, _statisticsTypeID}};
}

Names PTKestruneProcessedDataPoint::namesInOrder() const {
    return {{PT_TABLE_GROUPING, _groupingID},
            {PT_TABLE_PHASE, _phaseID},
            {PT_TABLE_MODEL, _modelID},
            {PT_TABLE_TARGET, _targetID},
            {PT_TABLE_STATISTICS_TYPE, _statisticsTypeID}};
}

Names PTYlvaneProcessedDataPoint::namesInOrder() const {
    return {{PT_TABLE_GROUPING, _groupingID},
            {PT_TABLE_PHASE, _phaseID},
            {PT_TABLE_MODEL, _modelID},
            {PT_TABLE_TARGET, _targetID},
            {PT_TABLE_MACHINE, _machineID},
            {PT_TABLE_CHART, _chartID},
            {PT_TABLE_STATISTICS_TYPE, _statisticsTypeID}};
}

std::vector<const char*> PTOrviaProcessedDataPoint::structFieldNames() const {
    return withSharedFields({"pointType", "groupingStr", "phaseIDStr", "statisticsTypeStr"});
}

std::vector<const char*> PTKestruneProcessedDataPoint::structFieldNames() const {
    return withSharedFields(
        {"pointType", "groupingStr", "phaseIDStr", "modelStr", "targetStr", "statisticsTypeStr"});
}

std::vector<const char*> PTYlvaneProcessedDataPoint::structFieldNames() const {
    return withSharedFields({"pointType", "groupingStr", "phaseIDStr", "modelStr", "targetStr",
                             "machineStr", "chartStr", "statisticsTypeStr"});
}

hvArray* PTOrviaProcessedDataPoint::toRow() const { return buildRow(); }

hvArray* PTOrviaProcessedDataPoint::buildRow() const {
    const Names names = namesInOrder();
    hvUniqueArray row(hvCreateCellMatrix(1, 1 + names.size() + 4 + 16 + 7));
    std::size_t index = 0;
    hvSetCell(row.get(), index++, pt::makeUInt32(static_cast<std::uint32_t>(_pointType)));
    for (const auto& [kind, id] : names) {
        hvSetCell(row.get(), index++, hvCreateString(ptNameStr(kind, id)));
    }
    for (double time : {wcStartTime, wcElapsedTime, cpuStartTime, cpuElapsedTime}) {
        hvSetCell(row.get(), index++, hvCreateDoubleScalar(time));
    }
    detailedMemToRow(row.get(), index);
    basicMemToRow(row.get(), index);
    stateToRow(row.get(), index);
    return row.release();
}

hvArray* PTOrviaProcessedDataPoint::toStruct() const { return buildStruct(); }

hvArray* PTOrviaProcessedDataPoint::buildStruct() const {
    const std::vector<const char*> fields = structFieldNames();
    hvUniqueArray structure(
        hvCreateStructMatrix(1, 1, static_cast<int>(fields.size()), fields.data()));
    // One scratch value of each kind serves every field of its kind.
    const hvUniqueArray scratch(hvCreateDoubleScalar(0));
    const hvUniqueArray unsignedScratch(pt::makeUInt32(0));
    const auto putUnsigned = [&](int field, std::int32_t number) {
        const auto value = static_cast<std::uint32_t>(number);
        std::memcpy(hvGetData(unsignedScratch.get()), &value, sizeof value);
        hvSetFieldByNumber(structure.get(), 0, field, hvDuplicateArray(unsignedScratch.get()));
    };

    int field = 0;
    putUnsigned(field++, _pointType);
    for (const auto& [kind, id] : namesInOrder()) {
        hvSetFieldByNumber(structure.get(), 0, field++, hvCreateString(ptNameStr(kind, id)));
    }
    for (double time : {wcStartTime, wcElapsedTime, cpuStartTime, cpuElapsedTime}) {
        putFigure(structure.get(), field++, scratch.get(), time);
    }
    memToStruct(structure.get(), field, scratch.get());
    field += 16;
    hvSetFieldByNumber(structure.get(), 0, field++, hvCreateLogicalScalar(errorRow));
    hvSetFieldByNumber(structure.get(), 0, field++, hvCreateLogicalScalar(gapRow));
    hvSetFieldByNumber(structure.get(), 0, field++, hvCreateString(HTMLPhaseNumString.str()));
    putUnsigned(field++, HTMLRowNumber);
    putUnsigned(field++, numChildren);
    putUnsigned(field++, stackDepth);
    hvSetFieldByNumber(structure.get(), 0, field++, childrenCells(childrenIDs));
    return structure.release();
}

void PTOrviaProcessedDataPoint::memToStruct(hvArray* structure, int index, hvArray* scratch) const {
    const pt::DetailedProcessedMemStats noDetails;
    const pt::BasicProcessedMemStats noBasics;
    const pt::DetailedProcessedMemStats& d = _detailedMem ? *_detailedMem : noDetails;
    const pt::BasicProcessedMemStats& b = _basicMem ? *_basicMem : noBasics;
    for (double figure : {d.freeMem, d.resMem, d.commitMem, d.dllsMem, d.nonprocessMem,
                          d.freeMemDelta, d.resMemDelta, d.commitMemDelta, d.dllsMemDelta,
                          d.nonprocessMemDelta, b.procMemUsage, b.procMemUsagePeak, b.procVMSize,
                          b.procMemUsageDelta, b.procMemUsagePeakDelta, b.procVMSizeDelta}) {
        putFigure(structure, index++, scratch, figure);
    }
}

hvArray* PTAggregateDataPoint::toStruct() const {
    static const char* const kFields[] = {"pointType",
                                          "grouping",
                                          "phaseID",
                                          "wcElapsedTime",
                                          "cpuElapsedTime",
                                          "procMemUsageDelta",
                                          "procMemUsagePeakDelta",
                                          "procVMSizeDelta",
                                          "Count"};
    hvUniqueArray structure(hvCreateStructMatrix(1, 1, 9, kFields));
    int field = 0;
    const auto put = [&](hvArray* value) {
        hvSetFieldByNumber(structure.get(), 0, field++, value);
    };
    put(pt::makeUInt32(static_cast<std::uint32_t>(_pointType)));
    put(hvCreateString(ptNameStr(PT_TABLE_GROUPING, _groupingID)));
    put(hvCreateString(ptNameStr(PT_TABLE_PHASE, _phaseID)));
    // The self sums, under the names of the processed rows' whole times.
    put(hvCreateDoubleScalar(_wcSelf));
    put(hvCreateDoubleScalar(_cpuSelf));
    put(hvCreateDoubleScalar(static_cast<double>(_usageDeltaSum)));
    put(hvCreateDoubleScalar(static_cast<double>(_peakDeltaSum)));
    put(hvCreateDoubleScalar(static_cast<double>(_vmDeltaSum)));
    put(pt::makeUInt32(static_cast<std::uint32_t>(_count)));
    return structure.release();
}
