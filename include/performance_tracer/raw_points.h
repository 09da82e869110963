#pragma once

// Raw data points: one logging call each, holding ids of names, the start flag, the two clock
// readings and two memory records. Each class is a superset of the one before.

#include <performance_tracer/export.h>
#include <performance_tracer/mem_stats.h>

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

struct hvArray;
class hvfRowWriter;
class PTOrviaProcessedDataPoint;

/// The cells of a point's row as a reader sees them, wherever the row lives: a host value, or
/// a row of a value file read without making its values. A missing cell, or one of an
/// unexpected class, reads as zero, false or the empty name, as a host value's would.
class PT_API PTRowCells {
public:
    virtual ~PTRowCells();
    /// Cell i is a character vector.
    virtual bool isCharVector(std::size_t i) const = 0;
    /// The characters of cell i are exactly text.
    virtual bool hasText(std::size_t i, std::string_view text) const = 0;
    /// The id that the name in cell i stands for, in the table of its kind of name.
    virtual std::int32_t nameID(std::uint32_t kind, std::size_t i) = 0;
    /// The first 32 bits of an integer cell; 0 for any other.
    virtual std::int32_t int32(std::size_t i) const = 0;
    /// The value of a scalar cell; 0.0 for anything that is not a scalar.
    virtual double figure(std::size_t i) const = 0;
    /// The flag of a logical scalar; false for anything else.
    virtual bool flag(std::size_t i) const = 0;
};

/// The texts that rows hold for names, each looked up once for a whole save: the phase in its
/// display form, without the stored root, and every other name as its table has it. The
/// stored root must not change while one is in use.
class PT_API PTRowNameTexts {
public:
    PTRowNameTexts();
    ~PTRowNameTexts();
    PTRowNameTexts(const PTRowNameTexts&) = delete;
    PTRowNameTexts& operator=(const PTRowNameTexts&) = delete;

    /// The text of a name; valid until the next call.
    std::string_view text(std::uint32_t kind, std::int32_t id);

private:
    struct Texts;
    std::unique_ptr<Texts> _texts;
};

/// A point of the host language itself (_pointType 0).
class PT_API PTOrviaDataPoint {
public:
    /// Zero memory records and every id -1.
    PTOrviaDataPoint();
    /// Copies the ids, flags and times, and each memory record into one of its own; a null
    /// record in the source leaves a zero record.
    PTOrviaDataPoint(const PTOrviaDataPoint& other);
    /// Reads a cell row as toRow writes it, the older form without the version cell included.
    /// Names are entered into this process's tables. Cells of an unexpected class, and cells
    /// past the end of a short row, read as zero, false or the empty name.
    explicit PTOrviaDataPoint(const hvArray* row);
    /// Reads a row, as the constructor from a host value does, from cells wherever they live.
    explicit PTOrviaDataPoint(PTRowCells& row);
    PTOrviaDataPoint& operator=(const PTOrviaDataPoint&) = delete;
    virtual ~PTOrviaDataPoint();

    /// A new 1-by-16 cell row: version "1", point type, phase (in display form), grouping,
    /// statistics type, start flag, wall clock, CPU time, five detailed and three basic figures.
    virtual hvArray* toRow() const;
    /// Writes the row that toRow makes into a value file, byte for byte as the value would be
    /// written, without making it.
    void writeRow(hvfRowWriter& out, PTRowNameTexts& names) const;
    /// The point's row of the diagnostic table, with model, target, machine and chart columns
    /// up to the level (0 to 2), painted red if its processed row has errorRow; empty for a
    /// null row, and for a state-chart point below level 2.
    virtual std::string diagnosticRow(std::int32_t level,
                                      const PTOrviaProcessedDataPoint* row) const;
    /// True when both points are of one class and share every identity id: grouping and phase,
    /// and for the wider classes model and target, machine and chart. Statistics type, flags,
    /// times and memory are not compared.
    virtual bool isSamePoint(const boost::shared_ptr<PTOrviaDataPoint>& other) const;

    // Cells of the diagnostic table.
    virtual std::string timeAndMemCells() const;
    virtual std::string emptyCell() const;
    virtual std::string groupingCell() const;
    virtual std::string startEndCell() const;
    virtual std::string phaseCell() const;
    virtual std::string rowOpen(bool isErrorRow) const;
    virtual std::string rowClose() const;
    virtual std::string pointTypeCell() const;

    /// A copy of the same class.
    virtual boost::shared_ptr<PTOrviaDataPoint> clone() const;

