// The package PerfTools, its class Tracer, the method records and package functions, and the
// module entry points that hand them to the host's class system.

#include <performance_tracer/module.h>
#include <performance_tracer/tracer.h>

#include <pt_platform/except.h>
#include <pt_platform/ut.h>
#include <pt_platform/vos.h>

#include <cstdlib>
#include <new>

#include "methods.h"
#include "system_info.h"

namespace performance_tracer {

namespace {

// ---- The method table ----

template <typename Method>
PerformanceTracerBaseMI* construct(void* memory, vos::VOSClassInfo* owner, const char* name) {
    return new (memory) Method(owner, name);
}

struct MethodRow {
    const char* name;
    std::size_t size;
    PerformanceTracerBaseMI* (*make)(void*, vos::VOSClassInfo*, const char*);
    int inputs;
    bool openEnded;
    int outputs;
};

template <typename Method>
constexpr MethodRow row(const char* name, int inputs, bool openEnded, int outputs) {
    return {name, sizeof(Method), &construct<Method>, inputs, openEnded, outputs};
}

/// The methods in the order the class adds them. Every declared type is "any"; an open-ended
/// method checks its own count.
const MethodRow kMethods[] = {
    row<PerformanceTracer_clearRawData>("clearRawData", 1, true, 0),
    row<PerformanceTracer_diagnosticReport>("diagnosticReport", 1, true, 0),
    row<PerformanceTracer_enable>("enable", 1, true, 1),
    row<PerformanceTracer_enableGlobalLogging>("enableGlobalLogging", 1, false, 1),
    row<PerformanceTracer_enableKsStartupLogging>("enableKsStartupLogging", 1, false, 1),
    row<PerformanceTracer_enableDetailedMemStats>("enableDetailedMemStats", 1, false, 1),
    row<PerformanceTracer_generateAggregateDifferenceReport>("generateAggregateDifferenceReport",
                                                             1, true, 0),
    row<PerformanceTracer_generateDifferenceReport>("generateDifferenceReport", 1, true, 0),
    row<PerformanceTracer_generateAggregateReport>("generateAggregateReport", 1, true, 0),
    row<PerformanceTracer_generateHTMLReport>("generateHTMLReport", 1, true, 0),
    row<PerformanceTracer_generateKsStartupDifferenceReport>("generateKsStartupDifferenceReport",
                                                             1, true, 0),
    row<PerformanceTracer_generateKsStartupReport>("generateKsStartupReport", 1, true, 0),
    row<PerformanceTracer_getProcessedData>("getProcessedData", 1, true, 1),
    row<PerformanceTracer_getAggregateProcessedData>("getAggregateProcessedData", 1, true, 1),
    row<PerformanceTracer_getRawData>("getRawData", 0, false, 1),
    row<PerformanceTracer_loadTracerData>("loadTracerData", 1, false, 0),
    row<PerformanceTracer_logOrviaData>("logOrviaData", 3, false, 0),
    row<PerformanceTracer_logKestruneData>("logKestruneData", 5, false, 0),
    row<PerformanceTracer_logKsStartupData>("logKsStartupData", 2, false, 0),
    row<PerformanceTracer_logYlvaneData>("logYlvaneData", 7, false, 0),
    row<PerformanceTracer_addGrouping>("addGrouping", 2, false, 0),
    row<PerformanceTracer_removeGrouping>("removeGrouping", 1, false, 0),
    row<PerformanceTracer_saveKsStartupData>("saveKsStartupData", 1, true, 0),
    row<PerformanceTracer_saveToFile>("saveToFile", 1, false, 0),
    row<PerformanceTracer_setStatisticsTypeForModel>("setStatisticsTypeForModel", 2, false, 0),
    row<PerformanceTracer_debugEnableDiagnosticDetails>("setUseDetailedExceptionDiagnostics", 1,
                                                        false, 1),
};

struct PackageFunction {
    const char* name;
    void (*function)();
};

const PackageFunction kPackageFunctions[] = {
    {"kssvStringTableDoGarbageCollection", &kssvStringTableDoGarbageCollection},
    {"kssvStringTableDisableGarbageCollection", &kssvStringTableDisableGarbageCollection},
    {"kssvStringTableEnableGarbageCollection", &kssvStringTableEnableGarbageCollection},
};

// ---- The records ----

class PerfToolsVOSPackageInfo final : public vos::VOSPackageInfo {
public:
    const std::string& getName() const override { return _name; }

