// Every refusal of the methods, one row each: the inputs and the error with its arguments. A
// refused call leaves the tracer's state as it was and writes no file.

#include <algorithm>
#include <sstream>

#include "method_test_support.h"

namespace pt::testing {
namespace {

/// One input of a row. An input without a maker stands for each of wrongValues() in turn.
struct In {
    In(const char* s) : make([s] { return text(s); }) {}
    In(int d) : make([d] { return number(d); }) {}
    In(bool b) : make([b] { return flag(b); }) {}
    In(std::function<hvUniqueArray()> m, bool c) : make(std::move(m)), cells(c) {}
    std::function<hvUniqueArray()> make;
    bool cells = true;  // whether the wrong values include the empty cell
};

const In kWrong(nullptr, true), kWrongButCell(nullptr, false),
    kInt32([] { return int32(2); }, true);
const In kCellOfNumber([] { return cellOf(valuesOf(text("x"), number(1))); }, true);

/// As many numbers: no text at all, so that only the count is looked at.
std::vector<In> numbers(int count) { return std::vector<In>(count, In(0)); }

struct Refusal {
    const char* methods;  // one or more, separated by spaces
    std::vector<In> inputs;
    const char* error;  // of the tracer, or the start of the class system's
};

const char* const kData = "getProcessedData getAggregateProcessedData";
const char* const kHtml = "generateHTMLReport";
const char* const kDiff = "generateDifferenceReport";
const char* const kOdd = "ExpectedEvenNumberOfParameters";
const char* const kKs = "generateKsStartupReport";
const char* const kKsDiff = "generateKsStartupDifferenceReport";
const char* const kDiag = "diagnosticReport";
const char* const kSwitches =
    "enableGlobalLogging enableKsStartupLogging enableDetailedMemStats "
    "setUseDetailedExceptionDiagnostics";

const Refusal kRefusals[] = {
    // Files.
    {"saveToFile saveKsStartupData loadTracerData", {kWrong}, "ParameterMismatchString|Filename"},
    {"saveKsStartupData", {"missing/x.hvf"}, "OpenFileFailed|missing/x.hvf"},
    {"saveKsStartupData", {"a", "b"}, "MaxParamsExceeded|1"},
    {"loadTracerData", {"/tmp/run.dat"}, "MissingHvfExt"},
    {"loadTracerData", {"absent.hvf"}, "OpenFileFailed|absent.hvf"},
    {"loadTracerData", {"foreign.hvf"}, "OpenFileFailed|foreign.hvf"},
    // Switches.
    {"enable", {}, "MinParamsNotReached|1"},
    {"enable", {"A", true, true}, "MaxParamsExceeded|2"},
    {"enable", {kWrong, true}, "ParameterMismatchString|Grouping"},
    {"enable", {"B", kWrong}, "ParameterMismatchBoolean|Enable"},
    {"enable", {"B", "true"}, "ParameterMismatchBoolean|Enable"},
    {kSwitches, {kWrong}, "ParameterMismatchBoolean|Enable"},
    // A flag that passes its test meets a feature that does not exist here.
    {"enableDetailedMemStats", {true}, "WindowsOnlyFeature|Detailed Memory Statistics"},
    // Groupings and statistics types.
    {"addGrouping", {kWrong, In([] { return texts({"x"}); }, true)}, "InvalidNames"},
    {"addGrouping", {"New", kWrongButCell}, "UnexpectedValue|New"},
    {"addGrouping", {"New", kCellOfNumber}, "AddGroupingExpectedString"},
    {"removeGrouping", {"Nothing"}, "RemoveGroupingError|Nothing"},
    {"removeGrouping", {kWrong}, "ParameterMismatchString|grouping"},
    {"clearRawData", {"target", "T1"}, "InvalidNames"},
    {"clearRawData", {"grouping", "Run", "phase", "x"}, "InvalidNames"},
    {"clearRawData", {1, "Run"}, "InvalidNames"},
    {"clearRawData", numbers(3), kOdd},
    {"clearRawData",
     {"grouping", "Run", "grouping", "Run", "grouping", "Run", "grouping", "Run"},
     "MaxParamsExceeded|6"},
    {"setStatisticsTypeForModel", {"", "x"}, "InvalidNames"},
    {"setStatisticsTypeForModel", {"M", 3}, "InvalidNames"},
    {"setStatisticsTypeForModel", {"M"}, "vos:NotEnoughInputs"},
    // Selections of the data methods; an error in a later pair loses an earlier one's result.
    {"clearRawData getProcessedData getAggregateProcessedData", {"grouping"}, kOdd},
    {kData, {1, "Run"}, "ExpectedNames|'grouping' or 'model'"},
    {kData, {"Model", 2}, "ParameterMismatchString|model"},
    {kData, {"grouping", kInt32}, "ParameterMismatchString|grouping"},
    {kData, {"grouping", kCellOfNumber}, "AddGroupingExpectedString"},
    {kData, {"phase", "x"}, "InvalidNames"},
    {kData, {"grouping", "Run", "model", 1}, "ParameterMismatchString|model"},
    {"getRawData PerfTools.kssvStringTableDoGarbageCollection", {1}, "vos:TooManyInputs"},
    // Reports: the count comes first (twelve inputs pass it where the most named is eight).
    {kHtml, numbers(1), "MinParamsNotReached|2"},
    {kHtml, numbers(10), "MaxParamsExceeded|8"},
    {kHtml, numbers(3), kOdd},
    {kDiff, numbers(2), "MinParamsNotReached|4"},
    {kDiff, numbers(14), "MaxParamsExceeded|8"},
    {kDiff, numbers(12), "InvalidNames"},
    {kKsDiff, numbers(0), "MinParamsNotReached|2"},
    {kKsDiff, numbers(12), "MaxParamsExceeded|10"},
    {kKs, numbers(6), "MaxParamsExceeded|4"},
    {kKs, numbers(1), kOdd},
    {kDiag, numbers(0), "MinParamsNotReached|2"},
    {kDiag, numbers(8), "MaxParamsExceeded|6"},
    {kDiag, numbers(5), kOdd},
    // Reports: the pairs.
    {kHtml, {1, "x"}, "InvalidNames"},
    {kHtml, {"nosuchname", "x"}, "InvalidNames"},
    {kHtml, {"HTMLFILE", 1}, "ParameterMismatchString|htmlfile"},
    {kHtml, {"htmlfile", "r.html", "showmeta", "yes"}, "ParameterMismatchString|showmeta"},
    {kHtml,
     {"htmlfile", "r.html", "metric", "speed"},
     "InvalidMetric|time|basicmemory|detailedmemory"},
    {kHtml, {"htmlfile", ""}, "ExpectedNames|'htmlfile' must be set"},
    {kHtml, {"grouping", "Run"}, "ExpectedNames|'htmlfile' must be set"},
    // Two methods test the value before the name; diagnosticReport takes names as they stand.
    {kKs, {"nosuchname", 1}, "ParameterMismatchString|nosuchname"},
    {kDiag, {"nosuchname", 1}, "UnexpectedValue|nosuchname"},
    {kDiag, {"HTMLFILE", "d.html"}, "InvalidNames"},
    {kDiag, {"grouping", "Run"}, "ExpectedNames|'htmlfile' must be set."},
    {kDiag, {"htmlfile", "no/such/d.html"}, "WriteFileFailed|no/such/d.html"},
    // The comparisons: another error for the same mistake in two of them.
    {kDiff, {"htmlfile", "d.html", "lhslabel", 2}, "UnexpectedValue|lhslabel"},
    {kKsDiff, {"lhslabel", 2}, "ParameterMismatchString|lhslabel"},
    {kDiff, {"htmlfile", "d.html", "metric", 2}, "ParameterMismatchString|metric"},
    {kDiff,
     {"htmlfile", "d.html", "grouping", "Run"},
     "ExpectedNames|'htmlfile' and one of 'lhsfile' or 'rhsfile' to be set."},
    {kKsDiff,
     {"htmlfile", "d.html"},
     "ExpectedNames|at least one of 'lhsfile' or 'rhsfile' must be set"},
    {kDiff, {"htmlfile", "d.html", "lhsfile", "absent.hvf"}, "OpenFileFailed|absent.hvf"},
};

using MethodErrors = FileMethodTest;

TEST_F(MethodErrors, EveryRefusalLeavesTheStateAsItWas) {
    logRun();
    std::filesystem::copy_file("/proc/self/exe", "foreign.hvf");
    const std::vector<std::string> files = folderNames();
    for (const Refusal& refusal : kRefusals) {
        const auto wrong = std::find_if(refusal.inputs.begin(), refusal.inputs.end(),
                                        [](const In& in) { return !in.make; });
        const bool hasWrong = wrong != refusal.inputs.end();
        const std::string error = std::string(refusal.error).starts_with("vos:")
                                      ? refusal.error
                                      : tracerError(refusal.error);
        std::istringstream methods(refusal.methods);
        for (std::string method; methods >> method;) {
            for (std::size_t w = 0; w < (hasWrong ? wrongValues().size() : 1); ++w) {
                if (hasWrong && !wrong->cells && hvIsCell(wrongValues()[w].get())) {
                    continue;
                }
                Values inputs;
                for (const In& in : refusal.inputs) {
                    inputs.push_back(in.make ? in.make() : std::move(wrongValues()[w]));
                }
                SCOPED_TRACE(::testing::Message() << refusal.error << ", wrong value " << w);
                expectRefused(method.find('.') != std::string::npos ? method : kTracer + method,
                              inputs, error);
            }
        }
    }
    EXPECT_EQ(folderNames(), files);
}

}  // namespace
}  // namespace pt::testing
