// The result of a check as JSON: what `ptreport check --json` prints and what the summary page
// carries as its data. Text is escaped so that the document can stand inside a script element
// as it is (no "<", no line separators) and stays valid UTF-8 whatever bytes a name holds.

#include <performance_tracer/check.h>

#include <charconv>
#include <cmath>
#include <string>
#include <string_view>

#include "report/json_file.h"

namespace {

class Json {
public:
    void string(std::string_view text) {
        pt::report::appendJsonString(_out, text, pt::report::EPTJsonUse::Script);
        _fresh = false;
    }

    /// The shortest text that reads back as the same double; null for what JSON cannot hold.
    void number(double value) {
        if (!std::isfinite(value)) {
            null();
            return;
        }
        char text[32];
        const auto end = std::to_chars(text, text + sizeof text, value).ptr;
        _out.append(text, end);
        _fresh = false;
    }
    void integer(std::size_t value) { literal(std::to_string(value)); }
    void boolean(bool value) { literal(value ? "true" : "false"); }
    void null() { literal("null"); }

    void key(std::string_view name) {
        separate();
        string(name);
        _out += ": ";
        _fresh = true;
    }
    void open(char bracket) {
        _out += bracket;
        _fresh = true;
    }
    void close(char bracket) {
        _out += bracket;
        _fresh = false;
    }
    /// Before each element of an array; a key does the same for a member of an object.
    void element() { separate(); }

    std::string take() { return std::move(_out); }

private:
    void literal(const std::string& text) {
        _out += text;
        _fresh = false;
    }
    void separate() {
        if (!_fresh) {
            _out += ", ";
        }
        _fresh = false;
    }

    std::string _out;
    bool _fresh = true;
};

void side(Json& json, const pt::CheckSide& figures) {
    if (!figures.present()) {
        json.null();
        return;
    }
    json.open('{');
    const std::pair<const char*, double> fields[] = {{"median", figures.median},
                                                     {"q1", figures.q1},
                                                     {"q3", figures.q3},
                                                     {"min", figures.min},
                                                     {"max", figures.max}};
    for (const auto& [name, value] : fields) {
        json.key(name);
        json.number(value);
    }
    json.key("times");
    json.open('[');
    for (double t : figures.times) {
        json.element();
        json.number(t);
    }
    json.close(']');
    json.close('}');
}

void phase(Json& json, const pt::PhaseCheck& check) {
    json.open('{');
    json.key("phase");
    json.string(check.phase);
    json.key("time");
    json.string(check.time);
    json.key("verdict");
    json.string(pt::checkVerdictName(check.verdict));
    const bool compared = check.base.present() && check.changed.present();
    json.key("ratio");
    compared ? json.number(check.ratio) : json.null();
    // An interval without bounds has no low end either.
    const bool bounded = compared && std::isfinite(check.ratioHigh);
    json.key("ratioLow");
    bounded ? json.number(check.ratioLow) : json.null();
    json.key("ratioHigh");
    bounded ? json.number(check.ratioHigh) : json.null();
    json.key("tested");
    json.boolean(check.tested);
    json.key("p");
    check.tested ? json.number(check.p) : json.null();
    json.key("adjustedP");
    check.tested ? json.number(check.adjustedP) : json.null();
    json.key("base");
    side(json, check.base);
    json.key("new");
    side(json, check.changed);
    json.close('}');
}

void files(Json& json, const std::vector<std::string>& names) {
    json.open('[');
    for (const std::string& name : names) {
        json.element();
        json.string(name);
    }
    json.close(']');
}

}  // namespace

namespace pt {

std::string checkResultJson(const CheckResult& result) {
    Json json;
    json.open('{');
    json.key("status");
    json.string(result.failed()               ? "failed"
                : result.significancePossible ? "passed"
                                              : "inconclusive");
    json.key("clock");
    json.string(result.options.clock);
    json.key("grouping");
    json.string(result.options.grouping);
    json.key("threshold");
    json.number(result.options.threshold);
    json.key("alpha");
    json.number(result.options.alpha);
    json.key("failOnMissing");
    json.boolean(result.options.failOnMissing);
    json.key("test");
    json.string("Mann-Whitney U, two-sided");
    json.key("correction");
    json.string("Holm");
    json.key("ratioEstimate");
    json.string("Hodges-Lehmann");
    json.key("confidence");
    json.number(result.confidence);
    json.key("baseRuns");
    files(json, result.options.baseFiles);
    json.key("newRuns");
    files(json, result.options.newFiles);
    json.key("tests");
    json.integer(result.tests);
    json.key("smallestPossibleP");
    json.number(result.smallestPossibleP);
    json.key("significancePossible");
    json.boolean(result.significancePossible);
    json.key("runsNeeded");
    result.significancePossible ? json.null() : json.integer(result.runsNeeded);
    json.key("counts");
    json.open('{');
    for (CheckVerdict verdict :
         {CheckVerdict::Regression, CheckVerdict::Improvement, CheckVerdict::WithinThreshold,
          CheckVerdict::NoSignificantChange, CheckVerdict::BaseOnly, CheckVerdict::NewOnly}) {
        json.key(checkVerdictName(verdict));
        json.integer(result.count(verdict));
    }
    json.close('}');
    json.key("phases");
    json.open('[');
    for (const PhaseCheck& check : result.phases) {
        json.element();
        phase(json, check);
    }
    json.close(']');
    json.close('}');
    return json.take() + "\n";
}

}  // namespace pt
