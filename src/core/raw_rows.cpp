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
#include <pt_platform/hvf_rows.h>

#include <boost/make_shared.hpp>

#include "host_cells.h"

namespace {

/// Number of cells of a host-language row; the wider classes add their names to it.
constexpr std::size_t kBaseRowCells = 16;
constexpr std::string_view kRowVersion = "1";

hvArray* nameCell(std::uint32_t kind, std::int32_t id) {
    return hvCreateString(ptNameStr(kind, id));
}

/// The cells of a row that is a host value. A cell past the end of a short row is null, and
/// reads as any missing value does.
class HostRowCells final : public PTRowCells {
public:
    explicit HostRowCells(const hvArray* row) : _row(row) {}

    bool isCharVector(std::size_t i) const override { return hvIsCharVector(cell(i)); }
    bool hasText(std::size_t i, std::string_view text) const override {
        return pt::readText(cell(i)) == text;
    }
    std::int32_t nameID(std::uint32_t kind, std::size_t i) override {
        return static_cast<std::int32_t>(ptNameID(kind, pt::readText(cell(i))));
    }
    std::int32_t int32(std::size_t i) const override { return pt::readInt32(cell(i)); }
    double figure(std::size_t i) const override { return pt::readDouble(cell(i)); }
    bool flag(std::size_t i) const override { return pt::readBool(cell(i)); }

private:
    const hvArray* cell(std::size_t i) const { return hvGetCell(_row, i); }

    const hvArray* _row;
};

}  // namespace

PTRowCells::~PTRowCells() = default;

std::size_t PTOrviaDataPoint::addedRowNames(RowName (&)[4]) const { return 0; }

std::size_t PTKestruneDataPoint::addedRowNames(RowName (&names)[4]) const {
    names[0] = {PT_TABLE_MODEL, _modelID};
    names[1] = {PT_TABLE_TARGET, _targetID};
    return 2;
}

std::size_t PTYlvaneDataPoint::addedRowNames(RowName (&names)[4]) const {
    PTKestruneDataPoint::addedRowNames(names);
    names[2] = {PT_TABLE_MACHINE, _machineID};
    names[3] = {PT_TABLE_CHART, _chartID};
    return 4;
}

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

// The cells of buildRow, in its order and in the form of its values.
void PTOrviaDataPoint::writeRow(hvfRowWriter& out, PTRowNameTexts& names) const {
    RowName added[4];
    const std::size_t addedCount = addedRowNames(added);
    out.cellRow(kBaseRowCells + addedCount);
    out.text(kRowVersion);
    out.int32Scalar(_pointType);
    out.text(names.text(PT_TABLE_PHASE, _phaseID));
    out.text(names.text(PT_TABLE_GROUPING, _groupingID));
    for (std::size_t i = 0; i < addedCount; ++i) {
        out.text(names.text(added[i].kind, added[i].id));
    }
    out.text(names.text(PT_TABLE_STATISTICS_TYPE, _statisticsTypeID));
    out.logicalScalar(_isPhaseStart);
    out.doubleScalar(_wcTime);
    out.doubleScalar(_cpuTime);
    const pt::DetailedMemStats noDetails;
    const pt::DetailedMemStats& details = _detailedMem ? *_detailedMem : noDetails;
    for (double figure : {details.freeMem, details.resMem, details.commitMem, details.dllsMem,
                          details.nonprocessMem}) {
        out.doubleScalar(figure);
    }
    const pt::BasicMemStats noBasics;
    const pt::BasicMemStats& basics = _basicMem ? *_basicMem : noBasics;
    for (double figure : {basics.procMemUsage, basics.procMemUsagePeak, basics.procVMSize}) {
        out.doubleScalar(figure);
    }
}

