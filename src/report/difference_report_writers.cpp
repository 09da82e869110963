// The pages of a comparison: the Difference page and the Aggregate Difference page. Left is
// the baseline.

#include <performance_tracer/aggregation.h>
#include <performance_tracer/comparison.h>
#include <performance_tracer/data_blocks.h>
#include <performance_tracer/reports.h>
#include <performance_tracer/tracer.h>

#include <algorithm>

#include "processing/selection.h"
#include "report/fragments.h"
#include "report/report_file.h"
#include "report/system_info_source.h"

namespace pt::report {

namespace {

bool writeDifferenceReport(PerformanceTracer& tracer, const std::string& htmlFile,
                           const std::string& grouping, const std::string& lhsLabel,
                           const std::string& rhsLabel, PTRawDataVector* lhsData,
                           PTRawDataVector* rhsData, const SystemInfoRecord* lhsSystemInfo,
                           const SystemInfoRecord* rhsSystemInfo, const std::string& metric,
                           bool isAggregate) {
    ReportFile file(htmlFile);
    if (!file.isOpen()) {
        return false;
    }
    const std::string title = grouping == "GLOBAL" ? std::string("Performance Comparison")
                                                   : grouping + " Performance Comparison";
    // Broken instrumentation on either side leaves an empty file behind, closed.
    const PTProcessedData left = ptProcessSelection(tracer, lhsData, {grouping}, false);
    if (left._hasError) {
        return false;
    }
    const PTProcessedData right = ptProcessSelection(tracer, rhsData, {grouping}, false);
    if (right._hasError) {
        return false;
    }
    const bool hasDetailed = left._hasDetailedMem && right._hasDetailedMem;
    if (!hasDetailed && metric == "detailedmemory") {
        file << ptHtmlMissingStatisticsPage(true);
        return true;
    }
    const PTAggregateMap leftAggregates = ptAggregate(tracer, left._rows);
    const PTAggregateMap rightAggregates = ptAggregate(tracer, right._rows);
    const std::vector<PTAlignedAggregatePair> aggregatePairs =
        ptAlignAggregates(tracer, leftAggregates, rightAggregates);

    // Without a record of its own, the right side is this machine; the left one shows none.
    const SystemInfoRecord none;
    const SystemInfoRecord* leftInfo = lhsSystemInfo ? lhsSystemInfo : &none;
    const SystemInfoRecord* rightInfo = rhsSystemInfo ? rhsSystemInfo : &tracerSystemInfo();

    const int depth = std::max(left._levelCount, right._levelCount);
    file << ptHtmlDoctype() << ptHtmlHead(depth, title, true)
         << ptHtmlBodyOpen(metric, hasDetailed, isAggregate) << ptHtmlCenterOpen()
         << ptHtmlHeaderTable(true, metric, isAggregate);
    if (!isAggregate) {
        file << ptHtmlPhasePanel(metric, true);
    }
    file << ptHtmlAggregateDiv() << ptHtmlSystemInfoDiffTab(leftInfo, rightInfo)
         << ptHtmlCenterClose()
         << ptHtmlTabScript(metric, hasDetailed, true, isAggregate)
         // The aggregate difference page has the details strip too, unused.
         << ptHtmlScrollDivs(true, false) << ptHtmlBodyClose() << ptHtmlClose()
         << ptHtmlQuicksortScript()
         << ptHtmlTableScript(metric, true, lhsLabel, rhsLabel, isAggregate);
    if (!isAggregate) {
        const std::vector<PTAlignedPair> pairs = ptAlignRows(tracer, left._rows, right._rows);
        file << ptHtmlProcDiffData(tracer, pairs, metric, lhsLabel, rhsLabel);
    }
    file << ptHtmlAggregateScript(metric, true, isAggregate);
    if (!isAggregate) {
        file << ptHtmlDetailScript(metric, true);
    }
    file << ptHtmlScriptOpen() << ptHtmlNameArrays(tracer)
         << ptHtmlAggDiffData(tracer, aggregatePairs, metric, lhsLabel, rhsLabel)
         << ptHtmlScriptClose();
    if (!isAggregate && metric == "detailedmemory") {
        file << ptHtmlCanvasShellDiff(hasDetailed) << ptHtmlMemChartDiffScript(hasDetailed);
    }
    return true;
}

}  // namespace

}  // namespace pt::report

bool ptWriteDifferenceReport(PerformanceTracer& tracer, const std::string& htmlFile,
                             const std::string& grouping, const std::string& lhsLabel,
                             const std::string& rhsLabel, PTRawDataVector* lhsData,
                             PTRawDataVector* rhsData, const SystemInfoRecord* lhsSystemInfo,
                             const SystemInfoRecord* rhsSystemInfo, const std::string& metric) {
    return pt::report::writeDifferenceReport(tracer, htmlFile, grouping, lhsLabel, rhsLabel,
                                             lhsData, rhsData, lhsSystemInfo, rhsSystemInfo, metric,
                                             false);
}

bool ptWriteAggregateDifferenceReport(PerformanceTracer& tracer, const std::string& htmlFile,
                                      const std::string& grouping, const std::string& lhsLabel,
                                      const std::string& rhsLabel, PTRawDataVector* lhsData,
                                      PTRawDataVector* rhsData,
                                      const SystemInfoRecord* lhsSystemInfo,
                                      const SystemInfoRecord* rhsSystemInfo,
                                      const std::string& metric) {
    return pt::report::writeDifferenceReport(tracer, htmlFile, grouping, lhsLabel, rhsLabel,
                                             lhsData, rhsData, lhsSystemInfo, rhsSystemInfo, metric,
                                             true);
}
