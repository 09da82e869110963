#include "report_parameters.h"

#include "messages.h"
#include "method_frame.h"

namespace performance_tracer {

namespace {

[[noreturn]] void raiseBadValue(BadValue error, const std::string& name) {
    if (error == BadValue::UnexpectedValue) {
        raise<Errors::UnexpectedValue>(name);
    }
    raise<Errors::ParameterMismatchString>(name);
}

bool valuePasses(const ReportParameter& parameter, const hvArray* value) {
    return parameter.kind == ReportParameter::Kind::Flag ? hvIsLogicalScalar(value)
                                                         : isPlainText(value);
}

void store(const ReportParameter& parameter, const hvArray* value, const std::string& name) {
    if (!valuePasses(parameter, value)) {
        // A flag that is no logical scalar is reported as a text mismatch, as it always was.
        raiseBadValue(parameter.error, name);
    }
    if (parameter.passed) {
        *parameter.passed = true;
    }
    if (parameter.kind == ReportParameter::Kind::Flag) {
        *parameter.flag = hvIsLogicalScalarTrue(value);
        return;
    }
    *parameter.text = textOf(value);
    if (parameter.kind == ReportParameter::Kind::Metric) {
        *parameter.text = checkedMetric(*parameter.text);
    }
}

}  // namespace

std::string checkedMetric(const std::string& name) {
    std::string folded = foldLower(name);
    if (!isMetricName(folded)) {
        raise<Errors::InvalidMetric>(std::string("time"), std::string("basicmemory"),
                                     std::string("detailedmemory"));
    }
    return folded;
}

void scanReportPairs(std::int32_t nrhs, const hvArray** prhs,
                     const std::vector<ReportParameter>& parameters, ScanRules rules) {
    for (std::int32_t i = 0; i + 1 < nrhs; i += 2) {
        const hvArray* nameValue = prhs[i];
        const hvArray* value = prhs[i + 1];
        const std::string name = rules.foldNames ? foldLower(textOf(nameValue)) : textOf(nameValue);
        if (rules.valueFirst && !isPlainText(value)) {
            // Every parameter of these methods is text; they share one error.
            raiseBadValue(parameters.front().error, name);
        }
        if (!isPlainText(nameValue)) {
            raise<Errors::InvalidNames>();
        }
        const ReportParameter* known = nullptr;
        for (const ReportParameter& parameter : parameters) {
            if (parameter.name == name) {
                known = &parameter;
            }
        }
        if (!known) {
            raise<Errors::InvalidNames>();
        }
        store(*known, value, name);
    }
}

void checkPairCount(std::int32_t nrhs, std::int32_t minimum, const char* minimumText,
                    std::int32_t maximum, const char* maximumText) {
    if (nrhs < minimum) {
        raise<Errors::MinParamsNotReached>(std::string(minimumText));
    }
    if (nrhs > maximum) {
        raise<Errors::MaxParamsExceeded>(std::string(maximumText));
    }
    if (nrhs % 2 != 0) {
        raise<Errors::ExpectedEvenNumberOfParameters>();
    }
}

}  // namespace performance_tracer
