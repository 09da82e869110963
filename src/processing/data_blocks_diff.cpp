// The data blocks of a comparison report: one record per aligned pair, with each side's value
// texts and the deviation triples of the report's metric.

#include <performance_tracer/constants.h>
#include <performance_tracer/data_blocks.h>

#include "block_text.h"

namespace {

using pt::blocks::declaration;
using pt::blocks::kMissing;
using pt::blocks::Record;
using pt::blocks::Rows;
using pt::blocks::text;

constexpr std::string_view kProcFixedFields =
    "isParent HTMLPhaseNum GapRow Phase Grouping Model Target Machine Chart ";

/// The basic-memory fields are the same in the rows and in the aggregates of a comparison.
constexpr std::string_view kBasicMemoryDiffFields =
    "LHS_UsageDelta LHS_Usage LHS_UsagePeakDelta LHS_UsagePeak "
    "RHS_UsageDelta RHS_Usage RHS_UsagePeakDelta RHS_UsagePeak "
    "UsageDeltaAbsDev UsageDeltaRelDev UsageDeltaBkgColor UsageAbsDev UsageRelDev "
    "UsageBkgColor UsagePeakDeltaAbsDev UsagePeakDeltaRelDev UsagePeakDeltaBkgColor "
    "UsagePeakAbsDev UsagePeakRelDev UsagePeakBkgColor";

std::string procDiffFields(const std::string& metric) {
    std::string fields(kProcFixedFields);
    if (metric == pt::kMetricTime) {
        fields +=
            "LHS_WCSelf LHS_WCSelfPlusChild LHS_CPUSself LHS_CPUSelfPlusChild "
            "RHS_WCSelf RHS_WCSelfPlusChild RHS_CPUSelf RHS_CPUSelfPlusChild "
            "WCSelfAbsDev WCSelfRelDev WCSelfBkgColor WCSCAbsDev WCSCRelDev WCSCBkgColor "
            "CPUSelfAbsDev CPUSelfRelDev CPUSelfBkgColor CPUSCAbsDev CPUSCRelDev CPUSCBkgColor";
    } else if (metric == pt::kMetricBasicMemory) {
        fields += kBasicMemoryDiffFields;
    } else if (metric == pt::kMetricDetailedMemory) {
        fields +=
            "LHS_Free LHS_Reserved LHS_Committed LHS_Dlls LHS_NonProcess "
            "LHS_FreeStart LHS_ReservedStart LHS_CommittedStart LHS_DllsStart "
            "LHS_NonProcessStart "
            "RHS_Free RHS_Reserved RHS_Committed RHS_Dlls RHS_NonProcess "
            "RHS_FreeStart RHS_ReservedStart RHS_CommittedStart RHS_DllsStart "
            "RHS_NonProcessStart "
            "FreeAbsDev FreeRelDev FreeBkgColor ReservedAbsDev ReservedRelDev ReservedBkgColor "
            "CommittedAbsDev CommittedRelDev CommittedBkgColor DllsAbsDev DllsRelDev "
            "DllsBkgColor NonProcessAbsDev NonProcessRelDev NonProcessBkgColor "
            "FreeStartAbsDev FreeStartRelDev FreeStartBkgColor ReservedStartAbsDev "
            "ReservedStartRelDev ReservedStartBkgColor CommittedStartAbsDev "
            "CommittedStartRelDev CommittedStartBkgColor DllsStartAbsDev DllsStartRelDev "
            "DllsStartBkgColor NonProcessStartAbsDev NonProcessStartRelDev "
            "NonProcessStartBkgColor";
    }
    return fields;
}

/// Which side's text a writer sets.
enum class Side { Left, Right };

std::string& textOf(PTDeviation& deviation, Side side) {
    return side == Side::Left ? deviation.leftText : deviation.rightText;
}

void writeTriple(Record& record, const PTDeviation& deviation) {
    record.number(deviation.abs).number(deviation.rel).quoted(deviation.colour);
}

// ---- procData ----

class ProcDiffWriter {
public:
    explicit ProcDiffWriter(PerformanceTracer& tracer, const std::string& metric)
        : _tracer(tracer), _metric(metric) {
        // A right-only parent carries the right self texts over from the row before; on the
        // first row there is none, and an empty text would leave a hole in the block.
        _record.WCSelf.rightText = "0";
        _record.CPUSelf.rightText = "0";
    }

