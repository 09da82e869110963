// The report methods of PerfTools.Tracer: check the count, read the pairs into the settings,
// then do the work of report_runs.h.

#include <performance_tracer/constants.h>

#include "messages.h"
#include "method_frame.h"
#include "methods.h"
#include "report_parameters.h"
#include "report_runs.h"

namespace performance_tracer {

namespace {

using Kind = ReportParameter::Kind;

SingleReportSettings scanSingleReport(std::int32_t nrhs, const hvArray** prhs) {
    checkPairCount(nrhs, 2, "2", 8, "8");
    SingleReportSettings settings;
    const BadValue bad = BadValue::ParameterMismatchString;
    scanReportPairs(
        nrhs, prhs,
        {{kHtmlFileParameter, Kind::Text, bad, &settings.htmlFile},
         {kGroupingParameter, Kind::Text, bad, &settings.grouping},
         {kHvfFileParameter, Kind::Text, bad, &settings.hvfFile, nullptr, &settings.hvfPassed},
         {kShowMetaParameter, Kind::Flag, bad, nullptr, &settings.showmeta},
         {kMetricParameter, Kind::Metric, bad, &settings.metric}},
        {});
    return settings;
}

DifferenceReportSettings scanDifferenceReport(std::int32_t nrhs, const hvArray** prhs) {
    // Twelve inputs pass, although the message says eight.
    checkPairCount(nrhs, 4, "4", 12, "8");
    DifferenceReportSettings settings;
    const BadValue bad = BadValue::UnexpectedValue;
    scanReportPairs(
        nrhs, prhs,
        {{kGroupingParameter, Kind::Text, bad, &settings.grouping},
         {kHtmlFileParameter, Kind::Text, bad, &settings.htmlFile},
         {kLhsFileParameter, Kind::Text, bad, &settings.lhsFile},
         {kRhsFileParameter, Kind::Text, bad, &settings.rhsFile},
         {kLhsLabelParameter, Kind::Text, bad, &settings.lhsLabel},
         {kRhsLabelParameter, Kind::Text, bad, &settings.rhsLabel},
         {kMetricParameter, Kind::Metric, BadValue::ParameterMismatchString, &settings.metric}},
        {});
    return settings;
}

}  // namespace

void PerformanceTracer_generateHTMLReport::invoke(void*, std::uint32_t&, hvArray**,
                                                  std::int32_t nrhs, const hvArray** prhs) {
    writeSingleReport(scanSingleReport(nrhs, prhs), SinglePage::Detail);
}

void PerformanceTracer_generateAggregateReport::invoke(void*, std::uint32_t&, hvArray**,
                                                       std::int32_t nrhs, const hvArray** prhs) {
    writeSingleReport(scanSingleReport(nrhs, prhs), SinglePage::Aggregate);
}

void PerformanceTracer_generateKsStartupReport::invoke(void*, std::uint32_t&, hvArray**,
                                                       std::int32_t nrhs, const hvArray** prhs) {
    checkPairCount(nrhs, 0, "0", 4, "4");
    SingleReportSettings settings;
    settings.htmlFile = "KsStartup.html";
    const BadValue bad = BadValue::ParameterMismatchString;
    scanReportPairs(
        nrhs, prhs,
        {{kHtmlFileParameter, Kind::Text, bad, &settings.htmlFile},
         {kHvfFileParameter, Kind::Text, bad, &settings.hvfFile, nullptr, &settings.hvfPassed},
         {kMetricParameter, Kind::Metric, bad, &settings.metric}},
        {.valueFirst = true});
    writeKsStartupReport(settings);
}

void PerformanceTracer_generateDifferenceReport::invoke(void*, std::uint32_t&, hvArray**,
                                                        std::int32_t nrhs, const hvArray** prhs) {
    writeDifferenceReport(scanDifferenceReport(nrhs, prhs), DifferencePage::Difference);
}

void PerformanceTracer_generateAggregateDifferenceReport::invoke(void*, std::uint32_t&, hvArray**,
                                                                 std::int32_t nrhs,
                                                                 const hvArray** prhs) {
    writeDifferenceReport(scanDifferenceReport(nrhs, prhs), DifferencePage::AggregateDifference);
}

void PerformanceTracer_generateKsStartupDifferenceReport::invoke(void*, std::uint32_t&, hvArray**,
                                                                 std::int32_t nrhs,
                                                                 const hvArray** prhs) {
    checkPairCount(nrhs, 2, "2", 10, "10");
    DifferenceReportSettings settings;
    settings.htmlFile = "KsStartupDiff.html";
    const BadValue bad = BadValue::ParameterMismatchString;
    scanReportPairs(nrhs, prhs,
                    {{kHtmlFileParameter, Kind::Text, bad, &settings.htmlFile},
                     {kLhsFileParameter, Kind::Text, bad, &settings.lhsFile},
                     {kRhsFileParameter, Kind::Text, bad, &settings.rhsFile},
                     {kLhsLabelParameter, Kind::Text, bad, &settings.lhsLabel},
                     {kRhsLabelParameter, Kind::Text, bad, &settings.rhsLabel}},
                    {});
    writeKsStartupDifferenceReport(settings);
}

void PerformanceTracer_diagnosticReport::invoke(void*, std::uint32_t&, hvArray**, std::int32_t nrhs,
                                                const hvArray** prhs) {
    checkPairCount(nrhs, 2, "2", 6, "6");
    std::string htmlFile;
    std::string grouping = std::string(pt::kGlobalGrouping);
    std::string hvfFile;
    bool hvfPassed = false;
    const BadValue bad = BadValue::UnexpectedValue;
    scanReportPairs(nrhs, prhs,
                    {{kHtmlFileParameter, Kind::Text, bad, &htmlFile},
                     {kGroupingParameter, Kind::Text, bad, &grouping},
                     {kHvfFileParameter, Kind::Text, bad, &hvfFile, nullptr, &hvfPassed}},
                    {.foldNames = false, .valueFirst = true});
    writeDiagnostic(htmlFile, grouping, hvfFile, hvfPassed);
}

}  // namespace performance_tracer
