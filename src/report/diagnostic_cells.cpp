// The rows of the diagnostic table: one row per logged point, made of cells that each class
// of point knows how to write.

#include <performance_tracer/names.h>
#include <performance_tracer/number_text.h>
#include <performance_tracer/processed_points.h>
#include <performance_tracer/raw_points.h>

#include "core/markup.h"

namespace {

constexpr const char* kCellOpen = "                <td>";
constexpr const char* kCellClose = "</td>\n";

std::string cell(std::string_view content) {
    std::string text = kCellOpen;
    text += content;
    text += kCellClose;
    return text;
}

/// A name cell; names are escaped where they hold markup characters.
std::string nameCell(std::uint32_t kind, std::int32_t id) {
    return cell(id == -1 ? "&nbsp;" : pt::escapeMarkup(ptNameStr(kind, id)));
}

/// A figure cell: unlike the others, its closing tag stands on a line of its own.
std::string figureCell(double value, std::int32_t precision) {
    return kCellOpen + ptNumberText(value, precision) + "\n                </td>\n";
}

}  // namespace

std::string PTOrviaDataPoint::diagnosticRow(std::int32_t level,
                                            const PTOrviaProcessedDataPoint* row) const {
    if (!row) {
        return {};
    }
    std::string text = rowOpen(row->errorRow) + pointTypeCell() + groupingCell();
    for (std::int32_t i = 0; i < 2 * level; ++i) {
        text += emptyCell();
    }
    return text + phaseCell() + startEndCell() + timeAndMemCells() + rowClose();
}

std::string PTOrviaDataPoint::timeAndMemCells() const {
    std::string text = figureCell(_wcTime, 2) + figureCell(_cpuTime, 2);
    if (!_detailedMem) {
        for (int i = 0; i < 5; ++i) {
            text += cell("0.0");
        }
        return text;
    }
    const pt::DetailedMemStats& m = *_detailedMem;
    for (double figure : {m.freeMem, m.commitMem, m.resMem, m.dllsMem, m.nonprocessMem}) {
        text += figureCell(figure, 5);
    }
    return text;
}

std::string PTOrviaDataPoint::emptyCell() const { return cell("&nbsp;"); }

std::string PTOrviaDataPoint::groupingCell() const {
    return cell(pt::escapeMarkup(ptNameStr(PT_TABLE_GROUPING, _groupingID)));
}

std::string PTOrviaDataPoint::startEndCell() const { return cell(_isPhaseStart ? "Start" : "End"); }

std::string PTOrviaDataPoint::phaseCell() const {
    return cell(pt::escapeMarkup(ptDisplayPhaseName(ptNameStr(PT_TABLE_PHASE, _phaseID), false)));
}

std::string PTOrviaDataPoint::rowOpen(bool isErrorRow) const {
    return isErrorRow ? "            <tr style=\"background:#FF1A00\">\n" : "            <tr>\n";
}

std::string PTOrviaDataPoint::rowClose() const { return "            </tr>\n"; }

std::string PTOrviaDataPoint::pointTypeCell() const { return cell("Orvia"); }

std::string PTKestruneDataPoint::diagnosticRow(std::int32_t level,
                                               const PTOrviaProcessedDataPoint* row) const {
    if (!row) {
        return {};
    }
    std::string text =
        rowOpen(row->errorRow) + pointTypeCell() + groupingCell() + modelCell() + targetCell();
    if (level == 2) {
        text += emptyCell() + emptyCell();
    }
    return text + phaseCell() + startEndCell() + timeAndMemCells() + rowClose();
}

std::string PTKestruneDataPoint::pointTypeCell() const { return cell("Kestrune"); }
std::string PTKestruneDataPoint::modelCell() const { return nameCell(PT_TABLE_MODEL, _modelID); }
std::string PTKestruneDataPoint::targetCell() const { return nameCell(PT_TABLE_TARGET, _targetID); }

std::string PTYlvaneDataPoint::diagnosticRow(std::int32_t level,
                                             const PTOrviaProcessedDataPoint* row) const {
    if (!row || level != 2) {
        return {};
    }
    return rowOpen(row->errorRow) + pointTypeCell() + groupingCell() + modelCell() + targetCell() +
           machineCell() + chartCell() + phaseCell() + startEndCell() + timeAndMemCells() +
           rowClose();
}

std::string PTYlvaneDataPoint::pointTypeCell() const { return cell("Ylvane"); }
std::string PTYlvaneDataPoint::machineCell() const {
    return nameCell(PT_TABLE_MACHINE, _machineID);
}
std::string PTYlvaneDataPoint::chartCell() const { return nameCell(PT_TABLE_CHART, _chartID); }
