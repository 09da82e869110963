// A simulated session of the host and its two tools, instrumented with the tracer's exports.
//
// The host language evaluates a script, the block-diagram tool compiles and simulates a model,
// and the state-chart tool builds the charts inside it. Each piece of work is a phase logged
// at its start and its end under a grouping; the tools' groupings sit below one parent, so
// that enabling the parent enables the session. At the end the application, as any host of
// the tracer's module does, saves its run through the class PerfTools.Tracer:
//     pt_session_example [--changed] [FILE.hvf]
// --changed runs the session as a later version of the tools would: a slower sort, a third
// chart, more simulation steps and a limit check, so that two saved runs can be compared.

#include <performance_tracer/performance_tracer.h>

#include <pt_platform/except.h>
#include <pt_platform/hv.h>
#include <pt_platform/vos.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <string>
#include <thread>
#include <vector>

namespace {

/// What a session does; the changed one differs from the baseline in several places.
struct Workload {
    int sortMilliseconds = 4;
    std::vector<const char*> charts = {"Gear Logic", "Shift Schedule"};
    int outputSteps = 3;
    bool checkLimits = false;
};

Workload changedWorkload() {
    Workload workload;
    workload.sortMilliseconds = 9;
    workload.charts.push_back("Clutch Control");
    workload.outputSteps = 5;
    workload.checkLimits = true;
    return workload;
}

/// Logs the start of a phase now and its end when it goes out of scope.
template <typename Log>
class Phase {
public:
    explicit Phase(Log log) : _log(log) { _log(true); }
    ~Phase() { _log(false); }
    Phase(const Phase&) = delete;
    Phase& operator=(const Phase&) = delete;

private:
    Log _log;
};

void work(int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

void runScript(int grouping) {
    Phase script([&](bool start) { ptLogOrviaData(grouping, "scripts/setup_plant.m", start); });
    work(3);
    {
        Phase eval([&](bool start) {
            ptLogOrviaData(KsPerformanceTracingPoint::_groupingID, "evaluate parameters", start);
        });
        work(2);
    }
    work(1);
}

void buildModel(const std::string& model, const Workload& workload) {
    Phase compile([&](bool start) {
        ptLogKestruneData("Kestrune Compile", model, "sim", "compile model", start);
    });
    {
        Phase sort([&](bool start) {
            ptLogKestruneData("Kestrune Compile", model, "sim", "sort blocks", start);
        });
        work(workload.sortMilliseconds);
    }
    for (const char* chart : workload.charts) {
        Phase build([&](bool start) {
            ptLogYlvaneData("Ylvane Build", model, "sim", "sfun machine", chart, "build chart",
                            start);
        });
        work(2);
    }
}

void simulate(const std::string& model, const Workload& workload) {
    Phase run([&](bool start) {
        ptLogKestruneData("Kestrune Simulation", model, "sim", "simulate", start);
    });
    for (int step = 0; step < workload.outputSteps; ++step) {
        Phase output([&](bool start) {
            ptLogKestruneData("Kestrune Simulation", model, "sim", "outputs", start);
        });
        work(1);
    }
    if (workload.checkLimits) {
        Phase check([&](bool start) {
            ptLogKestruneData("Kestrune Simulation", model, "sim", "check limits", start);
        });
        work(2);
    }
}

const char* nameOr(const std::string& name, const char* none) {
    return name.empty() ? none : name.c_str();
}

void printRawStore() {
    const auto points = ptTracer()->snapshotRawData();
    std::printf("%-3s %-5s %-20s %-28s %-13s %-6s %-13s %-15s %9s %9s\n", "#", "event", "grouping",
                "phase", "model", "target", "machine", "chart", "wall (s)", "cpu (s)");
    const double wall0 = points->empty() ? 0.0 : points->front()->_wcTime;
    const double cpu0 = points->empty() ? 0.0 : points->front()->_cpuTime;
    int index = 0;
    int depth = 0;
    for (const auto& point : *points) {
        std::string model, target, machine, chart;
        if (const auto* k = dynamic_cast<const PTKestruneDataPoint*>(point.get())) {
            model = ptGetModelStr(k->_modelID);
            target = ptGetTargetStr(k->_targetID);
        }
        if (const auto* y = dynamic_cast<const PTYlvaneDataPoint*>(point.get())) {
            machine = ptGetMachineStr(y->_machineID);
            chart = ptGetChartStr(y->_chartID);
        }
        // Indented by nesting, as the log order shows it.
        depth -= point->_isPhaseStart ? 0 : 1;
        const std::string phase =
            std::string(2 * std::max(depth, 0), ' ') + ptGetPhaseStr(point->_phaseID);
        depth += point->_isPhaseStart ? 1 : 0;
        std::printf("%-3d %-5s %-20s %-28s %-13s %-6s %-13s %-15s %9.6f %9.6f\n", index++,
                    point->_isPhaseStart ? "start" : "end",
                    ptNameStr(PT_TABLE_GROUPING, point->_groupingID).c_str(), phase.c_str(),
                    nameOr(model, "-"), nameOr(target, "-"), nameOr(machine, "-"),
                    nameOr(chart, "-"), point->_wcTime - wall0, point->_cpuTime - cpu0);
    }
    std::printf("%zu points\n", points->size());
}

/// PerfTools.Tracer.saveToFile(file), called as the host calls a method.
bool saveRun(const std::string& file) {
    HVInitialize_performance_tracer();
    const hvUniqueArray name(hvCreateString(file));
    try {
        vos::invoke("PerfTools.Tracer.saveToFile", 0, std::vector<const hvArray*>{name.get()});
    } catch (const std::exception& error) {
        std::fprintf(stderr, "could not save the run: %s\n", error.what());
        return false;
    }
    std::printf("saved to %s\n", file.c_str());
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> arguments(argv + 1, argv + argc);
    const bool changed = !arguments.empty() && arguments.front() == "--changed";
    if (changed) {
        arguments.erase(arguments.begin());
    }
    const Workload workload = changed ? changedWorkload() : Workload();

    // Groupings: the session's parent with the tools' groupings below it.
    const int scripts = ptAddGrouping("Scripts");
    const std::string refused =
        ptAddGrouping("Session", {"Kestrune Compile", "Kestrune Simulation", "Ylvane Build"});
    if (!refused.empty()) {
        std::fprintf(stderr, "could not add the session's groupings: %s\n", refused.c_str());
        return 1;
    }

    // Nothing is enabled yet: these calls cost a flag test each and record nothing.
    runScript(scripts);
    buildModel("transmission", workload);

    ptEnableTracer("Session", true);
    ptEnableTracer("Scripts", true);
    ptEnableTracer("EvalPrms", true);
    ptSetStatisticsTypeForModel("transmission", "Normal");

    runScript(scripts);
    buildModel("transmission", workload);
    simulate("transmission", workload);

    std::printf("Groupings enabled with Session:");
    for (const std::string& name : ptGetGroupingList("Session")) {
        std::printf(" %s;", name.c_str());
    }
    std::printf("\n\n");
    printRawStore();
    return saveRun(arguments.empty() ? "session.hvf" : arguments.front()) ? 0 : 1;
}
