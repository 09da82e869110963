#include <performance_tracer/mem_stats.h>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <vector>

namespace {

constexpr double kMiB = 1048576.0;
using Figures = std::vector<double>;

/// Detailed figures, then their deltas, in the order rows hold them (not the fields' order).
Figures of(const pt::DetailedProcessedMemStats& m) {
    return {m.freeMem,      m.resMem,      m.commitMem,      m.dllsMem,      m.nonprocessMem,
            m.freeMemDelta, m.resMemDelta, m.commitMemDelta, m.dllsMemDelta, m.nonprocessMemDelta};
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
}

}  // namespace
