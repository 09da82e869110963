// The host's message catalogue: one text per message id, with placeholders {1}, {2} ... for the
// message's arguments in order, and {1?present|absent} for an argument that may be empty (% in
// the present form stands for the argument).

#include <pt_platform/except.h>
#include <pt_platform/hv.h>

#include <boost/variant/static_visitor.hpp>

#include <map>
#include <string_view>
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

        // The performance tracer module. The arguments are fixed by the methods: names of
        // parameters and inputs, file names (empty for the data in memory), counts as text,
        // the grouping layer's refusals ("Group: A", "Sub group: B"), and sentences of their
        // own for the missing parameters.
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
         "The file {1?'%'|with an empty name} could not be opened."},
        {{"performance_tracer:PerformanceTracer", "WriteFileFailed"},
         "The file {1?'%'|with an empty name} could not be written or closed."},
        {{"performance_tracer:PerformanceTracer", "MinParamsNotReached"},
         "Not enough inputs: this method takes at least {1}."},
        {{"performance_tracer:PerformanceTracer", "MaxParamsExceeded"},
         "Too many inputs: this method takes at most {1}."},
        {{"performance_tracer:PerformanceTracer", "UnexpectedValue"},
         "The value for {1?\"%\"|an empty name} is of an unexpected class."},
        {{"performance_tracer:PerformanceTracer", "ParameterMismatchBoolean"},
         "The value of '{1}' must be a logical scalar, true or false."},
        {{"performance_tracer:PerformanceTracer", "WindowsOnlyFeature"},
         "{1} are available on Windows only."},
        {{"performance_tracer:PerformanceTracer", "ParameterMismatchString"},
         "The value of '{1}' must be text, a character vector."},
        {{"performance_tracer:PerformanceTracer", "InvalidMetric"},
         "The metric must be '{1}', '{2}' or '{3}'."},
        {{"performance_tracer:PerformanceTracer", "NoRawTracerDataLoaded"},
         "There is nothing to compare: {1?the file '%'|the tracer's memory} holds no tracer "
         "data."},
        {{"performance_tracer:PerformanceTracer", "ExpectedNames"},
         "A required parameter is missing, or a parameter name is not text ({1})."},
        {{"performance_tracer:PerformanceTracer", "AddGroupingError"},
         "The grouping could not be added, because a grouping that already has sub-groupings "
         "can neither take new ones nor become a sub-grouping ({1})."},
        {{"performance_tracer:PerformanceTracer", "AddGroupingExpectedString"},
         "Every element of the cell array must be a character vector."},
        {{"performance_tracer:PerformanceTracer", "RemoveGroupingError"},
         "There is no grouping {1?'%'|with an empty name} to remove."},
        {{"performance_tracer:PerformanceTracer", "DataWriteFail"},
         "{1} could not be written to the file '{2}'."},
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

/// An argument in its place. Some arguments are sentences that end in a full stop; where the
/// text goes on with a full stop or a closing parenthesis, the argument's own is dropped.
void appendArgument(std::string& out, std::string_view argument, std::string_view following) {
    if (argument.ends_with('.') && (following.starts_with('.') || following.starts_with(')'))) {
        argument.remove_suffix(1);
    }
    out += argument;
}

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
    const auto argument = [&message](char digit) {
        const auto slot = static_cast<std::size_t>(digit - '1');
        return slot < message.arguments().size() ? argumentText(message.arguments()[slot])
                                                 : std::string();
    };
    std::string out;
    std::string_view rest(text);
    while (!rest.empty()) {
        const bool placeholder = rest.size() >= 3 && rest[0] == '{' && rest[1] >= '1' &&
                                 rest[1] <= '9' && (rest[2] == '}' || rest[2] == '?');
        if (!placeholder) {
            out += rest.front();
            rest.remove_prefix(1);
            continue;
        }
        const std::string value = argument(rest[1]);
        if (rest[2] == '}') {
            rest.remove_prefix(3);
            appendArgument(out, value, rest);
            continue;
        }
        // {n?present|absent}: one form when the argument has text, the other when it is empty;
        // % in the present form stands for the argument.
        const std::size_t bar = rest.find('|');
        const std::size_t close = rest.find('}');
        if (bar == std::string_view::npos || close == std::string_view::npos || bar > close) {
            out += rest.front();
            rest.remove_prefix(1);
            continue;
        }
        const std::string_view present = rest.substr(3, bar - 3);
        const std::string_view absent = rest.substr(bar + 1, close - bar - 1);
        rest.remove_prefix(close + 1);
        if (value.empty()) {
            out += absent;
            continue;
        }
        for (std::size_t i = 0; i < present.size(); ++i) {
            if (present[i] == '%') {
                appendArgument(out, value, i + 1 < present.size() ? present.substr(i + 1) : rest);
            } else {
                out += present[i];
            }
        }
    }
    return out;
}

}  // namespace resource_core
