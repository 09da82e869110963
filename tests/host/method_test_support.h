#pragma once

// Calling PerfTools.Tracer through the class system, as a host does, and a fingerprint of the
// tracer's state to show that a refused call changed nothing.

#include <performance_tracer/module.h>
#include <performance_tracer/performance_tracer.h>

#include <pt_platform/except.h>
#include <pt_platform/hv.h>
#include <pt_platform/hvx.h>
#include <pt_platform/vos.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iomanip>
#include <iterator>
#include <map>
#include <numeric>
#include <sstream>
#include <string>
#include <vector>

#include <unistd.h>

#include "core/name_table.h"

namespace pt::testing {

using Values = std::vector<hvUniqueArray>;

inline hvUniqueArray text(const std::string& s) { return hvUniqueArray(hvCreateString(s)); }
inline hvUniqueArray flag(bool b) { return hvUniqueArray(hvCreateLogicalScalar(b)); }
inline hvUniqueArray number(double d) { return hvUniqueArray(hvCreateDoubleScalar(d)); }
inline hvUniqueArray int32(std::int32_t v) {
    const std::size_t dims[] = {1, 1};
    hvUniqueArray value(hvCreateNumericArray(2, dims, hvClassID::Int32));
    *static_cast<std::int32_t*>(hvGetData(value.get())) = v;
    return value;
}
inline hvUniqueArray cellOf(std::vector<hvUniqueArray> elements) {
    hvUniqueArray cell(hvCreateCellMatrix(1, elements.size()));
    for (std::size_t i = 0; i < elements.size(); ++i) {
        hvSetCell(cell.get(), i, elements[i].release());
    }
    return cell;
}
inline hvUniqueArray texts(const std::vector<std::string>& items) {
    std::vector<hvUniqueArray> elements(items.size());
    std::transform(items.begin(), items.end(), elements.begin(), text);
    return cellOf(std::move(elements));
}

template <typename... Value>
Values valuesOf(Value&&... values) {
    Values out;
    (out.push_back(hvUniqueArray(std::forward<Value>(values))), ...);
    return out;
}

/// Values of every class that is neither text nor a logical scalar.
inline Values wrongValues() {
    const char* names[] = {"field"};
    const std::size_t square[] = {2, 2}, pair[] = {1, 2};
    return valuesOf(number(1.5), int32(7), cellOf({}), hvCreateStructMatrix(1, 1, 1, names),
                    hvCreateCharArray(2, square), hvCreateDoubleMatrix(0, 0),
                    hvCreateLogicalArray(2, pair));
}

/// Calls Package.Class.method and returns its outputs.
inline Values call(const std::string& method, const Values& inputs, std::uint32_t nargout = 0) {
    std::vector<const hvArray*> args(inputs.size());
    std::transform(inputs.begin(), inputs.end(), args.begin(), [](auto& in) { return in.get(); });
    return vos::invoke(method, nargout, args);
}

/// The error id and the text arguments of a call's error, or "none".
inline std::string errorOf(const std::string& method, const Values& inputs,
                           std::uint32_t nargout = 0) try {
    call(method, inputs, nargout);
    return "none";
} catch (const foundation::core::except::IMsgIDException& e) {
    std::string out = e.getErrorID();
    for (const auto& argument : e.getMessageID().arguments()) {
        out += "|" + resource_core::argumentText(argument);
    }
    return out;
}

/// The tracer id of a message.
inline std::string tracerError(const std::string& id, const std::vector<std::string>& args = {}) {
    std::string out = "performance_tracer:PerformanceTracer:" + id;
    return std::accumulate(args.begin(), args.end(), out,
                           [](std::string a, const std::string& b) { return a + "|" + b; });
}

/// Each point as text: its class, the names of its ids (and the ids, when both sides of a
/// comparison share the tables), every figure that a save keeps, and whether it was generated.
inline std::vector<std::string> describe(const PTRawDataVector& points, bool ids = false) {
    std::vector<std::string> out;
    for (const auto& p : points) {
        const PTOrviaDataPoint& point = *p;
        std::ostringstream row;
        row << std::setprecision(17) << typeid(point).name();
        const auto name = [&](std::uint32_t kind, std::int32_t id) {
            row << '|' << ptNameStr(kind, id) << (ids ? "#" + std::to_string(id) : "");
        };
        name(PT_TABLE_GROUPING, p->_groupingID);
        name(PT_TABLE_PHASE, p->_phaseID);
        name(PT_TABLE_STATISTICS_TYPE, p->_statisticsTypeID);
        if (const auto* k = dynamic_cast<const PTKestruneDataPoint*>(p.get())) {
            name(PT_TABLE_MODEL, k->_modelID);
            name(PT_TABLE_TARGET, k->_targetID);
        }
        if (const auto* y = dynamic_cast<const PTYlvaneDataPoint*>(p.get())) {
            name(PT_TABLE_MACHINE, y->_machineID);
            name(PT_TABLE_CHART, y->_chartID);
        }
        row << '|' << p->_pointType << '|' << p->_wcTime << '|' << p->_cpuTime;
        if (const auto& b = p->_basicMem) {
            row << "|b" << b->procMemUsage << ' ' << b->procMemUsagePeak << ' ' << b->procVMSize;
        }
        if (const auto& d = p->_detailedMem) {
            row << "|d" << d->freeMem << ' ' << d->nonprocessMem;
        }
        row << '|' << p->_isPhaseStart << p->_isGenerated;
        out.push_back(row.str());
    }
    return out;
}

/// Everything a method could change.
inline std::vector<std::string> tracerState() {
    const PerformanceTracer& t = *ptTracer();
    std::vector<std::string> state = describe(*t._rawData, true);
    std::ostringstream rest;
    for (std::uint32_t kind = 0; kind < PT_TABLE_COUNT; ++kind) {
        rest << t.nameTable(kind)->size() << ' ';
    }
    std::map<std::int32_t, std::vector<std::string>> groupings;
    for (const auto& [id, children] : *t._groupings) {
        groupings[id] = *children;
    }
    for (const EPTGroupingEnabled enabled : *t._groupingEnabled) {
        rest << static_cast<int>(enabled);
    }
    const std::map types(t._modelStatisticsTypes->begin(), t._modelStatisticsTypes->end());
    rest << ::testing::PrintToString(groupings) << ::testing::PrintToString(types)
         << t._globalLogging << t._detailedMemStats;
    state.push_back(rest.str());
    return state;
}

/// Registers the module's package once per test process and starts each test from a cleared
/// store with nothing enabled.
class MethodTest : public ::testing::Test {
protected:
    void SetUp() override {
        HVInitialize_performance_tracer();
        ptEnableGlobalLogging(false);
        ptClearRawData();
        auto& states = *ptTracer()->_groupingEnabled;
        std::fill(states.begin(), states.end(), PT_GROUPING_UNSET);
    }

