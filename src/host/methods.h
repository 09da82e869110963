#pragma once

// The records of PerfTools.Tracer: one class per method, named PerformanceTracer_ and the
// method's name, all static. Each invoke reads its inputs by the rules of the method frame.

#include <pt_platform/vos.h>

#include <memory>
#include <string>

namespace performance_tracer {

/// What the method records share: the class they belong to, their name and their signature.
class PerformanceTracerBaseMI : public vos::VOSMethodInfo {
public:
    PerformanceTracerBaseMI(vos::VOSClassInfo* owner, std::string name);
    ~PerformanceTracerBaseMI() override;

    const std::string& getName() const override { return _name; }
    const vos::VOSMethodSignature* getSignature() const override { return _signature; }
    bool isConversion() const override { return false; }
    /// The class the method belongs to.
    vos::VOSClassInfo* getOwner() const { return _owner; }
    /// Takes ownership of the signature.
    void setSignature(vos::VOSMethodSignature* signature);

private:
    vos::VOSClassInfo* _owner;  // not owned
    std::string _name;
    vos::VOSMethodSignature* _signature = nullptr;
};

#define PT_METHOD_CLASS(ClassName)                                                        \
    class ClassName : public PerformanceTracerBaseMI {                                    \
    public:                                                                               \
        using PerformanceTracerBaseMI::PerformanceTracerBaseMI;                           \
        void invoke(void* unused, std::uint32_t& nlhs, hvArray** plhs, std::int32_t nrhs, \
                    const hvArray** prhs) override;                                       \
        bool isStatic() const override { return true; }                                   \
    }

PT_METHOD_CLASS(PerformanceTracer_clearRawData);
PT_METHOD_CLASS(PerformanceTracer_diagnosticReport);
PT_METHOD_CLASS(PerformanceTracer_enable);
PT_METHOD_CLASS(PerformanceTracer_enableGlobalLogging);
PT_METHOD_CLASS(PerformanceTracer_enableKsStartupLogging);
PT_METHOD_CLASS(PerformanceTracer_enableDetailedMemStats);
PT_METHOD_CLASS(PerformanceTracer_generateAggregateDifferenceReport);
PT_METHOD_CLASS(PerformanceTracer_generateDifferenceReport);
PT_METHOD_CLASS(PerformanceTracer_generateAggregateReport);
PT_METHOD_CLASS(PerformanceTracer_generateHTMLReport);
PT_METHOD_CLASS(PerformanceTracer_generateKsStartupDifferenceReport);
PT_METHOD_CLASS(PerformanceTracer_generateKsStartupReport);
PT_METHOD_CLASS(PerformanceTracer_getProcessedData);
PT_METHOD_CLASS(PerformanceTracer_getAggregateProcessedData);
PT_METHOD_CLASS(PerformanceTracer_getRawData);
PT_METHOD_CLASS(PerformanceTracer_loadTracerData);
PT_METHOD_CLASS(PerformanceTracer_logOrviaData);
PT_METHOD_CLASS(PerformanceTracer_logKestruneData);
PT_METHOD_CLASS(PerformanceTracer_logKsStartupData);
PT_METHOD_CLASS(PerformanceTracer_logYlvaneData);
PT_METHOD_CLASS(PerformanceTracer_addGrouping);
PT_METHOD_CLASS(PerformanceTracer_removeGrouping);
PT_METHOD_CLASS(PerformanceTracer_saveKsStartupData);
PT_METHOD_CLASS(PerformanceTracer_saveToFile);
PT_METHOD_CLASS(PerformanceTracer_setStatisticsTypeForModel);

#undef PT_METHOD_CLASS

/// setUseDetailedExceptionDiagnostics: callable by name, left out of the class's listing.
class PerformanceTracer_debugEnableDiagnosticDetails : public PerformanceTracerBaseMI {
public:
    using PerformanceTracerBaseMI::PerformanceTracerBaseMI;
    void invoke(void* unused, std::uint32_t& nlhs, hvArray** plhs, std::int32_t nrhs,
                const hvArray** prhs) override;
    bool isStatic() const override { return true; }
    bool isVisible() const override { return false; }
};

}  // namespace performance_tracer
