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
    // Each method's name, its count of inputs ("+" when more may follow) and of outputs.
    const std::string expected =
        "clearRawData 1+ 0 diagnosticReport 1+ 0 enable 1+ 1 enableGlobalLogging 1 1 "
        "enableKsStartupLogging 1 1 enableDetailedMemStats 1 1 "
        "generateAggregateDifferenceReport 1+ 0 generateDifferenceReport 1+ 0 "
        "generateAggregateReport 1+ 0 generateHTMLReport 1+ 0 "
        "generateKsStartupDifferenceReport 1+ 0 generateKsStartupReport 1+ 0 getProcessedData 1+ 1 "
        "getAggregateProcessedData 1+ 1 getRawData 0 1 loadTracerData 1 0 logOrviaData 3 0 "
        "logKestruneData 5 0 logKsStartupData 2 0 logYlvaneData 7 0 addGrouping 2 0 "
        "removeGrouping 1 0 saveKsStartupData 1+ 0 saveToFile 1 0 setStatisticsTypeForModel 2 0 "
        "setUseDetailedExceptionDiagnostics 1 1 ";
    std::string methods;
    for (const vos::VOSMethodInfo* method : tracer->methods()) {
        const auto* signature = method->getSignature();
        methods += method->getName() + " " + std::to_string(signature->numberOfInputs()) +
                   (signature->hasOpenEndedInputs() ? "+ " : " ") +
                   std::to_string(signature->numberOfOutputs()) + " ";
        EXPECT_TRUE(method->isStatic());
        EXPECT_EQ(
            dynamic_cast<const performance_tracer::PerformanceTracerBaseMI&>(*method).getOwner(),
            tracer);
        EXPECT_FALSE(method->isConversion());
        EXPECT_EQ(method->isVisible(), method != tracer->methods().back());
    }
    EXPECT_EQ(methods, expected);
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