void PTOrviaDataPoint::readRow(PTRowCells& row, std::span<const RowNameSlot> extraNames) {
    std::size_t index = 0;
    bool readFields = true;
    if (row.isCharVector(0)) {
        // A version this build does not know keeps the start values of the fields and reads
        // the figures from the cells that follow the version.
        readFields = row.hasText(0, kRowVersion);
        index = 1;
    }
    if (readFields) {
        _pointType = row.int32(index++);
        _phaseID = row.nameID(PT_TABLE_PHASE, index++);
        _groupingID = row.nameID(PT_TABLE_GROUPING, index++);
        for (const RowNameSlot& name : extraNames) {
            *name.id = row.nameID(name.kind, index++);
        }
        _statisticsTypeID = row.nameID(PT_TABLE_STATISTICS_TYPE, index++);
        _isPhaseStart = row.flag(index++);
        _wcTime = row.figure(index++);
        _cpuTime = row.figure(index++);
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

void PTOrviaDataPoint::detailedMemFromRow(const PTRowCells& row, std::size_t& index) {
    double figures[5];
    for (double& figure : figures) {
        figure = row.figure(index++);
    }
    // All-zero figures keep the record the point has: none on a host-language point read from
    // a row, a zero record on the wider classes.
    if (figures[0] + figures[1] + figures[2] + figures[3] + figures[4] > 0.0) {
        _detailedMem = boost::make_shared<pt::DetailedMemStats>(figures[0], figures[1], figures[2],
                                                                figures[3], figures[4]);
    }
}

void PTOrviaDataPoint::basicMemFromRow(const PTRowCells& row, std::size_t& index) {
    const double usage = row.figure(index++);
    const double peak = row.figure(index++);
    const double vmSize = row.figure(index++);
    _basicMem = boost::make_shared<pt::BasicMemStats>(usage, peak, vmSize);
}

PTOrviaDataPoint::PTOrviaDataPoint(const hvArray* row) : PTOrviaDataPoint(RowStart{}) {
    HostRowCells cells(row);
    readRow(cells, {});
}

PTOrviaDataPoint::PTOrviaDataPoint(PTRowCells& row) : PTOrviaDataPoint(RowStart{}) {
    readRow(row, {});
}

hvArray* PTOrviaDataPoint::toRow() const { return buildRow({}); }

PTKestruneDataPoint::PTKestruneDataPoint(const hvArray* row) : PTKestruneDataPoint(RowStart{}) {
    HostRowCells cells(row);
    const RowNameSlot names[] = {{PT_TABLE_MODEL, &_modelID}, {PT_TABLE_TARGET, &_targetID}};
    readRow(cells, names);
}

PTKestruneDataPoint::PTKestruneDataPoint(PTRowCells& row) : PTKestruneDataPoint(RowStart{}) {
    const RowNameSlot names[] = {{PT_TABLE_MODEL, &_modelID}, {PT_TABLE_TARGET, &_targetID}};
    readRow(row, names);
}

hvArray* PTKestruneDataPoint::toRow() const {
    RowName names[4];
    return buildRow(std::span(names, addedRowNames(names)));
}

PTYlvaneDataPoint::PTYlvaneDataPoint(const hvArray* row) : PTKestruneDataPoint(1, RowStart{}) {
    HostRowCells cells(row);
    readStateChartRow(cells);
}

PTYlvaneDataPoint::PTYlvaneDataPoint(PTRowCells& row) : PTKestruneDataPoint(1, RowStart{}) {
    readStateChartRow(row);
}

// The start values of a state-chart row are the defaults with point type 1 and machine and
// chart 0; they show only when a row's version is unknown.
void PTYlvaneDataPoint::readStateChartRow(PTRowCells& row) {
    _machineID = 0;
    _chartID = 0;
    const RowNameSlot names[] = {{PT_TABLE_MODEL, &_modelID},
                                 {PT_TABLE_TARGET, &_targetID},
                                 {PT_TABLE_MACHINE, &_machineID},
                                 {PT_TABLE_CHART, &_chartID}};
    readRow(row, names);
}

hvArray* PTYlvaneDataPoint::toRow() const {
    RowName names[4];
    return buildRow(std::span(names, addedRowNames(names)));
}
