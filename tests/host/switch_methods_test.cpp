#include <pt_platform/hvm.h>

#include "method_test_support.h"

namespace pt::testing {
namespace {

using SwitchMethods = MethodTest;

bool answer(const std::string& method, Values inputs) {
    const Values outputs = call(kTracer + method, inputs, 1);
    EXPECT_EQ(outputs.size(), 1u);
    return !outputs.empty() && hvIsLogicalScalarTrue(outputs[0].get());
}

TEST_F(SwitchMethods, EachSetsOrAsksAndAnswers) {
    const StateFingerprint before = StateFingerprint::take();
    EXPECT_FALSE(answer("enable", valuesOf(text("never named"))));
    EXPECT_TRUE(StateFingerprint::take() == before);  // a query changes nothing
    EXPECT_TRUE(answer("enable", valuesOf(text("A"), flag(true))));
    EXPECT_TRUE(answer("enable", valuesOf(column("A"))));
    EXPECT_TRUE(ptIsTracerEnabled(std::string("A")));
    EXPECT_FALSE(answer("enable", valuesOf(text("A"), flag(false))));
    EXPECT_FALSE(ptIsTracerEnabled(std::string("A")));

    EXPECT_TRUE(answer("enableGlobalLogging", valuesOf(flag(true))));
    EXPECT_TRUE(ptTracer()->_globalLogging);
    EXPECT_FALSE(answer("enableGlobalLogging", valuesOf(flag(false))));
    EXPECT_TRUE(answer("enableKsStartupLogging", valuesOf(flag(true))));
    EXPECT_TRUE(ptIsTracerEnabled(std::string("Kestrune Startup")));

    // The hidden diagnostics switch reaches the host, and the listing leaves it out.
    const hvm::StringTable& table = hvm::StringTable::instance();
    EXPECT_TRUE(answer("setUseDetailedExceptionDiagnostics", valuesOf(flag(true))));
    EXPECT_FALSE(table.skipsDetailedStackDiagnostics());  // details wanted: none skipped
    EXPECT_FALSE(answer("setUseDetailedExceptionDiagnostics", valuesOf(flag(false))));
    EXPECT_TRUE(table.skipsDetailedStackDiagnostics());
    const auto listed = vos::visibleMethods("PerfTools.Tracer");
    EXPECT_EQ(std::count(listed.begin(), listed.end(), "setUseDetailedExceptionDiagnostics"), 0);
}

}  // namespace
}  // namespace pt::testing
