#include "tracer_test_support.h"

#include <pt_platform/hv.h>

#include <boost/make_shared.hpp>

#include <cstring>
#include <sstream>
#include <variant>
#include <vector>

namespace {

using RawRows = TracerTest;

/// An integer cell of count elements of class cls, its first bytes those of value.
hvArray* integers(hvClassID cls, std::size_t count, std::uint64_t value, std::size_t bytes) {
    const std::size_t dims[] = {1, count};
    hvArray* cell = hvCreateNumericArray(2, dims, cls);
    std::memcpy(hvGetData(cell), &value, bytes);
    return cell;
}

/// A cell row of texts, double scalars and cells made beforehand (a null one leaves it empty).
hvUniqueArray rowFrom(const std::vector<std::variant<const char*, double, hvArray*>>& cells) {
    hvUniqueArray row(hvCreateCellMatrix(1, cells.size()));
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const auto& cell = cells[i];
        hvSetCell(row.get(), i,
                  cell.index() == 0   ? hvCreateString(std::get<0>(cell))
                  : cell.index() == 1 ? hvCreateDoubleScalar(std::get<1>(cell))
                                      : std::get<2>(cell));
    }
    return row;
}

/// The cells of a point's row in one line: 'text', true or false, int32:N, or a double.
std::string cellsOf(const PTOrviaDataPoint& point) {
    const hvUniqueArray row(point.toRow());
    EXPECT_TRUE(hvIsCell(row.get()) && hvGetM(row.get()) == 1);
    std::ostringstream out;
    for (std::size_t i = 0; i < hvGetN(row.get()); ++i) {
        const hvArray* cell = hvGetCell(row.get(), i);
        if (hvIsCharVector(cell)) {
            out << " '" << hvArrayToStdString(cell) << "'";
        } else if (hvIsLogicalScalar(cell)) {
            out << (hvIsLogicalScalarTrue(cell) ? " true" : " false");
        } else {
            out << (hvGetClassID(cell) == hvClassID::Int32 ? " int32:"
                    : hvIsDouble(cell)                     ? " "
                                                           : " ?")
                << hvGetScalar(cell);
        }
    }
    return out.str().substr(1);
}

TEST_F(RawRows, EachClassWritesItsCells) {
    setPathStripRoot("C:\\host");
    ptEnableGlobalLogging(true);
    ptLogOrviaData("G", "C:\\host\\toolbox\\run.m", true);
    ptSetStatisticsTypeForModel("model", "Normal");
    ptLogKestruneData("G", "model", "target", "phase", false);
    ptLogYlvaneData("G", "model", "target", "machine", "chart", "phase", true);
    for (const auto& point : raw()) {
        point->_wcTime = 2.5, point->_cpuTime = 0.5;
    }
    raw()[0]->_detailedMem = boost::make_shared<pt::DetailedMemStats>(1, 2, 3, 4, 5);
    raw()[0]->_basicMem = boost::make_shared<pt::BasicMemStats>(6, 7, 8);
    raw()[1]->_detailedMem.reset();
    raw()[1]->_basicMem.reset();
    // The root prefix does not travel; an unknown grouping and a missing type write empty
    // texts, missing records zeros.
    EXPECT_EQ(cellsOf(*raw()[0]), "'1' int32:0 'toolbox/run.m' '' '' true 2.5 0.5 1 2 3 4 5 6 7 8");
    EXPECT_EQ(cellsOf(*raw()[1]),
              "'1' int32:1 'phase' '' 'model' 'target' 'Normal' false 2.5 0.5 0 0 0 0 0 0 0 0");
    EXPECT_EQ(cellsOf(*raw()[2]),
              "'1' int32:2 'phase' '' 'model' 'target' 'machine' 'chart' 'Normal' true 2.5 0.5 "
              "0 0 0 0 0 0 0 0");
}

TEST_F(RawRows, ZeroDetailedFiguresKeepTheRecordThePointHas) {
    const hvUniqueArray zeros(PTKestruneDataPoint().toRow());
    EXPECT_EQ(PTOrviaDataPoint(zeros.get())._detailedMem, nullptr);
    const PTKestruneDataPoint model(zeros.get());
    ASSERT_TRUE(model._detailedMem);
    EXPECT_EQ(model._detailedMem->commitMem, 0.0);
    EXPECT_TRUE(PTOrviaDataPoint(zeros.get())._basicMem);  // the basic record is always replaced
}

