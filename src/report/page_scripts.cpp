// The script fragments of a page: each a page file, resolved for the page's variant.

#include "report/escape.h"
#include "report/fragments.h"
#include "report/page_files.h"
#include "report/page_variant.h"

namespace pt::report {

namespace {

std::string script(std::string_view text) {
    return ptHtmlScriptOpen() + std::string(text) + ptHtmlScriptClose();
}

}  // namespace

std::string ptHtmlTabScript(const std::string& metric, bool /*hasDetailed*/, bool isComparison,
                            bool isAggregate) {
    const PageFlags flags = pageFlags({isComparison, isAggregate, metric});
    return script(resolvePageText(pageFile("tab_script.js"), flags));
}

std::string ptHtmlQuicksortScript() { return script(pageFile("quicksort.js")); }

std::string ptHtmlTableScript(const std::string& metric, bool isComparison,
                              const std::string& lhsLabel, const std::string& rhsLabel,
                              bool isAggregate) {
    const PageFlags flags = pageFlags({isComparison, isAggregate, metric});
    const PageValues values = {{"lhsLabel", scriptString(lhsLabel)},
                               {"rhsLabel", scriptString(rhsLabel)}};
    std::string text =
        ptHtmlScriptOpen() + resolvePageText(pageFile("table_engine.js"), flags, values);
    if (flags.at("callTreeTab")) {
        text += resolvePageText(pageFile("call_tree_filter.js"), flags);
    }
    return text;
}

std::string ptHtmlAggregateScript(const std::string& metric, bool isComparison, bool isAggregate) {
    const PageFlags flags = pageFlags({isComparison, isAggregate, metric});
    std::string text = resolvePageText(pageFile("aggregate_tab.js"), flags);
    // In the aggregate pages this is the last fragment of the table script's element.
    return isAggregate ? text + ptHtmlScriptClose() : text;
}

std::string ptHtmlDetailScript(const std::string& metric, bool isComparison) {
    const PageFlags flags = pageFlags({isComparison, false, metric});
    return resolvePageText(pageFile("details_tab.js"), flags) + ptHtmlScriptClose();
}

std::string ptHtmlMemChartScript(bool hasDetailed) {
    if (!hasDetailed) {
        return {};
    }
    return script(std::string(pageFile("mem_chart_common.js")) +
                  std::string(pageFile("mem_chart.js")));
}

std::string ptHtmlMemChartDiffScript(bool hasDetailed) {
    if (!hasDetailed) {
        return {};
    }
    return script(std::string(pageFile("mem_chart_common.js")) +
                  std::string(pageFile("mem_chart_diff.js")));
}

std::string ptHtmlCallTreeScript(const std::string& metric) {
    const PageFlags flags = pageFlags({false, false, metric});
    return script(resolvePageText(pageFile("call_tree_tab.js"), flags));
}

}  // namespace pt::report
