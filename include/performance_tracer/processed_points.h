#pragma once

// Processed points: one phase execution each, the row of a report, filled in by the matching
// pass from the phase's start and end points. Rows are held through PTDiagnosticInfo, so that
// a start and an end can map to one row and a row outlives the pass that made it.

#include <performance_tracer/export.h>
#include <performance_tracer/mem_stats.h>
#include <performance_tracer/raw_points.h>
#include <performance_tracer/row_numbers.h>

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

struct hvArray;

class PT_API PTOrviaProcessedDataPoint {
public:
    /// Ids from the raw point, its memory records in MiB with zero deltas (zeros for a missing
    /// record), zero times.
    explicit PTOrviaProcessedDataPoint(const PTOrviaDataPoint& raw);
    /// A copy with memory records of its own.
    PTOrviaProcessedDataPoint(const PTOrviaProcessedDataPoint& other);
    PTOrviaProcessedDataPoint& operator=(const PTOrviaProcessedDataPoint&) = delete;
    virtual ~PTOrviaProcessedDataPoint();

    /// A new 1-by-31 cell row (33 and 35 for the wider classes) in the order of toStruct's
    /// fields.
    virtual hvArray* toRow() const;
    /// Appends ten doubles to a cell row at index: the five detailed figures (free, reserved,
    /// committed, DLLs, non-process), then their deltas in the same order.
    virtual void detailedMemToRow(hvArray* row, std::size_t& index) const;
    /// Appends six doubles: usage, peak, virtual size, then the usage, peak and size deltas.
    virtual void basicMemToRow(hvArray* row, std::size_t& index) const;
    /// Appends errorRow and gapRow (logical), the outline number (text), the row number, child
    /// count and depth (uint32), and the descendants' row numbers (a cell row of int32).
    virtual void stateToRow(hvArray* row, std::size_t& index) const;
    /// A new 1-by-1 structure: pointType, the names (groupingStr, phaseIDStr, [modelStr,
    /// targetStr, [machineStr, chartStr]], statisticsTypeStr), the four times, the sixteen
    /// memory figures, then errorRow, gapRow, HTMLPhaseNumString, HTMLRowNumber,
    /// numChildren, stackDepth and childrenIDs.
    virtual hvArray* toStruct() const;

    /// The same phase: equal phase and grouping. The host-language form does not look at the
    /// other row's kind; the wider forms demand their own kind and their names too.
    virtual bool isSamePhase(const PTOrviaProcessedDataPoint& other) const;
    /// The names by which two data sets are aligned, run together without a separator: the
    /// phase (customisation folders stripped) and the grouping, then the wider names.
    virtual std::string alignmentKey() const;
    /// Writes the phase id, and the model and chart ids or -1 where the class has none.
    virtual void nameIDs(std::int32_t& phase, std::int32_t& model, std::int32_t& chart) const;
    virtual std::int32_t phaseID() const;
    virtual std::int32_t groupingID() const;
    virtual std::int32_t modelID() const;
    virtual std::int32_t targetID() const;
    virtual std::int32_t machineID() const;
    virtual std::int32_t chartID() const;
    /// Writes the sixteen memory figures into the structure from field number index on, each
    /// through the one scratch double scalar: the ten detailed figures and deltas, then usage,
    /// peak, size and their three deltas. Missing records write zeros.
    virtual void memToStruct(hvArray* structure, int index, hvArray* scratch) const;

    std::int32_t _pointType = 0;
    std::int32_t _groupingID = -1;
    std::int32_t _phaseID = -1;
    std::int32_t _statisticsTypeID = -1;
    /// Seconds relative to the data set's time origin; elapsed times include the children.
    double wcStartTime = 0.0;
    double wcElapsedTime = 0.0;
    double cpuStartTime = 0.0;
    double cpuElapsedTime = 0.0;
    /// End figures and deltas; never null.
    boost::shared_ptr<pt::DetailedProcessedMemStats> _detailedMem;
    boost::shared_ptr<pt::BasicProcessedMemStats> _basicMem;
    /// Detailed figures at the phase's start in MiB, filled only for a phase with children.
    boost::shared_ptr<pt::DetailedMemStats> _startDetailedMem;
    /// The row took part in broken instrumentation.
    bool errorRow = false;
    /// The row was made up by the matching pass for unaccounted time.
    bool gapRow = false;
    /// Outline number such as 2.1.3; its text is made where it is read.
    PTOutlineNumber HTMLPhaseNumString;
    /// Row number in the data set, from 1, in order of the phases' starts.
    std::int32_t HTMLRowNumber = 0;
    std::int32_t numChildren = 0;
    /// Nesting depth, 0 at the top level.
    std::int32_t stackDepth = 0;
    /// Row numbers of all descendants in order of their starts: always consecutive, since a
    /// phase's descendants are the rows started while it was open.
    PTRowRun childrenIDs;
    std::int32_t _parentPhaseID = -1;

protected:
    PTOrviaProcessedDataPoint(const PTOrviaDataPoint& raw, std::int32_t pointType);

