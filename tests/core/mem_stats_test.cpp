#include <performance_tracer/mem_stats.h>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <vector>

namespace {

constexpr double kMiB = 1048576.0;
using Figures = std::vector<double>;

/// Detailed figures, then their deltas, in the order rows hold them (not the fields' order).
Figures of(const pt::DetailedMemStats& m) {
    return {m.freeMem, m.resMem, m.commitMem, m.dllsMem, m.nonprocessMem};
}
Figures of(const pt::DetailedProcessedMemStats& m) {
    Figures figures = of(static_cast<const pt::DetailedMemStats&>(m));
    figures.insert(figures.end(), {m.freeMemDelta, m.resMemDelta, m.commitMemDelta, m.dllsMemDelta,
                                   m.nonprocessMemDelta});
    return figures;
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
