// Saving and loading a run of 10^6 raw points through PerfTools.Tracer, as a script does, the
// size of the file per point, and the floor under both: deflating and inflating the file's
// content alone, with the compression level the library uses. pt_value_file_footprint gives the
// peak memory.

#include <performance_tracer/module.h>

#include <benchmark/benchmark.h>

#include <zlib.h>

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <vector>

#include "value_file_common.h"

namespace {

void BM_SaveToFile(benchmark::State& state) {
    HVInitialize_performance_tracer();
    pt::bench::logRun(state.range(0));
    const std::string file = pt::bench::benchFile();
    for (auto _ : state) {
        pt::bench::callWithFile("PerfTools.Tracer.saveToFile", file);
    }
    state.counters["bytes/point"] =
        static_cast<double>(std::filesystem::file_size(file)) / static_cast<double>(state.range(0));
    state.SetItemsProcessed(state.iterations() * state.range(0));
    std::filesystem::remove(file);
    ptClearRawData();
}
// Both sides work on two threads, so the CPU time is that of the whole process.
BENCHMARK(BM_SaveToFile)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->MeasureProcessCPUTime();

void BM_LoadTracerData(benchmark::State& state) {
    HVInitialize_performance_tracer();
    pt::bench::logRun(state.range(0));
    const std::string file = pt::bench::benchFile();
    pt::bench::callWithFile("PerfTools.Tracer.saveToFile", file);
    for (auto _ : state) {
        state.PauseTiming();
        ptClearRawData();
        state.ResumeTiming();
        pt::bench::callWithFile("PerfTools.Tracer.loadTracerData", file);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    std::filesystem::remove(file);
    ptClearRawData();
}
BENCHMARK(BM_LoadTracerData)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->MeasureProcessCPUTime();

/// The uncompressed content of a saved run: the zlib stream between the 28-byte header and the
/// 4-byte checksum, inflated.
std::vector<unsigned char> contentOfSavedRun(std::int64_t points) {
    pt::bench::logRun(points);
    const std::string file = pt::bench::benchFile();
    pt::bench::callWithFile("PerfTools.Tracer.saveToFile", file);
    ptClearRawData();
    std::ifstream in(file, std::ios::binary);
    const std::vector<unsigned char> bytes{std::istreambuf_iterator<char>(in), {}};
    std::filesystem::remove(file);
    std::uint64_t size = 0;
    for (int i = 0; i < 8; ++i) {
        size |= std::uint64_t{bytes.at(12 + i)} << (8 * i);
    }
    std::vector<unsigned char> content(size);
    uLongf inflated = content.size();
    if (uncompress(content.data(), &inflated, &bytes[28], bytes.size() - 32) != Z_OK ||
        inflated != content.size()) {
        throw std::runtime_error("contentOfSavedRun: not a value file");
    }
    return content;
}

void BM_DeflateInflateContent(benchmark::State& state) {
    HVInitialize_performance_tracer();
    const std::vector<unsigned char> content = contentOfSavedRun(state.range(0));
    std::vector<unsigned char> compressed(compressBound(content.size()));
    std::vector<unsigned char> back(content.size());
    for (auto _ : state) {
        uLongf size = compressed.size();
        compress2(compressed.data(), &size, content.data(), content.size(), Z_BEST_SPEED);
        uLongf inflated = back.size();
        uncompress(back.data(), &inflated, compressed.data(), size);
        benchmark::DoNotOptimize(back.data());
    }
    state.counters["content bytes/point"] =
        static_cast<double>(content.size()) / static_cast<double>(state.range(0));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_DeflateInflateContent)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->MeasureProcessCPUTime();

}  // namespace

BENCHMARK_MAIN();
