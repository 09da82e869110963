#include "persistence.h"

#include <pt_platform/hv.h>
#include <pt_platform/hvf_rows.h>

#include <iterator>

#include "file_rows.h"
#include "messages.h"
#include "method_frame.h"
#include "system_info.h"
#include "system_info_fields.h"

namespace performance_tracer {

hvArray* systemInfoToStruct() {
    const SystemInfoRecord& info = cachedSystemInfo();
    hvUniqueArray structure(hvCreateStructMatrix(1, 1, 8, kSystemInfoFields));
    for (int field = 0; field < 8; ++field) {
        hvSetFieldByNumber(structure.get(), 0, field,
                           hvCreateString(info.*kSystemInfoMembers[field]));
    }
    return structure.release();
}

bool loadSavedData(const std::string& file, PTRawDataVector& points, SystemInfoRecord& record,
                   std::string&) {
    // A NUL would end the name early, and so another file would be read.
    if (file.find('\0') != std::string::npos) {
        raise<Errors::OpenFileFailed>(file);
    }
    // The rows are read one at a time, with what readRawDataCells of the whole variable would
    // give: the first empty row hides the rest. The root is read and dropped.
    FileRowReader rows(points);
    const char* const others[] = {kSystemInfoVariable, kRootVariable};
    hvUniqueArray values[std::size(others)];
    const hvfReadResult result = hvfReadRows(
        file.c_str(), kRawDataVariable, [&rows](const hvfRow* row) { return rows.append(row); },
        others, values);
    if (result == hvfReadResult::NotOpened) {
        rows.drop();
        raise<Errors::OpenFileFailed>(file);
    }
    rows.commit();
    readSystemInfoStruct(values[0].get(), record);
    if (result == hvfReadResult::CloseFailed) {
        rows.drop();
        raise<Errors::WriteFileFailed>(file);
    }
    return true;
}

}  // namespace performance_tracer
