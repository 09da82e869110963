// Built against an installed tracer with nothing but its own headers: four threads trace their
// work with PT_PHASE, each in a grouping of its own; the run is saved and written as a Detail
// page per grouping and a Difference page of the first worker's grouping against the run
// saved before that worker's second pass.
#include <performance_tracer/performance_tracer.h>

#include <cstdio>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr int kWorkers = 4;

std::string grouping(int worker) { return "Worker " + std::to_string(worker); }

void work(int worker) {
    const pt::GroupingRef id(grouping(worker));
    for (int i = 0; i < 50; ++i) {
        pt::OrviaPhase task(id, "task");
        pt::KestrunePhase check(id, "model", "sim", "install check");
    }
}

}  // namespace

int main() {
    std::vector<std::thread> threads;
    for (int worker = 0; worker < kWorkers; ++worker) {
        ptEnableTracer(grouping(worker), true);
    }
    for (int worker = 0; worker < kWorkers; ++worker) {
        threads.emplace_back(work, worker);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    try {
        pt::saveRun("first.hvf");
        work(0);
        pt::saveRun("second.hvf");
        for (int worker = 0; worker < kWorkers; ++worker) {
            pt::writeDetailReport("worker" + std::to_string(worker) + ".html",
                                  pt::ReportOptions("second.hvf").withGrouping(grouping(worker)));
        }
        // One worker's grouping: the workers' phases overlap in time, and overlapping phases
        // of one data set are broken instrumentation to the matching pass.
        pt::writeDifferenceReport(
            "difference.html",
            pt::DifferenceOptions("first.hvf", "second.hvf").withGrouping(grouping(0)));
    } catch (const pt::Error& error) {
        std::fprintf(stderr, "consumer: %s (%s)\n", error.what(), error.id().c_str());
        return 1;
    }
    const auto points = ptTracer()->snapshotRawData();
    std::printf("consumer: %zu points, phase '%s'\n", points->size(),
                ptGetPhaseStr(points->front()->_phaseID).c_str());
    return 0;
}
