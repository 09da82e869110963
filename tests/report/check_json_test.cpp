#include <performance_tracer/check.h>

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

/// A result with one compared phase whose name holds everything that could break out of a
/// script or a JSON string, and one phase on the new side only.
pt::CheckResult hostileResult() {
    pt::CheckResult result;
    result.options.baseFiles = {"a&b.hvf"};
    result.options.newFiles = {"c.hvf"};
    result.phases = {{.phase = "</script>\xE2\x80\xA8\xFF\"q\"\\\t\x01",
                      .time = "self=total",
                      .base = {.times = {0.5, 0.25}, .median = 0.375},
                      .changed = {.times = {0.75}},
                      .tested = true,
                      .ratio = 2.0,
                      .ratioLow = 0.0,
                      .ratioHigh = std::numeric_limits<double>::infinity(),
                      .p = 0.5,
                      .adjustedP = 1.0},
                     {.phase = "caf\xC3\xA9",
                      .time = "total",
                      .base = {},
                      .changed = {.times = {1e-7}},
                      .verdict = pt::CheckVerdict::NewOnly}};
    return result;
}

TEST(CheckJson, HoldsAnyNameSafely) {
    const std::string json = pt::checkResultJson(hostileResult());
    EXPECT_EQ(json.find_first_of("<>&"), std::string::npos) << json;
    // Markup, the line separator and a byte that is no UTF-8 come out escaped; well-formed
    // UTF-8 stays as it is. An interval without bounds, a side without the phase and untested
    // phases are null.
    const char* const parts[] = {
        R"("phase": "\u003c/script\u003e\u2028\ufffd\"q\"\\\t\u0001")",
        "\"phase\": \"caf\xC3\xA9\"",
        R"("baseRuns": ["a\u0026b.hvf"])",
        R"("ratio": 2, "ratioLow": null, "ratioHigh": null, "tested": true, "p": 0.5, "adjustedP": 1)",
        R"("verdict": "new only", "ratio": null, "ratioLow": null, "ratioHigh": null, "tested": false, "p": null, "adjustedP": null, "base": null)",
        R"("times": [1e-07])",
        R"("status": "passed")",
    };
    for (const char* part : parts) {
        EXPECT_NE(json.find(part), std::string::npos) << part;
    }
}

}  // namespace
