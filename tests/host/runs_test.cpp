// Runs from C++: a save and a load give back the run, and a refused call reaches the caller as
// pt::Error with the method's error id and text.

#include <performance_tracer/performance_tracer.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <unistd.h>

namespace {

namespace fs = std::filesystem;

class Runs : public ::testing::Test {
protected:
    void SetUp() override {
        _folder = fs::temp_directory_path() / ("pt_runs_" + std::to_string(::getpid()));
        fs::create_directories(_folder);
        ptClearRawData();
    }
    void TearDown() override { fs::remove_all(_folder); }
    std::string path(const std::string& name) const { return (_folder / name).string(); }

    fs::path _folder;
};

/// The id of the error a call raises, or "none".
template <typename Call>
std::string errorOf(Call call) {
    try {
        call();
    } catch (const pt::Error& error) {
        EXPECT_NE(std::string(error.what()), "") << error.id();
        return error.id();
    }
    return "none";
}

TEST_F(Runs, SaveLoadAndReportWithoutTheHost) {
    ptEnableTracer("Build", true);
    {
        PT_PHASE("Build", "compile");
        PT_PHASE("Build", "parse");
    }
    pt::saveRun(path("run.hvf"));
    ptClearRawData();
    pt::loadRun(path("run.hvf"));
    const auto points = ptTracer()->snapshotRawData();
    ASSERT_EQ(points->size(), 4u);
    EXPECT_EQ(ptGetPhaseStr((*points)[1]->_phaseID), "parse");

    pt::writeDetailReport(path("detail.html"), {path("run.hvf")});
    pt::writeDifferenceReport(path("diff.html"), {path("run.hvf"), ""});  // against memory
    pt::writeDiagnosticReport(path("diag.html"));
    for (const char* page : {"detail.html", "diff.html", "diag.html"}) {
        EXPECT_GT(fs::file_size(path(page)), 1000u) << page;
    }
}

TEST_F(Runs, RefusedCallsRaiseTheMethodsErrors) {
    const std::string group = "performance_tracer:PerformanceTracer:";
    EXPECT_EQ(errorOf([&] { pt::loadRun(path("missing.hvf")); }), group + "OpenFileFailed");
    EXPECT_EQ(errorOf([&] { pt::saveRun(path("no folder/run.hvf")); }), group + "OpenFileFailed");
    EXPECT_EQ(errorOf([&] { pt::writeDetailReport(""); }), group + "ExpectedNames");
    EXPECT_EQ(errorOf([&] { pt::writeDetailReport(path("empty.html")); }),
              group + "NoRawTracerData");
    EXPECT_EQ(errorOf([&] { pt::writeDifferenceReport(path("d.html"), {}); }),
              group + "ExpectedNames");
    EXPECT_EQ(errorOf([&] {
                  pt::writeDetailReport(path("m.html"), pt::ReportOptions().withMetric("speed"));
              }),
              group + "InvalidMetric");
}

}  // namespace
