#include <performance_tracer/names.h>
#include <performance_tracer/processed_points.h>

#include <pt_platform/hv.h>

#include <boost/make_shared.hpp>

#include "core/host_cells.h"
#include "core/markup.h"

namespace {

/// The wider ids of a raw point, or -1 where its class has none. A raw point's class and its
/// _pointType disagree only when it came from a malformed row.
const PTKestruneDataPoint* asModelPoint(const PTOrviaDataPoint& raw) {
    return dynamic_cast<const PTKestruneDataPoint*>(&raw);
}

const PTYlvaneDataPoint* asChartPoint(const PTOrviaDataPoint& raw) {
    return dynamic_cast<const PTYlvaneDataPoint*>(&raw);
}

void putDoubles(hvArray* row, std::size_t& index, std::initializer_list<double> figures) {
    for (double figure : figures) {
        hvSetCell(row, index++, hvCreateDoubleScalar(figure));
    }
}

}  // namespace

// ---- PTOrviaProcessedDataPoint ----

PTOrviaProcessedDataPoint::PTOrviaProcessedDataPoint(const PTOrviaDataPoint& raw)
    : PTOrviaProcessedDataPoint(raw, 0) {}

PTOrviaProcessedDataPoint::PTOrviaProcessedDataPoint(const PTOrviaDataPoint& raw,
                                                     std::int32_t pointType)
    : _pointType(pointType),
      _groupingID(raw._groupingID),
      _phaseID(raw._phaseID),
      _statisticsTypeID(raw._statisticsTypeID),
      _detailedMem(boost::make_shared<pt::DetailedProcessedMemStats>(raw._detailedMem)),
      _basicMem(boost::make_shared<pt::BasicProcessedMemStats>(raw._basicMem)),
      _startDetailedMem(boost::make_shared<pt::DetailedMemStats>()) {}

PTOrviaProcessedDataPoint::PTOrviaProcessedDataPoint(const PTOrviaProcessedDataPoint& other)
    : _pointType(other._pointType),
      _groupingID(other._groupingID),
      _phaseID(other._phaseID),
      _statisticsTypeID(other._statisticsTypeID),
      wcStartTime(other.wcStartTime),
      wcElapsedTime(other.wcElapsedTime),
      cpuStartTime(other.cpuStartTime),
      cpuElapsedTime(other.cpuElapsedTime),
      _detailedMem(boost::make_shared<pt::DetailedProcessedMemStats>(*other._detailedMem)),
      _basicMem(boost::make_shared<pt::BasicProcessedMemStats>(*other._basicMem)),
      _startDetailedMem(boost::make_shared<pt::DetailedMemStats>(*other._startDetailedMem)),
      errorRow(other.errorRow),
      gapRow(other.gapRow),
      HTMLPhaseNumString(other.HTMLPhaseNumString),
      HTMLRowNumber(other.HTMLRowNumber),
      numChildren(other.numChildren),
      stackDepth(other.stackDepth),
      childrenIDs(other.childrenIDs),
      _parentPhaseID(other._parentPhaseID) {}

PTOrviaProcessedDataPoint::~PTOrviaProcessedDataPoint() = default;

void PTOrviaProcessedDataPoint::detailedMemToRow(hvArray* row, std::size_t& index) const {
    const pt::DetailedProcessedMemStats zero;
    const pt::DetailedProcessedMemStats& m = _detailedMem ? *_detailedMem : zero;
    putDoubles(row, index,
               {m.freeMem, m.resMem, m.commitMem, m.dllsMem, m.nonprocessMem, m.freeMemDelta,
                m.resMemDelta, m.commitMemDelta, m.dllsMemDelta, m.nonprocessMemDelta});
}

void PTOrviaProcessedDataPoint::basicMemToRow(hvArray* row, std::size_t& index) const {
    const pt::BasicProcessedMemStats zero;
    const pt::BasicProcessedMemStats& m = _basicMem ? *_basicMem : zero;
    putDoubles(row, index,
               {m.procMemUsage, m.procMemUsagePeak, m.procVMSize, m.procMemUsageDelta,
                m.procMemUsagePeakDelta, m.procVMSizeDelta});
}

