#include "selection.h"

#include <performance_tracer/tracer.h>

#include "matching_pass.h"

PTProcessedData ptProcessRaw(PerformanceTracer& tracer, PTRawDataVector& raw,
                             const std::vector<std::string>& names, bool byModel) {
    // The rows of the start points in list order are what a walk of the list through the
    // pass's point map would collect; the pass hands them over directly.
    PTProcessedData data;
    PTDiagnosticInfoList startRows;
    ptMatchRows(tracer, raw, names, byModel, startRows, data);
    if (!data._hasError) {
        // The origin becomes the list's first point, taken up or not; the rows keep the start
        // times they have, relative to the first point taken up.
        data._baseWC = raw.front()->_wcTime;
        data._baseCPU = raw.front()->_cpuTime;
        data._rows = std::move(startRows);
    }
    return data;
}

PTProcessedData ptProcessGrouping(PerformanceTracer& tracer, PTRawDataVector& raw,
                                  const std::string& name, bool byModel) {
    return ptProcessRaw(tracer, raw, std::vector<std::string>{name}, byModel);
}

PTProcessedData ptProcessSelection(PerformanceTracer& tracer, PTRawDataVector* raw,
                                   const std::vector<std::string>& names, bool byModel) {
    std::unique_ptr<PTRawDataVector> snapshot;
    if (!raw) {
        snapshot = tracer.snapshotRawData();
        if (!snapshot) {
            return PTProcessedData();
        }
        raw = snapshot.get();
    }
    return ptProcessRaw(tracer, *raw, names, byModel);
}

PTProcessedData ptGetProcessedDataForGroupings(PTRawDataVector* raw,
                                               const std::vector<std::string>& groupings) {
    return ptProcessSelection(*ptTracer(), raw, groupings, false);
}

PTProcessedData ptGetProcessedDataForModels(PTRawDataVector* raw,
                                            const std::vector<std::string>& models) {
    return ptProcessSelection(*ptTracer(), raw, models, true);
}
