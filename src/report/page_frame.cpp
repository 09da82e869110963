// The markup around the tabs: body, tab bars, the aggregate container and the scroll strips,
// and the fixed pages that stand in for a report that cannot be made.

#include "report/fragments.h"

#include <string_view>
#include <vector>

namespace pt::report {

namespace {

struct Tab {
    const char* label;
    const char* barClass;
    const char* argument;
};

constexpr Tab kAggregateBar = {"Aggregate", "aggregateSumHeader", "aggregateSummary"};
constexpr Tab kCallTreeBar = {"Call Tree", "callTreeHeader", "callTreeSummary"};
constexpr Tab kDetailsBar = {"Details", "phaseSumHeader", "phaseSummary"};
constexpr Tab kMemChartBar = {"MemChart", "memoryCanvasHeader", "memCanvas"};
constexpr Tab kSystemInfoBar = {"System Info", "sysInfoHeader", "systemInfo"};

/// The tabs of a page in their order.
std::vector<Tab> tabsOf(bool isComparison, const std::string& metric, bool isAggregate) {
    std::vector<Tab> tabs = {kAggregateBar};
    if (!isAggregate && !isComparison) {
        tabs.push_back(kCallTreeBar);
    }
    if (!isAggregate) {
        tabs.push_back(kDetailsBar);
    }
    if (!isAggregate && metric == "detailedmemory") {
        tabs.push_back(kMemChartBar);
    }
    tabs.push_back(kSystemInfoBar);
    return tabs;
}

std::string scrollStrip(const char* id, const char* tableType) {
    return std::string("<div id=\"") + id +
           "\" style=\"width:20px; height:365px; overflow-y:auto; display:none\" "
           "onscroll=\"reGenerateTable(this, '" +
           tableType + "')\"></div>\n";
}

std::string fixedPage(const std::vector<const char*>& lines) {
    std::string page = "<html>\n<body>\n";
    for (const char* line : lines) {
        page += line;
        page += '\n';
    }
    return page + "</body>\n</html>\n";
}

}  // namespace

std::string ptHtmlBodyOpen(const std::string& metric, bool hasDetailed, bool isAggregate) {
    // The dialogs that follow the mouse belong to the memory chart; a page without the chart
    // binds no handler that would find nothing to call.
    const bool chart = metric == "detailedmemory" && hasDetailed && !isAggregate;
    return std::string("<body onresize=\"onResizeAction()\"") +
           (chart ? " onmousemove=\"dialogMove(event)\"" : "") +
           " onload=\"ShowTable('aggregateSummary'); onResizeAction();\">\n";
}

std::string ptHtmlCenterOpen() { return "<div align=\"center\">\n"; }
std::string ptHtmlCenterClose() { return "</div>\n"; }
std::string ptHtmlBodyClose() { return "</body>\n"; }
std::string ptHtmlClose() { return "</html>\n"; }
std::string ptHtmlScriptOpen() { return "<script type=\"text/javascript\">\n"; }
std::string ptHtmlScriptClose() { return "</script>\n"; }

std::string ptHtmlHeaderTable(bool isComparison, const std::string& metric, bool isAggregate) {
    const std::vector<Tab> tabs = tabsOf(isComparison, metric, isAggregate);
    std::string table =
        "<table id=\"headerTable\" border=\"0\" cellspacing=\"0\" cellpadding=\"0\" "
        "width=\"100%\">\n<tr>\n<td class=\"headerTable\">\n";
    for (const Tab& bar : tabs) {
        // One bar per tab, each with the same id, which the style sheet relies on.
        table +=
            std::string("<div id=\"header\" class=\"") + bar.barClass + "\"" +
            (std::string_view(bar.barClass) == kAggregateBar.barClass ? ""
                                                                      : " style=\"display:none\"") +
            ">\n<ul id=\"primary\">\n";
        for (const Tab& tab : tabs) {
            if (std::string_view(tab.barClass) == bar.barClass) {
                table += std::string("<li><span>") + tab.label + "</span></li>\n";
            } else {
                table += std::string("<li><a href=\"javascript:ShowTable('") + tab.argument +
                         "')\">" + tab.label + "</a></li>\n";
            }
        }
        table += "</ul>\n</div>\n";
    }
    return table + "</td>\n</tr>\n</table>\n";
}

std::string ptHtmlAggregateDiv() {
    return "<div id=\"aggregateSummaryDiv\" style=\"overflow:none; display:none; height:100%; "
           "border:2px solid #324678\"></div>\n";
}

std::string ptHtmlScrollDivs(bool isComparison, bool isAggregate) {
    std::string strips = scrollStrip("aggregateSummaryScrollTableDiv", "Aggregate");
    // The measuring span: names are put in it to learn their width in the page's font.
    strips += "<span id=\"FakeSpan\" style=\"visibility:hidden; color:white\"></span>\n";
    if (!isAggregate) {
        strips += scrollStrip("phaseSummaryScrollTableDiv", "Detail");
        if (!isComparison) {
            strips += scrollStrip("callTreeSummaryScrollTableDiv", "CallTree");
        }
    }
    return strips;
}

std::string ptHtmlInstrumentationErrorPage() {
    return fixedPage({
        "An error has been detected in the PerformanceTracer instrumentation.",
        "Please call:<br> PerfTools.Tracer.diagnosticReport('htmlfile', 'mydiag.html')<br>",
        "to generate a Diagnostic Report to determine where the error(s) occur.",
    });
}

std::string ptHtmlMissingStatisticsPage(bool isComparison) {
    const char* first = "Detailed memstats was not collected.<br>";
    const char* second =
        "If generating report from a HVF file, please check if DetailedMemstats was enabled and "
        "is collected on a Windows platform.<br>";
    // The two forms differ by a blank and a semicolon, and both are kept.
    if (isComparison) {
        return fixedPage({first, second,
                          "If generating report with the data collected in the current "
                          "session, please call:<br>PerfTools.Tracer.clearRawData;<br>",
                          "PerfTools.Tracer.enableDetailedMemStats(true);<br>"});
    }
    return fixedPage({first, second,
                      "If generating report with the data collected in the current session, "
                      "please call:<br> PerfTools.Tracer.clearRawData;<br>",
                      "PerfTools.Tracer.enableDetailedMemStats(true)<br>"});
}

}  // namespace pt::report
