// The variables of a value file as the tracer reads and writes them: points as cell rows, and
// the structure of system information.

#include "persistence.h"

#include <pt_platform/hv.h>
#include <pt_platform/hvf.h>
#include <pt_platform/hvf_rows.h>

#include <boost/make_shared.hpp>

#include "method_frame.h"
#include "system_info_fields.h"

namespace performance_tracer {

hvArray* rawDataToCells(const PTRawDataVector& points) {
    hvUniqueArray cells(hvCreateCellMatrix(1, points.size()));
    for (std::size_t i = 0; i < points.size(); ++i) {
        hvSetCell(cells.get(), i, points[i]->toRow());
    }
    return cells.release();
}

int putRawDataCells(hvFile* file, const char* name, const PTRawDataVector& points) {
    PTRowNameTexts names;
    return hvfPutRows(file, name, points.size(),
                      [&](std::size_t i, hvfRowWriter& out) { points[i]->writeRow(out, names); });
}

bool appendPointOfRow(const hvArray* row, PTRawDataVector& points) {
    if (!row) {
        return false;
    }
    switch (hvGetNumberOfElements(row)) {
        case 18: points.push_back(boost::make_shared<PTKestruneDataPoint>(row)); break;
        case 20: points.push_back(boost::make_shared<PTYlvaneDataPoint>(row)); break;
        default: points.push_back(boost::make_shared<PTOrviaDataPoint>(row)); break;
    }
    return true;
}

void readRawDataCells(const hvArray* cells, PTRawDataVector& points) {
    if (!cells) {
        return;
    }
    const std::size_t count = hvGetNumberOfElements(cells);
    std::size_t subscript = 0;
    for (std::size_t pass = 0; pass < count; ++pass) {
        // An empty element leaves the subscript where it is, so every later pass meets it too.
        if (appendPointOfRow(hvGetCell(cells, subscript), points)) {
            ++subscript;
        }
    }
}

void readSystemInfoStruct(const hvArray* structure, SystemInfoRecord& record) {
    if (!hvIsStruct(structure)) {
        return;
    }
    for (int field = 0; field < 8; ++field) {
        const hvArray* value = hvGetFieldByNumber(structure, 0, field);
        record.*kSystemInfoMembers[field] = isPlainText(value) ? textOf(value) : std::string();
    }
}

}  // namespace performance_tracer
