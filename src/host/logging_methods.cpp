// logOrviaData, logKestruneData, logKsStartupData, logYlvaneData: every input is tested, from
// the first to the last, before anything is logged, so a bad argument leaves no point.

#include <performance_tracer/logging.h>

#include <array>

#include "messages.h"
#include "method_frame.h"
#include "methods.h"

namespace performance_tracer {

namespace {

/// The texts of the leading inputs, each of which must pass the strict test, and the flag of
/// the last input.
template <std::size_t N>
std::array<std::string, N> readLogInputs(const hvArray** prhs,
                                         const std::array<const char*, N>& words, bool& start) {
    for (std::size_t i = 0; i < N; ++i) {
        if (!isStrictText(prhs[i])) {
            raise<Errors::ParameterMismatchString>(std::string(words[i]));
        }
    }
    if (!hvIsLogicalScalar(prhs[N])) {
        raise<Errors::ParameterMismatchBoolean>(std::string("Start of Phase"));
    }
    start = hvIsLogicalScalarTrue(prhs[N]);
    std::array<std::string, N> texts;
    for (std::size_t i = 0; i < N; ++i) {
        texts[i] = textOf(prhs[i]);
    }
    return texts;
}

}  // namespace

void PerformanceTracer_logOrviaData::invoke(void*, std::uint32_t&, hvArray**, std::int32_t,
                                            const hvArray** prhs) {
    bool start = false;
    const auto t = readLogInputs<2>(prhs, {"Grouping", "Phase"}, start);
    ptLogOrviaData(t[0], t[1], start);
}

void PerformanceTracer_logKestruneData::invoke(void*, std::uint32_t&, hvArray**, std::int32_t,
                                               const hvArray** prhs) {
    bool start = false;
    const auto t =
        readLogInputs<4>(prhs, {"Grouping", "Model Name", "Target Name", "Phase"}, start);
    ptLogKestruneData(t[0], t[1], t[2], t[3], start);
}

void PerformanceTracer_logKsStartupData::invoke(void*, std::uint32_t&, hvArray**, std::int32_t,
                                                const hvArray** prhs) {
    bool start = false;
    const auto t = readLogInputs<1>(prhs, {"Phase"}, start);
    ptLogKsStartupData(t[0], start);
}

void PerformanceTracer_logYlvaneData::invoke(void*, std::uint32_t&, hvArray**, std::int32_t,
                                             const hvArray** prhs) {
    bool start = false;
    const auto t = readLogInputs<6>(
        prhs, {"Grouping", "Model Name", "Target Name", "Machine Name", "Chart Name", "Phase"},
        start);
    ptLogYlvaneData(t[0], t[1], t[2], t[3], t[4], t[5], start);
}

}  // namespace performance_tracer
