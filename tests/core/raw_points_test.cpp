#include "tracer_test_support.h"

#include <boost/make_shared.hpp>

namespace {

using RawPoints = TracerTest;

TEST_F(RawPoints, DefaultsAndCopiesThatOwnTheirMemoryRecords) {
    EXPECT_EQ(describe(PTYlvaneDataPoint()),
              "2 #-1 #-1 #-1 #-1 #-1 #-1 #-1 end 0 0 detailed 0 0 0 0 0 basic 0 0 0");
    EXPECT_EQ(PTOrviaDataPoint()._pointType, 0);
    EXPECT_EQ(PTKestruneDataPoint()._pointType, 1);

    PTKestruneDataPoint original;
    original._groupingID = -2, original._phaseID = 4, original._statisticsTypeID = 5;
    original._modelID = 6, original._targetID = 7;
    original._isPhaseStart = original._isGenerated = true;
    original._wcTime = 1.5, original._cpuTime = 0.5;
    original._basicMem = boost::make_shared<pt::BasicMemStats>(1, 2, 3);
    original._detailedMem.reset();
    const PTKestruneDataPoint copy(original);
    // A missing record becomes a zero record.
    EXPECT_EQ(describe(copy),
              "1 #4 #-2 #6 #7 #5 start generated 1.5 0.5 detailed 0 0 0 0 0 basic 1 2 3");
    EXPECT_NE(copy._basicMem, original._basicMem);
    const auto cloned = copy.clone();
    ASSERT_NE(dynamic_cast<const PTKestruneDataPoint*>(cloned.get()), nullptr);
    EXPECT_NE(cloned->_basicMem, copy._basicMem);
    EXPECT_EQ(describe(*cloned), describe(copy));
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
