// Saves that cannot get their bytes to the disk, and names that are no file to read: a run is
// never lost silently, an earlier file is never damaged, and nothing waits or asks for memory
// out of proportion to the file.

#include <pt_platform/hvf.h>

#include <zlib.h>

#include <csignal>
#include <random>

#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "method_test_support.h"

namespace pt::testing {
namespace {

namespace fs = std::filesystem;

class FileSafety : public FileMethodTest {
protected:
    /// A run of the given number of points, which compress to about 19 bytes each.
    static void logPoints(int count) {
        ptClearRawData();
        ptAddGrouping("Run");
        ptAddGrouping("Kestrune Startup");  // which a startup save would add
        ptEnableGlobalLogging(true);
        for (int i = 0; i < count; ++i) {
            ptLogKestruneData("Run", "model", "target", "phase " + std::to_string(i % 400),
                              i % 2 == 0);
        }
        ptEnableGlobalLogging(false);
    }

    static void save(const std::string& file) {
        call("PerfTools.Tracer.saveToFile", valuesOf(text(file)));
    }
};

TEST_F(FileSafety, ASaveThatCannotWriteItsBytesRaisesAndKeepsTheEarlierFile) {
    const std::string file = path("run.hvf");
    logPoints(3);
    save(file);
    const std::string earlier = bytesOf(file);
    const std::vector<std::string> names = folderNames();
    ASSERT_GT(earlier.size(), 100u);

    // A small run reaches the disk only at the close; a large one while its rows are put.
    for (const int points : {5, 200000}) {
        SCOPED_TRACE(points);
        logPoints(points);
        // A file-size limit, with its signal ignored, fails a write as a full disk does.
        rlimit before{};
        getrlimit(RLIMIT_FSIZE, &before);
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{64, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
        expectRefused("PerfTools.Tracer.saveToFile", valuesOf(text(file)),
                      tracerError("DataWriteFail", {"Raw Data", file}));
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
        EXPECT_TRUE(bytesOf(file) == earlier);
        EXPECT_EQ(folderNames(), names);

        for (const char* method : {"saveToFile", "saveKsStartupData"}) {
            expectRefused(kTracer + std::string(method), valuesOf(text("/dev/full")),
                          tracerError("DataWriteFail", {"Raw Data", "/dev/full"}));
        }
        EXPECT_TRUE(fs::is_character_file("/dev/full"));
    }

    // A save that fails before anything is put leaves the earlier file too.
    answer("orviaroot", [] { return hvCreateDoubleScalar(1); });
    EXPECT_EQ(errorOf("PerfTools.Tracer.saveToFile", valuesOf(text(file))),
              tracerError("UnexpectedValue", {"Orvia Root"}));
    hvxRestoreHostFunctions();
    EXPECT_TRUE(bytesOf(file) == earlier);
    EXPECT_EQ(folderNames(), names);

    // A device takes the bytes in place and stays a device.
    save("/dev/null");
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(FileSafety, ASaveReplacesTheFileALinkNamesAndKeepsItsMode) {
    logPoints(10);
    const std::string target = path("target.hvf");
    save(target);
    const auto mode = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;
    fs::permissions(target, mode);
    fs::create_symlink("target.hvf", path("link.hvf"));

    logPoints(20);
    save(path("link.hvf"));
    EXPECT_TRUE(fs::is_symlink(path("link.hvf")));
    EXPECT_EQ(fs::status(target).permissions(), mode);
    call("PerfTools.Tracer.loadTracerData", valuesOf(text(target)));
    EXPECT_EQ(ptTracer()->_rawData->size(), 20u);
    EXPECT_EQ(folderNames(), (std::vector<std::string>{"link.hvf", "target.hvf"}));

    // A link to a file that has no name is written where it is, and no longer than the run.
    const int memory = memfd_create("pt_save", 0);
    ASSERT_GE(memory, 0);
    ASSERT_EQ(write(memory, std::string(100000, 'x').data(), 100000), 100000);
    fs::create_symlink("/proc/self/fd/" + std::to_string(memory), path("memory.hvf"));
    save(path("memory.hvf"));
    ptClearRawData();
    call("PerfTools.Tracer.loadTracerData", valuesOf(text(path("memory.hvf"))));
    EXPECT_EQ(ptTracer()->_rawData->size(), 20u);
    EXPECT_TRUE(fs::is_symlink(path("memory.hvf")));
    fs::remove(path("memory.hvf"));
    close(memory);

    // Where no file can be made: a missing folder, a folder that is a file, a folder itself.
    for (const std::string& nowhere :
         {path("missing/run.hvf"), path("target.hvf/run.hvf"), _folder.string()}) {
        expectRefused("PerfTools.Tracer.saveToFile", valuesOf(text(nowhere)),
                      tracerError("OpenFileFailed", {nowhere}));
    }
}

TEST_F(FileSafety, WhatIsNoFileToReadIsRefusedAtOnce) {
    logPoints(10);
    save(path("run.hvf"));
    fs::create_directory(path("folder.hvf"));
    ASSERT_EQ(mkfifo(path("fifo.hvf").c_str(), 0600), 0);
    const std::string withNul = path("run.hvf") + std::string(1, '\0') + "tail";

    // No writer ever opens the pipe: a read that waited for one would never end.
    for (const std::string& name : {path("folder.hvf"), path("fifo.hvf"), withNul}) {
        for (const auto& [method, key] : {std::pair{"loadTracerData", ""},
                                          {"generateHTMLReport", "hvffile"},
                                          {"generateDifferenceReport", "lhsfile"}}) {
            Values inputs = valuesOf(text("htmlfile"), text(path("r.html")), text(key), text(name));
            inputs.erase(inputs.begin(), inputs.begin() + (*key ? 0 : 3));
            expectRefused(kTracer + std::string(method), inputs,
                          tracerError("OpenFileFailed", {name}));
        }
    }
    // A NUL cut no other name out of the one given.
    const std::string html = path("r.html") + std::string(1, '\0') + ".x";
    expectRefused("PerfTools.Tracer.saveToFile", valuesOf(text(withNul)),
                  tracerError("OpenFileFailed", {withNul}));
    expectRefused("PerfTools.Tracer.generateHTMLReport", valuesOf(text("htmlfile"), text(html)),
                  tracerError("WriteFileFailed", {html}));
    expectRefused("PerfTools.Tracer.diagnosticReport", valuesOf(text("htmlfile"), text(html)),
                  tracerError("WriteFileFailed", {html}));
    EXPECT_EQ(folderNames(), (std::vector<std::string>{"fifo.hvf", "folder.hvf", "run.hvf"}));
}

TEST_F(FileSafety, AFileThatClaimsMoreThanItHoldsIsRefusedWithoutTheMemory) {
    // 4 MB of stream that inflates to 4 MB, under a header that claims 4 GB.
    std::mt19937 rng(3);
    std::vector<unsigned char> content(4 << 20);
    for (auto& byte : content) {
        byte = static_cast<unsigned char>(rng());
    }
    uLongf size = compressBound(content.size());
    std::vector<unsigned char> stream(size);
    ASSERT_EQ(compress(stream.data(), &size, content.data(), content.size()), Z_OK);
    std::vector<unsigned char> file = {0x89, 'H', 'V', 'F', '\r', '\n', 0x1A, '\n', 1, 0, 0, 0};
    const auto put = [&file](std::uint64_t value, int bytes) {
        for (int i = 0; i < bytes; ++i) {
            file.push_back(static_cast<unsigned char>(value >> (8 * i)));
        }
    };
    put(4'000'000'000, 8);
    put(size, 8);
    file.insert(file.end(), stream.begin(), stream.begin() + static_cast<long>(size));
    put(crc32(0, content.data(), static_cast<uInt>(content.size())), 4);
    const std::string claims = path("claims.hvf");
    std::ofstream(claims, std::ios::binary)
        .write(reinterpret_cast<const char*>(file.data()), static_cast<long>(file.size()));
    content = {};

    // The resident memory's high-water mark, in KiB, since the reset.
    const auto peakKiB = [] {
        std::ifstream status("/proc/self/status");
        std::string line;
        while (std::getline(status, line) && !line.starts_with("VmHWM:")) {
        }
        return std::stol(line.substr(6));
    };
    std::ofstream("/proc/self/clear_refs") << "5";
    const long before = peakKiB();
    expectRefused("PerfTools.Tracer.loadTracerData", valuesOf(text(claims)),
                  tracerError("OpenFileFailed", {claims}));
    EXPECT_EQ(hvfOpen(claims.c_str(), "r"), nullptr);
    EXPECT_LT(peakKiB() - before, 64 * 1024);
}

}  // namespace
}  // namespace pt::testing
