#include <performance_tracer/mem_stats.h>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

namespace {

constexpr double kMiB = 1048576.0;

TEST(MemStats, DetailedConstructorTakesTheSerialisedOrder) {
    const pt::DetailedMemStats mem(1, 2, 3, 4, 5);
    EXPECT_EQ(mem.freeMem, 1);
    EXPECT_EQ(mem.resMem, 2);
    EXPECT_EQ(mem.commitMem, 3);
    EXPECT_EQ(mem.dllsMem, 4);
    EXPECT_EQ(mem.nonprocessMem, 5);

    const pt::BasicMemStats basic(1, 2, 3);
    EXPECT_EQ(basic.procMemUsage, 1);
    EXPECT_EQ(basic.procMemUsagePeak, 2);
    EXPECT_EQ(basic.procVMSize, 3);
}

TEST(MemStats, ProcessedRecordsAreInMebibytes) {
    const pt::BasicProcessedMemStats basic(boost::make_shared<pt::BasicMemStats>(kMiB, kMiB, kMiB));
    EXPECT_EQ(basic.procMemUsage, 1.0);
    EXPECT_EQ(basic.procMemUsagePeak, 1.0);
    EXPECT_EQ(basic.procVMSize, 1.0);
    EXPECT_EQ(basic.procMemUsageDelta, 0.0);

    const pt::DetailedProcessedMemStats detailed(
        boost::make_shared<pt::DetailedMemStats>(kMiB, kMiB, kMiB, kMiB, kMiB));
    for (double figure : {detailed.commitMem, detailed.resMem, detailed.freeMem, detailed.dllsMem,
                          detailed.nonprocessMem}) {
        EXPECT_EQ(figure, 1.0);
    }

    pt::DetailedMemStats inPlace(2 * kMiB, 0, 3 * kMiB, 0, kMiB / 2);
    inPlace.toMegabytes();
    EXPECT_EQ(inPlace.freeMem, 2.0);
    EXPECT_EQ(inPlace.commitMem, 3.0);
    EXPECT_EQ(inPlace.nonprocessMem, 0.5);
}

TEST(MemStats, BasicDeltasCrossUsageAndPeakOnce) {
    const auto start = boost::make_shared<pt::BasicMemStats>(10 * kMiB, 30 * kMiB, 100 * kMiB);
    pt::BasicProcessedMemStats same(start);
    same.setDeltas(start);
    EXPECT_EQ(same.procMemUsageDelta, 0.0);
    EXPECT_EQ(same.procMemUsagePeakDelta, 0.0);
    EXPECT_EQ(same.procVMSizeDelta, 0.0);
    EXPECT_EQ(same.procMemUsagePeakOverUsage, 20.0);  // peak less usage

    pt::BasicProcessedMemStats grown(
        boost::make_shared<pt::BasicMemStats>(15 * kMiB, 50 * kMiB, 90 * kMiB));
    grown.setDeltas(start);
    EXPECT_EQ(grown.procMemUsageDelta, 5.0);
    EXPECT_EQ(grown.procMemUsagePeakDelta, 20.0);
    EXPECT_EQ(grown.procMemUsagePeakOverUsage, 40.0);
    EXPECT_EQ(grown.procVMSizeDelta, -10.0);
}

TEST(MemStats, DetailedDeltasAndNullRecords) {
    pt::DetailedProcessedMemStats none(nullptr);
    for (double figure :
         {none.commitMem, none.resMem, none.freeMem, none.dllsMem, none.nonprocessMem}) {
        EXPECT_EQ(figure, 0.0);
    }
    none.setDeltas(nullptr);
    for (double delta : {none.commitMemDelta, none.resMemDelta, none.freeMemDelta,
                         none.dllsMemDelta, none.nonprocessMemDelta}) {
        EXPECT_EQ(delta, 0.0);
    }

    pt::DetailedProcessedMemStats end(
        boost::make_shared<pt::DetailedMemStats>(4 * kMiB, 5 * kMiB, 6 * kMiB, 7 * kMiB, 8 * kMiB));
    end.setDeltas(
        boost::make_shared<pt::DetailedMemStats>(1 * kMiB, 1 * kMiB, 2 * kMiB, 3 * kMiB, 9 * kMiB));
    EXPECT_EQ(end.freeMemDelta, 3.0);
    EXPECT_EQ(end.resMemDelta, 4.0);
    EXPECT_EQ(end.commitMemDelta, 4.0);
    EXPECT_EQ(end.dllsMemDelta, 4.0);
    EXPECT_EQ(end.nonprocessMemDelta, -1.0);

    // A basic end without a start record measures against zero instead of failing.
    pt::BasicProcessedMemStats basic(boost::make_shared<pt::BasicMemStats>(kMiB, 2 * kMiB, 0));
    basic.setDeltas(nullptr);
    EXPECT_EQ(basic.procMemUsageDelta, 1.0);
    EXPECT_EQ(basic.procMemUsagePeakOverUsage, 2.0);
}

}  // namespace