void PTOrviaProcessedDataPoint::stateToRow(hvArray* row, std::size_t& index) const {
    hvSetCell(row, index++, hvCreateLogicalScalar(errorRow));
    hvSetCell(row, index++, hvCreateLogicalScalar(gapRow));
    hvSetCell(row, index++, hvCreateString(HTMLPhaseNumString.str()));
    for (std::int32_t number : {HTMLRowNumber, numChildren, stackDepth}) {
        hvSetCell(row, index++, pt::makeUInt32(static_cast<std::uint32_t>(number)));
    }
    hvUniqueArray children(hvCreateCellMatrix(1, childrenIDs.size()));
    for (std::size_t i = 0; i < childrenIDs.size(); ++i) {
        hvSetCell(children.get(), i, pt::makeInt32(childrenIDs[i]));
    }
    hvSetCell(row, index++, children.release());
}

bool PTOrviaProcessedDataPoint::isSamePhase(const PTOrviaProcessedDataPoint& other) const {
    return _phaseID == other._phaseID && _groupingID == other._groupingID;
}

std::string PTOrviaProcessedDataPoint::alignmentKey() const {
    return ptDisplayPhaseName(ptNameStr(PT_TABLE_PHASE, _phaseID), true) +
           ptNameStr(PT_TABLE_GROUPING, _groupingID);
}

void PTOrviaProcessedDataPoint::nameIDs(std::int32_t& phase, std::int32_t& model,
                                        std::int32_t& chart) const {
    phase = _phaseID;
    model = -1;
    chart = -1;
}

std::int32_t PTOrviaProcessedDataPoint::phaseID() const { return _phaseID; }
std::int32_t PTOrviaProcessedDataPoint::groupingID() const { return _groupingID; }
std::int32_t PTOrviaProcessedDataPoint::modelID() const { return -1; }
std::int32_t PTOrviaProcessedDataPoint::targetID() const { return -1; }
std::int32_t PTOrviaProcessedDataPoint::machineID() const { return -1; }
std::int32_t PTOrviaProcessedDataPoint::chartID() const { return -1; }

// ---- PTKestruneProcessedDataPoint ----

PTKestruneProcessedDataPoint::PTKestruneProcessedDataPoint(const PTOrviaDataPoint& raw)
    : PTKestruneProcessedDataPoint(raw, 1) {}

PTKestruneProcessedDataPoint::PTKestruneProcessedDataPoint(const PTOrviaDataPoint& raw,
                                                           std::int32_t pointType)
    : PTOrviaProcessedDataPoint(raw, pointType) {
    if (const PTKestruneDataPoint* model = asModelPoint(raw)) {
        _modelID = model->_modelID;
        _targetID = model->_targetID;
    }
}

bool PTKestruneProcessedDataPoint::isSamePhase(const PTOrviaProcessedDataPoint& other) const {
    return other._pointType == 1 && PTOrviaProcessedDataPoint::isSamePhase(other) &&
           _modelID == other.modelID() && _targetID == other.targetID();
}

std::string PTKestruneProcessedDataPoint::alignmentKey() const {
    return PTOrviaProcessedDataPoint::alignmentKey() + ptNameStr(PT_TABLE_MODEL, _modelID) +
           ptNameStr(PT_TABLE_TARGET, _targetID);
}

void PTKestruneProcessedDataPoint::nameIDs(std::int32_t& phase, std::int32_t& model,
                                           std::int32_t& chart) const {
    phase = _phaseID;
    model = _modelID;
    chart = -1;
}

std::int32_t PTKestruneProcessedDataPoint::modelID() const { return _modelID; }
std::int32_t PTKestruneProcessedDataPoint::targetID() const { return _targetID; }

