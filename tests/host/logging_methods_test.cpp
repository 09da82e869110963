#include "method_test_support.h"

namespace pt::testing {
namespace {

using LogMethods = MethodTest;

struct LogMethod {
    const char* name;
    std::vector<const char*> words;  // of the text inputs, in order
};

const LogMethod kLogMethods[] = {
    {"logOrviaData", {"Grouping", "Phase"}},
    {"logKestruneData", {"Grouping", "Model Name", "Target Name", "Phase"}},
    {"logKsStartupData", {"Phase"}},
    {"logYlvaneData",
     {"Grouping", "Model Name", "Target Name", "Machine Name", "Chart Name", "Phase"}},
};

/// Good inputs for a log method: texts, then a true flag.
Values goodInputs(const LogMethod& method) {
    Values inputs;
    std::generate_n(std::back_inserter(inputs), method.words.size(), [] { return text("G"); });
    inputs.push_back(flag(true));
    return inputs;
}

TEST_F(LogMethods, EveryInputIsTestedInOrderBeforeAnythingIsLogged) {
    ptEnableGlobalLogging(true);
    for (const LogMethod& method : kLogMethods) {
        const std::string name = kTracer + std::string(method.name);
        const std::size_t texts = method.words.size();
        for (std::size_t position = 0; position <= texts; ++position) {
            for (std::size_t w = 0; w < wrongValues().size(); ++w) {
                Values inputs = goodInputs(method);
                inputs[position] = std::move(wrongValues()[w]);
                // With a bad flag as well, the bad text is still the error.
                if (position + 1 < texts) {
                    inputs[texts] = number(0);
                }
                const std::string expected =
                    position < texts
                        ? tracerError("ParameterMismatchString", {method.words[position]})
                        : tracerError("ParameterMismatchBoolean", {"Start of Phase"});
                expectRefused(name, inputs, expected);
            }
        }
        // A text as the flag is refused only after every text passed.
        Values textFlag = goodInputs(method);
        textFlag[texts] = text("true");
        expectRefused(name, textFlag, tracerError("ParameterMismatchBoolean", {"Start of Phase"}));
        // The class system refuses a wrong count before the method runs.
        Values missing = goodInputs(method);
        missing.pop_back();
        EXPECT_EQ(errorOf(name, missing).substr(0, 19), "vos:NotEnoughInputs");
        Values extra = goodInputs(method);
        extra.push_back(flag(true));
        EXPECT_EQ(errorOf(name, extra).substr(0, 17), "vos:TooManyInputs");
    }
    EXPECT_TRUE(ptTracer()->_rawData->empty());
}

}  // namespace
}  // namespace pt::testing
