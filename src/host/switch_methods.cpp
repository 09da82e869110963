// enable, enableGlobalLogging, enableKsStartupLogging, enableDetailedMemStats and the hidden
// setUseDetailedExceptionDiagnostics: switches that answer the state they set.

#include <performance_tracer/constants.h>
#include <performance_tracer/groupings.h>
#include <performance_tracer/tracer.h>

#include "messages.h"
#include "method_frame.h"
#include "methods.h"
#include "system_info.h"

namespace performance_tracer {

namespace {

/// The flag of an input that must be a logical scalar.
bool flagOf(const hvArray* value) {
    if (!hvIsLogicalScalar(value)) {
        raise<Errors::ParameterMismatchBoolean>(std::string("Enable"));
    }
    return readBoolean(value);
}

}  // namespace

void PerformanceTracer_enable::invoke(void*, std::uint32_t& nlhs, hvArray** plhs, std::int32_t nrhs,
                                      const hvArray** prhs) {
    if (nrhs > 2) {
        raise<Errors::MaxParamsExceeded>(std::string("2"));
    }
    if (nrhs == 0) {
        raise<Errors::MinParamsNotReached>(std::string("1"));
    }
    if (!isPlainText(prhs[0])) {
        raise<Errors::ParameterMismatchString>(std::string("Grouping"));
    }
    const std::string grouping = textOf(prhs[0]);
    bool state;
    if (nrhs == 1) {
        state = ptIsTracerEnabled(grouping);  // a query changes nothing
    } else {
        state = flagOf(prhs[1]);
        ptEnableTracer(grouping, state);
    }
    setResult(nlhs, plhs, hvCreateLogicalScalar(state));
}

void PerformanceTracer_enableGlobalLogging::invoke(void*, std::uint32_t& nlhs, hvArray** plhs,
                                                   std::int32_t, const hvArray** prhs) {
    const bool enable = flagOf(prhs[0]);
    ptEnableGlobalLogging(enable);
    setResult(nlhs, plhs, hvCreateLogicalScalar(enable));
}

// Startup logging is the ordinary enable state of the reserved grouping.
void PerformanceTracer_enableKsStartupLogging::invoke(void*, std::uint32_t& nlhs, hvArray** plhs,
                                                      std::int32_t, const hvArray** prhs) {
    const bool enable = flagOf(prhs[0]);
    ptEnableTracer(std::string(pt::kKestruneStartupGrouping), enable);
    setResult(nlhs, plhs, hvCreateLogicalScalar(enable));
}

// Detailed memory statistics do not exist on this platform.
void PerformanceTracer_enableDetailedMemStats::invoke(void*, std::uint32_t&, hvArray**,
                                                      std::int32_t, const hvArray** prhs) {
    flagOf(prhs[0]);
    raise<Errors::WindowsOnlyFeature>(std::string("Detailed Memory Statistics"));
}

void PerformanceTracer_debugEnableDiagnosticDetails::invoke(void*, std::uint32_t& nlhs,
                                                            hvArray** plhs, std::int32_t,
                                                            const hvArray** prhs) {
    const bool detailed = flagOf(prhs[0]);
    try {
        // The host's switch says the opposite: true there skips the details.
        const std::string what = "kssvSetSkipDetailedStackDiagnostics";
        const bool skip = !detailed;
        feval(hvm::Factory::getCurrentLocalHVM(), "kssvInternal", what, skip);
    } catch (...) {
        // A host without the switch leaves its diagnostics as they are.
    }
    setResult(nlhs, plhs, hvCreateLogicalScalar(detailed));
}

}  // namespace performance_tracer
