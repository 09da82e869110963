// Logging from many threads at once, each thread in a grouping of its own, as the README tells
// users to trace threads: every point arrives, and each grouping gives a real Detail page.
// The test also runs in a ThreadSanitizer build.

#include <performance_tracer/performance_tracer.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include <unistd.h>

namespace {

constexpr int kThreads = 8;
constexpr int kIterations = 300;

std::string groupingOf(int worker) { return "Worker " + std::to_string(worker); }

/// Nested phases of all three classes, under the worker's own grouping.
void work(int worker) {
    const pt::GroupingRef grouping(groupingOf(worker));  // known already: only looked up
    const std::string model = "model " + std::to_string(worker % 3);
    for (int i = 0; i < kIterations; ++i) {
        pt::OrviaPhase task(grouping, "task");
        {
            pt::KestrunePhase compile(grouping, model, "sim", "compile");
            pt::YlvanePhase chart(grouping, model, "sim", "machine",
                                  "chart " + std::to_string(i % 4), "build chart");
        }
        pt::OrviaPhase write(grouping, "write");
    }
}

std::string slurp(const std::filesystem::path& file) {
    std::ifstream in(file);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

TEST(Threads, EveryPointArrivesAndEachGroupingGivesAPage) {
    for (int worker = 0; worker < kThreads; ++worker) {
        ptEnableTracer(groupingOf(worker), true);
    }
    std::vector<std::thread> threads;
    for (int worker = 0; worker < kThreads; ++worker) {
        threads.emplace_back(work, worker);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }

    const auto points = ptTracer()->snapshotRawData();
    ASSERT_TRUE(points);
    std::map<std::string, int> perGrouping;
    for (const auto& point : *points) {
        ++perGrouping[ptNameStr(PT_TABLE_GROUPING, point->_groupingID)];
    }
    ASSERT_EQ(perGrouping.size(), static_cast<std::size_t>(kThreads));
    for (int worker = 0; worker < kThreads; ++worker) {
        EXPECT_EQ(perGrouping[groupingOf(worker)], kIterations * 8) << groupingOf(worker);
    }

    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("pt_threads_" + std::to_string(::getpid()));
    std::filesystem::create_directories(folder);
    for (int worker = 0; worker < kThreads; ++worker) {
        const std::filesystem::path page = folder / (std::to_string(worker) + ".html");
        pt::writeDetailReport(page.string(), pt::ReportOptions().withGrouping(groupingOf(worker)));
        const std::string text = slurp(page);
        EXPECT_EQ(text.find("diagnosticReport"), std::string::npos) << "error page for " << worker;
        EXPECT_NE(text.find("build chart"), std::string::npos);
    }
    std::filesystem::remove_all(folder);
}

}  // namespace
