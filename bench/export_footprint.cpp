// Time and peak memory of writing the Detail page and of the Trace Event export of one run,
// each once, in one process with the run in the tracer's store, beside the copy of the store
// and the matching pass that both of them start with:
//     pt_export_footprint [points]
// A peak is the high-water mark of the resident set above what the process held before the
// step, after freed memory went back to the system. What the export adds to the matching pass
// stays the same however large its file grows.

#include <performance_tracer/processed_points.h>
#include <performance_tracer/runs.h>
#include <performance_tracer/tracer.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <unistd.h>

#include "bench_log.h"
#include "resident_memory.h"

using bench::startPeak;
using bench::statusKiB;

namespace {

/// Runs a step that writes file (none if empty) and prints its time, peak and file size.
template <typename Step>
void measure(const char* what, const std::string& file, Step step) {
    const long before = startPeak();
    const auto start = std::chrono::steady_clock::now();
    step(file);
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    std::printf("%-13s %7.3f s   peak %7.1f MiB above the %7.1f MiB held before", what,
                elapsed.count(), (statusKiB("VmHWM:") - before) / 1024.0, before / 1024.0);
    if (!file.empty()) {
        std::printf("   file %7.1f MB",
                    static_cast<double>(std::filesystem::file_size(file)) / 1e6);
        std::filesystem::remove(file);
    }
    std::printf("\n");
}

}  // namespace

int main(int argc, char** argv) {
    const std::int64_t points = argc > 1 ? std::atoll(argv[1]) : 1000000;
    const auto folder = std::filesystem::temp_directory_path();
    const std::string stem = "pt_export_footprint_" + std::to_string(getpid());
    ptTracer()->_rawData =
        std::make_unique<PTRawDataVector>(pt::testing::copyLog(pt::bench::benchLog(points, 1)));
    std::printf("%lld points in the store\n", static_cast<long long>(points));
    // What every page and export starts with: a copy of the store and the matching pass.
    measure("matching pass", "", [](const std::string&) {
        const auto copy = ptTracer()->snapshotRawData();
        ptGetProcessedDataForGroupings(copy.get(), {"GLOBAL"});
    });
    measure("detail page", (folder / (stem + ".html")).string(),
            [](const std::string& file) { pt::writeDetailReport(file); });
    measure("export", (folder / (stem + ".json")).string(),
            [](const std::string& file) { pt::exportTraceEvents(file); });
    return 0;
}