std::string PTKestruneProcessedDataPoint::phaseDetailRow() const {
    std::string text = ptNameStr(PT_TABLE_GROUPING, _groupingID);
    if (_modelID < 1) {
        text += ' ';
    } else {
        text += '/';
        text += ptNameStr(PT_TABLE_MODEL, _modelID);
    }
    if (_targetID > 0) {
        text += '/';
        text += ptNameStr(PT_TABLE_TARGET, _targetID);
    }
    return "                            <tr>\n"
           "                                <td colspan=\"2\" style=\"width:25px\"></td>\n"
           "                                <td class=\"PhaseDetailText\">" +
           pt::escapeMarkup(text) +
           "</td>\n"
           "                            </tr>\n";
}

// ---- PTYlvaneProcessedDataPoint ----

PTYlvaneProcessedDataPoint::PTYlvaneProcessedDataPoint(const PTOrviaDataPoint& raw)
    : PTKestruneProcessedDataPoint(raw, 2) {
    if (const PTYlvaneDataPoint* chart = asChartPoint(raw)) {
        _machineID = chart->_machineID;
        _chartID = chart->_chartID;
    }
}

bool PTYlvaneProcessedDataPoint::isSamePhase(const PTOrviaProcessedDataPoint& other) const {
    return other._pointType == 2 && PTOrviaProcessedDataPoint::isSamePhase(other) &&
           _modelID == other.modelID() && _targetID == other.targetID() &&
           _machineID == other.machineID() && _chartID == other.chartID();
}

std::string PTYlvaneProcessedDataPoint::alignmentKey() const {
    return PTKestruneProcessedDataPoint::alignmentKey() + ptNameStr(PT_TABLE_MACHINE, _machineID) +
           ptNameStr(PT_TABLE_CHART, _chartID);
}

void PTYlvaneProcessedDataPoint::nameIDs(std::int32_t& phase, std::int32_t& model,
                                         std::int32_t& chart) const {
    phase = _phaseID;
    model = _modelID;
    chart = _chartID;
}

std::int32_t PTYlvaneProcessedDataPoint::machineID() const { return _machineID; }
std::int32_t PTYlvaneProcessedDataPoint::chartID() const { return _chartID; }

std::string PTYlvaneProcessedDataPoint::phaseDetailRow() const {
    std::string text = ptNameStr(PT_TABLE_GROUPING, _groupingID);
    const auto append = [&text](std::uint32_t kind, std::int32_t id, const char* none) {
        text += '/';
        text += id < 1 ? std::string(none) : ptNameStr(kind, id);
    };
    append(PT_TABLE_MODEL, _modelID, "NO MODEL SPECIFIED");
    append(PT_TABLE_TARGET, _targetID, "NO TARGET SPECIFIED");
    append(PT_TABLE_MACHINE, _machineID, "NO MACHINE SPECIFIED");
    append(PT_TABLE_CHART, _chartID, "NO CHART SPECIFIED");
    return "                            <tr>\n"
           "                                <td colspan=\"2\" style=\"width:15%\"></td>\n"
           "                                <td class=\"PhaseDetailText\">" +
           pt::escapeMarkup(text) +
           "</td>\n"
           "                            </tr>\n";
}

// ---- PTDiagnosticInfo ----

PTDiagnosticInfo::PTDiagnosticInfo(const boost::shared_ptr<PTOrviaDataPoint>& raw,
                                   std::int32_t rowNumber, std::int32_t stackDepth) {
    switch (raw->_pointType) {
        case 1: _point = std::make_unique<PTKestruneProcessedDataPoint>(*raw); break;
        case 2: _point = std::make_unique<PTYlvaneProcessedDataPoint>(*raw); break;
        default: _point = std::make_unique<PTOrviaProcessedDataPoint>(*raw); break;
    }
    _point->HTMLRowNumber = rowNumber;
    _point->stackDepth = stackDepth;
    _point->gapRow = raw->_isGenerated;
}
