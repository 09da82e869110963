// Writes the runs that the tests of `ptreport check` and of its summary page read: runs with
// known truth, made from a real log (processing/synthetic_runs.h), saved as value files.
//
//     pt_write_check_runs FOLDER
//
// base1.hvf ... base8.hvf   the baseline, 3% noise, and a phase whose name is full of quotes,
//                           angle brackets and ampersands
// same1.hvf ... same8.hvf   the baseline again
// new1.hvf ... new8.hvf     "sort blocks" 50% slower, "outputs" 30% faster, and a new phase,
//                           "check limits", at the end
// broken.hvf                a run whose last phase never ends
// damaged.hvf               a run with a time that is not a number

#include <performance_tracer/tracer.h>

#include <pt_platform/hv.h>
#include <pt_platform/hvf.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <random>
#include <string>

#include "host/persistence.h"
#include "processing/random_log.h"
#include "processing/synthetic_runs.h"

namespace {

using pt::testing::makePoint;

void save(const std::filesystem::path& file, const PTRawDataVector& points) {
    hvFile* out = hvfOpen(file.c_str(), "w");
    const hvUniqueArray systemInfo(performance_tracer::systemInfoToStruct());
    const hvUniqueArray root(hvCreateString("/opt/orvia"));
    if (!out ||
        performance_tracer::putRawDataCells(out, performance_tracer::kRawDataVariable, points) !=
            0 ||
        hvfPutVariable(out, performance_tracer::kSystemInfoVariable, systemInfo.get()) != 0 ||
        hvfPutVariable(out, performance_tracer::kRootVariable, root.get()) != 0 ||
        hvfClose(out) != 0) {
        std::fprintf(stderr, "could not write %s\n", file.c_str());
        std::exit(1);
    }
}

/// Appends a phase of about the given length after the run's last point.
void append(PTRawDataVector& run, const std::string& phase, double seconds) {
    const double wall = run.back()->_wcTime;
    const double cpu = run.back()->_cpuTime;
    run.push_back(makePoint(0, "Session", phase, true, wall + 1e-5, cpu + 1e-5));
    run.push_back(makePoint(0, "Session", phase, false, wall + 1e-5 + seconds, cpu + seconds));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: pt_write_check_runs FOLDER\n");
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    std::filesystem::create_directories(folder);
    const PTRawDataVector log = pt::testing::recordSession();
    std::mt19937 rng(20);
    std::uniform_real_distribution<double> jitter(0.97, 1.03);
    const pt::testing::Synthesis baseline{.noise = 0.03, .change = {}};
    const pt::testing::Synthesis changed{.noise = 0.03,
                                         .change = {{"sort blocks", 1.5}, {"outputs", 0.7}}};
    const std::string hostile = "</script><b>\"quoted\" & 'odd'";
    for (int i = 1; i <= 8; ++i) {
        for (const char* side : {"base", "same", "new"}) {
            const bool isNew = std::string(side) == "new";
            PTRawDataVector run = pt::testing::synthesizeRun(log, isNew ? changed : baseline, rng);
            append(run, hostile, 0.002 * jitter(rng));
            if (isNew) {
                append(run, "check limits", 0.003 * jitter(rng));
            }
            save(folder / (side + std::to_string(i) + ".hvf"), run);
        }
    }
    PTRawDataVector broken = pt::testing::copyLog(log);
    broken.pop_back();
    save(folder / "broken.hvf", broken);
    PTRawDataVector damaged = pt::testing::copyLog(log);
    damaged[3]->_wcTime = std::numeric_limits<double>::quiet_NaN();
    save(folder / "damaged.hvf", damaged);
    return 0;
}
