// Writes the value files that the report tests read, as a platform that measures memory would
// write them: every point carries basic and detailed memory figures. On Linux the tracer
// samples none, so live data cannot show the memory pages.
//
//     pt_write_report_runs FOLDER
//     pt_write_report_runs --scale PARENTS FOLDER
//
// The second form writes only scale_base.hvf and scale_new.hvf, two runs of the shape of
// large.hvf with PARENTS parents of nine children each (ten rows and twenty points a parent),
// which differ in their times and memory, for the page benchmark.
//
// memory_base.hvf, memory_new.hvf   two runs of one workload that differ in times, in memory
//                                   and in one phase each has that the other lacks
// large.hvf                         50,000 phases, for the windowed tables
// hostile.hvf                       names and system information full of quotes, angle
//                                   brackets, ampersands and backslashes
// memory_wide.hvf                   a 64-bit address space and a very long phase name
// call_tree.hvf                     a tree with a loop of equal calls, equal siblings that
//                                   differ below, a gap, a phase deep down, _self and _post
// memory_outer.hvf                  memory_base.hvf inside an outer phase: compared with it,
//                                   the first row is a parent that only the right side has
// non_finite.hvf                    memory_base.hvf with figures that are not numbers or are
//                                   infinite, as a damaged or foreign file may hold them
// line_breaks.hvf                   names and system information with a carriage return,
//                                   U+2028 and U+2029
// patterns.hvf                      names that are patterns: one that backtracks for ever
//                                   beside a long run of 'a', and one of a megabyte
// deep_chain.hvf                    phases nested 2,000 deep, deeper than a statement of the
//                                   page's call tree holds
// deep_tree.js                      the call tree text of a chain of 100,000 levels, as a
//                                   Detail page writes it, over the rows of deep_chain.hvf

#include <performance_tracer/groupings.h>
#include <performance_tracer/logging.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/tracer.h>

#include <pt_platform/hv.h>
#include <pt_platform/hvf.h>

#include <boost/make_shared.hpp>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <string>

#include "host/persistence.h"
#include "report/call_tree.h"

