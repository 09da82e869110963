// Every error of PerfTools.Tracer as a user reads it: the catalogue's text with each of the
// arguments that the methods actually pass.

#include <pt_platform/except.h>

#include <gtest/gtest.h>

#include <cctype>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "golden_text.h"
#include "host/messages.h"

namespace {

/// Each message id with the arguments the methods pass, one a line, split by "|"; their texts
/// are in golden/messages.txt.
const std::string kMessages =
    "ExpectedEvenNumberOfParameters\nInvalidNames\nNoRawTracerData\nMissingHvfExt\n"
    "OpenFileFailed|runs/a.hvf\nOpenFileFailed|\nOpenFileFailed|run.\nWriteFileFailed|r.html\n"
    "MinParamsNotReached|1\nMinParamsNotReached|4\nMaxParamsExceeded|1\nMaxParamsExceeded|8\n"
    "UnexpectedValue|lhslabel\nUnexpectedValue|MyGroup\nUnexpectedValue|\n"
    "UnexpectedValue|installed products: [evalcapture('ver')]\n"
    "ParameterMismatchBoolean|Start of Phase\nWindowsOnlyFeature|Detailed Memory Statistics\n"
    "ParameterMismatchString|Model Name\nParameterMismatchString|htmlfile\n"
    "InvalidMetric|time|basicmemory|detailedmemory\nNoRawTracerDataLoaded|left.hvf\n"
    "NoRawTracerDataLoaded|\nExpectedNames|'grouping' or 'model'\n"
    "ExpectedNames|'htmlfile' must be set\nExpectedNames|'htmlfile' must be set.\n"
    "ExpectedNames|'htmlfile' and one of 'lhsfile' or 'rhsfile' to be set.\n"
    "ExpectedNames|at least one of 'lhsfile' or 'rhsfile' must be set\n"
    "AddGroupingError|Group: A\nAddGroupingError|Sub group: B\nAddGroupingExpectedString\n"
    "RemoveGroupingError|Run\nRemoveGroupingError|\nDataWriteFail|Raw Data|run.hvf\n"
    "DataWriteFail|System Information|run.hvf\nDataWriteFail|Orvia Root|run.hvf\n";

TEST(Messages, EachReadsAsASentenceWithTheArgumentsTheMethodsPass) {
    std::set<std::string> rendered;
    std::string all;
    std::istringstream lines(kMessages);
    for (std::string line; std::getline(lines, line);) {
        std::vector<std::string> message;
        for (std::size_t from = 0, to = 0; to != std::string::npos; from = to + 1) {
            to = line.find('|', from);
            message.push_back(line.substr(from, to - from));
        }
        performance_tracer::MessageId id(message[0].c_str(), message.size() - 1);
        all += message[0];
        for (std::size_t i = 1; i < message.size(); ++i) {
            id.setArgument(i - 1, message[i]);
            all += " [" + message[i] + "]";
        }
        const std::string text = resource_core::formatMessage(id);
        all += "\n    " + text + "\n";
        EXPECT_TRUE(std::isupper(static_cast<unsigned char>(text.front()))) << text;
        EXPECT_TRUE(text.ends_with(".") && !text.ends_with("..")) << text;
        EXPECT_EQ(text.find("''"), std::string::npos) << text;
        rendered.insert(message[0]);
    }
    pt::testing::expectGoldenText(PT_HOST_GOLDEN_DIR, "messages", all);
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

    // A message outside the catalogue reads as its id and arguments.
    resource_core::BaseMsgID unknown("elsewhere", "Unknown", 2);
    unknown.setArgument(0, std::string("a"));
    unknown.setArgument(1, std::int64_t{7});
    EXPECT_EQ(resource_core::formatMessage(unknown), "elsewhere:Unknown a 7");
}

}  // namespace