TEST_F(RawRows, UnknownVersionsOlderFormsAndMalformedRows) {
    // A version this build does not know keeps the start values and reads only the figures.
    const hvUniqueArray unknown = rowFrom({"2", 1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0});
    EXPECT_EQ(describe(PTOrviaDataPoint(unknown.get())),
              "0 #0 'EvalPrms' #0 end 0 0 detailed 1 2 3 4 5 basic 6 7 8");
    EXPECT_EQ(describe(PTKestruneDataPoint(unknown.get())),
              "0 #-1 #-1 #0 #0 #-1 end 0 0 detailed 1 2 3 4 5 basic 6 7 8");
    EXPECT_EQ(describe(PTYlvaneDataPoint(unknown.get())),
              "1 #-1 #-1 #-1 #-1 #0 #0 #-1 end 0 0 detailed 1 2 3 4 5 basic 6 7 8");
    EXPECT_EQ(tableSize(PT_TABLE_PHASE), 0u);  // no name was read

    // The older form starts at the point type; a row that ends early reads zeros.
    const hvUniqueArray older =
        rowFrom({integers(hvClassID::Int32, 1, 1, 4), "old phase", "old grouping", "m", "t", "type",
                 hvCreateLogicalScalar(true), 12.5, 2.5});
    EXPECT_EQ(describe(PTKestruneDataPoint(older.get())),
              "1 'old phase' 'old grouping' 'm' 't' 'type' start 12.5 2.5 detailed 0 0 0 0 0 "
              "basic 0 0 0");

    // Rows that are empty, no cell, only a version or null read as zero, false or empty.
    const hvUniqueArray empty(hvCreateCellMatrix(1, 0));
    const hvUniqueArray notACell(hvCreateDoubleScalar(7));
    const hvUniqueArray versionOnly = rowFrom({"1"});
    for (const hvArray* row :
         {empty.get(), notACell.get(), versionOnly.get(), static_cast<hvArray*>(nullptr)}) {
        EXPECT_EQ(describe(PTOrviaDataPoint(row)), "0 '' '' '' end 0 0 no detailed basic 0 0 0");
        EXPECT_EQ(describe(PTKestruneDataPoint(row)),
                  "0 '' '' '' '' '' end 0 0 detailed 0 0 0 0 0 basic 0 0 0");
        EXPECT_EQ(describe(PTYlvaneDataPoint(row)),
                  "0 '' '' '' '' '' '' '' end 0 0 detailed 0 0 0 0 0 basic 0 0 0");
    }

    // A double point type, numbers for names, a logical row for the flag, text and a matrix for
    // the clocks, an empty cell: a one-character text is its character's code, a matrix none,
    // and a negative sum of detailed figures no record.
    const std::size_t pair[] = {1, 2};
    const hvUniqueArray odd =
        rowFrom({"1", 2.0, 3.0, static_cast<hvArray*>(nullptr), "stats",
                 hvCreateLogicalArray(2, pair), "7", hvCreateDoubleMatrix(2, 2), -1.0});
    EXPECT_EQ(describe(PTOrviaDataPoint(odd.get())),
              "0 '' '' 'stats' end 55 0 no detailed basic 0 0 0");
}

TEST_F(RawRows, IntegerCellsOfEveryWidthGiveThePointType) {
    // The first 32 bits of the data, whatever the element width (the host is little-endian).
    const auto pointType = [](hvClassID cls, std::size_t count, std::uint64_t value,
                              std::size_t bytes) {
        return PTOrviaDataPoint(rowFrom({integers(cls, count, value, bytes)}).get())._pointType;
    };
    for (hvClassID cls :
         {hvClassID::Int8, hvClassID::UInt8, hvClassID::Int16, hvClassID::UInt16, hvClassID::Int32,
          hvClassID::UInt32, hvClassID::Int64, hvClassID::UInt64}) {
        EXPECT_EQ(pointType(cls, 1, 2, 1), 2) << hvClassName(cls);
    }
    EXPECT_EQ(pointType(hvClassID::Int64, 1, (std::uint64_t{1} << 32) + 1, 8), 1);
    EXPECT_EQ(pointType(hvClassID::UInt8, 4, 256, 4), 256);
    EXPECT_EQ(pointType(hvClassID::Int32, 0, 0, 0), 0);
}

}  // namespace
