#include "tracer_test_support.h"

#include <pt_platform/hv.h>

#include <boost/make_shared.hpp>

namespace {

using RawStore = TracerTest;

/// A store of mixed points: host-language ones and model ones of two groupings, two models
/// and two targets.
void logMixedRun() {
    ptAddGrouping("G1");
    ptAddGrouping("G2");
    ptEnableGlobalLogging(true);
    ptLogOrviaData("G1", "o1", true);
    ptLogKestruneData("G1", "M1", "T1", "k1", true);
    ptLogKestruneData("G1", "M1", "T2", "k2", true);
    ptLogYlvaneData("G2", "M1", "T1", "mc", "c", "y1", true);
    ptLogOrviaData("G2", "o2", true);
    ptLogKestruneData("G1", "M2", "T1", "k3", true);
    ptLogYlvaneData("G1", "M1", "T1", "mc", "c", "y2", true);
    ptEnableGlobalLogging(false);
}

TEST_F(RawStore, FullClearEmptiesEverythingButGroupings) {
    ptEnableTracer("Kept", true);
    ptEnableGlobalLogging(true);
    ptEnableDetailedMemStats(true);
    ptSetStatisticsTypeForModel("M", "type");
    ptLogYlvaneData("Kept", "M", "T", "mc", "c", "p", true);
    tracer()._systemInfo->processorStr = "cpu";
    std::vector<std::size_t> sizes(PT_TABLE_COUNT, 0);
    sizes[PT_TABLE_GROUPING] = tableSize(PT_TABLE_GROUPING);

    ptClearRawData();
    EXPECT_TRUE(raw().empty());
    EXPECT_TRUE(tracer()._modelStatisticsTypes->empty());
    EXPECT_EQ(tableSizes(), sizes);
    EXPECT_TRUE(ptIsTracerEnabled(std::string("Kept")));
    EXPECT_TRUE(tracer()._globalLogging && tracer()._detailedMemStats);
    EXPECT_EQ(tracer()._systemInfo->processorStr, "cpu");

    // On an empty store the tables are emptied all the same.
    for (std::uint32_t kind = 0; kind < PT_TABLE_COUNT; ++kind) {
        ptNameID(kind, "name");
    }
    sizes[PT_TABLE_GROUPING] = tableSize(PT_TABLE_GROUPING);
    ptClearRawData();
    EXPECT_EQ(tableSizes(), sizes);
    ptLogOrviaData("Kept", "after", true);
    EXPECT_EQ(raw().back()->_phaseID, 0);
}

TEST_F(RawStore, PartialClearsRemoveTheirPointsInPlace) {
    logMixedRun();
    const std::string all = "o1+ k1+ k2+ y1+ o2+ k3+ y2+";
    ASSERT_EQ(flow(), all);
    // Clears that match nothing remove nothing and add no names.
    const std::vector<std::size_t> sizes = tableSizes();
    ptClearRawGroupingData("no such grouping");
    ptClearRawModelData("no such model");
    ptClearRawData("G1", "no such model");
    ptClearRawData("G1", "M1", "no such target");
    ptClearRawData("new grouping", "new model", "new target");
    EXPECT_EQ(tableSizes(), sizes);
    ptAddGrouping("G3");
    ptClearRawGroupingData("G3");  // a grouping without points
    EXPECT_EQ(flow(), all);

    // The rest keep their order.
    ptClearRawData("G1", "M1", "T1");
    EXPECT_EQ(flow(), "o1+ k2+ y1+ o2+ k3+");
    // Adjacent matches (k1, k2 of the second run) go together.
    logMixedRun();
    ptClearRawData("G1", "M1");
    EXPECT_EQ(flow(), "o1+ y1+ o2+ k3+ o1+ y1+ o2+ k3+");
    // A model clear spares host-language points, even of the same grouping.
    ptClearRawModelData("M1");
    EXPECT_EQ(flow(), "o1+ o2+ k3+ o1+ o2+ k3+");
    ptClearRawGroupingData("G2");
    EXPECT_EQ(flow(), "o1+ k3+ o1+ k3+");
    ptClearRawGroupingData("G1");
    EXPECT_TRUE(raw().empty());

    // An unknown grouping matches the points logged without one.
    ptEnableGlobalLogging(true);
    ptLogOrviaData("never added", "lost", true);
    ptLogOrviaData("EvalPrms", "kept", true);
    ptClearRawGroupingData("also never added");
    EXPECT_EQ(flow(), "kept+");
}

TEST_F(RawStore, StatisticsTypeClearsAreAsymmetric) {
    ptSetStatisticsTypeForModel("M1", "first");
    ptSetStatisticsTypeForModel("M1", "second");
    ptSetStatisticsTypeForModel("M2", "other");
    EXPECT_EQ(tracer()._modelStatisticsTypes->at("M1"), "second");
    ptClearRawData("G", "M1", "T");
    EXPECT_EQ(tracer()._modelStatisticsTypes->size(), 2u);
    // The two-name form forgets every model's type, with or without a store to clear.
    ptClearRawData("G", "M1");
    EXPECT_TRUE(tracer()._modelStatisticsTypes->empty());
    ptSetStatisticsTypeForModel("M2", "other");
    auto store = std::move(tracer()._rawData);
    ptClearRawData("G", "M2");
    tracer()._rawData = std::move(store);
    EXPECT_TRUE(tracer()._modelStatisticsTypes->empty());
}

TEST_F(RawStore, SnapshotIsADeepCopyAndTheSelectionSharesPoints) {
    logMixedRun();
    raw()[1]->_basicMem = boost::make_shared<pt::BasicMemStats>(1, 2, 3);
    const auto snapshot = tracer().snapshotRawData();
    ASSERT_EQ(snapshot->size(), raw().size());
    for (std::size_t i = 0; i < raw().size(); ++i) {
        const PTOrviaDataPoint& copy = *(*snapshot)[i];
        const PTOrviaDataPoint& original = *raw()[i];
        EXPECT_EQ(typeid(copy), typeid(original));
        EXPECT_EQ(describe(copy), describe(original));
        EXPECT_NE(&copy, &original);
        EXPECT_NE(copy._basicMem, original._basicMem);
    }
    (*snapshot)[1]->_basicMem->procMemUsage = 99;
    EXPECT_EQ(raw()[1]->_basicMem->procMemUsage, 1);

    const auto g2 = tracer().rawDataForGrouping("G2");
    EXPECT_EQ(*g2, (PTRawDataVector{raw()[3], raw()[4]}));
    const std::size_t before = tableSize(PT_TABLE_GROUPING);
    EXPECT_TRUE(tracer().rawDataForGrouping("brand new")->empty());
    EXPECT_EQ(tableSize(PT_TABLE_GROUPING), before + 1);  // the name is added

    ptClearRawData();
    EXPECT_EQ(snapshot->size(), 7u);  // the reader keeps its own copies
    // Without a store there is nothing to copy or select, but the name is added all the same.
    auto store = std::move(tracer()._rawData);
    EXPECT_EQ(tracer().snapshotRawData(), nullptr);
    EXPECT_EQ(tracer().rawDataForGrouping("newer still"), nullptr);
    EXPECT_EQ(tableSize(PT_TABLE_GROUPING), before + 2);
    tracer()._rawData = std::move(store);
}

TEST_F(RawStore, SnapshotCopiesByPointType) {
    // Rows of an unknown version keep the start values: a block-diagram row gives a point of
    // the wider class with point type 0, a state-chart row one with point type 1.
    const auto rowOfVersion = [](std::size_t cells) {
        hvUniqueArray row(hvCreateCellMatrix(1, cells));
        hvSetCell(row.get(), 0, hvCreateString("2"));
        return row;
    };
    raw().push_back(boost::make_shared<PTKestruneDataPoint>(rowOfVersion(18).get()));
    raw().push_back(boost::make_shared<PTYlvaneDataPoint>(rowOfVersion(20).get()));
    // Types that the class cannot hold, as only a malformed file gives: each keeps its class.
    raw().push_back(boost::make_shared<PTKestruneDataPoint>());
    raw()[2]->_pointType = 2;
    raw().push_back(boost::make_shared<PTOrviaDataPoint>());
    raw()[3]->_pointType = 7;

    // The class of each copy, and the cells of its row.
    const std::pair<const std::type_info&, std::size_t> expected[] = {
        {typeid(PTOrviaDataPoint), 16},
        {typeid(PTKestruneDataPoint), 18},
        {typeid(PTKestruneDataPoint), 18},
        {typeid(PTOrviaDataPoint), 16}};
    const auto snapshot = tracer().snapshotRawData();
    ASSERT_EQ(snapshot->size(), std::size(expected));
    for (std::size_t i = 0; i < snapshot->size(); ++i) {
        const PTOrviaDataPoint& copy = *(*snapshot)[i];
        EXPECT_EQ(typeid(copy), expected[i].first) << i;
        EXPECT_EQ(copy._pointType, raw()[i]->_pointType) << i;
        EXPECT_EQ(hvGetNumberOfElements(hvUniqueArray(copy.toRow()).get()), expected[i].second)
            << i;
    }
}

}  // namespace
