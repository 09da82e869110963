// The data blocks of a report on one data set.

#include <performance_tracer/constants.h>
#include <performance_tracer/data_blocks.h>

#include "block_text.h"

namespace {

using pt::blocks::declaration;
using pt::blocks::Record;
using pt::blocks::Rows;

constexpr std::string_view kProcFixedFields =
    "isParent HTMLPhaseNum GapRow Phase Grouping Model Target Machine Chart ";

std::string procFields(const std::string& metric) {
    std::string fields(kProcFixedFields);
    if (metric == pt::kMetricTime) {
        fields += "WCStart WCElapsed WCSelf CPUStart CPUElapsed CPUSelf ";
    } else if (metric == pt::kMetricBasicMemory) {
        fields +=
            "UsageDelta UsageDeltaSelf Usage UsageSelf UsagePeakDelta UsagePeakDeltaSelf "
            "UsagePeak UsagePeakSelf";
    } else if (metric == pt::kMetricDetailedMemory) {
        fields +=
            "Free FreeSelf Reserved ReservedSelf Committed CommittedSelf Dlls DllsSelf "
            "NonProcess NonProcessSelf FreeStart ReservedStart CommittedStart DllsStart "
            "NonProcessStart";
    }
    return fields;
}

/// The ids that place a row; a single report writes ", -1" (with its blank) where the row's
/// class has no such name.
void writePlace(Record& record, const PTOrviaProcessedDataPoint& row) {
    record.number(row._phaseID).number(row._groupingID);
    const auto* model = dynamic_cast<const PTKestruneProcessedDataPoint*>(&row);
    const auto* chart = dynamic_cast<const PTYlvaneProcessedDataPoint*>(&row);
    if (model) {
        record.number(model->_modelID).number(model->_targetID);
    } else {
        record.raw(", -1").raw(", -1");
    }
    if (chart) {
        record.number(chart->_machineID).number(chart->_chartID);
    } else {
        record.raw(", -1").raw(", -1");
    }
}

/// A figure of a row, and its "Self" field: the figure for a row without children, 0 for one
/// with children, whose own time shows in the generated rows under it.
void writeWithSelf(Record& record, double figure, bool isParent) {
    record.number(figure);
    if (isParent) {
        record.field("0");
    } else {
        record.number(figure);
    }
}

void writeTime(Record& record, const PTOrviaProcessedDataPoint& row, bool isParent) {
    record.number(row.wcStartTime);
    writeWithSelf(record, row.wcElapsedTime, isParent);
    record.number(row.cpuStartTime);
    writeWithSelf(record, row.cpuElapsedTime, isParent);
}

void writeBasicMemory(Record& record, const PTOrviaProcessedDataPoint& row, bool isParent) {
    const pt::BasicProcessedMemStats none;
    const pt::BasicProcessedMemStats& mem = row._basicMem ? *row._basicMem : none;
    const auto self = [&](double figure) {
        if (isParent) {
            record.field("0");
        } else {
            record.number(figure);
        }
    };
    // As settled: UsageSelf carries the peak, UsagePeakSelf the change of the virtual size.
    record.number(mem.procMemUsageDelta);
    self(mem.procMemUsageDelta);
    record.number(mem.procMemUsage);
    self(mem.procMemUsagePeak);
    record.number(mem.procMemUsagePeakDelta);
    self(mem.procMemUsagePeakDelta);
    record.number(mem.procMemUsagePeak);
    self(mem.procVMSizeDelta);
}

void writeDetailedMemory(Record& record, const PTOrviaProcessedDataPoint& row, bool isParent) {
    if (!row._detailedMem) {
        for (int i = 0; i < 15; ++i) {
            record.field("0");
        }
        return;
    }
    const pt::DetailedMemStats& end = *row._detailedMem;
    for (double figure : {end.freeMem, end.resMem, end.commitMem, end.dllsMem, end.nonprocessMem}) {
        writeWithSelf(record, figure, isParent);
    }
    // A leaf has no start record of its own; its end figures stand in.
    const pt::DetailedMemStats& start =
        isParent && row._startDetailedMem ? *row._startDetailedMem : end;
    for (double figure :
         {start.freeMem, start.resMem, start.commitMem, start.dllsMem, start.nonprocessMem}) {
        record.number(figure);
    }
}

std::string procRecord(const PTOrviaProcessedDataPoint& row, const std::string& metric) {
    const bool isParent = row.numChildren > 0;
    Record record("dataStruct");
    record.number(isParent ? 1 : 0).quoted(row.HTMLPhaseNumString.str()).number(row.gapRow ? 1 : 0);
    writePlace(record, row);
    if (metric == pt::kMetricTime) {
        writeTime(record, row, isParent);
    } else if (metric == pt::kMetricBasicMemory) {
        writeBasicMemory(record, row, isParent);
    } else if (metric == pt::kMetricDetailedMemory) {
        writeDetailedMemory(record, row, isParent);
    }
    return std::move(record).finish();
}

std::string aggFields(const std::string& metric) {
    std::string fields = "IsParent Phase Count ";
    if (metric == pt::kMetricTime) {
        fields += "WCElapsed WCSelfPlusChild";
    } else if (metric == pt::kMetricBasicMemory) {
        fields += "UsageDelta Usage UsagePeakDelta UsagePeak";
    } else if (metric == pt::kMetricDetailedMemory) {
        fields += "Free Reserved Committed Dlls NonProcess";
    }
    return fields;
}

/// The variables of the aggregate tab of a single report.
std::string aggregateTabVariables(bool aggregateOnly) {
    std::string text;
    const auto line = [&text](std::string_view statement) {
        text += "       ";
        text += statement;
        text += '\n';
    };
    for (const char* name : {"PhaseLengths", "GroupingLengths", "ModelLengths", "TargetLengths",
                             "MachineLengths", "ChartLengths", "ExpandStrLengths"}) {
        line("var " + std::string(name) + " = new Array();");
    }
    line("var ExpandStr = [\"&nbsp;&nbsp;&nbsp;\", \"[+]\", \"[-]\"];");
    for (const char* name :
         {"phaseStrToShow", "modelStrToShow", "machineStrToShow", "chartStrToShow", "phaseStr",
          "modelStr", "machineStr", "chartStr", "targetStr", "groupingStr"}) {
        line("var " + std::string(name) + " = \"\";");
    }
    line("var aggDataView = {'Index': new Array()};");
    line("var aggSortInfo = {'Col': '', 'Asc': false};");
    line("var aggDataViewCreated = false;");
    line("var ctDataViewCreated = false;");
    line(aggregateOnly ? "var numRows = {'Aggregate': 0};"
                       : "var numRows = {'Aggregate': 0, 'CallTree': 0, 'Detail': 0};");
    return text;
}

std::string aggRecord(std::int32_t phase, const PTAggregateDataPoint& entry,
                      const std::string& metric) {
    Record record("aggDataStruct");
    record.number(entry._isParent ? 1 : 0).number(phase).number(entry._count);
    if (metric == pt::kMetricTime) {
        record.number(entry._wcSelf).number(entry._wcTotal);
    } else if (metric == pt::kMetricBasicMemory) {
        record.number(entry._usageDeltaSum).number(entry._usageMax);
        record.number(entry._peakDeltaSum).number(entry._peakMax);
    } else if (metric == pt::kMetricDetailedMemory) {
        record.number(entry._freeMax).number(entry._reservedMax).number(entry._committedMax);
        record.number(entry._dllsMax).number(entry._nonProcessMax);
    }
    return std::move(record).finish();
}

}  // namespace

std::string ptHtmlProcData(PerformanceTracer&, const PTProcessedData& data,
                           const std::string& metric) {
    std::string block = declaration("        var dataStruct = makeStruct(", procFields(metric));
    block += "        var numBlankData = 0;\n";
    block += "        var procData = [";
    Rows rows;
    for (const auto& info : data._rows) {
        rows.add(procRecord(*info->_point, metric));
    }
    return block + rows.text() + "];\n";
}

std::string ptHtmlAggData(PerformanceTracer&, const PTAggregateMap& aggregates,
                          const std::string& metric, bool aggregateOnly) {
    std::string block = aggregateTabVariables(aggregateOnly);
    block += declaration("       var aggDataStruct = makeStruct(", aggFields(metric));
    block += "       var aggData = [";
    Rows rows;
    for (const auto& [phase, entry] : aggregates) {
        rows.add(aggRecord(phase, *entry, metric));
    }
    return block + rows.text() + "];\n\n";
}
