#include <pt_platform/hvm.h>

#include "method_test_support.h"

namespace pt::testing {
namespace {

using SwitchMethods = MethodTest;

bool answer(const Values& outputs) {
    EXPECT_EQ(outputs.size(), 1u);
    return !outputs.empty() && hvIsLogicalScalarTrue(outputs[0].get());
}

TEST_F(SwitchMethods, EnableSetsOrAsks) {
    const std::string enable = "PerfTools.Tracer.enable";
    const StateFingerprint before = StateFingerprint::take();
    EXPECT_FALSE(answer(call(enable, valuesOf(text("never named")), 1)));
    EXPECT_TRUE(StateFingerprint::take() == before);  // a query changes nothing
    EXPECT_TRUE(answer(call(enable, valuesOf(text("A"), flag(true)), 1)));
    EXPECT_TRUE(answer(call(enable, valuesOf(column("A")), 1)));
    EXPECT_TRUE(ptIsTracerEnabled(std::string("A")));
    EXPECT_FALSE(answer(call(enable, valuesOf(text("A"), flag(false)), 1)));
    EXPECT_FALSE(ptIsTracerEnabled(std::string("A")));

    expectRefused(enable, {}, tracerError("MinParamsNotReached", {"1"}));
    expectRefused(enable, valuesOf(text("A"), flag(true), flag(true)),
                  tracerError("MaxParamsExceeded", {"2"}));
    for (auto& wrong : wrongValues()) {
        expectRefused(enable, valuesOf(std::move(wrong), flag(true)),
                      tracerError("ParameterMismatchString", {"Grouping"}));
    }
    for (auto& wrong : wrongValues()) {
        expectRefused(enable, valuesOf(text("B"), std::move(wrong)),
                      tracerError("ParameterMismatchBoolean", {"Enable"}));
    }
    expectRefused(enable, valuesOf(text("B"), text("true")),
                  tracerError("ParameterMismatchBoolean", {"Enable"}));
}

TEST_F(SwitchMethods, GlobalStartupAndDetailedMemory) {
    EXPECT_TRUE(answer(call("PerfTools.Tracer.enableGlobalLogging", valuesOf(flag(true)), 1)));
    EXPECT_TRUE(ptTracer()->_globalLogging);
    EXPECT_FALSE(answer(call("PerfTools.Tracer.enableGlobalLogging", valuesOf(flag(false)), 1)));
    EXPECT_TRUE(answer(call("PerfTools.Tracer.enableKsStartupLogging", valuesOf(flag(true)), 1)));
    EXPECT_TRUE(ptIsTracerEnabled(std::string("Kestrune Startup")));

    for (const char* method : {"enableGlobalLogging", "enableKsStartupLogging",
                               "enableDetailedMemStats", "setUseDetailedExceptionDiagnostics"}) {
        for (auto& wrong : wrongValues()) {
            expectRefused(kTracer + std::string(method), valuesOf(std::move(wrong)),
                          tracerError("ParameterMismatchBoolean", {"Enable"}));
        }
    }
    // The feature does not exist here: a flag that passes its test gets the platform's error,
    // and nothing changes.
    expectRefused("PerfTools.Tracer.enableDetailedMemStats", valuesOf(flag(true)),
                  tracerError("WindowsOnlyFeature", {"Detailed Memory Statistics"}));
    expectRefused("PerfTools.Tracer.enableDetailedMemStats", valuesOf(number(1)),
                  tracerError("ParameterMismatchBoolean", {"Enable"}));
}

TEST_F(SwitchMethods, HiddenDiagnosticsSwitchReachesTheHost) {
    const hvm::StringTable& table = hvm::StringTable::instance();
    const std::string method = "PerfTools.Tracer.setUseDetailedExceptionDiagnostics";
    EXPECT_TRUE(answer(call(method, valuesOf(flag(true)), 1)));
    EXPECT_FALSE(table.skipsDetailedStackDiagnostics());  // details wanted: none skipped
    EXPECT_FALSE(answer(call(method, valuesOf(flag(false)), 1)));
    EXPECT_TRUE(table.skipsDetailedStackDiagnostics());
    const auto listed = vos::visibleMethods("PerfTools.Tracer");
    EXPECT_EQ(std::count(listed.begin(), listed.end(), "setUseDetailedExceptionDiagnostics"), 0);
}

}  // namespace
}  // namespace pt::testing
