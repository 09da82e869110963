// A simulated session of the host and its two tools, instrumented with the tracer's scope guards.
//
// The host language evaluates a script, the block-diagram tool compiles and simulates a model,
// and the state-chart tool builds the charts inside it. Each piece of work is a phase under a
// grouping, logged from its start to the end of its scope; the tools' groupings sit below one
// parent, so that enabling the parent enables the session. The phases take tens to hundreds of
// milliseconds, about a second and a half in all, computing (so that they take CPU time) or
// waiting (as a script reading files would). At the end the application saves its run:
//     pt_session_example [--changed] [FILE.hvf]
// --changed runs the session as a later version of the tools would: a slower sort, a third
// chart, faster simulation steps and a new limit check, so that two saved runs can be compared.

#include <performance_tracer/performance_tracer.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

namespace {

using std::chrono::milliseconds;

/// What a session does; the changed one differs from the baseline in several places.
struct Workload {
    milliseconds sort{300};
    std::vector<const char*> charts = {"Gear Logic", "Shift Schedule"};
    int outputSteps = 12;
    milliseconds outputStep{50};
    bool checkLimits = false;
};

Workload changedWorkload() {
    Workload workload;
    workload.sort = milliseconds(450);
    workload.charts.push_back("Clutch Control");
    workload.outputStep = milliseconds(30);
    workload.checkLimits = true;
    return workload;
}

/// Computes for a while, as a compiler or a solver does.
void compute(milliseconds duration) {
    const auto end = std::chrono::steady_clock::now() + duration;
    volatile double sink = 0.0;
    while (std::chrono::steady_clock::now() < end) {
        for (int i = 1; i < 1000; ++i) {
            sink = sink + std::sqrt(static_cast<double>(i));
        }
    }
}

/// Waits for a while, as a script reading files does.
void wait(milliseconds duration) { std::this_thread::sleep_for(duration); }

/// The block-diagram tool starts: its own grouping, which a separate report shows.
void startTools() {
    const pt::GroupingRef startup("Kestrune Startup");
    {
        pt::OrviaPhase load(startup, "load libraries");
        wait(milliseconds(80));
    }
    pt::OrviaPhase preferences(startup, "read preferences");
    compute(milliseconds(30));
}

void runScript(int scripts) {
    pt::OrviaPhase script(scripts, "scripts/setup_plant.m");
    wait(milliseconds(60));
    {
        pt::OrviaPhase evaluate(KsPerformanceTracingPoint::_groupingID, "evaluate parameters");
        compute(milliseconds(100));
    }
    wait(milliseconds(30));
}

const char* const kModel = "transmission";

void buildModel(const Workload& workload) {
    PT_KESTRUNE_PHASE("Kestrune Compile", kModel, "sim", "compile model");
    {
        PT_KESTRUNE_PHASE("Kestrune Compile", kModel, "sim", "sort blocks");
        compute(workload.sort);
    }
    for (const char* chart : workload.charts) {
        PT_YLVANE_PHASE("Ylvane Build", kModel, "sim", "sfun machine", chart, "build chart");
        compute(milliseconds(150));
    }
}

void simulate(const Workload& workload) {
    PT_KESTRUNE_PHASE("Kestrune Simulation", kModel, "sim", "simulate");
    for (int step = 0; step < workload.outputSteps; ++step) {
        PT_KESTRUNE_PHASE("Kestrune Simulation", kModel, "sim", "outputs");
        wait(workload.outputStep);  // writing the step's outputs
    }
    if (workload.checkLimits) {
        PT_KESTRUNE_PHASE("Kestrune Simulation", kModel, "sim", "check limits");
        compute(milliseconds(120));
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

    // Nothing is enabled yet: these phases cost a flag test each and record nothing.
    runScript(scripts);

    ptEnableTracer("Session", true);
    ptEnableTracer("Scripts", true);
    ptEnableTracer("EvalPrms", true);
    ptEnableTracer("Kestrune Startup", true);
    ptSetStatisticsTypeForModel(kModel, "Normal");

    startTools();
    runScript(scripts);
    buildModel(workload);
    simulate(workload);

    std::printf("Groupings enabled with Session:");
    for (const std::string& name : ptGetGroupingList("Session")) {
        std::printf(" %s;", name.c_str());
    }
    std::printf("\n\n");
    printRawStore();

    const std::string file = arguments.empty() ? "session.hvf" : arguments.front();
    try {
        pt::saveRun(file);
    } catch (const pt::Error& error) {
        std::fprintf(stderr, "could not save the run: %s\n", error.what());
        return 1;
    }
    std::printf("saved to %s\n", file.c_str());
    return 0;
}
