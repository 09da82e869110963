// Time and peak memory of one alignment of two data sets of about 10^4 rows, by the library
// or by the direct form (a full table of 64-bit counters, keys made in every cell, a
// recursive walk). Run each form in a process of its own:
//     pt_alignment_footprint library|direct [rows]

#include <performance_tracer/comparison.h>
#include <performance_tracer/tracer.h>

#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "comparison_data.h"
#include "processing/direct_alignment.h"

namespace {

long peakKiB() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string form = argc > 1 ? argv[1] : "library";
    const int rows = argc > 2 ? std::atoi(argv[2]) : 10000;
    const auto& sets = pt::bench::comparisonSets(rows);
    const long before = peakKiB();
    const auto start = std::chrono::steady_clock::now();
    const auto pairs = form == "direct"
                           ? pt::testing::directAlignRows(sets.left._rows, sets.right._rows)
                           : ptAlignRows(*ptTracer(), sets.left._rows, sets.right._rows);
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    std::printf("%s: %zu x %zu rows, %zu pairs, %.3f s, peak %.1f MiB (%.1f MiB above the data)\n",
                form.c_str(), sets.left._rows.size(), sets.right._rows.size(), pairs.size(),
                elapsed.count(), peakKiB() / 1024.0, (peakKiB() - before) / 1024.0);
    return 0;
}
