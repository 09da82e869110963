// getRawData, getProcessedData and getAggregateProcessedData: the tracer's data as host values.

#include <performance_tracer/aggregation.h>
#include <performance_tracer/groupings.h>
#include <performance_tracer/processed_points.h>
#include <performance_tracer/tracer.h>

#include <pt_platform/hv.h>

#include "messages.h"
#include "method_frame.h"
#include "methods.h"
#include "persistence.h"

namespace performance_tracer {

namespace {

/// The groupings or the models a selection names.
struct Selection {
    bool byModel = false;
    std::vector<std::string> groupings{"GLOBAL"};
    std::vector<std::string> models;
};

PTProcessedData process(const Selection& selection) {
    return selection.byModel ? ptGetProcessedDataForModels(nullptr, selection.models)
                             : ptGetProcessedDataForGroupings(nullptr, selection.groupings);
}

hvArray* processedRows(const Selection& selection) {
    const PTProcessedData data = process(selection);
    hvUniqueArray cells(hvCreateCellMatrix(1, data._rows.size()));
    for (std::size_t i = 0; i < data._rows.size(); ++i) {
        hvSetCell(cells.get(), i, data._rows[i]->_point->toStruct());
    }
    return cells.release();
}

hvArray* aggregateRows(const Selection& selection) {
    PTProcessedData data = process(selection);
    const PTAggregateMap aggregates = ptGetAggregateProcessedData(data._rows);
    hvUniqueArray cells(hvCreateCellMatrix(1, aggregates.size()));
    std::size_t i = 0;
    for (const auto& [phase, aggregate] : aggregates) {
        hvSetCell(cells.get(), i++, aggregate->toStruct());
    }
    return cells.release();
}

/// Reads the pairs "grouping" and "model", recomputing after each; the last result stands.
/// Without pairs the selection is the grouping "GLOBAL" itself.
void select(std::uint32_t& nlhs, hvArray** plhs, std::int32_t nrhs, const hvArray** prhs,
            hvArray* (*convert)(const Selection&)) {
    if (nrhs % 2 != 0) {
        raise<Errors::ExpectedEvenNumberOfParameters>();
    }
    Selection selection;
    hvUniqueArray result;
    if (nrhs == 0) {
        result.reset(convert(selection));
    }
    for (std::int32_t i = 0; i < nrhs; i += 2) {
        if (!isPlainText(prhs[i])) {
            raise<Errors::ExpectedNames>(std::string("'grouping' or 'model'"));
        }
        const std::string name = foldLower(textOf(prhs[i]));
        const hvArray* value = prhs[i + 1];
        if (name == kGroupingParameter || name == kModelParameter) {
            if (!hvIsCell(value) && !isPlainText(value)) {
                raise<Errors::ParameterMismatchString>(name);
            }
        }
        if (name == kGroupingParameter) {
            selection.byModel = false;
            selection.groupings =
                hvIsCell(value) ? cellStringList(value) : ptGetGroupingList(textOf(value));
        } else if (name == kModelParameter) {
            selection.byModel = true;
            if (hvIsCell(value)) {
                selection.models = cellStringList(value);
            } else {
                selection.models.push_back(textOf(value));  // texts add up
            }
        } else {
            raise<Errors::InvalidNames>();
        }
        result.reset(convert(selection));
    }
    setResult(nlhs, plhs, result.release());
}

}  // namespace

void PerformanceTracer_getRawData::invoke(void*, std::uint32_t& nlhs, hvArray** plhs, std::int32_t,
                                          const hvArray**) {
    const std::unique_ptr<PTRawDataVector> points = ptTracer()->snapshotRawData();
    setResult(nlhs, plhs, rawDataToCells(points ? *points : PTRawDataVector()));
}

void PerformanceTracer_getProcessedData::invoke(void*, std::uint32_t& nlhs, hvArray** plhs,
                                                std::int32_t nrhs, const hvArray** prhs) {
    select(nlhs, plhs, nrhs, prhs, &processedRows);
}

void PerformanceTracer_getAggregateProcessedData::invoke(void*, std::uint32_t& nlhs, hvArray** plhs,
                                                         std::int32_t nrhs, const hvArray** prhs) {
    select(nlhs, plhs, nrhs, prhs, &aggregateRows);
}

}  // namespace performance_tracer
