#include "persistence.h"

#include <pt_platform/hv.h>
#include <pt_platform/hvf.h>

#include <memory>

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
    struct Closer {
        void operator()(hvFile* f) const { hvfClose(f); }
    };
    std::unique_ptr<hvFile, Closer> values(hvfOpen(file.c_str(), "r"));
    if (!values) {
        raise<Errors::OpenFileFailed>(file);
    }
    // The rows are made and read one at a time, with what readRawDataCells of the whole
    // variable would give: the first empty row hides the rest.
    hvfForEachCell(values.get(), kRawDataVariable,
                   [&points](const hvArray* row) { return appendPointOfRow(row, points); });
    const hvUniqueArray systemInfo(hvfGetVariable(values.get(), kSystemInfoVariable));
    const hvUniqueArray root(hvfGetVariable(values.get(), kRootVariable));  // read and dropped
    readSystemInfoStruct(systemInfo.get(), record);
    if (hvfClose(values.release()) != 0) {
        raise<Errors::WriteFileFailed>(file);
    }
    return true;
}

}  // namespace performance_tracer
