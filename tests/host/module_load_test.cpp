// The tracer as a host loads it: by path, through its module descriptor, and then only through
// the class system.

#include <performance_tracer/module.h>
#include <performance_tracer/performance_tracer.h>

#include <pt_platform/except.h>
#include <pt_platform/module.h>
#include <pt_platform/vos.h>

#include <gtest/gtest.h>

namespace {

/// Calls the method with the inputs, which it owns.
std::vector<hvUniqueArray> call(const std::string& method, const std::vector<hvArray*>& inputs,
                                std::uint32_t nargout = 0) {
    const std::vector<hvUniqueArray> owned(inputs.begin(), inputs.end());
    return vos::invoke(method, nargout, {inputs.begin(), inputs.end()});
}

TEST(Module, LoadsAsTheHostLoadsIt) {
    hvLoadedModule module;
    std::string error;
    ASSERT_TRUE(hvLoadModule(PT_MODULE_PATH, module, error)) << error;
    EXPECT_STREQ(module.descriptor->moduleName, "performance_tracer");
    ASSERT_TRUE(vos::isCallable("PerfTools.Tracer.logOrviaData"));
    EXPECT_EQ(vos::visibleMethods("PerfTools.Tracer").front(), "clearRawData");

    const auto enabled =
        call("PerfTools.Tracer.enable", {hvCreateString("Module"), hvCreateLogicalScalar(true)}, 1);
    ASSERT_EQ(enabled.size(), 1u);
    EXPECT_TRUE(hvIsLogicalScalarTrue(enabled[0].get()));
    for (bool start : {true, false}) {
        call("PerfTools.Tracer.logOrviaData",
             {hvCreateString("Module"), hvCreateString("loaded phase"),
              hvCreateLogicalScalar(start)});
    }
    const auto points = ptTracer()->snapshotRawData();
    ASSERT_EQ(points->size(), 2u);
    EXPECT_EQ(ptGetPhaseStr((*points)[0]->_phaseID), "loaded phase");
    EXPECT_TRUE((*points)[0]->_isPhaseStart);
    EXPECT_FALSE((*points)[1]->_isPhaseStart);

    try {
        call("PerfTools.Tracer.enable", {hvCreateDoubleScalar(1)}, 1);
        ADD_FAILURE() << "no error";
    } catch (const foundation::core::except::IMsgIDException& e) {
        EXPECT_EQ(e.getErrorID(), "performance_tracer:PerformanceTracer:ParameterMismatchString");
    }

    // Loading again finds the one module already there.
    hvLoadedModule again;
    ASSERT_TRUE(hvLoadModule(PT_MODULE_PATH, again, error)) << error;
    EXPECT_EQ(again.descriptor, module.descriptor);
    hvTerminateModule(module);
    EXPECT_TRUE(vos::isCallable("PerfTools.Tracer.logOrviaData"));
}

TEST(Module, RefusesWhatIsNoModule) {
    hvLoadedModule module;
    std::string error;
    EXPECT_FALSE(hvLoadModule("/nonexistent/libnothing.so", module, error));
    EXPECT_FALSE(error.empty());
    EXPECT_FALSE(hvLoadModule(PT_PLATFORM_PATH, module, error));
    EXPECT_NE(error.find("QueryHVFcnTable_pt_platform"), std::string::npos) << error;
    EXPECT_EQ(module.descriptor, nullptr);
}

}  // namespace