    void loadFunctions(vos::factory::FunctionTable& table) override {
        vos::factory::detail::initStringDataTypes();
        for (const PackageFunction& entry : kPackageFunctions) {
            void* memory = std::calloc(1, sizeof(vos::factory::FunctionInfo));
            if (!memory) {
                throw foundation::core::except::bad_alloc();
            }
            auto* info = new (memory)
                vos::factory::FunctionInfo(entry.name, vos::factory::MethodAttributes());
            info->setSignature(vos::factory::impl::Invoker::createSignature("", "void", nullptr));
            info->setInvoker(&vos::factory::impl::Invoker::callVoid, entry.function);
            table.addFunction(info);
        }
    }

    bool isBuiltIn() const override { return false; }

private:
    std::string _name = "PerfTools";
};

class PerformanceTracerVOSClassInfo final : public vos::VOSClassInfo {
public:
    const std::string& getShortName() const override { return _shortName; }
    const std::string& getFullName() const override { return _fullName; }

    void loadMethods() override {
        const vos::VOSNameID any("any");
        for (const MethodRow& entry : kMethods) {
            void* memory = vos::VOSClassInfo::operator new(entry.size);
            PerformanceTracerBaseMI* method = nullptr;
            try {
                method = entry.make(memory, this, entry.name);
                vos::VOSMethodSignature* signature =
                    vos::VOSMethodSignature::createMethodSignature();
                method->setSignature(signature);
                for (int i = 0; i < entry.inputs; ++i) {
                    signature->addInputType(any);
                }
                if (entry.openEnded) {
                    signature->setOpenEndedInputs();
                }
                for (int i = 0; i < entry.outputs; ++i) {
                    signature->addOutputType(any);
                }
            } catch (...) {
                if (method) {
                    method->~PerformanceTracerBaseMI();
                }
                utFree(memory);
                throw;
            }
            addMethod(method);
        }
    }

    // An instance is a hollow tracer state record; the methods never read one.
    void* createInstance() override { return new ::PerformanceTracer(); }
    void destroyInstance(void* instance) override {
        delete static_cast<::PerformanceTracer*>(instance);
    }

    bool isHandleClass() const override { return true; }
    bool isSealedClass() const override { return true; }
    bool isEnumeration() const override { return _stored; }

private:
    std::string _shortName = "Tracer";
    std::string _fullName = "PerfTools.Tracer";
    bool _stored = true;
};

/// The live package, kept for good once found.
vos::VOSPackage* thePackage() {
    static vos::VOSPackage* package = nullptr;
    if (!package) {
        // Never freed: the host keeps the record as long as the process lives.
        void* memory = std::calloc(1, sizeof(PerfToolsVOSPackageInfo));
        if (!memory) {
            throw foundation::core::except::bad_alloc();
        }
        auto* info = new (memory) PerfToolsVOSPackageInfo();
        vos::VOSPackage::addPackage(info);
        package = vos::VOSPackage::getPackage(vos::VOSNameID(info->getName()));
    }
    return package;
}

vos::VOSClassInfo* theClass() {
    static vos::VOSClassInfo* info = nullptr;
    if (!info) {
        info = new PerformanceTracerVOSClassInfo();
    }
    return info;
}

bool gRegistered = false;
bool gInitialized = false;
bool gDestroyed = false;

const hvModuleDescriptor kDescriptor = {
    HV_MODULE_DESCRIPTOR_VERSION,
    "performance_tracer",
    &HVInitialize_performance_tracer,
    &HVTerminate_performance_tracer,
};

}  // namespace

// ---- Method records ----

PerformanceTracerBaseMI::PerformanceTracerBaseMI(vos::VOSClassInfo* owner, std::string name)
    : _owner(owner), _name(std::move(name)) {}

PerformanceTracerBaseMI::~PerformanceTracerBaseMI() { delete _signature; }

void PerformanceTracerBaseMI::setSignature(vos::VOSMethodSignature* signature) {
    delete _signature;
    _signature = signature;
}

}  // namespace performance_tracer

// ---- Entry points ----

void ptRegisterPerfVOSPackage() {
    if (performance_tracer::gRegistered) {
        return;
    }
    performance_tracer::gRegistered = true;
    performance_tracer::thePackage()->addClass(performance_tracer::theClass());
}

void ptUnregisterPerfVOSPackage() {}

void initialize_performance_tracer() {
    if (performance_tracer::gInitialized) {
        return;
    }
    performance_tracer::gInitialized = true;
    ptRegisterPerfVOSPackage();
}

void destroy_performance_tracer() {
    if (performance_tracer::gDestroyed) {
        return;
    }
    performance_tracer::gDestroyed = true;
    ptUnregisterPerfVOSPackage();
}

extern "C" {

void HVInitialize_performance_tracer() { initialize_performance_tracer(); }

void HVTerminate_performance_tracer() { destroy_performance_tracer(); }

const hvModuleDescriptor* QueryHVFcnTable_performance_tracer() {
    return &performance_tracer::kDescriptor;
}
}
