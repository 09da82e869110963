#include "random_log.h"

#include <performance_tracer/constants.h>
#include <performance_tracer/names.h>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <regex>

namespace pt::testing {

namespace {

std::int32_t id(std::uint32_t kind, const std::string& name) {
    return static_cast<std::int32_t>(ptNameID(kind, name));
}

struct OpenPhase {
    int pointType;
    std::string grouping, phase, model;
};

}  // namespace

boost::shared_ptr<PTOrviaDataPoint> makePoint(int pointType, const std::string& grouping,
                                              const std::string& phase, bool isStart, double wcTime,
                                              double cpuTime, const std::string& model) {
    boost::shared_ptr<PTOrviaDataPoint> point;
    if (pointType == 2) {
        auto chart = boost::make_shared<PTYlvaneDataPoint>();
        chart->_machineID = id(PT_TABLE_MACHINE, "machine");
        chart->_chartID = id(PT_TABLE_CHART, "chart");
        point = chart;
    } else if (pointType == 1) {
        point = boost::make_shared<PTKestruneDataPoint>();
    } else {
        point = boost::make_shared<PTOrviaDataPoint>();
    }
    if (auto* modelPoint = dynamic_cast<PTKestruneDataPoint*>(point.get())) {
        modelPoint->_modelID = id(PT_TABLE_MODEL, model);
        modelPoint->_targetID = id(PT_TABLE_TARGET, "target");
    }
    point->_groupingID = id(PT_TABLE_GROUPING, grouping);
    point->_phaseID = id(PT_TABLE_PHASE, phase);
    point->_isPhaseStart = isStart;
    point->_wcTime = wcTime;
    point->_cpuTime = cpuTime;
    return point;
}

PTRawDataVector randomLog(std::mt19937& rng, const LogOptions& options) {
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    const auto chance = [&](double p) { return unit(rng) < p; };
    const auto pick = [&](std::size_t n) {
        return std::uniform_int_distribution<std::size_t>(0, n - 1)(rng);
    };
    static const char* const kPhases[] = {"load", "parse", "compile", "run", "save", "update"};

    PTRawDataVector log;
    std::vector<OpenPhase> open;
    double wc = 100.0, cpu = 10.0;
    const auto emit = [&](const OpenPhase& phase, bool isStart) {
        const double wait = chance(options.gapChance) ? 0.2 + unit(rng) : 0.0005 + 0.05 * unit(rng);
        const double step = chance(options.backwardsChance) ? -wait : wait;
        wc += step;
        cpu += step / 2;
        log.push_back(
            makePoint(phase.pointType, phase.grouping, phase.phase, isStart, wc, cpu, phase.model));
    };

    const int pairs = options.points / 2;
    int started = 0;
    while (started < pairs || !open.empty()) {
        const bool canStart = started < pairs && static_cast<int>(open.size()) < options.maxDepth;
        if (canStart && (open.empty() || chance(options.startChance))) {
            // Braces draw in order: type, grouping, phase, model.
            OpenPhase phase{static_cast<int>(pick(3)),
                            options.groupings[pick(options.groupings.size())],
                            kPhases[pick(std::size(kPhases))], chance(0.5) ? "engine" : "plant"};
            if (chance(options.unaccountedChance)) {
                phase.phase = std::string(kUnaccountedPhase);
                phase.grouping = options.groupings.back();
            }
            emit(phase, true);
            open.push_back(phase);
            ++started;
        } else {
            emit(open.back(), false);
            open.pop_back();
        }
    }

    for (int fault = 0; fault < options.faults && log.size() > 2; ++fault) {
        const std::size_t at = pick(log.size());
        switch (pick(4)) {
            case 0: log.erase(log.begin() + static_cast<std::ptrdiff_t>(at)); break;
            case 1: {
                auto extra = log[at]->clone();
                extra->_isPhaseStart = false;
                log.insert(log.begin() + static_cast<std::ptrdiff_t>(pick(log.size())), extra);
                break;
            }
            case 2: std::swap(log[at], log[pick(log.size())]); break;
            default: log[at]->_phaseID = id(PT_TABLE_PHASE, "renamed"); break;
        }
    }
    return log;
}

PTRawDataVector logOf(const std::string& events, const std::string& grouping,
                      const std::string& model) {
    static const std::regex token(
        R"((\d)?(?:(\w+):)?([^,+\-\s][^,+\-]*)([+-])([\d.]+)(/[\d.]+)?(~)?)");
    PTRawDataVector log;
    for (std::sregex_iterator m(events.begin(), events.end(), token), end; m != end; ++m) {
        const std::smatch& g = *m;
        log.push_back(makePoint(g[1].matched ? std::stoi(g[1]) : 0,
                                g[2].matched ? g[2].str() : grouping, g[3].str(), g[4] == "+",
                                std::stod(g[5]),
                                g[6].matched ? std::stod(g[6].str().substr(1)) : 0.0, model));
        if (g[7].matched) {
            log.back()->_basicMem.reset();
        }
    }
    return log;
}

PTRawDataVector copyLog(const PTRawDataVector& log) {
    PTRawDataVector copy;
    copy.reserve(log.size());
    for (const auto& point : log) {
        copy.push_back(point->clone());
    }
    return copy;
}

}  // namespace pt::testing
