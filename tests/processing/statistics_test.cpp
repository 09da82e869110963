#include "processing/statistics.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <tuple>
#include <vector>

namespace {

using Sample = std::vector<double>;

/// U of y against x counted pair by pair: how often y is larger, ties one half.
double pairCount(const Sample& x, const Sample& y) {
    double u = 0.0;
    for (double b : y) {
        for (double a : x) {
            u += b > a ? 1.0 : b == a ? 0.5 : 0.0;
        }
    }
    return u;
}

/// The exact two-sided p-value by going through every way of splitting the pooled values
/// into samples of these sizes: how many give a U as far from its mean as the observed one.
double enumeratedP(const Sample& x, const Sample& y) {
    Sample pooled = x;
    pooled.insert(pooled.end(), y.begin(), y.end());
    const double mean = static_cast<double>(x.size() * y.size()) / 2.0;
    const double observed = std::fabs(pairCount(x, y) - mean);
    std::vector<bool> inY(pooled.size(), false);
    std::fill(inY.end() - static_cast<long>(y.size()), inY.end(), true);
    long extreme = 0, all = 0;
    do {
        Sample a, b;
        for (std::size_t i = 0; i < pooled.size(); ++i) {
            (inY[i] ? b : a).push_back(pooled[i]);
        }
        extreme += std::fabs(pairCount(a, b) - mean) >= observed - 1e-9 ? 1 : 0;
        ++all;
    } while (std::next_permutation(inY.begin(), inY.end()));
    return static_cast<double>(extreme) / static_cast<double>(all);
}

TEST(Statistics, ExactRankTestAgreesWithEnumeration) {
    const struct {
        const char* what;
        Sample x, y;
    } cases[] = {
        {"apart, five a side", {1, 2, 3, 4, 5}, {6, 7, 8, 9, 10}},
        {"interleaved", {1, 3, 5, 7, 9}, {2, 4, 6, 8, 10}},
        {"sizes 3 and 7", {2.5, 9.1, 4.4}, {1, 3, 5, 6, 7, 8, 10}},
        {"ties within and across", {1, 2, 2, 3, 3}, {2, 3, 3, 4, 5}},
        {"all tied but one", {1, 1, 1, 1}, {1, 1, 1, 2}},
        {"permeability constants",
         {0.80, 0.83, 1.89, 1.04, 1.45, 1.38, 1.91, 1.64, 0.73, 1.46},
         {1.15, 0.88, 0.90, 0.74, 1.21}},
        // Ten a side, U = 23 is the tables' critical value at 0.05 two-sided.
        {"U = 23", {1, 2, 3, 4, 5, 6, 7, 11, 19, 20}, {8, 9, 10, 12, 13, 14, 15, 16, 17, 18}},
        {"U = 24", {1, 2, 3, 4, 5, 6, 7, 12, 19, 20}, {8, 9, 10, 11, 13, 14, 15, 16, 17, 18}},
    };
    for (const auto& c : cases) {
        const pt::stats::RankTest test = pt::stats::mannWhitney(c.x, c.y);
        EXPECT_EQ(std::make_pair(test.exact, test.u), std::make_pair(true, pairCount(c.x, c.y)))
            << c.what;
        EXPECT_NEAR(test.p, enumeratedP(c.x, c.y), 1e-12) << c.what;
        // The order of the samples changes U, never p.
        EXPECT_NEAR(pt::stats::mannWhitney(c.y, c.x).p, test.p, 1e-12) << c.what;
    }
    // Textbook figures: five a side cannot go below 2/252; the permeability example
    // (W = 35 for x) has the one-sided p 0.1272.
    const auto p = [&](std::size_t i) { return pt::stats::mannWhitney(cases[i].x, cases[i].y).p; };
    EXPECT_NEAR(p(0), 2.0 / 252.0, 1e-15);
    EXPECT_NEAR(p(5), 2 * 0.1272, 1e-4);
    EXPECT_EQ(pairCount(cases[6].y, cases[6].x), 23.0);
    EXPECT_TRUE(p(6) <= 0.05 && p(7) > 0.05) << p(6) << " " << p(7);
}

TEST(Statistics, LargeSamplesUseTheNormalApproximation) {
    Sample x, y, odd, even;
    for (int i = 0; i < 60; ++i) {
        x.push_back(i);
        y.push_back(100 + i);
        (i % 2 ? odd : even).push_back(i);
    }
    const pt::stats::RankTest apart = pt::stats::mannWhitney(x, y);
    EXPECT_EQ(std::make_pair(apart.exact, apart.u), std::make_pair(false, 3600.0));
    EXPECT_LT(apart.p, 1e-15);
    // Alternating values give a U near its mean of 450; thirty a side is still exact.
    const pt::stats::RankTest mixed = pt::stats::mannWhitney(even, odd);
    EXPECT_TRUE(mixed.exact && mixed.p > 0.8) << mixed.p;
    // With ties beyond the exact limit, the tie-corrected approximation: half the values
    // equal on both sides.
    Sample tiedX(40, 1.0), tiedY(40, 1.0);
    std::fill(tiedY.begin(), tiedY.begin() + 20, 2.0);
    const pt::stats::RankTest tied = pt::stats::mannWhitney(tiedX, tiedY);
    EXPECT_TRUE(!tied.exact && tied.p < 1e-5) << tied.p;
    EXPECT_EQ(pt::stats::mannWhitney(Sample(70, 3.0), Sample(70, 3.0)).p, 1.0);
}

TEST(Statistics, SmallestPValueRunsNeededAndHolm) {
    using pt::stats::smallestPValue;
    EXPECT_NEAR(smallestPValue(5, 5), 2.0 / 252.0, 1e-15);
    EXPECT_NEAR(smallestPValue(3, 3), 0.1, 1e-15);
    EXPECT_EQ(std::make_pair(smallestPValue(1, 1), smallestPValue(0, 9)), std::make_pair(1.0, 1.0));
    EXPECT_LT(smallestPValue(60, 60), 1e-15);
    // Twenty phases at 0.01: the most significant must reach 0.0005; C(16, 8) = 12870 is
    // the first central binomial coefficient above 4000.
    EXPECT_EQ(pt::stats::runsNeeded(0.01 / 20), 8u);
    EXPECT_EQ(pt::stats::runsNeeded(0.05), 4u);  // 2 / C(8, 4) = 0.029; 2 / C(6, 3) = 0.1

    // Sorted: 0.005 * 4, 0.01 * 3, 0.03 * 2, then 0.04 * 1 held up to the 0.06 before it.
    EXPECT_EQ(pt::stats::holm(Sample{0.01, 0.04, 0.03, 0.005}),
              (Sample{0.01 * 3, 0.03 * 2, 0.03 * 2, 0.005 * 4}));
    EXPECT_EQ(pt::stats::holm(Sample{0.6, 0.7}), (Sample{1.0, 1.0}));
    EXPECT_TRUE(pt::stats::holm(Sample{}).empty());
}

TEST(Statistics, HodgesLehmannShiftAndInterval) {
    // Five a side at 95%: P(U <= 2) = 4/252 stays below 0.025 and P(U <= 3) = 7/252 does
    // not, so the interval runs from the third smallest difference to the third largest.
    const Sample x = {10.2, 11.5, 9.8, 10.9, 10.4};
    const Sample y = {12.1, 11.0, 13.4, 12.6, 11.9};
    Sample differences;
    for (double b : y) {
        for (double a : x) {
            differences.push_back(b - a);
        }
    }
    std::sort(differences.begin(), differences.end());
    const pt::stats::Shift shift = pt::stats::hodgesLehmann(x, y, 0.95);
    EXPECT_EQ(std::make_tuple(shift.estimate, shift.low, shift.high),
              std::make_tuple(differences[12], differences[2], differences[22]));

    // Three a side cannot give 95%: even the widest interval covers only 1 - 2/20.
    const Sample three = {1, 2, 3}, later = {4, 5, 6};
    const pt::stats::Shift tooFew = pt::stats::hodgesLehmann(three, later, 0.95);
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(std::make_tuple(tooFew.estimate, tooFew.low, tooFew.high),
              std::make_tuple(3.0, -inf, inf));
    EXPECT_DOUBLE_EQ(pt::stats::hodgesLehmann(three, later, 0.9).low, 1.0);

    // Beyond the exact sizes, the interval of a known shift still holds it, about evenly.
    std::mt19937 rng(7);
    std::normal_distribution<double> noise(0.0, 1.0);
    Sample a, b;
    for (int i = 0; i < 80; ++i) {
        a.push_back(noise(rng));
        b.push_back(noise(rng) + 2.0);
    }
    const pt::stats::Shift large = pt::stats::hodgesLehmann(a, b, 0.99);
    EXPECT_TRUE(large.low < 2.0 && large.high > 2.0);
    EXPECT_NEAR(large.high - large.estimate, large.estimate - large.low, 0.15);
}

TEST(Statistics, QuantilesAndNormalDistribution) {
    const pt::stats::Spread s = pt::stats::spreadOf(Sample{4, 1, 3, 2});
    EXPECT_EQ((Sample{s.min, s.q1, s.median, s.q3, s.max}), (Sample{1, 1.75, 2.5, 3.25, 4}));
    EXPECT_EQ(pt::stats::spreadOf(Sample{5}).q3, 5.0);
    const std::pair<double, double> quantiles[] = {{0.975, 1.959963984540054},
                                                   {0.995, 2.5758293035489004},
                                                   {0.5, 0.0},
                                                   {0.001, -3.090232306167813},
                                                   {1e-10, -6.361340902404056}};
    for (const auto& [p, z] : quantiles) {
        EXPECT_NEAR(pt::stats::normalQuantile(p), z, 1e-9) << p;
    }
    EXPECT_NEAR(pt::stats::normalUpperTail(1.959963984540054), 0.025, 1e-15);
}

}  // namespace
