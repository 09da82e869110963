#include "tracer_test_support.h"

#include <pt_platform/hv.h>

#include <boost/make_shared.hpp>

namespace {

using RawStore = TracerTest;

TEST_F(RawStore, ClearsKeepWhatTheyDoNotName) {
    ptAddGrouping("G3");
    ptEnableTracer("G1", true);
    ptEnableGlobalLogging(true);
    ptEnableDetailedMemStats(true);
    ptLogOrviaData("G1", "o1", true);
    ptLogYlvaneData("G1", "M1", "T1", "mc", "c", "y1", true);
    // Clears that match nothing remove nothing and add no names.
    const std::vector<std::size_t> sizes = tableSizes();
    ptClearRawGroupingData("no such grouping");
    ptClearRawModelData("no such model");
    ptClearRawData("G1", "M1", "no such target");
    ptClearRawData("new grouping", "new model", "new target");
    ptClearRawGroupingData("G3");  // a grouping without points
    EXPECT_EQ(tableSizes(), sizes);
    // An unknown grouping matches the points logged without one.
    ptLogOrviaData("never added", "lost", true);
    ptClearRawGroupingData("also never added");
    EXPECT_EQ(flow(), "o1+ y1+");

    // The three-name form keeps the models' statistics types; the two-name form forgets every
    // one, with or without a store to clear.
    ptSetStatisticsTypeForModel("M2", "other");
    ptClearRawData("G", "M1", "T");
    EXPECT_EQ(tracer()._modelStatisticsTypes->size(), 2u);
    auto store = std::move(tracer()._rawData);
    ptClearRawData("G", "M2");
    tracer()._rawData = std::move(store);
    EXPECT_TRUE(tracer()._modelStatisticsTypes->empty());

    // The full clear empties the store, the types and every table but the groupings'; the
    // states, the switches and the system's record stay.
    ptSetStatisticsTypeForModel("M", "type");
    tracer()._systemInfo->processorStr = "cpu";
    std::vector<std::size_t> cleared(PT_TABLE_COUNT, 0);
    cleared[PT_TABLE_GROUPING] = tableSize(PT_TABLE_GROUPING);
    ptClearRawData();
    EXPECT_TRUE(raw().empty() && tracer()._modelStatisticsTypes->empty());
    EXPECT_EQ(tableSizes(), cleared);
    EXPECT_EQ(tracer().groupingState(groupingID("G1")), PT_GROUPING_ON);
    EXPECT_TRUE(tracer()._globalLogging && tracer()._detailedMemStats);
    EXPECT_EQ(tracer()._systemInfo->processorStr, "cpu");
    ptLogOrviaData("G1", "after", true);  // phase ids start again
    EXPECT_EQ(raw().back()->_phaseID, 0);
}

TEST_F(RawStore, SnapshotCopiesByPointTypeAndTheSelectionSharesPoints) {
    // Rows of an unknown version keep the start values: a block-diagram row gives a point of
    // the wider class with point type 0, a state-chart row one with point type 1.
    const auto rowOfVersion = [](std::size_t cells) {
        hvUniqueArray row(hvCreateCellMatrix(1, cells));
        hvSetCell(row.get(), 0, hvCreateString("2"));
        return row;
    };
    raw().push_back(boost::make_shared<PTKestruneDataPoint>());
    raw().push_back(boost::make_shared<PTYlvaneDataPoint>());
    raw().push_back(boost::make_shared<PTKestruneDataPoint>(rowOfVersion(18).get()));
    raw().push_back(boost::make_shared<PTYlvaneDataPoint>(rowOfVersion(20).get()));
    // Types that the class cannot hold, as only a malformed file gives: each keeps its class.
    raw().push_back(boost::make_shared<PTKestruneDataPoint>());
    raw()[4]->_pointType = 2;
    raw().push_back(boost::make_shared<PTOrviaDataPoint>());
    raw()[5]->_pointType = 7;
    raw()[1]->_groupingID = ptAddGrouping("G2");
    raw()[1]->_basicMem = boost::make_shared<pt::BasicMemStats>(1, 2, 3);

    // The class of each copy and the cells of its row; each copy owns its memory records.
    const std::pair<const std::type_info&, std::size_t> expected[] = {
        {typeid(PTKestruneDataPoint), 18}, {typeid(PTYlvaneDataPoint), 20},
        {typeid(PTOrviaDataPoint), 16},    {typeid(PTKestruneDataPoint), 18},
        {typeid(PTKestruneDataPoint), 18}, {typeid(PTOrviaDataPoint), 16}};
    const auto snapshot = tracer().snapshotRawData();
    ASSERT_EQ(snapshot->size(), std::size(expected));
    for (std::size_t i = 0; i < snapshot->size(); ++i) {
        const PTOrviaDataPoint& copy = *(*snapshot)[i];
        const PTOrviaDataPoint& original = *raw()[i];
        EXPECT_EQ(typeid(copy), expected[i].first) << i;
        if (typeid(copy) == typeid(original)) {
            EXPECT_EQ(describe(copy), describe(original)) << i;
        }
        EXPECT_EQ(hvGetNumberOfElements(hvUniqueArray(copy.toRow()).get()), expected[i].second);
        EXPECT_NE(copy._basicMem, original._basicMem);
    }

    EXPECT_EQ(*tracer().rawDataForGrouping("G2"), (PTRawDataVector{raw()[1]}));
    const std::size_t before = tableSize(PT_TABLE_GROUPING);
    EXPECT_TRUE(tracer().rawDataForGrouping("brand new")->empty());
    // Without a store there is nothing to copy or select, but the name is added all the same.
    auto store = std::move(tracer()._rawData);
    EXPECT_EQ(tracer().snapshotRawData(), nullptr);
    EXPECT_EQ(tracer().rawDataForGrouping("newer still"), nullptr);
    EXPECT_EQ(tableSize(PT_TABLE_GROUPING), before + 2);
    tracer()._rawData = std::move(store);
}

}  // namespace
