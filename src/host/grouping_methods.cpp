// addGrouping, removeGrouping, clearRawData and setStatisticsTypeForModel.

#include <performance_tracer/groupings.h>
#include <performance_tracer/raw_store.h>

#include "messages.h"
#include "method_frame.h"
#include "methods.h"

namespace performance_tracer {

void PerformanceTracer_addGrouping::invoke(void*, std::uint32_t&, hvArray**, std::int32_t,
                                           const hvArray** prhs) {
    if (!isPlainText(prhs[0])) {
        raise<Errors::InvalidNames>();
    }
    const std::string grouping = textOf(prhs[0]);
    if (!hvIsCell(prhs[1])) {
        raise<Errors::UnexpectedValue>(grouping);
    }
    const std::vector<std::string> subGroupings = cellStringList(prhs[1]);
    if (const std::string refusal = ptAddGrouping(grouping, subGroupings); !refusal.empty()) {
        raise<Errors::AddGroupingError>(refusal);
    }
}

void PerformanceTracer_removeGrouping::invoke(void*, std::uint32_t&, hvArray**, std::int32_t,
                                              const hvArray** prhs) {
    if (!isPlainText(prhs[0])) {
        raise<Errors::ParameterMismatchString>(std::string(kGroupingParameter));
    }
    const std::string grouping = textOf(prhs[0]);
    if (!ptRemoveGrouping(grouping)) {
        raise<Errors::RemoveGroupingError>(grouping);
    }
}

void PerformanceTracer_clearRawData::invoke(void*, std::uint32_t&, hvArray**, std::int32_t nrhs,
                                            const hvArray** prhs) {
    if (nrhs == 0) {
        ptClearRawData();
        return;
    }
    if (nrhs % 2 != 0) {
        raise<Errors::ExpectedEvenNumberOfParameters>();
    }
    if (nrhs > 6) {
        raise<Errors::MaxParamsExceeded>(std::string("6"));
    }
    struct Named {
        bool given = false;
        std::string value;
    } grouping, model, target;
    for (std::int32_t i = 0; i < nrhs; i += 2) {
        const std::string name = foldLower(textOf(prhs[i]));
        Named* named = name == kModelParameter      ? &model
                       : name == kGroupingParameter ? &grouping
                       : name == kTargetParameter   ? &target
                                                    : nullptr;
        if (!named) {
            raise<Errors::InvalidNames>();  // before anything is cleared
        }
        named->given = true;
        named->value = textOf(prhs[i + 1]);
    }
    // By the names given, not by the emptiness of their values.
    if (grouping.given && !model.given) {
        ptClearRawGroupingData(grouping.value);
    } else if (grouping.given && !target.given) {
        ptClearRawData(grouping.value, model.value);
    } else if (grouping.given) {
        // Settled behaviour: the two-name clear always follows, so the target narrows nothing.
        ptClearRawData(grouping.value, model.value, target.value);
        ptClearRawData(grouping.value, model.value);
    } else if (model.given) {
        ptClearRawModelData(model.value);
    } else {
        raise<Errors::InvalidNames>();
    }
}

void PerformanceTracer_setStatisticsTypeForModel::invoke(void*, std::uint32_t&, hvArray**,
                                                         std::int32_t, const hvArray** prhs) {
    const std::string model = textOf(prhs[0]);
    const std::string statisticsType = textOf(prhs[1]);
    if (model.empty() || statisticsType.empty()) {
        raise<Errors::InvalidNames>();
    }
    ptSetStatisticsTypeForModel(model, statisticsType);
}

}  // namespace performance_tracer
