// Time and peak memory of one save and one load of a run, in a fresh process as a user meets
// them (the first touch of new memory included):
//     pt_value_file_footprint [points]
// A peak is the high-water mark of the resident set above what the process held before the
// step, after freed memory went back to the system; the run's own store is given beside them.

#include <performance_tracer/module.h>

#include <malloc.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "resident_memory.h"
#include "value_file_common.h"

using bench::startPeak;
using bench::statusKiB;

namespace {

/// Runs a step and prints its time and peak; the peak and what the step left held, in KiB
/// above what was held before.
template <typename Step>
std::pair<long, long> measure(const char* what, Step step) {
    const long before = startPeak();
    const auto start = std::chrono::steady_clock::now();
    step();
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    const long peak = statusKiB("VmHWM:") - before;
    std::printf("%-6s %7.3f s   peak %7.1f MiB above the %7.1f MiB held before\n", what,
                elapsed.count(), peak / 1024.0, before / 1024.0);
    malloc_trim(0);
    return {peak, statusKiB("VmRSS:") - before};
}

}  // namespace

int main(int argc, char** argv) {
    const std::int64_t points = argc > 1 ? std::atoll(argv[1]) : 1000000;
    HVInitialize_performance_tracer();
    const long empty = startPeak();
    pt::bench::logRun(points);
    std::printf("%lld points, store %.1f MiB\n", static_cast<long long>(points),
                (statusKiB("VmRSS:") - empty) / 1024.0);

    const std::string file = pt::bench::benchFile();
    measure("save", [&] { pt::bench::callWithFile("PerfTools.Tracer.saveToFile", file); });
    const auto bytes = static_cast<double>(std::filesystem::file_size(file));
    std::printf("file   %.1f MB, %.2f bytes per point\n", bytes / 1e6,
                bytes / static_cast<double>(points));
    ptClearRawData();
    const auto [peak, store] =
        measure("load", [&] { pt::bench::callWithFile("PerfTools.Tracer.loadTracerData", file); });
    std::printf("       the store it built %.1f MiB, the peak %.1f MiB above it\n", store / 1024.0,
                (peak - store) / 1024.0);
    std::filesystem::remove(file);
    return 0;
}
