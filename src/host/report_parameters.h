#pragma once

// The name-value pairs of the report methods. Each method knows its names; each name has a
// kind of value and an error for a value that fails its test. The pairs are read in order and
// a repeated name keeps its last value.

#include <pt_platform/hv.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace performance_tracer {

/// The error raised for a parameter's bad value, with the parameter's name.
enum class BadValue { ParameterMismatchString, UnexpectedValue };

/// A parameter a method knows and where its value goes.
struct ReportParameter {
    enum class Kind { Text, Flag, Metric };
    std::string_view name;
    Kind kind;
    BadValue error;
    std::string* text = nullptr;  // Text and Metric
    bool* flag = nullptr;         // Flag
    bool* passed = nullptr;       // set when the pair is read, if given
};

struct ScanRules {
    /// Names are folded to lower case before they are compared (all but diagnosticReport).
    bool foldNames = true;
    /// The value is tested before the name is looked at, so that an unknown name with a bad
    /// value raises the value's error.
    bool valueFirst = false;
};

/// Reads the pairs into the parameters; raises InvalidNames, the parameters' errors and
/// InvalidMetric as the pairs demand.
void scanReportPairs(std::int32_t nrhs, const hvArray** prhs,
                     const std::vector<ReportParameter>& parameters, ScanRules rules);

/// A metric name folded to lower case; raises InvalidMetric for a name that is no metric.
std::string checkedMetric(const std::string& name);

/// The count checks of an open method: below minimum raises MinParamsNotReached with
/// minimumText, above maximum MaxParamsExceeded with maximumText, an odd count
/// ExpectedEvenNumberOfParameters.
void checkPairCount(std::int32_t nrhs, std::int32_t minimum, const char* minimumText,
                    std::int32_t maximum, const char* maximumText);

}  // namespace performance_tracer
