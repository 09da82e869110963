#include "selection.h"

#include <performance_tracer/tracer.h>

#include <boost/unordered_map.hpp>

#include <algorithm>

#include "matching_pass.h"

PTProcessedData ptProcessRaw(PerformanceTracer& tracer, PTRawDataVector& raw,
                             const std::vector<std::string>& names, bool byModel) {
    PTProcessedData data;
    PTStartRows startRows;
    ptMatchRows(tracer, raw, names, byModel, startRows, data);
    if (data._hasError) {
        return data;
    }
    // The origin becomes the list's first point, taken up or not; the rows keep the start
    // times they have, relative to the first point taken up.
    data._baseWC = raw.front()->_wcTime;
    data._baseCPU = raw.front()->_cpuTime;

    // The rows are those of the start points in list order, each as the pass's point map would
    // give it: the last row made for that point. Only a point that stands in the list more
    // than once can have had two, and such a point is shared.
    const bool shared = std::any_of(raw.begin(), raw.end(),
                                    [](const auto& point) { return point.use_count() > 1; });
    boost::unordered_map<const PTOrviaDataPoint*, boost::shared_ptr<PTDiagnosticInfo>> lastRow;
    if (shared) {
        for (const auto& [point, row] : startRows) {
            lastRow[point] = row;
        }
    }
    data._rows.reserve(startRows.size());
    for (const auto& [point, row] : startRows) {
        data._rows.push_back(shared ? lastRow[point] : row);
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