    std::string record(const PTAlignedPair& pair) {
        const PTOrviaProcessedDataPoint* left = pair.left;
        const PTOrviaProcessedDataPoint* right = pair.right;
        const PTOrviaProcessedDataPoint& row = left ? *left : *right;
        const bool isParent =
            (left && !left->childrenIDs.empty()) || (right && !right->childrenIDs.empty());
        const bool isGap = (left && left->gapRow) || (right && right->gapRow);

        Record record("dataStruct");
        record.number(isParent ? 1 : 0).quoted(row.HTMLPhaseNumString.str()).number(isGap ? 1 : 0);
        writePlace(record, row);
        if (_metric == pt::kMetricTime) {
            setTimeTexts(left, Side::Left, isParent, pair.kind);
            setTimeTexts(right, Side::Right, isParent, pair.kind);
            ptCompareRows(_tracer, left, right, _record, _metric);
            writeValues(record, {&_record.WCSelf, &_record.WCSC, &_record.CPUSelf, &_record.CPUSC});
        } else if (_metric == pt::kMetricBasicMemory) {
            setBasicTexts(left, Side::Left);
            setBasicTexts(right, Side::Right);
            ptCompareRows(_tracer, left, right, _record, _metric);
            writeValues(record, {&_record.UsageDelta, &_record.Usage, &_record.UsagePeakDelta,
                                 &_record.UsagePeak});
        } else if (_metric == pt::kMetricDetailedMemory) {
            const auto deviations = detailedDeviations();
            for (PTDeviation* deviation : deviations) {
                deviation->leftText = "0";
                deviation->rightText = "0";
            }
            setDetailedTexts(left, Side::Left);
            setDetailedTexts(right, Side::Right);
            ptCompareRows(_tracer, left, right, _record, _metric);
            writeValues(record, deviations);
        }
        return std::move(record).finish();
    }

private:
    /// Phase and grouping, then model, target, machine and chart, -1 where they do not apply.
    /// The ids of the last state-chart row carry over to the block-diagram rows after it, until
    /// a host-language row comes, as the reports have always shown them.
    void writePlace(Record& record, const PTOrviaProcessedDataPoint& row) {
        record.number(row._phaseID).number(row._groupingID);
        const auto* model = dynamic_cast<const PTKestruneProcessedDataPoint*>(&row);
        if (const auto* chart = dynamic_cast<const PTYlvaneProcessedDataPoint*>(&row)) {
            _lastChartRow = chart;
        } else if (!model) {
            _lastChartRow = nullptr;
        }
        if (_lastChartRow) {
            record.number(_lastChartRow->_modelID).number(_lastChartRow->_targetID);
            record.number(_lastChartRow->_machineID).number(_lastChartRow->_chartID);
        } else if (model) {
            record.number(model->_modelID).number(model->_targetID).field("-1").field("-1");
        } else {
            record.field("-1").field("-1").field("-1").field("-1");
        }
    }

    void setTimeTexts(const PTOrviaProcessedDataPoint* row, Side side, bool isParent,
                      std::int32_t kind) {
        PTCompareRecord& r = _record;
        if (!row) {
            for (PTDeviation* d : {&r.WCSelf, &r.WCSC, &r.CPUSelf, &r.CPUSC}) {
                textOf(*d, side) = kMissing;
            }
            return;
        }
        // Settled behaviour: a parent row only on the right leaves its self texts as the
        // previous row had them.
        if (!(side == Side::Right && kind == PT_ALIGN_RHS_ONLY && isParent)) {
            textOf(r.WCSelf, side) = isParent ? "0" : text(row->wcElapsedTime);
            textOf(r.CPUSelf, side) = isParent ? "0" : text(row->cpuElapsedTime);
        }
        textOf(r.WCSC, side) = text(row->wcElapsedTime);
        textOf(r.CPUSC, side) = text(row->cpuElapsedTime);
    }

