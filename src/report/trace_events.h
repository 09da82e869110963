#pragma once

// Export of a data set to the Trace Event format, the JSON that the common trace viewers read:
// one complete event ("ph":"X") per row of the matching pass, in microseconds from the start
// of the first row, with the names that place the row as its arguments; the generated rows of
// unaccounted time under a category of their own; memory figures, where the run has any, as
// counter events. The file is written as the rows are walked, through a buffer of fixed size.

#include <performance_tracer/raw_points.h>
#include <performance_tracer/system_info_record.h>

#include <cstddef>
#include <string>
#include <vector>

class PerformanceTracer;

namespace pt::report {

/// The category of the generated rows that show unaccounted time.
inline constexpr const char* kUnaccountedCategory = "unaccounted";

/// What is exported, and the names a viewer shows for it.
struct TraceEventsRequest {
    /// Groupings, or models when byModel; "GLOBAL" takes all.
    std::vector<std::string> names = {"GLOBAL"};
    bool byModel = false;
    /// The names of the one process and the one thread that hold the events.
    std::string processName;
    std::string threadName;
    /// Written into the trace's otherData; null for none.
    const SystemInfoRecord* systemInfo = nullptr;
};

struct TraceEventsSummary {
    /// Complete events written, one per row.
    std::size_t phases = 0;
    /// Error rows of broken instrumentation, which are not exported.
    std::size_t leftOut = 0;
};

/// Writes the trace of the data set's selection. The list receives the generated points of the
/// matching pass. False if the file cannot be opened, written or closed.
bool writeTraceEvents(PerformanceTracer& tracer, const std::string& jsonFile, PTRawDataVector& data,
                      const TraceEventsRequest& request, TraceEventsSummary& summary);

}  // namespace pt::report
