#pragma once

// Sums of all executions of a phase: the aggregate tab of every report.

#include <performance_tracer/export.h>
#include <performance_tracer/processed_points.h>

#include <cstdint>
#include <map>
#include <memory>

class PerformanceTracer;
struct hvArray;

/// Sums and maxima over the rows of one phase id.
class PT_API PTAggregateDataPoint {
public:
    PTAggregateDataPoint(std::int32_t groupingID, std::int32_t phaseID, bool hasChildren);
    virtual ~PTAggregateDataPoint();

    /// A new 1-by-1 structure: pointType, grouping, phaseID (the phase's name), wcElapsedTime
    /// and cpuElapsedTime (the self sums), the three delta sums in double, and Count.
    virtual hvArray* toStruct() const;

    /// One execution: totals, maxima and count always; self sums and delta sums only for a
    /// row without children.
    virtual void addRow(const PTOrviaProcessedDataPoint& row);
    /// A generated "_self" row of the phase: self sums and delta sums only.
    virtual void addSelfRow(const PTOrviaProcessedDataPoint& row);
    /// The inverse of addSelfRow.
    virtual void subtractSelfRow(const PTOrviaProcessedDataPoint& row);

    std::int32_t _pointType = 0;
    std::int32_t _groupingID;
    std::int32_t _phaseID;
    double _wcTotal = 0.0;
    double _wcSelf = 0.0;
    double _cpuTotal = 0.0;
    double _cpuSelf = 0.0;
    double _usageMax = 0.0;
    /// Positive and negative deltas of many rows nearly cancel, hence extended precision.
    long double _usageDeltaSum = 0.0L;
    double _peakMax = 0.0;
    long double _peakDeltaSum = 0.0L;
    double _vmMax = 0.0;
    long double _vmDeltaSum = 0.0L;
    double _freeMax = 0.0;
    double _reservedMax = 0.0;
    double _committedMax = 0.0;
    double _dllsMax = 0.0;
    double _nonProcessMax = 0.0;
    std::int32_t _count = 0;
    /// The row that created the entry had children.
    bool _isParent;

private:
    void addSelf(const PTOrviaProcessedDataPoint& row, double sign);
};

/// Aggregates by phase id, ascending: the order of aggregate rows in reports.
using PTAggregateMap = std::map<std::int32_t, std::unique_ptr<PTAggregateDataPoint>>;

/// Sums the rows per phase id. A generated "_self" row adds to the entry of its phase; a
/// generated row with children is left out.
PT_API PTAggregateMap ptAggregate(PerformanceTracer& tracer, const PTDiagnosticInfoList& rows);
/// ptAggregate on the tracer singleton.
PT_API PTAggregateMap ptGetAggregateProcessedData(PTDiagnosticInfoList& rows);