    void setBasicTexts(const PTOrviaProcessedDataPoint* row, Side side) {
        PTCompareRecord& r = _record;
        const pt::BasicProcessedMemStats none;
        const pt::BasicProcessedMemStats* mem =
            row && row->_basicMem ? row->_basicMem.get() : &none;
        const std::pair<PTDeviation*, double> fields[] = {
            {&r.UsageDelta, mem->procMemUsageDelta},
            {&r.Usage, mem->procMemUsage},
            {&r.UsagePeakDelta, mem->procMemUsagePeakDelta},
            {&r.UsagePeak, mem->procMemUsagePeak}};
        for (const auto& [deviation, figure] : fields) {
            textOf(*deviation, side) = row ? text(figure) : std::string(kMissing);
        }
    }

    void setDetailedTexts(const PTOrviaProcessedDataPoint* row, Side side) {
        const auto deviations = detailedDeviations();
        if (!row) {
            for (PTDeviation* deviation : deviations) {
                textOf(*deviation, side) = kMissing;
            }
            return;
        }
        if (!row->_detailedMem) {
            return;  // the texts stay "0"
        }
        const pt::DetailedMemStats& end = *row->_detailedMem;
        const pt::DetailedMemStats& start =
            !row->childrenIDs.empty() && row->_startDetailedMem ? *row->_startDetailedMem : end;
        const double figures[] = {
            end.freeMem,   end.resMem,   end.commitMem,   end.dllsMem,   end.nonprocessMem,
            start.freeMem, start.resMem, start.commitMem, start.dllsMem, start.nonprocessMem};
        for (std::size_t i = 0; i < deviations.size(); ++i) {
            textOf(*deviations[i], side) = text(figures[i]);
        }
    }

    /// The ten detailed deviations in field order: the end figures, then the start figures.
    std::vector<PTDeviation*> detailedDeviations() {
        PTCompareRecord& r = _record;
        return {&r.Free,       &r.Reserved,       &r.Committed,     &r.Dlls,
                &r.NonProcess, &r.FreeStart,      &r.ReservedStart, &r.CommittedStart,
                &r.DllsStart,  &r.NonProcessStart};
    }

    /// The left texts, the right texts, then the deviation triples, all in field order.
    static void writeValues(Record& record, const std::vector<PTDeviation*>& deviations) {
        for (const PTDeviation* deviation : deviations) {
            record.field(deviation->leftText);
        }
        for (const PTDeviation* deviation : deviations) {
            record.field(deviation->rightText);
        }
        for (const PTDeviation* deviation : deviations) {
            writeTriple(record, *deviation);
        }
    }

