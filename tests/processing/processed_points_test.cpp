#include <performance_tracer/names.h>
#include <performance_tracer/processed_points.h>
#include <performance_tracer/raw_store.h>

#include <pt_platform/hv.h>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <tuple>

#include "random_log.h"

namespace {

using pt::testing::makePoint;

class ProcessedPoints : public ::testing::Test {
protected:
    void SetUp() override {
        ptClearRawData();
        setPathStripRoot("");
    }
};

TEST_F(ProcessedPoints, RowsTakeTheClassThatThePointTypeNames) {
    const auto chart = makePoint(2, "G", "p", true, 1.0);
    chart->_isGenerated = true;
    chart->_basicMem = boost::make_shared<pt::BasicMemStats>(2097152.0, 0, 0);
    const PTDiagnosticInfo info(chart, 7, 3);
    const auto* row = dynamic_cast<const PTYlvaneProcessedDataPoint*>(info._point.get());
    ASSERT_NE(row, nullptr);
    // Times come with the end point.
    EXPECT_EQ(std::make_tuple(row->_pointType, row->HTMLRowNumber, row->stackDepth, row->gapRow,
                              row->wcStartTime, row->_basicMem->procMemUsage,
                              row->_basicMem->procMemUsageDelta, ptGetMachineStr(row->machineID())),
              std::make_tuple(2, 7, 3, true, 0.0, 2.0, 0.0, "machine"));

    // A type that names no class, or a class narrower than its type, gives what it can.
    const auto odd = makePoint(0, "G", "p", true, 1.0);
    odd->_pointType = 9;
    EXPECT_EQ(PTDiagnosticInfo(odd, 1, 0)._point->_pointType, 0);
    odd->_pointType = 2;
    odd->_detailedMem.reset();
    const PTDiagnosticInfo narrow(odd, 1, 0);
    ASSERT_TRUE(narrow._point->_detailedMem);
    EXPECT_EQ(std::make_tuple(narrow._point->modelID(), narrow._point->chartID(),
                              narrow._point->_detailedMem->freeMem),
              std::make_tuple(-1, -1, 0.0));
}

TEST_F(ProcessedPoints, SamePhaseKeysAndIds) {
    const PTOrviaProcessedDataPoint host(*makePoint(0, "G", "phase", true, 0));
    const PTKestruneProcessedDataPoint model(*makePoint(1, "G", "phase", true, 0));
    const PTYlvaneProcessedDataPoint chart(*makePoint(2, "G", "phase", true, 0));
    // The host-language form ignores the other row's kind; the wider ones do not.
    PTKestruneProcessedDataPoint otherTarget(model);
    otherTarget._targetID = static_cast<std::int32_t>(ptNameID(PT_TABLE_TARGET, "other"));
    EXPECT_EQ(
        std::make_tuple(host.isSamePhase(model), model.isSamePhase(host), model.isSamePhase(chart),
                        chart.isSamePhase(PTYlvaneProcessedDataPoint(chart)),
                        model.isSamePhase(otherTarget)),
        std::make_tuple(true, false, false, true, false));

    EXPECT_EQ(host.alignmentKey() + " " + model.alignmentKey() + " " + chart.alignmentKey(),
              "phaseG phaseGmodeltarget phaseGmodeltargetmachinechart");
    const PTOrviaProcessedDataPoint custom(
        *makePoint(0, "G", "\\root\\tool/ks_customization/f", true, 0));
    setPathStripRoot("/root");
    EXPECT_EQ(custom.alignmentKey(), "tool/fG");

    const auto ids = [](const PTOrviaProcessedDataPoint& row) {
        std::int32_t phase = 0, model = 0, chart = 0;
        row.nameIDs(phase, model, chart);
        return std::make_tuple(phase, model, chart, row.targetID(), row.groupingID());
    };
    EXPECT_EQ(ids(host), std::make_tuple(host._phaseID, -1, -1, -1, host._groupingID));
    EXPECT_EQ(ids(model), std::make_tuple(model._phaseID, model._modelID, -1, model._targetID,
                                          model._groupingID));
    EXPECT_EQ(ids(chart), std::make_tuple(chart._phaseID, chart._modelID, chart._chartID,
                                          chart._targetID, chart._groupingID));
}

TEST_F(ProcessedPoints, DetailRowsNameWhatTheyHave) {
    PTKestruneProcessedDataPoint model(*makePoint(1, "G", "p", true, 0));
    // Ids below 1 count as unspecified; "model" and "target" are the first names, id 0.
    EXPECT_NE(model.phaseDetailRow().find("<td class=\"PhaseDetailText\">G </td>"),
              std::string::npos);
    model._modelID = static_cast<std::int32_t>(ptNameID(PT_TABLE_MODEL, "second"));
    model._targetID = static_cast<std::int32_t>(ptNameID(PT_TABLE_TARGET, "sim"));
    EXPECT_NE(model.phaseDetailRow().find(">G/second/sim</td>"), std::string::npos);
    const PTYlvaneProcessedDataPoint chart(*makePoint(2, "G", "p", true, 0));
    EXPECT_NE(chart.phaseDetailRow().find(">G/NO MODEL SPECIFIED/NO TARGET SPECIFIED/NO MACHINE "
                                          "SPECIFIED/NO CHART SPECIFIED</td>"),
              std::string::npos);
}

TEST_F(ProcessedPoints, RowPiecesInExportOrder) {
    PTOrviaProcessedDataPoint row(*makePoint(0, "G", "p", true, 0));
    row._detailedMem->freeMem = 1;
    row._detailedMem->nonprocessMemDelta = 10;
    row._basicMem->procVMSizeDelta = 6;
    row.errorRow = true;
    row.HTMLPhaseNumString = "1.2";
    row.HTMLRowNumber = 4;
    row.childrenIDs = PTRowRun(5, 2);
    hvUniqueArray cells(hvCreateCellMatrix(1, 23));
    std::size_t index = 0;
    row.detailedMemToRow(cells.get(), index);
    row.basicMemToRow(cells.get(), index);
    row.stateToRow(cells.get(), index);
    ASSERT_EQ(index, 23u);
    const auto cell = [&](std::size_t i) { return hvGetCell(cells.get(), i); };
    EXPECT_EQ(std::make_tuple(hvGetScalar(cell(0)), hvGetScalar(cell(9)), hvGetScalar(cell(15)),
                              hvIsLogicalScalarTrue(cell(16)), hvIsLogicalScalar(cell(17)),
                              hvArrayToStdString(cell(18)), hvGetClassID(cell(19)),
                              hvGetScalar(cell(19))),
              std::make_tuple(1.0, 10.0, 6.0, true, true, "1.2", hvClassID::UInt32, 4.0));
    const hvArray* children = cell(22);
    ASSERT_TRUE(hvIsCell(children) && hvGetN(children) == 2u);
    EXPECT_EQ(
        std::make_pair(hvGetClassID(hvGetCell(children, 1)), hvGetScalar(hvGetCell(children, 1))),
        std::make_pair(hvClassID::Int32, 6.0));
}

}  // namespace
