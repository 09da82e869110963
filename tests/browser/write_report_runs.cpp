// pt_write_report_runs [--scale PARENTS] FOLDER: the value files of the browser tests, with memory
// figures in every point (on Linux the tracer samples none). With --scale, only the page
// benchmark's scale_base.hvf and scale_new.hvf: large.hvf's shape with PARENTS parents.

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

using Body = std::function<void()>;
using Edit = std::function<void(const PTRawDataVector&)>;
constexpr double kMiB = 1048576.0;
constexpr int kDeepChainLevels = 2000;

void nothing() {}

/// A phase of each class around what body logs; the grouping is "Run".
void orvia(const std::string& phase, const Body& body = nothing) {
    ptLogOrviaData("Run", phase, true);
    body();
    ptLogOrviaData("Run", phase, false);
}
void kestrune(const std::string& model, const std::string& phase, const Body& body = nothing) {
    ptLogKestruneData("Run", model, "rtw", phase, true);
    body();
    ptLogKestruneData("Run", model, "rtw", phase, false);
}
void ylvane(const std::string& model, const std::string& chart, const std::string& phase) {
    ptLogYlvaneData("Run", model, "rtw", "sfun machine", chart, phase, true);
    ptLogYlvaneData("Run", model, "rtw", "sfun machine", chart, phase, false);
}

