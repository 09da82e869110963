#pragma once

// The rows of a selection that broken instrumentation did not touch. A report of a data set
// with an error shows none of its rows; an export shows every row of the matching pass that is
// not an error row, and says how many it left out.

#include <performance_tracer/processed_points.h>

#include <cstddef>
#include <string>
#include <vector>

class PerformanceTracer;

struct PTSoundRows {
    /// The rows without errorRow, in order of their starts, with the pass's times: relative to
    /// the first point the pass took up when that point is a start.
    PTDiagnosticInfoList rows;
    /// The error rows of the pass, which rows leaves out.
    std::size_t errorRows = 0;
};

/// Runs the pass of the selection (models when byModel, else groupings) over the list, which
/// receives the generated points. Without an error, and with every point of the list an object
/// of its own (a loaded run, a snapshot), the rows are those of ptProcessRaw.
PTSoundRows ptProcessSoundRows(PerformanceTracer& tracer, PTRawDataVector& raw,
                               const std::vector<std::string>& names, bool byModel);
