#pragma once

// Clearing the raw store, and the statistics type that later points of a model receive.
// Clears look names up without adding them; an unknown grouping name matches the points that
// global logging stored with grouping id -1.

#include <performance_tracer/export.h>

#include <string>

/// Every point, the statistics type settings and the six name tables other than the grouping
/// table, whose ids restart at 0.
PT_API void ptClearRawData();
/// Kestrune and Ylvane points of the grouping and model. Empties every statistics type setting.
PT_API void ptClearRawData(const std::string& grouping, const std::string& model);
/// Kestrune and Ylvane points of the grouping, model and target.
PT_API void ptClearRawData(const std::string& grouping, const std::string& model,
                           const std::string& target);
/// Points of every class in the grouping.
PT_API void ptClearRawGroupingData(const std::string& grouping);
/// Kestrune and Ylvane points of the model.
PT_API void ptClearRawModelData(const std::string& model);

/// Points of the model logged from now on carry this statistics type.
PT_API void ptSetStatisticsTypeForModel(const std::string& model,
                                        const std::string& statisticsType);