    std::int32_t _pointType = 0;
    std::int32_t _groupingID = -1;
    std::int32_t _phaseID = -1;
    std::int32_t _statisticsTypeID = -1;
    bool _isPhaseStart = false;
    /// Set on points that processing makes up; logging never sets it and rows do not hold it.
    bool _isGenerated = false;
    double _wcTime = 0.0;
    double _cpuTime = 0.0;
    boost::shared_ptr<pt::BasicMemStats> _basicMem;
    boost::shared_ptr<pt::DetailedMemStats> _detailedMem;

    /// A name that a wider class adds to the row, after the grouping: its kind and its id.
    struct RowName {
        std::uint32_t kind;
        std::int32_t id;
    };
    /// The names that the point's class adds to its row, at most four; how many.
    virtual std::size_t addedRowNames(RowName (&names)[4]) const;

protected:
    /// Where a row's added name is read into.
    struct RowNameSlot {
        std::uint32_t kind;
        std::int32_t* id;
    };
    struct RowStart {};

    explicit PTOrviaDataPoint(std::int32_t pointType);
    /// The start values of reading a row: point type and ids 0, no memory records.
    explicit PTOrviaDataPoint(RowStart);
    /// The start values of reading a row into a wider class: the defaults, but the given point
    /// type, and no basic record yet, since reading a row always gives one.
    PTOrviaDataPoint(std::int32_t pointType, RowStart);

    hvArray* buildRow(std::span<const RowName> extraNames) const;
    void readRow(PTRowCells& row, std::span<const RowNameSlot> extraNames);

    virtual void detailedMemToRow(hvArray* row, std::size_t& index) const;
    virtual void basicMemToRow(hvArray* row, std::size_t& index) const;
    virtual void detailedMemFromRow(const PTRowCells& row, std::size_t& index);
    virtual void basicMemFromRow(const PTRowCells& row, std::size_t& index);
};

/// A point of the block-diagram tool (_pointType 1): adds model and target.
class PT_API PTKestruneDataPoint : public PTOrviaDataPoint {
public:
    PTKestruneDataPoint();
    PTKestruneDataPoint(const PTKestruneDataPoint& other) = default;
    explicit PTKestruneDataPoint(const hvArray* row);
    explicit PTKestruneDataPoint(PTRowCells& row);

    /// A 1-by-18 cell row: as the base, with model and target after the grouping.
    hvArray* toRow() const override;
    std::size_t addedRowNames(RowName (&names)[4]) const override;
    std::string diagnosticRow(std::int32_t level,
                              const PTOrviaProcessedDataPoint* row) const override;
    bool isSamePoint(const boost::shared_ptr<PTOrviaDataPoint>& other) const override;
    std::string pointTypeCell() const override;
    boost::shared_ptr<PTOrviaDataPoint> clone() const override;
    virtual std::string modelCell() const;
    virtual std::string targetCell() const;

    std::int32_t _modelID = -1;
    std::int32_t _targetID = -1;

protected:
    explicit PTKestruneDataPoint(std::int32_t pointType);
    /// Default values, but point type, model and target 0.
    explicit PTKestruneDataPoint(RowStart);
    PTKestruneDataPoint(std::int32_t pointType, RowStart);
};

/// A point of the state-chart tool (_pointType 2): adds machine and chart.
class PT_API PTYlvaneDataPoint : public PTKestruneDataPoint {
public:
    PTYlvaneDataPoint();
    PTYlvaneDataPoint(const PTYlvaneDataPoint& other) = default;
    explicit PTYlvaneDataPoint(const hvArray* row);
    explicit PTYlvaneDataPoint(PTRowCells& row);

    /// A 1-by-20 cell row: as the Kestrune row, with machine and chart after the target.
    hvArray* toRow() const override;
    std::size_t addedRowNames(RowName (&names)[4]) const override;
    std::string diagnosticRow(std::int32_t level,
                              const PTOrviaProcessedDataPoint* row) const override;
    bool isSamePoint(const boost::shared_ptr<PTOrviaDataPoint>& other) const override;
    std::string pointTypeCell() const override;
    boost::shared_ptr<PTOrviaDataPoint> clone() const override;
    virtual std::string machineCell() const;
    virtual std::string chartCell() const;

    std::int32_t _machineID = -1;
    std::int32_t _chartID = -1;

private:
    void readStateChartRow(PTRowCells& row);
};

/// The raw store and its copies: points of all three classes in logging order.
using PTRawDataVector = std::vector<boost::shared_ptr<PTOrviaDataPoint>>;
