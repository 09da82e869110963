#include "processing/synthetic_runs.h"

#include <performance_tracer/groupings.h>
#include <performance_tracer/logging.h>
#include <performance_tracer/names.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/tracer.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <set>
#include <vector>

#include "processing/random_log.h"

namespace pt::testing {

namespace {

/// Computes for a while, as the phases of a tool do.
void compute(double milliseconds) {
    const auto end =
        std::chrono::steady_clock::now() + std::chrono::duration<double, std::milli>(milliseconds);
    volatile double sink = 0.0;
    while (std::chrono::steady_clock::now() < end) {
        for (int i = 1; i < 100; ++i) {
            sink = sink + std::sqrt(static_cast<double>(i));
        }
    }
}

template <typename Work>
void phase(const char* name, Work work) {
    ptLogOrviaData("Session", name, true);
    work();
    ptLogOrviaData("Session", name, false);
}

void leaf(const char* name, double milliseconds) {
    phase(name, [&] { compute(milliseconds); });
}

/// One recording of the session.
PTRawDataVector record() {
    ptAddGrouping("Session");
    ptClearRawData();
    ptEnableGlobalLogging(true);
    phase("load model", [] {
        leaf("read file", 2);
        leaf("parse", 3);
        leaf("resolve references", 1);
    });
    phase("compile", [] {
        leaf("sort blocks", 4);
        leaf("propagate sizes", 1.5);
        phase("build charts", [] {
            for (int chart = 0; chart < 3; ++chart) {
                leaf("build chart", 1);
            }
        });
        phase("generate code", [] {
            leaf("emit header", 0.5);
            leaf("emit source", 2);
        });
    });
    phase("simulate", [] {
        leaf("initialize", 1);
        for (int step = 0; step < 10; ++step) {
            leaf("outputs", 0.3);
            leaf("update", 0.2);
        }
        leaf("terminate", 0.3);
    });
    phase("save results", [] {
        leaf("write log", 0.5);
        leaf("write plots", 1);
    });
    ptEnableGlobalLogging(false);
    // The points leave the store; a clear would take the names of their ids with it.
    PTRawDataVector log = std::move(*ptTracer()->_rawData);
    ptTracer()->_rawData->clear();
    return log;
}

}  // namespace

PTRawDataVector recordSession() {
    // A wait of a tenth of a second would become a generated row of its own. The session
    // computes for about 25 ms, so only a busy machine pausing it makes one: record again.
    PTRawDataVector log = record();
    for (int attempt = 0; attempt < 10 && log.back()->_wcTime - log.front()->_wcTime > 0.09;
         ++attempt) {
        log = record();
    }
    return log;
}

PTRawDataVector synthesizeRun(const PTRawDataVector& log, const Synthesis& synthesis,
                              std::mt19937& rng) {
    PTRawDataVector run = copyLog(log);
    std::normal_distribution<double> normal(0.0, synthesis.noise > 0.0 ? synthesis.noise : 1.0);
    std::map<std::int32_t, double> factors;  // by phase id; -1 outside every phase
    const auto factorOf = [&](std::int32_t phase) {
        if (const auto found = factors.find(phase); found != factors.end()) {
            return found->second;
        }
        double factor = synthesis.noise > 0.0 ? std::exp(normal(rng)) : 1.0;
        if (phase >= 0) {
            const auto changed = synthesis.change.find(ptNameStr(PT_TABLE_PHASE, phase));
            factor *= changed == synthesis.change.end() ? 1.0 : changed->second;
        }
        return factors[phase] = factor;
    };
    std::vector<std::int32_t> open;
    for (std::size_t i = 1; i < run.size(); ++i) {
        const PTOrviaDataPoint& before = *log[i - 1];
        if (before._isPhaseStart) {
            open.push_back(before._phaseID);
        } else if (!open.empty()) {
            open.pop_back();
        }
        const double factor = factorOf(open.empty() ? -1 : open.back());
        run[i]->_wcTime = run[i - 1]->_wcTime + (log[i]->_wcTime - before._wcTime) * factor;
        run[i]->_cpuTime = run[i - 1]->_cpuTime + (log[i]->_cpuTime - before._cpuTime) * factor;
    }
    return run;
}

std::vector<std::string> leafPhases(const PTRawDataVector& log) {
    std::set<std::int32_t> parents;
    for (std::size_t i = 0; i + 1 < log.size(); ++i) {
        if (log[i]->_isPhaseStart && log[i + 1]->_isPhaseStart) {
            parents.insert(log[i]->_phaseID);
        }
    }
    std::vector<std::string> leaves;
    for (const auto& point : log) {
        const std::string name = ptNameStr(PT_TABLE_PHASE, point->_phaseID);
        if (point->_isPhaseStart && parents.count(point->_phaseID) == 0 &&
            std::find(leaves.begin(), leaves.end(), name) == leaves.end()) {
            leaves.push_back(name);
        }
    }
    return leaves;
}

}  // namespace pt::testing
