#pragma once

// The statistics of comparing many runs with many runs: quantiles, the two-sided Mann-Whitney
// U test, the Hodges-Lehmann shift with its distribution-free confidence interval, and Holm's
// adjustment of p-values for many tests. Timings are not normally distributed (they have a
// floor and a long right tail), so everything here works on ranks or on order statistics.

#include <cstddef>
#include <span>
#include <vector>

namespace pt::stats {

/// The quantile p (0 to 1) of sorted, non-empty values, interpolated linearly between the
/// order statistics at (n - 1) p.
double quantile(std::span<const double> sorted, double p);

/// Five figures of a sample.
struct Spread {
    double min = 0.0;
    double q1 = 0.0;
    double median = 0.0;
    double q3 = 0.0;
    double max = 0.0;
};
/// The spread of a non-empty sample in any order.
Spread spreadOf(std::span<const double> values);

/// The result of a two-sided Mann-Whitney U test of two samples.
struct RankTest {
    /// Pairs (x, y) of the first and the second sample in which y is larger; ties count one
    /// half.
    double u = 0.0;
    /// The probability, with no difference between the samples' distributions, of a U as far
    /// from its mean as this one or farther.
    double p = 1.0;
    /// From the exact permutation distribution (with ties, that of the tied ranks); else from
    /// the normal approximation with the tie and continuity corrections.
    bool exact = true;
};

/// The two-sided Mann-Whitney U test of x against y. The exact distribution is used up to
/// 50 values a side without ties and up to 60 values in all with ties. Empty samples give
/// p = 1.
RankTest mannWhitney(std::span<const double> x, std::span<const double> y);

/// The smallest two-sided p-value that samples of these sizes can give at all (the two
/// samples apart, without ties): 2 / C(n1 + n2, n1) where the test is exact.
double smallestPValue(std::size_t n1, std::size_t n2);

/// The fewest values a side with which some result can reach the level: the smallest n with
/// smallestPValue(n, n) <= level.
std::size_t runsNeeded(double level);

/// A shift of location, y minus x, with a confidence interval.
struct Shift {
    double estimate = 0.0;
    /// -infinity and +infinity when the samples are too small for the confidence asked.
    double low = 0.0;
    double high = 0.0;
};

/// The Hodges-Lehmann shift of y from x: the median of all differences y_j - x_i. The
/// interval [D(k), D(mn + 1 - k)] of the ordered differences is the set of shifts that the
/// Mann-Whitney test does not reject, so it covers the true shift with at least the given
/// confidence for any continuous distribution of the values. Both samples non-empty.
Shift hodgesLehmann(std::span<const double> x, std::span<const double> y, double confidence);

/// Holm's step-down adjustment of p-values, in their order: the family-wise error rate stays
/// at the level at which the adjusted values are compared, for tests of any dependence.
std::vector<double> holm(std::span<const double> p);

/// The upper tail of the standard normal distribution, P(Z > z).
double normalUpperTail(double z);
/// The standard normal quantile: the z with P(Z <= z) = p, for p strictly between 0 and 1.
double normalQuantile(double p);

}  // namespace pt::stats
