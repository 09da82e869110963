#include "check_output.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string_view>
#include <vector>

namespace ptreport {

namespace {

using pt::CheckResult;
using pt::CheckVerdict;
using pt::PhaseCheck;

std::string format(const char* pattern, double value) {
    char text[64];
    std::snprintf(text, sizeof text, pattern, value);
    return text;
}

/// Four significant digits in a unit that keeps the figure between 1 and 1000.
std::string timeText(double seconds) {
    static constexpr std::pair<double, const char*> kUnits[] = {
        {1.0, "s"}, {1e-3, "ms"}, {1e-6, "\u00b5s"}, {1e-9, "ns"}};
    for (const auto& [scale, unit] : kUnits) {
        if (std::fabs(seconds) >= scale || scale == 1e-9) {
            const double figure = seconds / scale;
            const char* pattern = std::fabs(figure) >= 100  ? "%.1f"
                                  : std::fabs(figure) >= 10 ? "%.2f"
                                                            : "%.3f";
            return format(pattern, figure) + " " + unit;
        }
    }
    return "";
}

/// Median and half the interquartile range relative to it: where the middle half of the
/// runs lies.
std::string sideText(const pt::CheckSide& side) {
    if (!side.present()) {
        return "-";
    }
    std::string text = timeText(side.median);
    if (side.median > 0) {
        text += " \u00b1" + format("%.1f", (side.q3 - side.q1) / 2 / side.median * 100) + "%";
    }
    return text;
}

bool compared(const PhaseCheck& check) { return check.base.present() && check.changed.present(); }

std::string ratioText(const PhaseCheck& check) {
    if (!compared(check)) {
        return "-";
    }
    const double percent = (check.ratio - 1) * 100;
    const std::string change = std::fabs(percent) < 0.05 ? "0.0" : format("%+.1f", percent);
    return format("%.3f", check.ratio) + " (" + change + "%)";
}

std::string intervalText(const PhaseCheck& check) {
    if (!compared(check)) {
        return "-";
    }
    if (!std::isfinite(check.ratioHigh)) {
        return "too few runs";
    }
    return format("%.3f", check.ratioLow) + " - " + format("%.3f", check.ratioHigh);
}

std::string pText(double p) { return p < 1e-4 ? format("%.1e", p) : format("%.2g", p); }

std::string adjustedPText(const PhaseCheck& check) {
    return check.tested ? pText(check.adjustedP) : "-";
}

std::string percentText(double fraction) { return format("%g", fraction * 100) + "%"; }

std::string plural(std::size_t count, const char* word) {
    return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
}

/// Names from the runs without the bytes that would steer a terminal.
std::string printable(std::string_view text) {
    std::string out;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        out += byte < 0x20 || byte == 0x7F ? '?' : c;
    }
    return out;
}

/// The columns a text takes: one per character of UTF-8.
std::size_t widthOf(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

std::string methodText(const CheckResult& result) {
    const pt::CheckOptions& options = result.options;
    std::string grouping =
        options.grouping == "GLOBAL" ? "" : ", grouping " + printable(options.grouping);
    return std::to_string(options.baseFiles.size()) + " base runs against " +
           std::to_string(options.newFiles.size()) + " new runs, " +
           (options.clock == "cpu" ? "CPU" : "wall-clock") + " time" + grouping + ", threshold " +
           percentText(options.threshold) +
           ".\nEach phase: two-sided Mann-Whitney U test, p adjusted by Holm's method over " +
           plural(result.tests, "comparison") + " at alpha " + format("%g", options.alpha) +
           ";\nratio new/base by Hodges-Lehmann with its " + percentText(result.confidence) +
           " interval; base and new as median \u00b1 half the interquartile range.\n";
}

std::vector<std::vector<std::string>> rowsOf(const CheckResult& result) {
    std::vector<std::vector<std::string>> rows;
    for (const PhaseCheck& check : result.phases) {
        rows.push_back({printable(check.phase), check.time, sideText(check.base),
                        sideText(check.changed), ratioText(check), intervalText(check),
                        adjustedPText(check), pt::checkVerdictName(check.verdict)});
    }
    return rows;
}

std::vector<std::string> headerOf(const CheckResult& result) {
    return {"phase",    "time",           "base",
            "new",      "ratio (change)", percentText(result.confidence) + " interval",
            "p (Holm)", "verdict"};
}

std::string markdownText(std::string_view text) {
    std::string out;
    for (const char c : printable(text)) {
        if (c == '<') {
            out += "&lt;";
        } else if (c == '>') {
            out += "&gt;";
        } else if (c == '&') {
            out += "&amp;";
        } else {
            if (std::string_view("\\`*_[]|#~!").find(c) != std::string_view::npos) {
                out += '\\';
            }
            out += c;
        }
    }
    return out;
}

}  // namespace

std::string checkHeadline(const CheckResult& result) {
    const std::size_t regressions = result.count(CheckVerdict::Regression);
    const std::size_t missing =
        result.count(CheckVerdict::BaseOnly) + result.count(CheckVerdict::NewOnly);
    if (result.failed()) {
        std::vector<std::string> reasons;
        if (regressions > 0) {
            std::string names;
            for (const PhaseCheck& check : result.phases) {
                if (check.verdict == CheckVerdict::Regression) {
                    names += (names.empty() ? "" : ", ") + printable(check.phase);
                }
            }
            reasons.push_back(plural(regressions, "regression") + " beyond " +
                              percentText(result.options.threshold) + " (" + names + ")");
        }
        if (result.options.failOnMissing && missing > 0) {
            reasons.push_back(plural(missing, "phase") + " on one side only");
        }
        std::string text = "FAILED: " + reasons.front();
        for (std::size_t i = 1; i < reasons.size(); ++i) {
            text += "; " + reasons[i];
        }
        return text;
    }
    if (!result.significancePossible) {
        return "INCONCLUSIVE: too few runs for any result to be significant";
    }
    std::string text = "PASSED: no phase regressed beyond " + percentText(result.options.threshold);
    const std::size_t improvements = result.count(CheckVerdict::Improvement);
    if (improvements > 0) {
        text += "; " + plural(improvements, "improvement");
    }
    return text;
}

std::string insufficientRunsNote(const CheckResult& result) {
    if (result.significancePossible) {
        return "";
    }
    return "with " + std::to_string(result.options.baseFiles.size()) + " and " +
           std::to_string(result.options.newFiles.size()) + " runs no p-value can go below " +
           pText(result.smallestPossibleP) + ", but Holm's method over " +
           plural(result.tests, "comparison") + " needs " +
           pText(result.options.alpha / static_cast<double>(result.tests)) +
           " for a result at alpha " + format("%g", result.options.alpha) + ": at least " +
           std::to_string(result.runsNeeded) + " runs on each side are needed";
}

std::string checkTable(const CheckResult& result) {
    const std::vector<std::string> header = headerOf(result);
    const std::vector<std::vector<std::string>> rows = rowsOf(result);
    std::vector<std::size_t> widths(header.size());
    for (std::size_t c = 0; c < header.size(); ++c) {
        widths[c] = widthOf(header[c]);
        for (const auto& row : rows) {
            widths[c] = std::max(widths[c], widthOf(row[c]));
        }
    }
    // Names and words to the left, figures to the right.
    const auto line = [&](const std::vector<std::string>& cells) {
        std::string text;
        for (std::size_t c = 0; c < cells.size(); ++c) {
            const std::string pad(widths[c] - widthOf(cells[c]), ' ');
            const bool left = c < 2 || c == cells.size() - 1;
            text += (c == 0 ? "" : "  ") + (left ? cells[c] + pad : pad + cells[c]);
        }
        while (!text.empty() && text.back() == ' ') {
            text.pop_back();
        }
        return text + "\n";
    };
    std::string text = methodText(result) + "\n" + line(header);
    for (const auto& row : rows) {
        text += line(row);
    }
    text += "\n" + checkHeadline(result) + "\n";
    if (const std::string note = insufficientRunsNote(result); !note.empty()) {
        text += "Note: " + note + ".\n";
    }
    return text;
}

std::string checkMarkdown(const CheckResult& result) {
    std::string text =
        "### Performance check \u2014 " + markdownText(checkHeadline(result)) + "\n\n";
    std::string method = methodText(result);
    std::replace(method.begin(), method.end(), '\n', ' ');
    method.pop_back();  // the blank of the last line's end
    text += markdownText(method) + "\n\n";
    if (const std::string note = insufficientRunsNote(result); !note.empty()) {
        text += "> **Note:** " + markdownText(note) + ".\n\n";
    }
    const std::vector<std::string> header = headerOf(result);
    text += "|";
    for (const std::string& cell : header) {
        text += " " + cell + " |";
    }
    text += "\n|---|---|--:|--:|--:|--:|--:|---|\n";
    for (const auto& row : rowsOf(result)) {
        text += "|";
        for (std::size_t c = 0; c < row.size(); ++c) {
            const std::string cell = markdownText(row[c]);
            const bool flagged = c == row.size() - 1 && row[c] == "regression";
            text += " " + (flagged ? "**" + cell + "**" : cell) + " |";
        }
        text += "\n";
    }
    return text;
}

}  // namespace ptreport
