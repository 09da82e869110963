#pragma once

// The fragments of a report page, each a string that a writer puts in its place in the file.
// Text taken from data is escaped inside them (see escape.h).

#include <performance_tracer/processed_points.h>
#include <performance_tracer/system_info_record.h>

#include <string>

class PerformanceTracer;

namespace pt::report {

// ---- The frame ----
std::string ptHtmlDoctype();
/// The head with its title and style sheet; the phase depth rules for depth levels (eight
/// levels when depth is below 1).
std::string ptHtmlHead(int depth, const std::string& title, bool isComparison);
std::string ptHtmlPhaseDepthStyles(int depth);
/// The body's open tag; the mouse handler only where a page has the memory chart.
std::string ptHtmlBodyOpen(const std::string& metric, bool hasDetailed, bool isAggregate);
std::string ptHtmlCenterOpen();
std::string ptHtmlCenterClose();
std::string ptHtmlBodyClose();
std::string ptHtmlClose();
std::string ptHtmlScriptOpen();
std::string ptHtmlScriptClose();
/// The table of tab bars, one bar per tab, the Aggregate bar shown.
std::string ptHtmlHeaderTable(bool isComparison, const std::string& metric, bool isAggregate);
std::string ptHtmlAggregateDiv();
std::string ptHtmlScrollDivs(bool isComparison, bool isAggregate);

// ---- Fixed pages that stand in for a report ----
std::string ptHtmlInstrumentationErrorPage();
std::string ptHtmlMissingStatisticsPage(bool isComparison);

// ---- Tabs ----
std::string ptHtmlSystemInfoRows(const SystemInfoRecord* record);
std::string ptHtmlSystemInfoTab(const SystemInfoRecord* record);
std::string ptHtmlSystemInfoDiffTab(const SystemInfoRecord* left, const SystemInfoRecord* right);
std::string ptHtmlPhasePanel(const std::string& metric, bool isComparison);
/// The Call Tree tab's container and its filter panel.
std::string ptHtmlCallTreePanel();

// ---- Scripts ----
std::string ptHtmlTabScript(const std::string& metric, bool hasDetailed, bool isComparison,
                            bool isAggregate);
std::string ptHtmlQuicksortScript();
/// Opens a script element that the aggregate script (aggregate pages) or the details script
/// closes.
std::string ptHtmlTableScript(const std::string& metric, bool isComparison,
                              const std::string& lhsLabel, const std::string& rhsLabel,
                              bool isAggregate);
std::string ptHtmlAggregateScript(const std::string& metric, bool isComparison, bool isAggregate);
std::string ptHtmlDetailScript(const std::string& metric, bool isComparison);
/// The call tree's script, an element of its own.
std::string ptHtmlCallTreeScript(const std::string& metric);
/// The call tree of the rows, built and folded, as the page's nodeArray and callTreeArray.
std::string ptHtmlCallTreeData(const PTProcessedData& data);
/// The memory chart's elements, written by a script that first tests for canvases; empty
/// without detailed statistics. The Diff forms are the Difference page's chart of two runs.
std::string ptHtmlCanvasShell(bool hasDetailed);
std::string ptHtmlCanvasShellDiff(bool hasDetailed);
/// The memory chart's script, an element of its own.
std::string ptHtmlMemChartScript(bool hasDetailed);
std::string ptHtmlMemChartDiffScript(bool hasDetailed);
/// The name arrays of the page, from the tracer's tables.
std::string ptHtmlNameArrays(PerformanceTracer& tracer);
std::string ptHtmlNameArray(PerformanceTracer& tracer, std::uint32_t kind);

}  // namespace pt::report
