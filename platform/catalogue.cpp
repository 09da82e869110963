// The host's message catalogue: one text per message id, with placeholders {1}, {2} ... for the
// message's arguments in order.

#include <pt_platform/except.h>
#include <pt_platform/hv.h>

#include <boost/variant/static_visitor.hpp>

#include <map>
#include <utility>

namespace resource_core {

namespace {

using Key = std::pair<std::string, std::string>;

const std::map<Key, const char*>& catalogue() {
    static const std::map<Key, const char*> texts = {
        // The class system.
        {{"vos", "UndefinedFunction"}, "There is no method or function '{1}'."},
        {{"vos", "NotEnoughInputs"},
         "Not enough input arguments: {1} takes {2}, but {3} were given."},
        {{"vos", "TooManyInputs"}, "Too many input arguments: {1} takes {2}, but {3} were given."},
        {{"vos", "TooManyOutputs"},
         "Too many output arguments: {1} returns at most {2}, but {3} were requested."},

        // The performance tracer module.
        {{"performance_tracer:PerformanceTracer", "ExpectedEvenNumberOfParameters"},
         "Parameters must come as name-value pairs, but an odd number of inputs was given."},
        {{"performance_tracer:PerformanceTracer", "InvalidNames"},
         "A parameter name, group name, model or statistics type is not valid here: it is not "
         "text, it is empty, or it is not one of the names this method accepts."},
        {{"performance_tracer:PerformanceTracer", "NoRawTracerData"},
         "There is no tracer data to report on. Enable a grouping with "
         "PerfTools.Tracer.enable('<grouping>', true) and run the code to measure first."},
        {{"performance_tracer:PerformanceTracer", "MissingHvfExt"},
         "The file name must contain the extension '.hvf'."},
        {{"performance_tracer:PerformanceTracer", "OpenFileFailed"},
         "The file '{1}' could not be opened."},
        {{"performance_tracer:PerformanceTracer", "WriteFileFailed"},
         "The file '{1}' could not be written or closed."},
        {{"performance_tracer:PerformanceTracer", "MinParamsNotReached"},
         "Not enough input arguments were given; at least {1} are required."},
        {{"performance_tracer:PerformanceTracer", "MaxParamsExceeded"},
         "Too many input arguments were given; at most {1} are accepted."},
        {{"performance_tracer:PerformanceTracer", "UnexpectedValue"},
         "The value for '{1}' is of an unexpected class."},
        {{"performance_tracer:PerformanceTracer", "ParameterMismatchBoolean"},
         "'{1}' must be a logical scalar, true or false."},
        {{"performance_tracer:PerformanceTracer", "WindowsOnlyFeature"},
         "{1} are available on Windows only."},
        {{"performance_tracer:PerformanceTracer", "ParameterMismatchString"},
         "'{1}' must be a character vector."},
        {{"performance_tracer:PerformanceTracer", "InvalidMetric"},
         "The metric must be '{1}', '{2}' or '{3}'."},
        {{"performance_tracer:PerformanceTracer", "NoRawTracerDataLoaded"},
         "One side of the comparison holds no tracer data: '{1}' (empty for the data in "
         "memory)."},
        {{"performance_tracer:PerformanceTracer", "ExpectedNames"},
         "Expected the parameter names {1}."},
        {{"performance_tracer:PerformanceTracer", "AddGroupingError"},
         "The grouping could not be added, because this one already has sub-groupings: {1}."},
        {{"performance_tracer:PerformanceTracer", "AddGroupingExpectedString"},
         "Every element of the cell array must be a character vector."},
        {{"performance_tracer:PerformanceTracer", "RemoveGroupingError"},
         "'{1}' is not a grouping, so it cannot be removed."},
        {{"performance_tracer:PerformanceTracer", "DataWriteFail"},
         "The {1} could not be written to the file '{2}'."},
    };
    return texts;
}

struct ArgumentText : boost::static_visitor<std::string> {
    std::string operator()(std::int64_t value) const { return std::to_string(value); }
    std::string operator()(const std::string& value) const { return value; }
    std::string operator()(const std::u16string& value) const {
        return hvCharsToUtf8(value.data(), value.size());
    }
};

}  // namespace

std::string argumentText(const MsgArg& argument) {
    return boost::apply_visitor(ArgumentText(), argument);
}

const char* catalogueText(const std::string& group, const std::string& id) {
    const auto found = catalogue().find({group, id});
    return found == catalogue().end() ? nullptr : found->second;
}

std::vector<std::string> catalogueIds(const std::string& group) {
    std::vector<std::string> ids;
    for (const auto& [key, text] : catalogue()) {
        if (key.first == group) {
            ids.push_back(key.second);
        }
    }
    return ids;
}

std::string formatMessage(const BaseMsgID& message) {
    const char* text = catalogueText(message.group(), message.id());
    if (!text) {
        std::string fallback = message.group() + ":" + message.id();
        for (const MsgArg& argument : message.arguments()) {
            fallback += " " + argumentText(argument);
        }
        return fallback;
    }
    std::string out;
    for (const char* c = text; *c; ++c) {
        if (c[0] == '{' && c[1] >= '1' && c[1] <= '9' && c[2] == '}') {
            const std::size_t slot = static_cast<std::size_t>(c[1] - '1');
            if (slot < message.arguments().size()) {
                out += argumentText(message.arguments()[slot]);
            }
            c += 2;
        } else {
            out += *c;
        }
    }
    return out;
}

}  // namespace resource_core
