#include "sound_rows.h"

#include "matching_pass.h"

PTSoundRows ptProcessSoundRows(PerformanceTracer& tracer, PTRawDataVector& raw,
                               const std::vector<std::string>& names, bool byModel) {
    PTProcessedData data;
    PTStartRows startRows;
    PTSoundRows sound;
    ptMatchRows(tracer, raw, names, byModel, startRows, data, &sound.errorRows);
    sound.rows.reserve(startRows.size());
    for (auto& [point, row] : startRows) {
        if (row->_point->errorRow) {
            ++sound.errorRows;
        } else {
            sound.rows.push_back(std::move(row));
        }
    }
    return sound;
}
