#include <pt_platform/hvm.h>

#include "host/messages.h"
#include "host/methods.h"
#include "method_test_support.h"

namespace pt::testing {
namespace {

using Registration = MethodTest;

TEST_F(Registration, TheClassAndItsMethodsInOrder) {
    vos::VOSPackage* package = vos::VOSPackage::getPackage(vos::VOSNameID("PerfTools"));
    ASSERT_NE(package, nullptr);
    vos::VOSClassInfo* tracer = package->findClass("Tracer");
    ASSERT_NE(tracer, nullptr);
    EXPECT_EQ(tracer->getFullName(), "PerfTools.Tracer");
    const struct {
        const char* name;
        std::size_t inputs;
        bool open;
        std::size_t outputs;
    } expected[] = {
        {"clearRawData", 1, true, 0},
        {"diagnosticReport", 1, true, 0},
        {"enable", 1, true, 1},
        {"enableGlobalLogging", 1, false, 1},
        {"enableKsStartupLogging", 1, false, 1},
        {"enableDetailedMemStats", 1, false, 1},
        {"generateAggregateDifferenceReport", 1, true, 0},
        {"generateDifferenceReport", 1, true, 0},
        {"generateAggregateReport", 1, true, 0},
        {"generateHTMLReport", 1, true, 0},
        {"generateKsStartupDifferenceReport", 1, true, 0},
        {"generateKsStartupReport", 1, true, 0},
        {"getProcessedData", 1, true, 1},
        {"getAggregateProcessedData", 1, true, 1},
        {"getRawData", 0, false, 1},
        {"loadTracerData", 1, false, 0},
        {"logOrviaData", 3, false, 0},
        {"logKestruneData", 5, false, 0},
        {"logKsStartupData", 2, false, 0},
        {"logYlvaneData", 7, false, 0},
        {"addGrouping", 2, false, 0},
        {"removeGrouping", 1, false, 0},
        {"saveKsStartupData", 1, true, 0},
        {"saveToFile", 1, false, 0},
        {"setStatisticsTypeForModel", 2, false, 0},
        {"setUseDetailedExceptionDiagnostics", 1, false, 1},
    };
    const auto& methods = tracer->methods();
    ASSERT_EQ(methods.size(), std::size(expected));
    for (std::size_t i = 0; i < methods.size(); ++i) {
        EXPECT_EQ(methods[i]->getName(), expected[i].name);
        EXPECT_EQ(methods[i]->getSignature()->numberOfInputs(), expected[i].inputs);
        EXPECT_EQ(methods[i]->getSignature()->hasOpenEndedInputs(), expected[i].open);
        EXPECT_EQ(methods[i]->getSignature()->numberOfOutputs(), expected[i].outputs);
        EXPECT_TRUE(methods[i]->isStatic());
        EXPECT_EQ(
            dynamic_cast<performance_tracer::PerformanceTracerBaseMI&>(*methods[i]).getOwner(),
            tracer);
        EXPECT_FALSE(methods[i]->isConversion());
        EXPECT_EQ(methods[i]->isVisible(), i + 1 != methods.size());
    }
    EXPECT_EQ(package->functionNames(),
              (std::vector<std::string>{"kssvStringTableDoGarbageCollection",
                                        "kssvStringTableDisableGarbageCollection",
                                        "kssvStringTableEnableGarbageCollection"}));

    // The hidden diagnostics switch reaches the host's string table.
    const hvm::StringTable& table = hvm::StringTable::instance();
    call("PerfTools.Tracer.setUseDetailedExceptionDiagnostics", valuesOf(flag(true)), 1);
    EXPECT_FALSE(table.skipsDetailedStackDiagnostics());
    call("PerfTools.Tracer.setUseDetailedExceptionDiagnostics", valuesOf(flag(false)), 1);
    EXPECT_TRUE(table.skipsDetailedStackDiagnostics());

    // An instance is a hollow tracer.
    void* instance = tracer->createInstance();
    EXPECT_EQ(static_cast<PerformanceTracer*>(instance)->_rawData, nullptr);
    tracer->destroyInstance(instance);
}

TEST_F(Registration, EntryPointsRunOnce) {
    vos::VOSClassInfo* tracer =
        vos::VOSPackage::getPackage(vos::VOSNameID("PerfTools"))->findClass("Tracer");
    HVInitialize_performance_tracer();
    initialize_performance_tracer();
    ptRegisterPerfVOSPackage();
    HVTerminate_performance_tracer();
    HVTerminate_performance_tracer();
    destroy_performance_tracer();
    // Termination unregisters nothing; the tracer answers on.
    EXPECT_EQ(vos::VOSPackage::getPackage(vos::VOSNameID("PerfTools"))->findClass("Tracer"),
              tracer);
    EXPECT_EQ(vos::visibleMethods("PerfTools.Tracer").size(), 25u);  // added once
    EXPECT_TRUE(vos::isCallable("PerfTools.Tracer.enable"));
    const Values answer = call("PerfTools.Tracer.enable", valuesOf(text("anything")), 1);
    ASSERT_EQ(answer.size(), 1u);
    EXPECT_FALSE(hvIsLogicalScalarTrue(answer[0].get()));

    const hvModuleDescriptor* descriptor = QueryHVFcnTable_performance_tracer();
    EXPECT_EQ(descriptor->layoutVersion, HV_MODULE_DESCRIPTOR_VERSION);
    EXPECT_STREQ(descriptor->moduleName, "performance_tracer");
    EXPECT_EQ(descriptor->initialize, &HVInitialize_performance_tracer);
}

}  // namespace
}  // namespace pt::testing
