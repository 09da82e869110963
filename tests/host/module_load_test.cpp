// The tracer as a host loads it: by path, through its module descriptor, and then only through
// the class system.

#include <performance_tracer/module.h>
#include <performance_tracer/performance_tracer.h>

#include <pt_platform/except.h>
#include <pt_platform/module.h>
#include <pt_platform/vos.h>

#include <gtest/gtest.h>

namespace {

std::vector<hvUniqueArray> call(const std::string& method, std::vector<hvUniqueArray> inputs,
                                std::uint32_t nargout = 0) {
    std::vector<const hvArray*> args;
    for (const auto& input : inputs) {
        args.push_back(input.get());
    }
    return vos::invoke(method, nargout, args);
}

template <typename... Value>
std::vector<hvUniqueArray> values(Value... value) {
    std::vector<hvUniqueArray> out;
    (out.emplace_back(value), ...);
    return out;
}

TEST(Module, LoadsAsTheHostLoadsIt) {
    hvLoadedModule module;
    std::string error;
    ASSERT_TRUE(hvLoadModule(PT_MODULE_PATH, module, error)) << error;
    EXPECT_STREQ(module.descriptor->moduleName, "performance_tracer");
    ASSERT_TRUE(vos::isCallable("PerfTools.Tracer.logOrviaData"));
    EXPECT_EQ(vos::visibleMethods("PerfTools.Tracer").front(), "clearRawData");

    const auto enabled = call("PerfTools.Tracer.enable",
                              values(hvCreateString("Module"), hvCreateLogicalScalar(true)), 1);
    ASSERT_EQ(enabled.size(), 1u);
    EXPECT_TRUE(hvIsLogicalScalarTrue(enabled[0].get()));
    for (bool start : {true, false}) {
        call("PerfTools.Tracer.logOrviaData",
             values(hvCreateString("Module"), hvCreateString("loaded phase"),
                    hvCreateLogicalScalar(start)));
    }
    const auto points = ptTracer()->snapshotRawData();
    ASSERT_EQ(points->size(), 2u);
    EXPECT_EQ(ptGetPhaseStr((*points)[0]->_phaseID), "loaded phase");
    EXPECT_TRUE((*points)[0]->_isPhaseStart);
    EXPECT_FALSE((*points)[1]->_isPhaseStart);

    try {
        call("PerfTools.Tracer.enable", values(hvCreateDoubleScalar(1)), 1);
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
