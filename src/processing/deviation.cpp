#include <performance_tracer/comparison.h>
#include <performance_tracer/constants.h>

#include <cmath>
#include <utility>

namespace {

/// The single-precision 0.01 widened to double: differences up to it count as none.
constexpr double kTiny = static_cast<double>(0.01f);

/// Deviation of one metric from the two sides' values.
void deviate(PerformanceTracer& tracer, PTDeviation& deviation, const std::string& metric,
             double left, double right) {
    ptDeviation(tracer, deviation.abs, deviation.rel, deviation.colour, metric, left, right);
}

/// The five detailed figures: free, reserved, committed, DLLs, non-process.
struct Detailed {
    double free = 0, reserved = 0, committed = 0, dlls = 0, nonProcess = 0;

    explicit Detailed(const pt::DetailedMemStats* mem) {
        if (mem) {
            free = mem->freeMem, reserved = mem->resMem, committed = mem->commitMem;
            dlls = mem->dllsMem, nonProcess = mem->nonprocessMem;
        }
    }
};

/// The figures of one side of a compared row; a missing row gives zeros.
struct RowFigures {
    double wcSelf = 0, wcTotal = 0, cpuSelf = 0, cpuTotal = 0;
    double usageDelta = 0, usage = 0, peakDelta = 0, peak = 0;
    Detailed end{nullptr};
    Detailed start{nullptr};

    explicit RowFigures(const PTOrviaProcessedDataPoint* row) {
        if (!row) {
            return;
        }
        const bool isLeaf = row->numChildren < 1;
        wcTotal = row->wcElapsedTime;
        cpuTotal = row->cpuElapsedTime;
        wcSelf = isLeaf ? wcTotal : 0.0;
        cpuSelf = isLeaf ? cpuTotal : 0.0;
        if (const auto& basic = row->_basicMem) {
            usageDelta = basic->procMemUsageDelta, usage = basic->procMemUsage;
            peakDelta = basic->procMemUsagePeakDelta, peak = basic->procMemUsagePeak;
        }
        end = Detailed(row->_detailedMem.get());
        start = isLeaf ? end : Detailed(row->_startDetailedMem.get());
    }
};

}  // namespace

double ptRoundHundredths(PerformanceTracer&, double value) {
    const double scaled = value * 100.0;
    return scaled >= 0.0 ? std::floor(scaled + 0.5) / 100.0 : std::ceil(scaled - 0.5) / 100.0;
}

std::string ptDeviationClass(PerformanceTracer&, double rel) {
    // There is no step for 30 to 35: " BETWN_25_30" reaches up to 35.
    static const std::pair<double, const char*> kLadder[] = {
        {50, " GT50"},           {45, " BETWN_45_50"},    {40, " BETWN_40_45"},
        {35, " BETWN_35_40"},    {25, " BETWN_25_30"},    {20, " BETWN_20_25"},
        {15, " BETWN_15_20"},    {10, " BETWN_10_15"},    {5, " BETWN_5_10"},
        {0, " BETWN_0_5"},       {-5, " BETWN_M5_0"},     {-10, " BETWN_M10_M5"},
        {-15, " BETWN_M15_M10"}, {-20, " BETWN_M20_M15"}, {-25, " BETWN_M25_M20"},
        {-30, " BETWN_M30_M25"}, {-35, " BETWN_M35_M30"}, {-40, " BETWN_M40_M35"},
        {-45, " BETWN_M45_M40"}, {-50, " BETWN_M50_M45"},
    };
    for (const auto& [above, name] : kLadder) {
        if (rel > above) {
            return name;
        }
    }
    return " LTM50";
}

void ptDeviation(PerformanceTracer& tracer, double& abs, double& rel, std::string& colour,
                 const std::string& metric, double left, double right) {
    if (left < 0.01) {
        left = ptRoundHundredths(tracer, left);
    }
    if (right < 0.01) {
        right = ptRoundHundredths(tracer, right);
    }
    const bool signedFigures = metric == pt::kMetricBasicMemory;
    double tiny = 0.0;
    if (signedFigures) {
        abs = right - left;
    } else {
        abs = std::fabs(right) - std::fabs(left);
        tiny = std::fabs(abs) <= kTiny ? ptRoundHundredths(tracer, abs) : 0.0;
    }
    if (left == 0.0) {
        if (signedFigures) {
            rel = right > 0.0 ? 100.0 : right < 0.0 ? -100.0 : 0.0;
        } else {
            rel = std::fabs(right) > kTiny ? 100.0 : 0.0;
        }
    } else if (signedFigures) {
        rel = abs / std::fabs(left) * 100.0;
    } else {
        if (std::fabs(abs) <= kTiny) {
            abs = tiny;
        }
        rel = abs / left * 100.0;  // the sign of the left value stays
    }
    colour = ptDeviationClass(tracer, rel);
}

