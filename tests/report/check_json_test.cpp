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
    pt::PhaseCheck compared;
    compared.phase = "</script>\xE2\x80\xA8\xFF\"q\"\\\t\x01";
    compared.time = "self=total";
    compared.base.times = {0.5, 0.25};
    compared.base.median = 0.375;
    compared.changed.times = {0.75};
    compared.tested = true;
    compared.ratio = 2.0;
    compared.ratioLow = 0.0;
    compared.ratioHigh = std::numeric_limits<double>::infinity();
    compared.p = 0.5;
    compared.adjustedP = 1.0;
    pt::PhaseCheck added;
    added.phase = "caf\xC3\xA9";
    added.time = "total";
    added.changed.times = {1e-7};
    added.verdict = pt::CheckVerdict::NewOnly;
    result.phases = {compared, added};
    return result;
}

TEST(CheckJson, HoldsAnyNameSafely) {
    const std::string json = pt::checkResultJson(hostileResult());
    // Markup, the line separator and a byte that is no UTF-8 come out escaped; well-formed
    // UTF-8 stays as it is.
    EXPECT_NE(json.find(R"("phase": "\u003c/script\u003e\u2028\ufffd\"q\"\\\t\u0001")"),
              std::string::npos)
        << json;
    EXPECT_NE(json.find("\"phase\": \"caf\xC3\xA9\""), std::string::npos);
    EXPECT_NE(json.find(R"("baseRuns": ["a\u0026b.hvf"])"), std::string::npos);
    EXPECT_EQ(json.find_first_of("<>&"), std::string::npos);
    // An interval without bounds, a side without the phase and untested phases are null.
    EXPECT_NE(
        json.find(
            R"("ratio": 2, "ratioLow": null, "ratioHigh": null, "tested": true, "p": 0.5, "adjustedP": 1)"),
        std::string::npos);
    EXPECT_NE(
        json.find(
            R"("verdict": "new only", "ratio": null, "ratioLow": null, "ratioHigh": null, "tested": false, "p": null, "adjustedP": null, "base": null)"),
        std::string::npos);
    EXPECT_NE(json.find(R"("times": [1e-07])"), std::string::npos);
    EXPECT_NE(json.find(R"("status": "passed")"), std::string::npos);
}

}  // namespace