    /// Expects the call to raise the error, with the tracer's state as it was.
    static void expectRefused(const std::string& method, const Values& inputs,
                              const std::string& expected) {
        const std::vector<std::string> before = tracerState();
        const std::string error = errorOf(method, inputs);
        // The class system's errors are compared by their id alone.
        EXPECT_EQ(expected.starts_with("vos:") ? error.substr(0, expected.size()) : error, expected)
            << method;
        EXPECT_EQ(tracerState(), before) << method << " changed the tracer's state";
    }
};

inline constexpr const char* kTracer = "PerfTools.Tracer.";

/// Makes a host function answer with a value, or refuse when the value is null.
inline void answer(const std::string& name, std::function<hvArray*()> make) {
    hvxSetHostFunction(name, [make](int nlhs, hvArray** plhs, int, hvArray**) {
        hvArray* value = make();
        if (value) {
            nlhs >= 1 ? void(plhs[0] = value) : hvDestroyArray(value);
        }
        return value ? 0 : 1;
    });
}

inline std::string bytesOf(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// A run of all three classes under "Run", with memory figures, and one startup phase.
inline void logRun() {
    ptAddGrouping("Run");
    ptAddGrouping("Kestrune Startup");
    ptEnableGlobalLogging(true);
    ptLogOrviaData("Run", "/opt/orvia/toolbox/setup.m", true);
    ptLogKestruneData("Run", "engine", "sim", "compile", true);
    ptLogYlvaneData("Run", "engine", "sim", "machine", "chart", "step", true);
    ptLogYlvaneData("Run", "engine", "sim", "machine", "chart", "step", false);
    ptLogKestruneData("Run", "engine", "sim", "compile", false);
    ptLogOrviaData("Run", "/opt/orvia/toolbox/setup.m", false);
    ptLogKsStartupData("boot", true);
    ptLogKsStartupData("boot", false);
    ptEnableGlobalLogging(false);
}

/// A MethodTest whose working folder is a scratch folder of its own, with ".hvf" in its name
/// for a check of extensions to mistake, and whose host has "/opt/orvia" as its root.
class FileMethodTest : public MethodTest {
protected:
    void SetUp() override {
        MethodTest::SetUp();
        _folder = std::filesystem::temp_directory_path() /
                  ("pt_host_" + std::to_string(getpid()) + ".hvf.d");
        std::filesystem::create_directories(_folder);
        _previous = std::filesystem::current_path();
        std::filesystem::current_path(_folder);
        answer("orviaroot", [] { return hvCreateString("/opt/orvia"); });
    }
    void TearDown() override {
        hvxRestoreHostFunctions();
        std::filesystem::current_path(_previous);
        std::filesystem::remove_all(_folder);
    }

    std::string path(const std::string& name) const { return (_folder / name).string(); }

    /// The names in the folder: a failed save or report leaves nothing of its own behind.
    std::vector<std::string> folderNames() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(_folder)) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    std::filesystem::path _folder;
    std::filesystem::path _previous;
};

}  // namespace pt::testing
