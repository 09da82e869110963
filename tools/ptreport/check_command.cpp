// ptreport check: many runs of a baseline against many runs of a changed version, a verdict
// per phase and an exit status for a gate in continuous integration.

#include <performance_tracer/check.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "check_output.h"
#include "commands.h"
#include "progress.h"

namespace ptreport {

namespace {

/// A number, all of the text.
double numberOf(const std::string& text, const std::string& option) {
    char* end = nullptr;
    const double value = text.empty() ? 0.0 : std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0' || !std::isfinite(value)) {
        throw UsageError("--" + option + " takes a number, not '" + text + "'");
    }
    return value;
}

/// "5%" or "5": five percent, as the fraction 0.05.
double thresholdOf(const Arguments& arguments) {
    std::string text = arguments.value("threshold", "5%");
    if (!text.empty() && text.back() == '%') {
        text.pop_back();
    }
    const double percent = numberOf(text, "threshold");
    if (percent < 0 || percent > 1000) {
        throw UsageError("--threshold takes a percentage from 0% to 1000%");
    }
    return percent / 100;
}

double alphaOf(const Arguments& arguments) {
    const double alpha = numberOf(arguments.value("alpha", "0.01"), "alpha");
    if (!(alpha > 0 && alpha <= 0.5)) {
        throw UsageError("--alpha takes a level above 0 and at most 0.5, such as 0.01");
    }
    return alpha;
}

pt::CheckOptions optionsOf(const Arguments& arguments) {
    if (!arguments.inputs().empty()) {
        throw UsageError("'" + arguments.inputs().front() +
                         "' is neither an option nor a run after --base or --new");
    }
    pt::CheckOptions options;
    options.baseFiles = arguments.values("base");
    options.newFiles = arguments.values("new");
    if (options.baseFiles.empty() || options.newFiles.empty()) {
        throw UsageError(
            "expects the runs of both sides: --base A1.hvf A2.hvf ... --new B1.hvf "
            "B2.hvf ...");
    }
    options.clock = arguments.value("clock", options.clock);
    if (options.clock != "wall" && options.clock != "cpu") {
        throw UsageError("--clock takes wall or cpu, not '" + options.clock + "'");
    }
    options.threshold = thresholdOf(arguments);
    options.alpha = alphaOf(arguments);
    options.grouping = arguments.value("grouping", options.grouping);
    options.failOnMissing = arguments.has("fail-on-missing");
    if (arguments.has("json") && arguments.has("markdown")) {
        throw UsageError("--json and --markdown are two forms of one output; choose one");
    }
    return options;
}

int check(const Arguments& arguments) {
    const pt::CheckOptions options = optionsOf(arguments);
    const pt::CheckResult result = [&] {
        const Progress progress("reading " +
                                std::to_string(options.baseFiles.size() + options.newFiles.size()) +
                                " runs");
        return pt::checkRuns(options);
    }();
    if (arguments.has("output")) {
        pt::writeCheckSummary(arguments.value("output"), result);
    }
    if (arguments.has("json")) {
        std::fputs(pt::checkResultJson(result).c_str(), stdout);
    } else if (arguments.has("markdown")) {
        std::fputs(checkMarkdown(result).c_str(), stdout);
    } else {
        std::fputs(checkTable(result).c_str(), stdout);
        if (arguments.has("output")) {
            std::error_code error;
            const std::filesystem::path page =
                std::filesystem::absolute(arguments.value("output"), error);
            std::printf("Summary page: %s\n",
                        error ? arguments.value("output").c_str() : page.c_str());
        }
    }
    std::fflush(stdout);
    if (result.failed()) {
        return exit_status::kFound;
    }
    if (!result.significancePossible) {
        // A gate that cannot fail would pass every change: that is no pass.
        std::fprintf(stderr, "ptreport check: %s\n", insufficientRunsNote(result).c_str());
        return exit_status::kFailure;
    }
    return exit_status::kSuccess;
}

}  // namespace

std::vector<Command> checkCommands() {
    return {
        {"check",
         "many runs against many: a verdict per phase and an exit status for CI",
         "usage: ptreport check --base A1.hvf A2.hvf ... --new B1.hvf B2.hvf ...\n"
         "                      [--clock wall|cpu] [--threshold 5%] [--alpha 0.01]\n"
         "                      [--grouping G] [--fail-on-missing] [--json | --markdown]\n"
         "                      [-o summary.html]\n"
         "\n"
         "Compares the runs of a baseline with the runs of a changed version, phase by phase,\n"
         "as the Aggregate Difference page keys phases, in self and in total time. Per phase:\n"
         "each side's median and spread over its runs; the ratio new/base, estimated by\n"
         "Hodges-Lehmann on the logarithms of the times, with the interval that goes with the\n"
         "test; the two-sided Mann-Whitney U test, with p-values adjusted by Holm's method for\n"
         "the number of phases tested; and a verdict: regression, improvement, within\n"
         "threshold, no significant change, base only or new only. A phase a run lacks took\n"
         "no time in it. Run each side five to twenty times, interleaved (base, new, base,\n"
         "...), so that the machine's drift falls on both sides.\n"
         "\n"
         "  --base FILES...     the baseline's runs\n"
         "  --new FILES...      the changed version's runs\n"
         "  --clock wall|cpu    the time compared (default: wall)\n"
         "  --threshold P%      a significant change counts beyond this (default: 5%)\n"
         "  --alpha A           the chance that runs without any change fail the check\n"
         "                      (default: 0.01)\n"
         "  --grouping G        compare G and the groupings below it (default: GLOBAL, all)\n"
         "  --fail-on-missing   a phase that one side lacks fails the check too\n"
         "  --json              the result as JSON instead of the table\n"
         "  --markdown          the table in Markdown, for a review comment\n"
         "  -o, --output FILE   also write a summary page with the runs drawn per phase\n"
         "\n"
         "Exit status: 0 no phase regressed beyond the threshold with significance; 1 one did\n"
         "(or, with --fail-on-missing, a phase is on one side only); 2 bad input, or runs too\n"
         "few for any result to reach significance (the message says how many are needed).\n",
         {{"base", true, false, true},
          {"new", true, false, true},
          {"clock"},
          {"threshold"},
          {"alpha"},
          {"grouping"},
          {"fail-on-missing", false},
          {"json", false},
          {"markdown", false},
          {"output"}},
         check},
    };
}

}  // namespace ptreport
