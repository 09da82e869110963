#include <performance_tracer/mem_stats.h>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <vector>

namespace {

constexpr double kMiB = 1048576.0;
using Figures = std::vector<double>;

/// Figures and deltas, the detailed ones in the order rows hold them (not the fields' order).
Figures of(const pt::BasicProcessedMemStats& m) {
    return {m.procMemUsage,      m.procMemUsagePeak,      m.procVMSize,
            m.procMemUsageDelta, m.procMemUsagePeakDelta, m.procMemUsagePeakOverUsage,
            m.procVMSizeDelta};
}
Figures of(const pt::DetailedMemStats& m) {
    return {m.freeMem, m.resMem, m.commitMem, m.dllsMem, m.nonprocessMem};
}
Figures of(const pt::DetailedProcessedMemStats& m) {
    Figures figures = of(static_cast<const pt::DetailedMemStats&>(m));
    figures.insert(figures.end(), {m.freeMemDelta, m.resMemDelta, m.commitMemDelta, m.dllsMemDelta,
                                   m.nonprocessMemDelta});
    return figures;
}

TEST(MemStats, BasicRecordsInMebibytesAndTheirDeltas) {
    const auto start = boost::make_shared<pt::BasicMemStats>(10 * kMiB, 30 * kMiB, 100 * kMiB);
    pt::BasicProcessedMemStats same(start);
    EXPECT_EQ(of(same), (Figures{10, 30, 100, 0, 0, 0, 0}));
    same.setDeltas(start);
    EXPECT_EQ(of(same), (Figures{10, 30, 100, 0, 0, 20, 0}));  // the peak over the start's usage

    pt::BasicProcessedMemStats grown(
        boost::make_shared<pt::BasicMemStats>(15 * kMiB, 50 * kMiB, 90 * kMiB));
    grown.setDeltas(start);
    EXPECT_EQ(of(grown), (Figures{15, 50, 90, 5, 20, 40, -10}));
    // A null record reads as zeros; an end without a start measures against zero.
    EXPECT_EQ(of(pt::BasicProcessedMemStats(nullptr)), Figures(7, 0.0));
    grown.setDeltas(nullptr);
    EXPECT_EQ(of(grown), (Figures{15, 50, 90, 15, 50, 50, 90}));
}

TEST(MemStats, DetailedRecordsInTheSerialisedOrderAndTheirDeltas) {
    pt::DetailedProcessedMemStats end(
        boost::make_shared<pt::DetailedMemStats>(4 * kMiB, 5 * kMiB, 6 * kMiB, 7 * kMiB, 8 * kMiB));
    EXPECT_EQ(of(end), (Figures{4, 5, 6, 7, 8, 0, 0, 0, 0, 0}));
    end.setDeltas(
        boost::make_shared<pt::DetailedMemStats>(1 * kMiB, 1 * kMiB, 2 * kMiB, 3 * kMiB, 9 * kMiB));
    EXPECT_EQ(of(end), (Figures{4, 5, 6, 7, 8, 3, 4, 4, 4, -1}));
    end.setDeltas(nullptr);
    EXPECT_EQ(of(end), (Figures{4, 5, 6, 7, 8, 0, 0, 0, 0, 0}));
    EXPECT_EQ(of(pt::DetailedProcessedMemStats(nullptr)), Figures(10, 0.0));

    pt::DetailedMemStats inPlace(2 * kMiB, 0, 3 * kMiB, 0, kMiB / 2);
    inPlace.toMegabytes();
    EXPECT_EQ(of(inPlace), (Figures{2, 0, 3, 0, 0.5}));
}

}  // namespace