namespace {

constexpr double kMiB = 1048576.0;

/// Starts and ends a phase of each class; the grouping is "Run".
struct Log {
    static void orvia(const std::string& phase, bool start) { ptLogOrviaData("Run", phase, start); }
    static void kestrune(const std::string& model, const std::string& phase, bool start) {
        ptLogKestruneData("Run", model, "rtw", phase, start);
    }
    static void ylvane(const std::string& model, const std::string& chart, const std::string& phase,
                       bool start) {
        ptLogYlvaneData("Run", model, "rtw", "sfun machine", chart, phase, start);
    }
};

/// Wall clock, CPU time and memory as the run goes on: the points get them in order, so that
/// the figures grow through the run and differ between the two variants.
void stampPoints(double scale) {
    double clock = 1000.0;
    double usage = 200 * kMiB;
    int index = 0;
    for (const auto& point : *ptTracer()->_rawData) {
        clock += 0.01 * scale * (1 + index % 7);
        usage += (index % 3 == 0 ? 3.0 : -1.0) * kMiB * scale;
        point->_wcTime = clock;
        point->_cpuTime = 0.8 * clock;
        point->_basicMem =
            boost::make_shared<pt::BasicMemStats>(usage, usage + 50 * kMiB * scale, 2 * usage);
        point->_detailedMem = boost::make_shared<pt::DetailedMemStats>(
            4096 * kMiB - usage, 64 * kMiB * scale, usage, 40 * kMiB, 300 * kMiB + index * kMiB);
        ++index;
    }
}

/// The store as a saved run, with this machine's system information or the one given.
void save(const std::filesystem::path& file, const hvArray* systemInfo = nullptr) {
    hvFile* out = hvfOpen(file.c_str(), "w");
    const hvUniqueArray ownInfo(systemInfo ? nullptr : performance_tracer::systemInfoToStruct());
    const hvUniqueArray root(hvCreateString("/opt/orvia"));
    if (!out ||
        performance_tracer::putRawDataCells(out, performance_tracer::kRawDataVariable,
                                            *ptTracer()->_rawData) != 0 ||
        hvfPutVariable(out, performance_tracer::kSystemInfoVariable,
                       systemInfo ? systemInfo : ownInfo.get()) != 0 ||
        hvfPutVariable(out, performance_tracer::kRootVariable, root.get()) != 0 ||
        hvfClose(out) != 0) {
        std::fprintf(stderr, "could not write %s\n", file.c_str());
        std::exit(1);
    }
}

/// A system-information struct whose every field holds the text made from its name.
hvUniqueArray systemInfoOf(const std::function<std::string(const std::string&)>& text) {
    const char* fields[] = {"processorStr",     "cpuSpeedStr",         "numCoresStr",
                            "totalPhysMemStr",  "operatingSystemStr",  "OrviaVersionStr",
                            "javaVMVersionStr", "installedProductsStr"};
    hvUniqueArray info(hvCreateStructMatrix(1, 1, 8, fields));
    for (int f = 0; f < 8; ++f) {
        hvSetFieldByNumber(info.get(), 0, f, hvCreateString(text(fields[f])));
    }
    return info;
}

/// A session of the three tools; the second variant runs longer, uses more memory, and has
/// "link model" where the first has "load model".
void logMemorySession(int variant) {
    Log::orvia("scripts/setup_plant.m", true);
    Log::orvia("evaluate parameters", true);
    Log::orvia("evaluate parameters", false);
    Log::orvia(variant == 0 ? "load model" : "link model", true);
    Log::orvia(variant == 0 ? "load model" : "link model", false);
    Log::orvia("scripts/setup_plant.m", false);
    Log::kestrune("transmission", "compile model", true);
    Log::kestrune("transmission", "sort blocks", true);
    Log::kestrune("transmission", "sort blocks", false);
    for (const char* chart : {"Gear Logic", "Shift Schedule", "Clutch"}) {
        Log::ylvane("transmission", chart, "build chart", true);
        Log::ylvane("transmission", chart, "build chart", false);
    }
    Log::kestrune("transmission", "compile model", false);
    Log::kestrune("transmission", "simulate", true);
    for (int step = 0; step < 4 + variant; ++step) {
        Log::kestrune("transmission", "outputs", true);
        Log::kestrune("transmission", "outputs", false);
    }
    Log::kestrune("transmission", "simulate", false);
}

void writeMemoryRun(const std::filesystem::path& file, int variant) {
    ptClearRawData();
    ptEnableGlobalLogging(true);
    logMemorySession(variant);
    ptEnableGlobalLogging(false);
    stampPoints(variant == 0 ? 1.0 : 1.5);
    save(file);
}

/// The first session inside an outer phase, as a new version that wraps the work in one.
void writeOuterRun(const std::filesystem::path& file) {
    ptClearRawData();
    ptEnableGlobalLogging(true);
    Log::orvia("session", true);
    logMemorySession(0);
    Log::orvia("session", false);
    ptEnableGlobalLogging(false);
    stampPoints(1.0);
    save(file);
}

/// The first session with a time that is not a number, an infinite one, and memory figures
/// that are not finite.
void writeNonFiniteRun(const std::filesystem::path& file) {
    ptClearRawData();
    ptEnableGlobalLogging(true);
    logMemorySession(0);
    ptEnableGlobalLogging(false);
    stampPoints(1.0);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    const PTRawDataVector& points = *ptTracer()->_rawData;
    points[2]->_wcTime = nan;  // the end of "evaluate parameters"
    points[4]->_cpuTime = inf;
    points[6]->_basicMem = boost::make_shared<pt::BasicMemStats>(nan, inf, -inf);
    // A row keeps a detailed record only where its figures add up to more than 0.
    points[8]->_detailedMem =
        boost::make_shared<pt::DetailedMemStats>(inf, 64 * kMiB, 200 * kMiB, 40 * kMiB, 300 * kMiB);
    save(file);
}

/// A 64-bit address space: free and non-process figures in the millions of MiB that hardly
/// move, under a phase whose name is too long for the chart's labels.
void writeWideMemoryRun(const std::filesystem::path& file) {
    ptClearRawData();
    ptEnableGlobalLogging(true);
    Log::orvia("load data", true);
    Log::orvia(std::string("a phase whose name goes on ") + std::string(300, 'x') + " to the end",
               true);
    Log::orvia(std::string("a phase whose name goes on ") + std::string(300, 'x') + " to the end",
               false);
    for (int step = 0; step < 6; ++step) {
        Log::kestrune("plant", "step", true);
        Log::kestrune("plant", "step", false);
    }
    Log::orvia("load data", false);
    ptEnableGlobalLogging(false);
    stampPoints(1.0);
    int index = 0;
    for (const auto& point : *ptTracer()->_rawData) {
        const double usage = (200.0 + 10 * index) * kMiB;
        point->_detailedMem = boost::make_shared<pt::DetailedMemStats>(
            128e6 * kMiB - usage, 64 * kMiB, usage, 40 * kMiB, 2e6 * kMiB + index * kMiB);
        ++index;
    }
    save(file);
}

/// Ten phases a parent: parents of nine children each, under a few hundred names.
void writeLargeRun(const std::filesystem::path& file, int parents = 5000, double scale = 1.0) {
    ptClearRawData();
    ptEnableGlobalLogging(true);
    for (int parent = 0; parent < parents; ++parent) {
        const std::string name = "step " + std::to_string(parent % 200);
        Log::orvia(name, true);
        for (int child = 0; child < 9; ++child) {
            const std::string phase = "task " + std::to_string((parent + child) % 300);
            if (child % 3 == 0) {
                Log::kestrune("model " + std::to_string(child), phase, true);
                Log::kestrune("model " + std::to_string(child), phase, false);
            } else {
                Log::orvia(phase, true);
                Log::orvia(phase, false);
            }
        }
        Log::orvia(name, false);
    }
    ptEnableGlobalLogging(false);
    stampPoints(scale);
    save(file);
}

/// Names that break a page that does not escape them, and system information like them.
void writeHostileRun(const std::filesystem::path& file) {
    ptClearRawData();
    ptEnableGlobalLogging(true);
    const std::string names[] = {
        "say \"hi\"",
        "it's",
        "<b>bold</b>",
        "back\\slash",
        "</script><script>window.pwned=1</script>",
        "a & b",
        "x' onmouseover='window.pwned=2",
        "100% done",
    };
    ptLogOrviaData("Run \"quoted\" <group>", "outer", true);
    for (const std::string& name : names) {
        ptLogOrviaData("Run \"quoted\" <group>", name, true);
        ptLogKestruneData("Run \"quoted\" <group>", "model's <x>", "t\"t", name + " inner", true);
        ptLogKestruneData("Run \"quoted\" <group>", "model's <x>", "t\"t", name + " inner", false);
        ptLogOrviaData("Run \"quoted\" <group>", name, false);
    }
    ptLogOrviaData("Run \"quoted\" <group>", "outer", false);
    ptEnableGlobalLogging(false);
    stampPoints(1.0);

    const hvUniqueArray info =
        systemInfoOf([](const std::string& field) { return "<i>" + field + "</i> & \"more\""; });
    save(file, info.get());
}

/// Line breaks other than the line feed in every kind of name and in the system information.
void writeLineBreakRun(const std::filesystem::path& file) {
    ptClearRawData();
    ptEnableGlobalLogging(true);
    Log::orvia("first\rline", true);
    Log::kestrune("model\r2", "para\u2029graph", true);
    Log::kestrune("model\r2", "para\u2029graph", false);
    Log::ylvane("chart\u2028model", "chart\rone", "line\u2028separator", true);
    Log::ylvane("chart\u2028model", "chart\rone", "line\u2028separator", false);
    Log::orvia("first\rline", false);
    ptEnableGlobalLogging(false);
    stampPoints(1.0);
    const hvUniqueArray info =
        systemInfoOf([](const std::string& field) { return field + "\r\u2028\u2029end"; });
    save(file, info.get());
}

/// Phase names that are patterns: "(a+)+b" takes for ever to fail on the long run of 'a' that
/// stands beside it, and a name of a megabyte is too large a pattern to run.
void writePatternRun(const std::filesystem::path& file) {
    ptClearRawData();
    ptEnableGlobalLogging(true);
    Log::orvia("patterns", true);
    for (const std::string& name : {std::string("(a+)+b"), std::string(40, 'a') + "c",
                                    std::string(1 << 20, 'a'), std::string("[unclosed")}) {
        Log::orvia(name, true);
        Log::orvia(name, false);
    }
    Log::orvia("patterns", false);
    ptEnableGlobalLogging(false);
    stampPoints(1.0);
    save(file);
}

constexpr int kDeepChainLevels = 2000;

/// Phases nested kDeepChainLevels deep, "even" and "odd" in turn, under one root.
void writeDeepChainRun(const std::filesystem::path& file) {
    ptClearRawData();
    ptEnableGlobalLogging(true);
    for (int level = 0; level < kDeepChainLevels; ++level) {
        Log::orvia(level % 2 == 0 ? "even" : "odd", true);
    }
    for (int level = kDeepChainLevels - 1; level >= 0; --level) {
        Log::orvia(level % 2 == 0 ? "even" : "odd", false);
    }
    ptEnableGlobalLogging(false);
    stampPoints(1.0);
    save(file);
}

/// The call tree text of a chain of 100,000 levels whose nodes stand for the rows of the deep
/// chain's page in turn, keyed, folded with a copy of itself and written as a Detail page
/// writes its tree: the page's scripts can take it in place of their own.
void writeDeepTree(const std::filesystem::path& file) {
    constexpr int kLevels = 100000;
    const auto chain = [] {
        auto root = std::make_shared<PTCallTreeNode>();
        root->IDs = {0};
        root->key = 1;
        PTCallTreeNode* at = root.get();
        for (int level = 1; level < kLevels; ++level) {
            auto child = std::make_shared<PTCallTreeNode>();
            child->IDs = {level % kDeepChainLevels};
            child->key = 1 + static_cast<std::uint32_t>(level % 2);
            at->children.push_back(child);
            at = child.get();
        }
        return root;
    };
    PTCallTreeList roots = {chain(), chain()};
    for (const auto& root : roots) {
        ptCallTreeKey(*root);
    }
    ptMergeCallTreeSiblings(roots);
    std::ofstream(file) << pt::report::ptHtmlCallTreeRoots(roots);
}

/// Folding and filtering material for the call tree: "step" (with "solve" inside) ten times in
/// a row, two "worker" calls whose children differ, a wait of a second before "deep1", which
/// holds "needle" three levels down, and a second root with a shorter loop and a "needle".
void writeCallTreeRun(const std::filesystem::path& file) {
    ptClearRawData();
    ptEnableGlobalLogging(true);
    const auto call = [](const std::string& phase, const std::function<void()>& body) {
        Log::orvia(phase, true);
        body();
        Log::orvia(phase, false);
    };
    const auto leaf = [&](const std::string& phase) { call(phase, [] {}); };
    const auto loop = [&](int times) {
        for (int i = 0; i < times; ++i) {
            call("step", [&] { leaf("solve"); });
        }
    };
    std::size_t waitBefore = 0;
    call("main", [&] {
        leaf("init_self");
        leaf("init_post");
        loop(10);
        call("worker", [&] { leaf("a"); });
        call("worker", [&] { leaf("b"); });
        waitBefore = ptTracer()->_rawData->size();
        call("deep1", [&] { call("deep2", [&] { call("deep3", [&] { leaf("needle"); }); }); });
    });
    call("main2", [&] {
        loop(3);
        leaf("needle");
    });
    ptEnableGlobalLogging(false);
    stampPoints(1.0);
    const PTRawDataVector& points = *ptTracer()->_rawData;
    for (std::size_t i = waitBefore; i < points.size(); ++i) {
        points[i]->_wcTime += 1.0;
        points[i]->_cpuTime += 1.0;
    }
    save(file);
}

}  // namespace

