#include "tracer_test_support.h"

#include <boost/make_shared.hpp>

namespace {

using RawPoints = TracerTest;

TEST_F(RawPoints, DefaultsOfEachClass) {
    const PTYlvaneDataPoint chart;
    EXPECT_EQ(chart._pointType, 2);
    for (std::int32_t id : {chart._groupingID, chart._phaseID, chart._statisticsTypeID,
                            chart._modelID, chart._targetID, chart._machineID, chart._chartID}) {
        EXPECT_EQ(id, -1);
    }
    ASSERT_TRUE(chart._basicMem && chart._detailedMem);
    EXPECT_EQ(chart._basicMem->procVMSize, 0.0);
    EXPECT_EQ(chart._detailedMem->freeMem, 0.0);
    EXPECT_FALSE(chart._isPhaseStart || chart._isGenerated);
    EXPECT_EQ(chart._wcTime, 0.0);

    EXPECT_EQ(PTOrviaDataPoint()._pointType, 0);
    EXPECT_EQ(PTKestruneDataPoint()._pointType, 1);
}

TEST_F(RawPoints, CopiesOwnTheirMemoryRecords) {
    PTKestruneDataPoint original;
    original._groupingID = 3;
    original._phaseID = 4;
    original._statisticsTypeID = 5;
    original._modelID = 6;
    original._targetID = 7;
    original._isPhaseStart = true;
    original._isGenerated = true;
    original._wcTime = 1.5;
    original._cpuTime = 0.5;
    original._basicMem = boost::make_shared<pt::BasicMemStats>(1, 2, 3);
    original._detailedMem.reset();

    const PTKestruneDataPoint copy(original);
    EXPECT_EQ(copy._groupingID, 3);
    EXPECT_EQ(copy._phaseID, 4);
    EXPECT_EQ(copy._statisticsTypeID, 5);
    EXPECT_EQ(copy._modelID, 6);
    EXPECT_EQ(copy._targetID, 7);
    EXPECT_TRUE(copy._isPhaseStart && copy._isGenerated);
    EXPECT_EQ(copy._wcTime, 1.5);
    EXPECT_EQ(copy._cpuTime, 0.5);
    ASSERT_TRUE(copy._basicMem);
    EXPECT_NE(copy._basicMem, original._basicMem);
    EXPECT_EQ(copy._basicMem->procMemUsagePeak, 2);
    ASSERT_TRUE(copy._detailedMem);  // a missing record becomes a zero record
    EXPECT_EQ(copy._detailedMem->commitMem, 0.0);

    const auto cloned = copy.clone();
    ASSERT_NE(dynamic_cast<const PTKestruneDataPoint*>(cloned.get()), nullptr);
    EXPECT_NE(cloned->_basicMem, copy._basicMem);
}

TEST_F(RawPoints, SamePointComparesIdentityOnly) {
    auto start = boost::make_shared<PTKestruneDataPoint>();
    start->_groupingID = 1, start->_phaseID = 2, start->_modelID = 3, start->_targetID = 4;
    start->_isPhaseStart = true;
    auto end = boost::make_shared<PTKestruneDataPoint>(*start);
    end->_isPhaseStart = false;
    end->_statisticsTypeID = 9;
    end->_wcTime = 10;
    end->_basicMem = boost::make_shared<pt::BasicMemStats>(5, 5, 5);
    EXPECT_TRUE(start->isSamePoint(end));
    EXPECT_TRUE(end->isSamePoint(start));

    end->_targetID = 5;
    EXPECT_FALSE(start->isSamePoint(end));
    EXPECT_FALSE(start->isSamePoint(nullptr));

    // Points of different classes never match, whichever side asks.
    auto plain = boost::make_shared<PTOrviaDataPoint>();
    plain->_groupingID = 1, plain->_phaseID = 2;
    EXPECT_FALSE(plain->isSamePoint(start));
    EXPECT_FALSE(start->isSamePoint(plain));

    auto chart = boost::make_shared<PTYlvaneDataPoint>();
    auto other = boost::make_shared<PTYlvaneDataPoint>(*chart);
    EXPECT_TRUE(chart->isSamePoint(other));
    other->_chartID = 8;
    EXPECT_FALSE(chart->isSamePoint(other));

    // A point whose type field claims a wider class than it has is compared safely.
    auto liar = boost::make_shared<PTOrviaDataPoint>();
    liar->_pointType = 2;
    EXPECT_FALSE(chart->isSamePoint(liar));
}

}  // namespace
