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

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
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
    std::vector<hvUniqueArray> elements;
    for (const std::string& item : items) {
        elements.push_back(text(item));
    }
    return cellOf(std::move(elements));
}

/// Values of every class that is neither text nor a logical scalar.
inline Values wrongValues() {
    Values values;
    values.push_back(number(1.5));
    values.push_back(int32(7));
    values.push_back(cellOf({}));
    const char* names[] = {"field"};
    values.emplace_back(hvCreateStructMatrix(1, 1, 1, names));
    const std::size_t square[] = {2, 2};
    values.emplace_back(hvCreateCharArray(2, square));
    values.emplace_back(hvCreateDoubleMatrix(0, 0));
    const std::size_t pair[] = {1, 2};
    values.emplace_back(hvCreateLogicalArray(2, pair));
    return values;
}

template <typename... Value>
Values valuesOf(Value&&... values) {
    Values out;
    (out.push_back(std::forward<Value>(values)), ...);
    return out;
}

/// Calls Package.Class.method and returns its outputs.
inline Values call(const std::string& method, const Values& inputs, std::uint32_t nargout = 0) {
    std::vector<const hvArray*> args;
    for (const auto& input : inputs) {
        args.push_back(input.get());
    }
    return vos::invoke(method, nargout, args);
}

/// The error id and the text arguments of a call's error, or "none".
inline std::string errorOf(const std::string& method, const Values& inputs,
                           std::uint32_t nargout = 0) {
    try {
        call(method, inputs, nargout);
    } catch (const foundation::core::except::IMsgIDException& e) {
        std::string out = e.getErrorID();
        for (const auto& argument : e.getMessageID().arguments()) {
            out += "|" + resource_core::argumentText(argument);
        }
        return out;
    }
    return "none";
}

/// The tracer id of a message.
inline std::string tracerError(const std::string& id, const std::vector<std::string>& args = {}) {
    std::string out = "performance_tracer:PerformanceTracer:" + id;
    for (const std::string& arg : args) {
        out += "|" + arg;
    }
    return out;
}

/// Everything a method could change.
struct StateFingerprint {
    std::vector<std::string> points;
    std::vector<std::size_t> tables;
    std::map<std::int32_t, std::vector<std::string>> groupings;
    std::vector<EPTGroupingEnabled> states;
    std::map<std::string, std::string> statisticsTypes;
    bool globalLogging = false;
    bool detailedMemStats = false;

    static StateFingerprint take() {
        const PerformanceTracer& t = *ptTracer();
        StateFingerprint f;
        for (const auto& p : *t._rawData) {
            f.points.push_back(std::to_string(p->_groupingID) + "/" + std::to_string(p->_phaseID) +
                               "/" + std::to_string(p->_isPhaseStart));
        }
        for (std::uint32_t kind = 0; kind < PT_TABLE_COUNT; ++kind) {
            f.tables.push_back(t.nameTable(kind)->size());
        }
        for (const auto& [id, children] : *t._groupings) {
            f.groupings[id] = *children;
        }
        f.states = *t._groupingEnabled;
        f.statisticsTypes.insert(t._modelStatisticsTypes->begin(), t._modelStatisticsTypes->end());
        f.globalLogging = t._globalLogging;
        f.detailedMemStats = t._detailedMemStats;
        return f;
    }
    bool operator==(const StateFingerprint&) const = default;
};

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
        const StateFingerprint before = StateFingerprint::take();
        const std::string error = errorOf(method, inputs);
        // The class system's errors are compared by their id alone.
        EXPECT_EQ(expected.starts_with("vos:") ? error.substr(0, expected.size()) : error, expected)
            << method;
        EXPECT_TRUE(StateFingerprint::take() == before) << method << " changed the tracer's state";
    }
};

inline constexpr const char* kTracer = "PerfTools.Tracer.";

/// Makes a host function answer with a value, or refuse when the value is null.
inline void answer(const std::string& name, std::function<hvArray*()> make) {
    hvxSetHostFunction(name, [make](int nlhs, hvArray** plhs, int, hvArray**) {
        hvArray* value = make();
        if (!value) {
            return 1;
        }
        if (nlhs >= 1) {
            plhs[0] = value;
        } else {
            hvDestroyArray(value);
        }
        return 0;
    });
}
inline void answerRoot(const std::string& root) {
    answer("orviaroot", [root] { return hvCreateString(root); });
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
        answerRoot("/opt/orvia");
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