    /// The names of the class in row order, after pointType: (kind, id) pairs.
    virtual std::vector<std::pair<std::uint32_t, std::int32_t>> namesInOrder() const;
    /// The field names of the structure, in order.
    virtual std::vector<const char*> structFieldNames() const;
    hvArray* buildStruct() const;
    hvArray* buildRow() const;
};

class PT_API PTKestruneProcessedDataPoint : public PTOrviaProcessedDataPoint {
public:
    explicit PTKestruneProcessedDataPoint(const PTOrviaDataPoint& raw);
    PTKestruneProcessedDataPoint(const PTKestruneProcessedDataPoint& other) = default;

    bool isSamePhase(const PTOrviaProcessedDataPoint& other) const override;
    std::string alignmentKey() const override;
    void nameIDs(std::int32_t& phase, std::int32_t& model, std::int32_t& chart) const override;
    std::int32_t modelID() const override;
    std::int32_t targetID() const override;
    /// A table row naming the grouping, model and target; no report path shows it.
    virtual std::string phaseDetailRow() const;

    std::int32_t _modelID = -1;
    std::int32_t _targetID = -1;

protected:
    PTKestruneProcessedDataPoint(const PTOrviaDataPoint& raw, std::int32_t pointType);

    std::vector<std::pair<std::uint32_t, std::int32_t>> namesInOrder() const override;
    std::vector<const char*> structFieldNames() const override;
};

class PT_API PTYlvaneProcessedDataPoint : public PTKestruneProcessedDataPoint {
public:
    explicit PTYlvaneProcessedDataPoint(const PTOrviaDataPoint& raw);
    PTYlvaneProcessedDataPoint(const PTYlvaneProcessedDataPoint& other) = default;

    bool isSamePhase(const PTOrviaProcessedDataPoint& other) const override;
    std::string alignmentKey() const override;
    void nameIDs(std::int32_t& phase, std::int32_t& model, std::int32_t& chart) const override;
    std::int32_t machineID() const override;
    std::int32_t chartID() const override;
    std::string phaseDetailRow() const override;

    std::int32_t _machineID = -1;
    std::int32_t _chartID = -1;

protected:
    std::vector<std::pair<std::uint32_t, std::int32_t>> namesInOrder() const override;
    std::vector<const char*> structFieldNames() const override;
};

/// The handle by which rows are held.
class PT_API PTDiagnosticInfo {
public:
    /// A row of the class that the raw point's _pointType names (any other value gives the
    /// host-language class), with its row number, depth and generated flag.
    PTDiagnosticInfo(const boost::shared_ptr<PTOrviaDataPoint>& raw, std::int32_t rowNumber,
                     std::int32_t stackDepth);

    std::unique_ptr<PTOrviaProcessedDataPoint> _point;
};

using PTDiagnosticInfoList = std::vector<boost::shared_ptr<PTDiagnosticInfo>>;

/// The result of one matching pass: the rows and the totals of the data set.
struct PTProcessedData {
    /// Rows in order of the phases' starts; empty when the data set has an error.
    PTDiagnosticInfoList _rows;
    double _totalCPU = 0.0;
    double _wcSum = 0.0;
    double _cpuSum = 0.0;
    double _totalWC = 0.0;
    /// Nesting levels seen: the deepest nesting plus one.
    std::int32_t _levelCount = 0;
    /// The time origin of the rows' start times.
    double _baseWC = 0.0;
    double _baseCPU = 0.0;
    /// The instrumentation was broken.
    bool _hasError = false;
    /// The last accepted raw point had a detailed record with a non-zero free figure.
    bool _hasDetailedMem = false;
};

/// Processed rows of the named groupings ("GLOBAL" for all), matched over the given raw list,
/// or over a snapshot of the raw store if the list is null. Generated points are inserted into
/// a given list.
PT_API PTProcessedData ptGetProcessedDataForGroupings(PTRawDataVector* raw,
                                                      const std::vector<std::string>& groupings);
/// The same for the named models; host-language points are never selected.
PT_API PTProcessedData ptGetProcessedDataForModels(PTRawDataVector* raw,
                                                   const std::vector<std::string>& models);
