#include "tracer_test_support.h"

#include <pt_platform/hv.h>

#include <boost/make_shared.hpp>

#include <functional>
#include <vector>

namespace {

using RawRows = TracerTest;

hvUniqueArray rowOf(const PTOrviaDataPoint& point) { return hvUniqueArray(point.toRow()); }

std::string textAt(const hvArray* row, std::size_t index) {
    return hvArrayToStdString(hvGetCell(row, index));
}

double numberAt(const hvArray* row, std::size_t index) {
    return hvGetScalar(hvGetCell(row, index));
}

hvArray* int32Cell(std::int32_t value) {
    const std::size_t dims[] = {1, 1};
    hvArray* cell = hvCreateNumericArray(2, dims, hvClassID::Int32);
    *static_cast<std::int32_t*>(hvGetData(cell)) = value;
    return cell;
}

/// A cell row built from makers of its cells.
hvUniqueArray rowFrom(const std::vector<std::function<hvArray*()>>& cells) {
    hvUniqueArray row(hvCreateCellMatrix(1, cells.size()));
    for (std::size_t i = 0; i < cells.size(); ++i) {
        hvSetCell(row.get(), i, cells[i]());
    }
    return row;
}

TEST_F(RawRows, EachClassWritesItsCells) {
    setPathStripRoot("C:\\host");
    ptEnableGlobalLogging(true);
    ptLogOrviaData("G", "C:\\host\\toolbox\\run.m", true);
    ptSetStatisticsTypeForModel("model", "Normal");
    ptLogKestruneData("G", "model", "target", "phase", false);
    ptLogYlvaneData("G", "model", "target", "machine", "chart", "phase", true);
    raw()[0]->_detailedMem = boost::make_shared<pt::DetailedMemStats>(1, 2, 3, 4, 5);
    raw()[0]->_basicMem = boost::make_shared<pt::BasicMemStats>(6, 7, 8);
    raw()[1]->_detailedMem.reset();
    raw()[1]->_basicMem.reset();

    const hvUniqueArray host = rowOf(*raw()[0]);
    ASSERT_TRUE(hvIsCell(host.get()));
    EXPECT_EQ(hvGetM(host.get()), 1u);
    EXPECT_EQ(hvGetN(host.get()), 16u);
    EXPECT_EQ(textAt(host.get(), 0), "1");
    EXPECT_EQ(hvGetClassID(hvGetCell(host.get(), 1)), hvClassID::Int32);
    EXPECT_EQ(numberAt(host.get(), 1), 0);
    EXPECT_EQ(textAt(host.get(), 2), "toolbox/run.m");  // the root prefix does not travel
    EXPECT_EQ(textAt(host.get(), 3), "");               // logged with an unknown grouping
    EXPECT_EQ(textAt(host.get(), 4), "");               // no statistics type
    EXPECT_TRUE(hvIsLogicalScalarTrue(hvGetCell(host.get(), 5)));
    EXPECT_EQ(numberAt(host.get(), 6), raw()[0]->_wcTime);
    EXPECT_EQ(numberAt(host.get(), 7), raw()[0]->_cpuTime);
    for (std::size_t i = 0; i < 8; ++i) {
        EXPECT_TRUE(hvIsDouble(hvGetCell(host.get(), 8 + i)));
        EXPECT_EQ(numberAt(host.get(), 8 + i), static_cast<double>(i + 1)) << i;
    }

    const hvUniqueArray model = rowOf(*raw()[1]);
    ASSERT_EQ(hvGetN(model.get()), 18u);
    EXPECT_EQ(numberAt(model.get(), 1), 1);
    EXPECT_EQ(textAt(model.get(), 2), "phase");
    EXPECT_EQ(textAt(model.get(), 4), "model");
    EXPECT_EQ(textAt(model.get(), 5), "target");
    EXPECT_EQ(textAt(model.get(), 6), "Normal");
    EXPECT_TRUE(hvIsLogicalScalar(hvGetCell(model.get(), 7)));
    EXPECT_FALSE(hvIsLogicalScalarTrue(hvGetCell(model.get(), 7)));
    for (std::size_t i = 10; i < 18; ++i) {
        EXPECT_EQ(numberAt(model.get(), i), 0.0) << "missing records write zeros";
    }

    const hvUniqueArray chart = rowOf(*raw()[2]);
    ASSERT_EQ(hvGetN(chart.get()), 20u);
    EXPECT_EQ(numberAt(chart.get(), 1), 2);
    EXPECT_EQ(textAt(chart.get(), 6), "machine");
    EXPECT_EQ(textAt(chart.get(), 7), "chart");
    EXPECT_EQ(textAt(chart.get(), 8), "Normal");
}

TEST_F(RawRows, RoundTripAcrossTwoSetsOfNameTables) {
    ptAddGrouping("Session");
    ptEnableGlobalLogging(true);
    ptLogOrviaData("Session", "startup", true);
    ptLogKestruneData("Session", "plant", "sim", "update", true);
    ptLogYlvaneData("Session", "plant", "sim", "sf machine", "chart 1", "entry", false);
    raw()[1]->_basicMem = boost::make_shared<pt::BasicMemStats>(1e9, 2e9, 3e9);
    raw()[2]->_detailedMem = boost::make_shared<pt::DetailedMemStats>(10, 20, 30, 40, 50);

    std::vector<hvUniqueArray> rows;
    for (const auto& point : raw()) {
        rows.push_back(rowOf(*point));
    }
    const auto before = tracer().snapshotRawData();

    // A new run: different tables, in which the same names get other ids.
    ptClearRawData();
    ptNameID(PT_TABLE_PHASE, "something else");
    ptNameID(PT_TABLE_MODEL, "another model");
    ptNameID(PT_TABLE_CHART, "chart 0");

    const PTOrviaDataPoint host(rows[0].get());
    const PTKestruneDataPoint model(rows[1].get());
    const PTYlvaneDataPoint chart(rows[2].get());
    const PTOrviaDataPoint* read[] = {&host, &model, &chart};
    for (std::size_t i = 0; i < 3; ++i) {
        const PTOrviaDataPoint& was = *(*before)[i];
        const PTOrviaDataPoint& is = *read[i];
        EXPECT_EQ(is._pointType, was._pointType);
        EXPECT_EQ(is._isPhaseStart, was._isPhaseStart);
        EXPECT_EQ(is._wcTime, was._wcTime);
        EXPECT_EQ(is._cpuTime, was._cpuTime);
        EXPECT_EQ(ptNameStr(PT_TABLE_GROUPING, is._groupingID), "Session");
    }
    EXPECT_EQ(ptGetPhaseStr(host._phaseID), "startup");
    EXPECT_EQ(ptGetPhaseStr(model._phaseID), "update");
    EXPECT_NE(host._phaseID, (*before)[0]->_phaseID);
    EXPECT_EQ(ptGetModelStr(model._modelID), "plant");
    EXPECT_EQ(model._modelID, 1);
    EXPECT_EQ(ptGetTargetStr(model._targetID), "sim");
    EXPECT_EQ(ptGetStatisticsTypeStr(model._statisticsTypeID), "");
    EXPECT_EQ(ptGetMachineStr(chart._machineID), "sf machine");
    EXPECT_EQ(ptGetChartStr(chart._chartID), "chart 1");
    EXPECT_EQ(model._basicMem->procMemUsagePeak, 2e9);
    ASSERT_TRUE(chart._detailedMem);
    EXPECT_EQ(chart._detailedMem->freeMem, 10);
    EXPECT_EQ(chart._detailedMem->commitMem, 30);
    EXPECT_EQ(chart._detailedMem->nonprocessMem, 50);
}

TEST_F(RawRows, ZeroDetailedFiguresKeepTheRecordThePointHas) {
    const hvUniqueArray zeros = rowOf(PTKestruneDataPoint());
    EXPECT_EQ(PTOrviaDataPoint(zeros.get())._detailedMem, nullptr);
    const PTKestruneDataPoint model(zeros.get());
    ASSERT_TRUE(model._detailedMem);
    EXPECT_EQ(model._detailedMem->commitMem, 0.0);
    // The basic record is always replaced.
    EXPECT_TRUE(PTOrviaDataPoint(zeros.get())._basicMem);
}

TEST_F(RawRows, UnknownVersionSkipsTheFields) {
    const hvUniqueArray row = rowFrom({
        [] { return hvCreateString("2"); },
        [] { return hvCreateDoubleScalar(1); },
        [] { return hvCreateDoubleScalar(2); },
        [] { return hvCreateDoubleScalar(3); },
        [] { return hvCreateDoubleScalar(4); },
        [] { return hvCreateDoubleScalar(5); },
        [] { return hvCreateDoubleScalar(6); },
        [] { return hvCreateDoubleScalar(7); },
        [] { return hvCreateDoubleScalar(8); },
    });
    const std::size_t phases = tableSize(PT_TABLE_PHASE);

    const PTOrviaDataPoint host(row.get());
    EXPECT_EQ(host._pointType, 0);
    EXPECT_EQ(host._groupingID, 0);
    EXPECT_EQ(host._phaseID, 0);
    EXPECT_EQ(host._statisticsTypeID, 0);
    ASSERT_TRUE(host._detailedMem);
    EXPECT_EQ(host._detailedMem->freeMem, 1);
    EXPECT_EQ(host._detailedMem->nonprocessMem, 5);
    EXPECT_EQ(host._basicMem->procMemUsage, 6);
    EXPECT_EQ(host._basicMem->procVMSize, 8);

    const PTKestruneDataPoint model(row.get());
    EXPECT_EQ(model._pointType, 0);
    EXPECT_EQ(model._groupingID, -1);
    EXPECT_EQ(model._modelID, 0);
    EXPECT_EQ(model._targetID, 0);

    const PTYlvaneDataPoint chart(row.get());
    EXPECT_EQ(chart._pointType, 1);
    EXPECT_EQ(chart._phaseID, -1);
    EXPECT_EQ(chart._modelID, -1);
    EXPECT_EQ(chart._machineID, 0);
    EXPECT_EQ(chart._chartID, 0);
    EXPECT_EQ(tableSize(PT_TABLE_PHASE), phases);  // no name was read
}

TEST_F(RawRows, OlderFormStartsAtThePointType) {
    const hvUniqueArray row = rowFrom({
        [] { return int32Cell(1); },
        [] { return hvCreateString("old phase"); },
        [] { return hvCreateString("old grouping"); },
        [] { return hvCreateString("m"); },
        [] { return hvCreateString("t"); },
        [] { return hvCreateString("type"); },
        [] { return hvCreateLogicalScalar(true); },
        [] { return hvCreateDoubleScalar(12.5); },
        [] { return hvCreateDoubleScalar(2.5); },
    });
    const PTKestruneDataPoint model(row.get());
    EXPECT_EQ(model._pointType, 1);
    EXPECT_EQ(ptGetPhaseStr(model._phaseID), "old phase");
    EXPECT_EQ(ptNameStr(PT_TABLE_GROUPING, model._groupingID), "old grouping");
    EXPECT_EQ(ptGetModelStr(model._modelID), "m");
    EXPECT_EQ(ptGetTargetStr(model._targetID), "t");
    EXPECT_EQ(ptGetStatisticsTypeStr(model._statisticsTypeID), "type");
    EXPECT_TRUE(model._isPhaseStart);
    EXPECT_EQ(model._wcTime, 12.5);
    EXPECT_EQ(model._cpuTime, 2.5);
    // The row ends before the memory figures: they read as zero.
    EXPECT_EQ(model._basicMem->procMemUsage, 0.0);
}

TEST_F(RawRows, MalformedRowsReadAsZeroFalseOrEmpty) {
    const auto expectEmptyPoint = [](const PTOrviaDataPoint& point) {
        EXPECT_EQ(point._pointType, 0);
        EXPECT_EQ(ptGetPhaseStr(point._phaseID), "");
        EXPECT_FALSE(point._isPhaseStart);
        EXPECT_EQ(point._wcTime, 0.0);
        EXPECT_EQ(point._cpuTime, 0.0);
        ASSERT_TRUE(point._basicMem);
        EXPECT_EQ(point._basicMem->procVMSize, 0.0);
    };
    const hvUniqueArray empty(hvCreateCellMatrix(1, 0));
    const hvUniqueArray notACell(hvCreateDoubleScalar(7));
    const hvUniqueArray versionOnly = rowFrom({[] { return hvCreateString("1"); }});
    const hvArray* rows[] = {empty.get(), notACell.get(), versionOnly.get(), nullptr};
    for (const hvArray* row : rows) {
        expectEmptyPoint(PTOrviaDataPoint(row));
        expectEmptyPoint(PTKestruneDataPoint(row));
        expectEmptyPoint(PTYlvaneDataPoint(row));
    }

    // Cells of unexpected classes: a double point type, numbers for names, a logical row for
    // the flag, text and a matrix for the clocks, an empty cell in between.
    const hvUniqueArray odd = rowFrom({
        [] { return hvCreateString("1"); },
        [] { return hvCreateDoubleScalar(2); },
        [] { return hvCreateDoubleScalar(3); },
        [] { return static_cast<hvArray*>(nullptr); },
        [] { return hvCreateString("stats"); },
        [] {
            const std::size_t dims[] = {1, 2};
            return hvCreateLogicalArray(2, dims);
        },
        [] { return hvCreateString("7"); },
        [] { return hvCreateDoubleMatrix(2, 2); },
        [] { return hvCreateDoubleScalar(-1); },
    });
    const PTOrviaDataPoint host(odd.get());
    EXPECT_EQ(host._pointType, 0);
    EXPECT_EQ(ptGetPhaseStr(host._phaseID), "");
    EXPECT_EQ(ptNameStr(PT_TABLE_GROUPING, host._groupingID), "");
    EXPECT_EQ(ptGetStatisticsTypeStr(host._statisticsTypeID), "stats");
    EXPECT_FALSE(host._isPhaseStart);
    EXPECT_EQ(host._wcTime, 55.0);  // a one-character text is a scalar: its character's code
    EXPECT_EQ(host._cpuTime, 0.0);  // a matrix is no scalar
    // A negative sum of detailed figures is no record.
    EXPECT_EQ(host._detailedMem, nullptr);
}

TEST_F(RawRows, IntegerCellsOfEveryWidthGiveThePointType) {
    for (hvClassID cls :
         {hvClassID::Int8, hvClassID::UInt8, hvClassID::Int16, hvClassID::UInt16, hvClassID::Int32,
          hvClassID::UInt32, hvClassID::Int64, hvClassID::UInt64}) {
        const hvUniqueArray row = rowFrom({[cls] {
            const std::size_t dims[] = {1, 1};
            hvArray* cell = hvCreateNumericArray(2, dims, cls);
            *static_cast<std::uint8_t*>(hvGetData(cell)) = 2;  // little-endian: the value 2
            return cell;
        }});
        EXPECT_EQ(PTOrviaDataPoint(row.get())._pointType, 2) << hvClassName(cls);
    }
    const hvUniqueArray wide = rowFrom({[] {
        const std::size_t dims[] = {1, 1};
        hvArray* cell = hvCreateNumericArray(2, dims, hvClassID::Int64);
        *static_cast<std::int64_t*>(hvGetData(cell)) = (std::int64_t{1} << 32) + 1;
        return cell;
    }});
    EXPECT_EQ(PTOrviaDataPoint(wide.get())._pointType, 1);  // the low 32 bits
    // The first 32 bits of the data, whatever the element width.
    const hvUniqueArray bytes = rowFrom({[] {
        const std::size_t dims[] = {1, 4};
        hvArray* cell = hvCreateNumericArray(2, dims, hvClassID::UInt8);
        static_cast<std::uint8_t*>(hvGetData(cell))[1] = 1;
        return cell;
    }});
    EXPECT_EQ(PTOrviaDataPoint(bytes.get())._pointType, 256);
    const hvUniqueArray none = rowFrom({[] {
        const std::size_t dims[] = {1, 0};
        return hvCreateNumericArray(2, dims, hvClassID::Int32);
    }});
    EXPECT_EQ(PTOrviaDataPoint(none.get())._pointType, 0);
}

}  // namespace