int main(int argc, char** argv) {
    const bool scaleRuns = argc == 4 && std::string(argv[1]) == "--scale";
    if (argc != 2 && !scaleRuns) {
        std::fprintf(stderr, "usage: pt_write_report_runs [--scale PARENTS] FOLDER\n");
        return 2;
    }
    const std::filesystem::path folder = argv[argc - 1];
    std::filesystem::create_directories(folder);
    // Groupings that were never added log their points with no grouping at all.
    ptAddGrouping("Run");
    if (scaleRuns) {
        const int parents = std::atoi(argv[2]);
        writeLargeRun(folder / "scale_base.hvf", parents, 1.0);
        // Below 1.4 no step of the clock passes the gap threshold, so both runs have the same rows
        // and align without a table.
        writeLargeRun(folder / "scale_new.hvf", parents, 1.25);
        ptClearRawData();
        return 0;
    }
    ptAddGrouping("Run \"quoted\" <group>");
    writeMemoryRun(folder / "memory_base.hvf", 0);
    writeMemoryRun(folder / "memory_new.hvf", 1);
    writeLargeRun(folder / "large.hvf");
    writeHostileRun(folder / "hostile.hvf");
    writeCallTreeRun(folder / "call_tree.hvf");
    writeWideMemoryRun(folder / "memory_wide.hvf");
    writeOuterRun(folder / "memory_outer.hvf");
    writeNonFiniteRun(folder / "non_finite.hvf");
    writeLineBreakRun(folder / "line_breaks.hvf");
    writePatternRun(folder / "patterns.hvf");
    writeDeepChainRun(folder / "deep_chain.hvf");
    writeDeepTree(folder / "deep_tree.js");
    ptClearRawData();
    return 0;
}
