// The pages of one data set: the Detail page and the Aggregate page.

#include <performance_tracer/aggregation.h>
#include <performance_tracer/data_blocks.h>
#include <performance_tracer/reports.h>
#include <performance_tracer/tracer.h>

#include "processing/selection.h"
#include "report/fragments.h"
#include "report/report_file.h"
#include "report/system_info_source.h"

namespace pt::report {

namespace {

bool writeSingleReport(PerformanceTracer& tracer, const std::string& htmlFile,
                       const std::string& grouping, const std::string& title,
                       const std::string& metric, PTRawDataVector* data,
                       const SystemInfoRecord* systemInfo, bool isAggregate) {
    ReportFile file(htmlFile);
    if (!file.isOpen()) {
        return false;
    }
    // The tracer's own record is filled before the page needs it.
    if (!systemInfo) {
        tracerSystemInfo();
    }
    const PTProcessedData processed = ptProcessSelection(tracer, data, {grouping}, false);
    if (processed._hasError) {
        file << ptHtmlInstrumentationErrorPage();
        return true;
    }
    if (metric == "detailedmemory" && !processed._hasDetailedMem) {
        file << ptHtmlMissingStatisticsPage(false);
        return true;
    }
    const PTAggregateMap aggregates = ptAggregate(tracer, processed._rows);
    if (!systemInfo) {
        systemInfo = &tracerSystemInfo();
    }
    const bool hasDetailed = processed._hasDetailedMem;
    file << ptHtmlDoctype() << ptHtmlHead(processed._levelCount, title, false)
         << ptHtmlBodyOpen(metric, hasDetailed, isAggregate) << ptHtmlCenterOpen()
         << ptHtmlHeaderTable(false, metric, isAggregate) << ptHtmlAggregateDiv();
    if (!isAggregate) {
        file << ptHtmlCallTreePanel() << ptHtmlPhasePanel(metric, false);
    }
    file << ptHtmlSystemInfoTab(systemInfo) << ptHtmlCenterClose()
         << ptHtmlScrollDivs(false, isAggregate) << ptHtmlBodyClose() << ptHtmlClose()
         << ptHtmlTabScript(metric, hasDetailed, false, isAggregate) << ptHtmlQuicksortScript()
         << ptHtmlTableScript(metric, false, "none", "none", isAggregate)
         << ptHtmlAggregateScript(metric, false, isAggregate);
    if (!isAggregate) {
        file << ptHtmlDetailScript(metric, false) << ptHtmlCallTreeScript(metric);
    }
    file << ptHtmlScriptOpen();
    if (!isAggregate) {
        file << ptHtmlCallTreeData(processed) << ptHtmlProcData(tracer, processed, metric);
    }
    file << ptHtmlNameArrays(tracer) << ptHtmlAggData(tracer, aggregates, metric, isAggregate)
         << ptHtmlScriptClose();
    if (!isAggregate && metric == "detailedmemory") {
        file << ptHtmlCanvasShell(hasDetailed) << ptHtmlMemChartScript(hasDetailed);
    }
    return true;
}

}  // namespace

}  // namespace pt::report

bool ptWriteDetailReport(PerformanceTracer& tracer, const std::string& htmlFile,
                         const std::string& grouping, const std::string& title,
                         const std::string& metric, bool /*showmeta*/, PTRawDataVector* data,
                         const SystemInfoRecord* systemInfo) {
    return pt::report::writeSingleReport(tracer, htmlFile, grouping, title, metric, data,
                                         systemInfo, false);
}

bool ptWriteAggregateReport(PerformanceTracer& tracer, const std::string& htmlFile,
                            const std::string& grouping, const std::string& title,
                            const std::string& metric, bool /*showmeta*/, PTRawDataVector* data,
                            const SystemInfoRecord* systemInfo) {
    return pt::report::writeSingleReport(tracer, htmlFile, grouping, title, metric, data,
                                         systemInfo, true);
}
