#pragma once

// A run of raw points for the value-file benchmarks, logged through the exports, and the two
// methods called as a script calls them.

#include <performance_tracer/groupings.h>
#include <performance_tracer/logging.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/tracer.h>

#include <pt_platform/hv.h>
#include <pt_platform/vos.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <unistd.h>

namespace pt::bench {

/// Phases of the three classes, nested three deep, under a few hundred names, until the store
/// holds the given number of points.
inline void logRun(std::int64_t points) {
    ptAddGrouping("Run");
    ptClearRawData();
    ptEnableGlobalLogging(true);
    for (std::int64_t i = 0, logged = 0; logged < points; ++i, logged += 6) {
        const std::string outer = "toolbox/step_" + std::to_string(i % 300) + ".m";
        const std::string model = "model_" + std::to_string(i % 20);
        const std::string chart = "Chart_" + std::to_string(i % 50);
        ptLogOrviaData("Run", outer, true);
        ptLogKestruneData("Run", model, "rtw", "compile", true);
        ptLogYlvaneData("Run", model, "rtw", "Machine", chart, "entry", true);
        ptLogYlvaneData("Run", model, "rtw", "Machine", chart, "entry", false);
        ptLogKestruneData("Run", model, "rtw", "compile", false);
        ptLogOrviaData("Run", outer, false);
    }
    ptEnableGlobalLogging(false);
}

/// PerfTools.Tracer.<method>(file)
inline void callWithFile(const char* method, const std::string& file) {
    const hvUniqueArray name(hvCreateString(file));
    const std::vector<const hvArray*> inputs{name.get()};
    vos::invoke(method, 0, inputs);
}

inline std::string benchFile() {
    return (std::filesystem::temp_directory_path() /
            ("pt_value_file_bench_" + std::to_string(getpid()) + ".hvf"))
        .string();
}

}  // namespace pt::bench
