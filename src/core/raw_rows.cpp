// The cell row of a raw point: how a point leaves the process and comes back.
//
// Cells, in order: version "1", point type, phase, grouping, [model, target], [machine,
// chart], statistics type, start flag, wall clock, CPU time, five detailed memory figures
// (free, reserved, committed, DLLs, non-process), three basic ones (usage, peak, virtual
// size). Names travel as text so that a row does not depend on the tables of the process
// that wrote it; ids are given anew, by this process's tables, when a row is read.

#include <performance_tracer/names.h>
#include <performance_tracer/raw_points.h>

#include <pt_platform/hv.h>

#include <boost/make_shared.hpp>

#include "host_cells.h"

namespace {

/// Number of cells of a host-language row; the wider classes add their names to it.
constexpr std::size_t kBaseRowCells = 16;
constexpr std::string_view kRowVersion = "1";

hvArray* nameCell(std::uint32_t kind, std::int32_t id) {
    return hvCreateString(ptNameStr(kind, id));
}

/// The cell at index, or null past the end of the row; reading never goes beyond a short row.
const hvArray* cellAt(const hvArray* row, std::size_t index) { return hvGetCell(row, index); }

std::int32_t readName(std::uint32_t kind, const hvArray* row, std::size_t& index) {
    return static_cast<std::int32_t>(ptNameID(kind, pt::readText(cellAt(row, index++))));
}

double readFigure(const hvArray* row, std::size_t& index) {
    return pt::readDouble(cellAt(row, index++));
}

}  // namespace

hvArray* PTOrviaDataPoint::buildRow(std::span<const RowName> extraNames) const {
    hvUniqueArray row(hvCreateCellMatrix(1, kBaseRowCells + extraNames.size()));
    std::size_t index = 0;
    const auto put = [&](hvArray* cell) { hvSetCell(row.get(), index++, cell); };

    put(hvCreateString(kRowVersion));
    put(pt::makeInt32(_pointType));
    put(hvCreateString(ptDisplayPhaseName(ptNameStr(PT_TABLE_PHASE, _phaseID), false)));
    put(nameCell(PT_TABLE_GROUPING, _groupingID));
    for (const RowName& name : extraNames) {
        put(nameCell(name.kind, name.id));
    }
    put(nameCell(PT_TABLE_STATISTICS_TYPE, _statisticsTypeID));
    put(hvCreateLogicalScalar(_isPhaseStart));
    put(hvCreateDoubleScalar(_wcTime));
    put(hvCreateDoubleScalar(_cpuTime));
    detailedMemToRow(row.get(), index);
    basicMemToRow(row.get(), index);
    return row.release();
}

void PTOrviaDataPoint::readRow(const hvArray* row, std::span<const RowNameSlot> extraNames) {
    std::size_t index = 0;
    bool readFields = true;
    if (const hvArray* version = cellAt(row, 0); hvIsCharVector(version)) {
        // A version this build does not know keeps the start values of the fields and reads
        // the figures from the cells that follow the version.
        readFields = pt::readText(version) == kRowVersion;
        index = 1;
    }
    if (readFields) {
        _pointType = pt::readInt32(cellAt(row, index++));
        _phaseID = readName(PT_TABLE_PHASE, row, index);
        _groupingID = readName(PT_TABLE_GROUPING, row, index);
        for (const RowNameSlot& name : extraNames) {
            *name.id = readName(name.kind, row, index);
        }
        _statisticsTypeID = readName(PT_TABLE_STATISTICS_TYPE, row, index);
        _isPhaseStart = pt::readBool(cellAt(row, index++));
        _wcTime = readFigure(row, index);
        _cpuTime = readFigure(row, index);
    }
    detailedMemFromRow(row, index);
    basicMemFromRow(row, index);
}

void PTOrviaDataPoint::detailedMemToRow(hvArray* row, std::size_t& index) const {
    const pt::DetailedMemStats zero;
    const pt::DetailedMemStats& mem = _detailedMem ? *_detailedMem : zero;
    for (double figure : {mem.freeMem, mem.resMem, mem.commitMem, mem.dllsMem, mem.nonprocessMem}) {
        hvSetCell(row, index++, hvCreateDoubleScalar(figure));
    }
}

void PTOrviaDataPoint::basicMemToRow(hvArray* row, std::size_t& index) const {
    const pt::BasicMemStats zero;
    const pt::BasicMemStats& mem = _basicMem ? *_basicMem : zero;
    for (double figure : {mem.procMemUsage, mem.procMemUsagePeak, mem.procVMSize}) {
        hvSetCell(row, index++, hvCreateDoubleScalar(figure));
    }
}

void PTOrviaDataPoint::detailedMemFromRow(const hvArray* row, std::size_t& index) {
    double figures[5];
    for (double& figure : figures) {
        figure = readFigure(row, index);
    }
    // All-zero figures keep the record the point has: none on a host-language point read from
    // a row, a zero record on the wider classes.
    if (figures[0] + figures[1] + figures[2] + figures[3] + figures[4] > 0.0) {
        _detailedMem = boost::make_shared<pt::DetailedMemStats>(figures[0], figures[1], figures[2],
                                                                figures[3], figures[4]);
    }
}

void PTOrviaDataPoint::basicMemFromRow(const hvArray* row, std::size_t& index) {
    const double usage = readFigure(row, index);
    const double peak = readFigure(row, index);
    const double vmSize = readFigure(row, index);
    _basicMem = boost::make_shared<pt::BasicMemStats>(usage, peak, vmSize);
}

PTOrviaDataPoint::PTOrviaDataPoint(const hvArray* row) : PTOrviaDataPoint(RowStart{}) {
    readRow(row, {});
}

hvArray* PTOrviaDataPoint::toRow() const { return buildRow({}); }

PTKestruneDataPoint::PTKestruneDataPoint(const hvArray* row) : PTKestruneDataPoint(RowStart{}) {
    const RowNameSlot names[] = {{PT_TABLE_MODEL, &_modelID}, {PT_TABLE_TARGET, &_targetID}};
    readRow(row, names);
}

hvArray* PTKestruneDataPoint::toRow() const {
    const RowName names[] = {{PT_TABLE_MODEL, _modelID}, {PT_TABLE_TARGET, _targetID}};
    return buildRow(names);
}

// The start values of a state-chart row are the defaults with point type 1 and machine and
// chart 0; they show only when a row's version is unknown.
PTYlvaneDataPoint::PTYlvaneDataPoint(const hvArray* row) : PTKestruneDataPoint(1) {
    _machineID = 0;
    _chartID = 0;
    const RowNameSlot names[] = {{PT_TABLE_MODEL, &_modelID},
                                 {PT_TABLE_TARGET, &_targetID},
                                 {PT_TABLE_MACHINE, &_machineID},
                                 {PT_TABLE_CHART, &_chartID}};
    readRow(row, names);
}

hvArray* PTYlvaneDataPoint::toRow() const {
    const RowName names[] = {{PT_TABLE_MODEL, _modelID},
                             {PT_TABLE_TARGET, _targetID},
                             {PT_TABLE_MACHINE, _machineID},
                             {PT_TABLE_CHART, _chartID}};
    return buildRow(names);
}