/// Saves a run of what log logs, its figures growing through the run and differing between
/// scales, then changed by edit; with the system information given or this machine's.
void write(const std::filesystem::path& file, const Body& log, double scale = 1.0,
           const Edit& edit = {}, const hvArray* systemInfo = nullptr) {
    ptClearRawData();
    ptEnableGlobalLogging(true);
    log();
    ptEnableGlobalLogging(false);
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
    if (edit) {
        edit(*ptTracer()->_rawData);
    }
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

/// A system-information struct whose every field holds its name between before and after.
hvUniqueArray systemInfoOf(const std::string& before, const std::string& after) {
    const char* fields[] = {"processorStr",     "cpuSpeedStr",         "numCoresStr",
                            "totalPhysMemStr",  "operatingSystemStr",  "OrviaVersionStr",
                            "javaVMVersionStr", "installedProductsStr"};
    hvUniqueArray info(hvCreateStructMatrix(1, 1, 8, fields));
    for (int f = 0; f < 8; ++f) {
        hvSetFieldByNumber(info.get(), 0, f, hvCreateString(before + fields[f] + after));
    }
    return info;
}

/// A session of the three tools; variant 1 has "link model" for "load model", and one more step.
Body memorySession(int variant) {
    return [variant] {
        orvia("scripts/setup_plant.m", [&] {
            orvia("evaluate parameters");
            orvia(variant == 0 ? "load model" : "link model");
        });
        kestrune("transmission", "compile model", [] {
            kestrune("transmission", "sort blocks");
            for (const char* chart : {"Gear Logic", "Shift Schedule", "Clutch"}) {
                ylvane("transmission", chart, "build chart");
            }
        });
        kestrune("transmission", "simulate", [&] {
            for (int step = 0; step < 4 + variant; ++step) {
                kestrune("transmission", "outputs");
            }
        });
    };
}

/// Parents of nine children each, under a few hundred names.
Body largeRun(int parents) {
    return [parents] {
        for (int parent = 0; parent < parents; ++parent) {
            orvia("step " + std::to_string(parent % 200), [parent] {
                for (int child = 0; child < 9; ++child) {
                    const std::string phase = "task " + std::to_string((parent + child) % 300);
                    if (child % 3 == 0) {
                        kestrune("model " + std::to_string(child), phase);
                    } else {
                        orvia(phase);
                    }
                }
            });
        }
    };
}

/// Phases nested from level to 2,000 deep, "even" and "odd" in turn.
void nest(int level) {
    if (level < kDeepChainLevels) {
        orvia(level % 2 == 0 ? "even" : "odd", [level] { nest(level + 1); });
    }
}

/// The call tree text of two chains of 100,000 levels over the deep chain's rows, folded into
/// one as a Detail page writes its tree: the page's scripts can take it in place of their own.
void writeDeepTree(const std::filesystem::path& file) {
    PTCallTreeList roots;
    for (int copy = 0; copy < 2; ++copy) {
        PTCallTreeList* children = &roots;
        for (int level = 0; level < 100000; ++level) {
            auto node = std::make_shared<PTCallTreeNode>();
            node->IDs = {level % kDeepChainLevels};
            node->key = 1 + static_cast<std::uint32_t>(level % 2);
            children->push_back(node);
            children = &node->children;
        }
        ptCallTreeKey(*roots.back());
    }
    ptMergeCallTreeSiblings(roots);
    std::ofstream(file) << pt::report::ptHtmlCallTreeRoots(roots);
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
        write(folder / "scale_base.hvf", largeRun(parents));
        // Below 1.4 no step passes the gap threshold: both runs have the same rows.
        write(folder / "scale_new.hvf", largeRun(parents), 1.25);
        ptClearRawData();
        return 0;
    }
    const std::string group = "Run \"quoted\" <group>";
    ptAddGrouping(group);
    // Two runs that differ in figures and in one phase each; the first inside an outer phase (a
    // first row only the right side has), and with figures that are not finite.
    write(folder / "memory_base.hvf", memorySession(0));
    write(folder / "memory_new.hvf", memorySession(1), 1.5);
    write(folder / "memory_outer.hvf", [] { orvia("session", memorySession(0)); });
    write(folder / "non_finite.hvf", memorySession(0), 1.0, [](const PTRawDataVector& points) {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        const double inf = std::numeric_limits<double>::infinity();
        points[2]->_wcTime = nan;  // the end of "evaluate parameters"
        points[4]->_cpuTime = inf;
        points[6]->_basicMem = boost::make_shared<pt::BasicMemStats>(nan, inf, -inf);
        // A row keeps a detailed record only where its figures add up to more than 0.
        points[8]->_detailedMem = boost::make_shared<pt::DetailedMemStats>(
            inf, 64 * kMiB, 200 * kMiB, 40 * kMiB, 300 * kMiB);
    });
    // 50,000 phases, for the windowed tables.
    write(folder / "large.hvf", largeRun(5000));

    // Names that break a page that does not escape them, and system information like them.
    const auto hostile = [&] {
        ptLogOrviaData(group, "outer", true);
        for (const std::string name : {"say \"hi\"", "it's", "<b>bold</b>", "back\\slash",
                                       "</script><script>window.pwned=1</script>", "a & b",
                                       "x' onmouseover='window.pwned=2", "100% done"}) {
            ptLogOrviaData(group, name, true);
            ptLogKestruneData(group, "model's <x>", "t\"t", name + " inner", true);
            ptLogKestruneData(group, "model's <x>", "t\"t", name + " inner", false);
            ptLogOrviaData(group, name, false);
        }
        ptLogOrviaData(group, "outer", false);
    };
    write(folder / "hostile.hvf", hostile, 1.0, {}, systemInfoOf("<i>", "</i> & \"more\"").get());

    // For the call tree: a loop of ten "step", two "worker" calls whose children differ, a wait
    // of a second before "deep1" ("needle" three levels down), and a second root.
    std::size_t waitBefore = 0;
    const auto loop = [](int times) {
        for (int i = 0; i < times; ++i) {
            orvia("step", [] { orvia("solve"); });
        }
    };
    const auto tree = [&] {
        orvia("main", [&] {
            orvia("init_self");
            orvia("init_post");
            loop(10);
            orvia("worker", [] { orvia("a"); });
            orvia("worker", [] { orvia("b"); });
            waitBefore = ptTracer()->_rawData->size();
            orvia("deep1", [] { orvia("deep2", [] { orvia("deep3", [] { orvia("needle"); }); }); });
        });
        orvia("main2", [&] {
            loop(3);
            orvia("needle");
        });
    };
    write(folder / "call_tree.hvf", tree, 1.0, [&](const PTRawDataVector& points) {
        for (std::size_t i = waitBefore; i < points.size(); ++i) {
            points[i]->_wcTime += 1.0;
            points[i]->_cpuTime += 1.0;
        }
    });

    // A 64-bit address space, and a name too long for the chart's labels.
    const auto wide = [] {
        orvia("load data", [] {
            orvia("a phase whose name goes on " + std::string(300, 'x') + " to the end");
            for (int step = 0; step < 6; ++step) {
                kestrune("plant", "step");
            }
        });
    };
    write(folder / "memory_wide.hvf", wide, 1.0, [](const PTRawDataVector& points) {
        for (std::size_t index = 0; index < points.size(); ++index) {
            const double usage = (200.0 + 10 * index) * kMiB;
            points[index]->_detailedMem = boost::make_shared<pt::DetailedMemStats>(
                128e6 * kMiB - usage, 64 * kMiB, usage, 40 * kMiB, 2e6 * kMiB + index * kMiB);
        }
    });

    // Line breaks other than the line feed in every kind of name and in the system information.
    const auto lineBreaks = [] {
        orvia("first\rline", [] {
            kestrune("model\r2", "para\u2029graph");
            ylvane("chart\u2028model", "chart\rone", "line\u2028separator");
        });
    };
    write(folder / "line_breaks.hvf", lineBreaks, 1.0, {},
          systemInfoOf("", "\r\u2028\u2029end").get());

    // Names that are patterns: "(a+)+b" takes for ever to fail on 'a'*40, and one too large to run.
    write(folder / "patterns.hvf", [] {
        orvia("patterns", [] {
            for (const std::string& name : {std::string("(a+)+b"), std::string(40, 'a') + "c",
                                            std::string(1 << 20, 'a'), std::string("[unclosed")}) {
                orvia(name);
            }
        });
    });

    // Phases nested deeper than a statement of the page's call tree holds.
    write(folder / "deep_chain.hvf", [] { nest(0); });
    writeDeepTree(folder / "deep_tree.js");
    ptClearRawData();
    return 0;
}
