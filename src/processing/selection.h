#pragma once

// Selection: a matching pass over a raw list for some groupings or models, and the rows it
// leaves, in order of the phases' starts.

#include <performance_tracer/processed_points.h>

#include <string>
#include <vector>

class PerformanceTracer;

/// Runs the pass of the selection (models when byModel, else groupings) over the list and
/// collects its rows. A data set with an error has no rows. The list receives the generated
/// points.
PTProcessedData ptProcessRaw(PerformanceTracer& tracer, PTRawDataVector& raw,
                             const std::vector<std::string>& names, bool byModel);
/// ptProcessRaw for one name.
PTProcessedData ptProcessGrouping(PerformanceTracer& tracer, PTRawDataVector& raw,
                                  const std::string& name, bool byModel);
/// ptProcessRaw over the list, or over a snapshot of the raw store if the list is null; with
/// no store either, an all-zero result without error (and without rows).
PTProcessedData ptProcessSelection(PerformanceTracer& tracer, PTRawDataVector* raw,
                                   const std::vector<std::string>& names, bool byModel);
