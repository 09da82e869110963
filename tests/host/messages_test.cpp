// Every error of PerfTools.Tracer as a user reads it: the catalogue's text with each of the
// arguments that the methods actually pass.

#include <pt_platform/except.h>

#include <gtest/gtest.h>

#include <cctype>
#include <set>
#include <string>
#include <vector>

#include "host/messages.h"

namespace {

struct Rendered {
    const char* id;
    std::vector<std::string> arguments;
    const char* text;
};

std::string render(const Rendered& message) {
    performance_tracer::MessageId id(message.id, message.arguments.size());
    for (std::size_t i = 0; i < message.arguments.size(); ++i) {
        id.setArgument(i, message.arguments[i]);
    }
    return resource_core::formatMessage(id);
}

const Rendered kMessages[] = {
    {"ExpectedEvenNumberOfParameters",
     {},
     "Parameters must come as name-value pairs, but an odd number of inputs was given."},
    {"InvalidNames",
     {},
     "A parameter name, group name, model or statistics type is not valid here: it is not text, "
     "it is empty, or it is not one of the names this method accepts."},
    {"NoRawTracerData",
     {},
     "There is no tracer data to report on. Enable a grouping with "
     "PerfTools.Tracer.enable('<grouping>', true) and run the code to measure first."},
    {"MissingHvfExt", {}, "The file name must contain the extension '.hvf'."},
    {"OpenFileFailed", {"runs/a.hvf"}, "The file 'runs/a.hvf' could not be opened."},
    {"OpenFileFailed", {""}, "The file with an empty name could not be opened."},
    {"WriteFileFailed", {"r.html"}, "The file 'r.html' could not be written or closed."},
    {"MinParamsNotReached", {"1"}, "Not enough inputs: this method takes at least 1."},
    {"MinParamsNotReached", {"4"}, "Not enough inputs: this method takes at least 4."},
    {"MaxParamsExceeded", {"1"}, "Too many inputs: this method takes at most 1."},
    {"MaxParamsExceeded", {"8"}, "Too many inputs: this method takes at most 8."},
    {"UnexpectedValue", {"lhslabel"}, "The value for \"lhslabel\" is of an unexpected class."},
    {"UnexpectedValue", {"MyGroup"}, "The value for \"MyGroup\" is of an unexpected class."},
    {"UnexpectedValue", {""}, "The value for an empty name is of an unexpected class."},
    {"UnexpectedValue",
     {"installed products: [evalcapture('ver')]"},
     "The value for \"installed products: [evalcapture('ver')]\" is of an unexpected class."},
    {"ParameterMismatchBoolean",
     {"Start of Phase"},
     "The value of 'Start of Phase' must be a logical scalar, true or false."},
    {"WindowsOnlyFeature",
     {"Detailed Memory Statistics"},
     "Detailed Memory Statistics are available on Windows only."},
    {"ParameterMismatchString",
     {"Model Name"},
     "The value of 'Model Name' must be text, a character vector."},
    {"ParameterMismatchString",
     {"htmlfile"},
     "The value of 'htmlfile' must be text, a character vector."},
    {"InvalidMetric",
     {"time", "basicmemory", "detailedmemory"},
     "The metric must be 'time', 'basicmemory' or 'detailedmemory'."},
    {"NoRawTracerDataLoaded",
     {"left.hvf"},
     "There is nothing to compare: the file 'left.hvf' holds no tracer data."},
    {"NoRawTracerDataLoaded",
     {""},
     "There is nothing to compare: the tracer's memory holds no tracer data."},
    {"ExpectedNames",
     {"'grouping' or 'model'"},
     "A required parameter is missing, or a parameter name is not text ('grouping' or "
     "'model')."},
    {"ExpectedNames",
     {"'htmlfile' must be set"},
     "A required parameter is missing, or a parameter name is not text ('htmlfile' must be "
     "set)."},
    {"ExpectedNames",
     {"'htmlfile' must be set."},
     "A required parameter is missing, or a parameter name is not text ('htmlfile' must be "
     "set)."},
    {"ExpectedNames",
     {"'htmlfile' and one of 'lhsfile' or 'rhsfile' to be set."},
     "A required parameter is missing, or a parameter name is not text ('htmlfile' and one of "
     "'lhsfile' or 'rhsfile' to be set)."},
    {"ExpectedNames",
     {"at least one of 'lhsfile' or 'rhsfile' must be set"},
     "A required parameter is missing, or a parameter name is not text (at least one of "
     "'lhsfile' or 'rhsfile' must be set)."},
    {"AddGroupingError",
     {"Group: A"},
     "The grouping could not be added, because a grouping that already has sub-groupings can "
     "neither take new ones nor become a sub-grouping (Group: A)."},
    {"AddGroupingError",
     {"Sub group: B"},
     "The grouping could not be added, because a grouping that already has sub-groupings can "
     "neither take new ones nor become a sub-grouping (Sub group: B)."},
    {"AddGroupingExpectedString",
     {},
     "Every element of the cell array must be a character vector."},
    {"RemoveGroupingError", {"Run"}, "There is no grouping 'Run' to remove."},
    {"RemoveGroupingError", {""}, "There is no grouping with an empty name to remove."},
    {"DataWriteFail",
     {"Raw Data", "run.hvf"},
     "Raw Data could not be written to the file 'run.hvf'."},
    {"DataWriteFail",
     {"System Information", "run.hvf"},
     "System Information could not be written to the file 'run.hvf'."},
    {"DataWriteFail",
     {"Orvia Root", "run.hvf"},
     "Orvia Root could not be written to the file 'run.hvf'."},
};

TEST(Messages, EachReadsAsASentenceWithTheArgumentsTheMethodsPass) {
    std::set<std::string> rendered;
    for (const Rendered& message : kMessages) {
        const std::string text = render(message);
        EXPECT_EQ(text, message.text) << message.id;
        EXPECT_TRUE(std::isupper(static_cast<unsigned char>(text.front()))) << text;
        EXPECT_TRUE(text.ends_with(".") && !text.ends_with("..")) << text;
        EXPECT_EQ(text.find("''"), std::string::npos) << text;
        rendered.insert(message.id);
    }
    // Every id the methods raise has a text, and the table renders each of them.
    std::set<std::string> ids;
#define PT_MESSAGE_ID_NAME(name, count) ids.insert(#name);
    PT_MESSAGE_IDS(PT_MESSAGE_ID_NAME)
#undef PT_MESSAGE_ID_NAME
    EXPECT_EQ(rendered, ids);
    const std::vector<std::string> catalogued =
        resource_core::catalogueIds(performance_tracer::kMessageGroup);
    EXPECT_EQ(std::set<std::string>(catalogued.begin(), catalogued.end()), ids);

    // A raised error carries its id and its text.
    try {
        performance_tracer::raise<performance_tracer::Errors::MaxParamsExceeded>(std::string("2"));
    } catch (const performance_tracer::Error<performance_tracer::Errors::MaxParamsExceeded>& e) {
        EXPECT_EQ(e.getErrorID(), "performance_tracer:PerformanceTracer:MaxParamsExceeded");
        EXPECT_STREQ(e.what(), "Too many inputs: this method takes at most 2.");
    }
}

TEST(Messages, PlaceholdersForArgumentsThatMayBeEmpty) {
    // A message outside the catalogue reads as its id and arguments.
    resource_core::BaseMsgID unknown("elsewhere", "Unknown", 2);
    unknown.setArgument(0, std::string("a"));
    unknown.setArgument(1, std::int64_t{7});
    EXPECT_EQ(resource_core::formatMessage(unknown), "elsewhere:Unknown a 7");
    // An argument's full stop stays where the text goes on with anything else.
    performance_tracer::MessageId file("OpenFileFailed", 1);
    file.setArgument(0, std::string("run."));
    EXPECT_EQ(resource_core::formatMessage(file), "The file 'run.' could not be opened.");
}

}  // namespace