void ptCompareRows(PerformanceTracer& tracer, const PTOrviaProcessedDataPoint* left,
                   const PTOrviaProcessedDataPoint* right, PTCompareRecord& record,
                   const std::string& metric) {
    const RowFigures l(left);
    const RowFigures r(right);
    if (metric == pt::kMetricTime) {
        deviate(tracer, record.WCSelf, metric, l.wcSelf, r.wcSelf);
        deviate(tracer, record.WCSC, metric, l.wcTotal, r.wcTotal);
        deviate(tracer, record.CPUSelf, metric, l.cpuSelf, r.cpuSelf);
        deviate(tracer, record.CPUSC, metric, l.cpuTotal, r.cpuTotal);
    } else if (metric == pt::kMetricBasicMemory) {
        deviate(tracer, record.UsageDelta, metric, l.usageDelta, r.usageDelta);
        deviate(tracer, record.Usage, metric, l.usage, r.usage);
        deviate(tracer, record.UsagePeakDelta, metric, l.peakDelta, r.peakDelta);
        deviate(tracer, record.UsagePeak, metric, l.peak, r.peak);
    } else if (metric == pt::kMetricDetailedMemory) {
        deviate(tracer, record.Free, metric, l.end.free, r.end.free);
        deviate(tracer, record.Reserved, metric, l.end.reserved, r.end.reserved);
        deviate(tracer, record.Committed, metric, l.end.committed, r.end.committed);
        deviate(tracer, record.Dlls, metric, l.end.dlls, r.end.dlls);
        deviate(tracer, record.NonProcess, metric, l.end.nonProcess, r.end.nonProcess);
        deviate(tracer, record.FreeStart, metric, l.start.free, r.start.free);
        deviate(tracer, record.ReservedStart, metric, l.start.reserved, r.start.reserved);
        deviate(tracer, record.CommittedStart, metric, l.start.committed, r.start.committed);
        deviate(tracer, record.DllsStart, metric, l.start.dlls, r.start.dlls);
        deviate(tracer, record.NonProcessStart, metric, l.start.nonProcess, r.start.nonProcess);
    }
}

void ptCompareAggregates(PerformanceTracer& tracer, const PTAggregateDataPoint* left,
                         const PTAggregateDataPoint* right, PTCompareRecord& record,
                         const std::string& metric) {
    const PTAggregateDataPoint none(-1, -1, false);
    const PTAggregateDataPoint& l = left ? *left : none;
    const PTAggregateDataPoint& r = right ? *right : none;
    if (metric == pt::kMetricTime) {
        deviate(tracer, record.WCSelf, metric, l._wcSelf, r._wcSelf);
        deviate(tracer, record.WCSC, metric, l._wcTotal, r._wcTotal);
    } else if (metric == pt::kMetricBasicMemory) {
        deviate(tracer, record.UsageDelta, metric, static_cast<double>(l._usageDeltaSum),
                static_cast<double>(r._usageDeltaSum));
        deviate(tracer, record.UsagePeak, metric, l._peakMax, r._peakMax);
        deviate(tracer, record.UsagePeakDelta, metric, static_cast<double>(l._peakDeltaSum),
                static_cast<double>(r._peakDeltaSum));
        deviate(tracer, record.Usage, metric, l._usageMax, r._usageMax);
    } else if (metric == pt::kMetricDetailedMemory) {
        deviate(tracer, record.Free, metric, l._freeMax, r._freeMax);
        deviate(tracer, record.Reserved, metric, l._reservedMax, r._reservedMax);
        deviate(tracer, record.Committed, metric, l._committedMax, r._committedMax);
        deviate(tracer, record.Dlls, metric, l._dllsMax, r._dllsMax);
        deviate(tracer, record.NonProcess, metric, l._nonProcessMax, r._nonProcessMax);
    }
}