    PerformanceTracer& _tracer;
    const std::string& _metric;
    /// One record for all rows: texts a row does not set keep the previous row's.
    PTCompareRecord _record;
    const PTYlvaneProcessedDataPoint* _lastChartRow = nullptr;
};

// ---- aggData ----

std::string aggDiffFields(const std::string& metric) {
    std::string fields = "IsParent Phase LHS_Count RHS_Count CountAbsDev ";
    if (metric == pt::kMetricTime) {
        fields +=
            "LHS_WCSelf LHS_WCSelfPlusChild RHS_WCSelf RHS_WCSelfPlusChild "
            "WCSelfAbsDev WCSelfRelDev WCSelfBkgColor WCSCAbsDev WCSCRelDev WCSCBkgColor";
    } else if (metric == pt::kMetricBasicMemory) {
        fields += kBasicMemoryDiffFields;
    } else if (metric == pt::kMetricDetailedMemory) {
        fields +=
            "LHS_Free LHS_Reserved LHS_Committed LHS_Dlls LHS_NonProcess "
            "RHS_Free RHS_Reserved RHS_Committed RHS_Dlls RHS_NonProcess "
            "FreeAbsDev FreeRelDev FreeBkgColor ReservedAbsDev ReservedRelDev ReservedBkgColor "
            "CommittedAbsDev CommittedRelDev CommittedBkgColor DllsAbsDev DllsRelDev "
            "DllsBkgColor NonProcessAbsDev NonProcessRelDev NonProcessBkgColor";
    }
    return fields;
}

/// An aggregate's figures for the fields of a metric, in field order.
std::vector<std::string> aggregateTexts(const PTAggregateDataPoint* entry,
                                        const std::string& metric, std::size_t count) {
    if (!entry) {
        return std::vector<std::string>(count, std::string(kMissing));
    }
    if (metric == pt::kMetricTime) {
        return {text(entry->_wcSelf), text(entry->_wcTotal)};
    }
    if (metric == pt::kMetricBasicMemory) {
        return {text(entry->_usageDeltaSum), text(entry->_usageMax), text(entry->_peakDeltaSum),
                text(entry->_peakMax)};
    }
    return {text(entry->_freeMax), text(entry->_reservedMax), text(entry->_committedMax),
            text(entry->_dllsMax), text(entry->_nonProcessMax)};
}

std::string aggDiffRecord(PerformanceTracer& tracer, const PTAlignedAggregatePair& pair,
                          const std::string& metric, PTCompareRecord& compared) {
    const PTAggregateDataPoint& entry = pair.left ? *pair.left : *pair.right;
    Record record("aggDataStruct");
    record.number(entry._isParent ? 1 : 0).number(entry._phaseID);
    record.field(pair.left ? text(pair.left->_count) : std::string(kMissing));
    record.field(pair.right ? text(pair.right->_count) : std::string(kMissing));
    // An entry on one side only counts its own executions, positive on either side.
    record.number(pair.left && pair.right ? pair.right->_count - pair.left->_count : entry._count);

    std::vector<PTDeviation*> deviations;
    if (metric == pt::kMetricTime) {
        deviations = {&compared.WCSelf, &compared.WCSC};
    } else if (metric == pt::kMetricBasicMemory) {
        deviations = {&compared.UsageDelta, &compared.Usage, &compared.UsagePeakDelta,
                      &compared.UsagePeak};
    } else if (metric == pt::kMetricDetailedMemory) {
        deviations = {&compared.Free, &compared.Reserved, &compared.Committed, &compared.Dlls,
                      &compared.NonProcess};
    }
    if (deviations.empty()) {
        return std::move(record).finish();
    }
    ptCompareAggregates(tracer, pair.left, pair.right, compared, metric);
    for (const std::string& value : aggregateTexts(pair.left, metric, deviations.size())) {
        record.field(value);
    }
    for (const std::string& value : aggregateTexts(pair.right, metric, deviations.size())) {
        record.field(value);
    }
    for (const PTDeviation* deviation : deviations) {
        writeTriple(record, *deviation);
    }
    return std::move(record).finish();
}

}  // namespace

std::string ptHtmlProcDiffData(PerformanceTracer& tracer, const std::vector<PTAlignedPair>& pairs,
                               const std::string& metric, const std::string&, const std::string&) {
    std::string block = declaration("        var dataStruct = makeStruct(", procDiffFields(metric));
    block += "        var numBlankData = 0;\n";
    block += "        var procData = [";
    ProcDiffWriter writer(tracer, metric);
    Rows rows;
    for (const PTAlignedPair& pair : pairs) {
        rows.add(writer.record(pair));
    }
    return block + rows.text() + "];\n";
}

std::string ptHtmlAggDiffData(PerformanceTracer& tracer,
                              const std::vector<PTAlignedAggregatePair>& pairs,
                              const std::string& metric, const std::string&, const std::string&) {
    std::string block =
        "        var aggDataView = {'Index': new Array()};\n"
        "        var aggSortInfo = {'Col': '', 'Asc': false};\n"
        "        var aggDataViewCreated = false;\n"
        "        var ctDataViewCreated = false;\n"
        "        var numRows = {'Aggregate': 0, 'CallTree': 0, 'Detail': 0};\n";
    block += declaration("        var aggDataStruct = makeStruct(", aggDiffFields(metric));
    block += "        var aggData = [";
    PTCompareRecord compared;
    Rows rows;
    for (const PTAlignedAggregatePair& pair : pairs) {
        rows.add(aggDiffRecord(tracer, pair, metric, compared));
    }
    return block + rows.text() + "];\n\n";
}
