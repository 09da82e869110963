#include "processing/statistics.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <numbers>
#include <numeric>
#include <utility>

namespace pt::stats {

namespace {

// Beyond these sizes the exact distribution costs more than it is worth: the normal
// approximation of U is then good to a few percent of p even in the far tail.
constexpr std::size_t kExactSideLimit = 50;
constexpr std::size_t kExactTiedLimit = 60;

/// Ranks of the pooled values, doubled so that the midranks of ties stay integers.
struct PooledRanks {
    std::vector<long> x;
    std::vector<long> y;
    /// The sum of t^3 - t over the groups of t tied values.
    double tieTerm = 0.0;
};

PooledRanks pooledRanks(std::span<const double> x, std::span<const double> y) {
    std::vector<std::pair<double, bool>> pooled;  // value, is of y
    pooled.reserve(x.size() + y.size());
    for (double v : x) {
        pooled.emplace_back(v, false);
    }
    for (double v : y) {
        pooled.emplace_back(v, true);
    }
    std::sort(pooled.begin(), pooled.end());
    PooledRanks ranks;
    for (std::size_t first = 0; first < pooled.size();) {
        std::size_t last = first;
        while (last + 1 < pooled.size() && pooled[last + 1].first == pooled[first].first) {
            ++last;
        }
        const long doubled = static_cast<long>(first + last + 2);  // twice the midrank
        const double tied = static_cast<double>(last - first + 1);
        ranks.tieTerm += tied * tied * tied - tied;
        for (std::size_t i = first; i <= last; ++i) {
            (pooled[i].second ? ranks.y : ranks.x).push_back(doubled);
        }
        first = last + 1;
    }
    return ranks;
}

/// counts[s]: how many ways k of the (doubled) ranks can be chosen so that they sum to s.
std::vector<double> subsetSumCounts(const std::vector<long>& ranks, std::size_t k) {
    std::vector<long> sorted = ranks;
    std::sort(sorted.rbegin(), sorted.rend());
    const long maxSum = std::accumulate(sorted.begin(), sorted.begin() + static_cast<long>(k), 0L);
    std::vector<std::vector<double>> ways(k + 1, std::vector<double>(maxSum + 1, 0.0));
    std::vector<long> reach(k + 1, -1);  // the largest sum reached with j ranks so far
    ways[0][0] = 1.0;
    reach[0] = 0;
    for (std::size_t i = 0; i < ranks.size(); ++i) {
        const long r = ranks[i];
        for (std::size_t j = std::min(i + 1, k); j >= 1; --j) {
            if (reach[j - 1] < 0) {
                continue;
            }
            std::vector<double>& into = ways[j];
            const std::vector<double>& from = ways[j - 1];
            for (long s = reach[j - 1]; s >= 0; --s) {
                into[s + r] += from[s];
            }
            reach[j] = std::max(reach[j], reach[j - 1] + r);
        }
    }
    return std::move(ways[k]);
}

/// The distribution of the doubled rank sum of k of n untied values, made once per size.
const std::vector<double>& untiedCounts(std::size_t n, std::size_t k) {
    thread_local std::map<std::pair<std::size_t, std::size_t>, std::vector<double>> made;
    auto found = made.find({n, k});
    if (found == made.end()) {
        std::vector<long> ranks(n);
        for (std::size_t i = 0; i < n; ++i) {
            ranks[i] = static_cast<long>(2 * (i + 1));
        }
        found = made.emplace(std::make_pair(n, k), subsetSumCounts(ranks, k)).first;
    }
    return found->second;
}

bool exactWithoutTies(std::size_t n1, std::size_t n2) {
    return n1 <= kExactSideLimit && n2 <= kExactSideLimit;
}

/// Sums of the doubled ranks at least as far from their mean as observed, over all sums.
double twoSidedTail(const std::vector<double>& counts, long center, long observed) {
    const long distance = std::labs(observed - center);
    double tail = 0.0;
    double total = 0.0;
    for (std::size_t s = 0; s < counts.size(); ++s) {
        total += counts[s];
        if (std::labs(static_cast<long>(s) - center) >= distance) {
            tail += counts[s];
        }
    }
    return std::min(1.0, tail / total);
}

double binomial(std::size_t n, std::size_t k) {
    k = std::min(k, n - k);
    double value = 1.0;
    for (std::size_t i = 1; i <= k; ++i) {
        value = value * static_cast<double>(n - k + i) / static_cast<double>(i);
    }
    return value;
}

}  // namespace

double quantile(std::span<const double> sorted, double p) {
    const double at = p * static_cast<double>(sorted.size() - 1);
    const auto below = static_cast<std::size_t>(std::floor(at));
    if (below + 1 >= sorted.size()) {
        return sorted.back();
    }
    return sorted[below] + (at - static_cast<double>(below)) * (sorted[below + 1] - sorted[below]);
}

Spread spreadOf(std::span<const double> values) {
    std::vector<double> sorted(values.begin(), values.end());
    std::sort(sorted.begin(), sorted.end());
    return {sorted.front(), quantile(sorted, 0.25), quantile(sorted, 0.5), quantile(sorted, 0.75),
            sorted.back()};
}

RankTest mannWhitney(std::span<const double> x, std::span<const double> y) {
    RankTest test;
    if (x.empty() || y.empty()) {
        return test;
    }
    const std::size_t n1 = x.size();
    const std::size_t n2 = y.size();
    const std::size_t n = n1 + n2;
    const PooledRanks ranks = pooledRanks(x, y);
    const long ySum = std::accumulate(ranks.y.begin(), ranks.y.end(), 0L);
    test.u = static_cast<double>(ySum) / 2.0 - static_cast<double>(n2 * (n2 + 1)) / 2.0;

    const bool tied = ranks.tieTerm > 0.0;
    // The sum of the smaller sample's ranks has the smaller table; the test is the same.
    const bool ofY = n2 <= n1;
    const std::size_t k = ofY ? n2 : n1;
    const long observed = ofY ? ySum : std::accumulate(ranks.x.begin(), ranks.x.end(), 0L);
    const long center = static_cast<long>(k * (n + 1));
    if (!tied && exactWithoutTies(n1, n2)) {
        test.p = twoSidedTail(untiedCounts(n, k), center, observed);
        return test;
    }
    if (tied && n <= kExactTiedLimit) {
        std::vector<long> all = ranks.x;
        all.insert(all.end(), ranks.y.begin(), ranks.y.end());
        test.p = twoSidedTail(subsetSumCounts(all, k), center, observed);
        return test;
    }
    test.exact = false;
    const double nd = static_cast<double>(n);
    const double mean = static_cast<double>(n1 * n2) / 2.0;
    const double variance =
        static_cast<double>(n1 * n2) / 12.0 * ((nd + 1.0) - ranks.tieTerm / (nd * (nd - 1.0)));
    const double distance = std::fabs(test.u - mean) - 0.5;
    test.p = variance <= 0.0 || distance <= 0.0
                 ? 1.0
                 : std::min(1.0, 2.0 * normalUpperTail(distance / std::sqrt(variance)));
    return test;
}

double smallestPValue(std::size_t n1, std::size_t n2) {
    if (n1 == 0 || n2 == 0) {
        return 1.0;
    }
    if (exactWithoutTies(n1, n2)) {
        return std::min(1.0, 2.0 / binomial(n1 + n2, n1));
    }
    const double mean = static_cast<double>(n1 * n2) / 2.0;
    const double sd = std::sqrt(static_cast<double>(n1 * n2 * (n1 + n2 + 1)) / 12.0);
    return std::min(1.0, 2.0 * normalUpperTail((mean - 0.5) / sd));
}

std::size_t runsNeeded(double level) {
    constexpr std::size_t kLimit = 100000;
    for (std::size_t n = 1; n < kLimit; ++n) {
        if (smallestPValue(n, n) <= level) {
            return n;
        }
    }
    return kLimit;
}

Shift hodgesLehmann(std::span<const double> x, std::span<const double> y, double confidence) {
    std::vector<double> differences;
    differences.reserve(x.size() * y.size());
    for (double b : y) {
        for (double a : x) {
            differences.push_back(b - a);
        }
    }
    std::sort(differences.begin(), differences.end());
    const std::size_t count = differences.size();
    Shift shift;
    shift.estimate = count % 2 == 1 ? differences[count / 2]
                                    : (differences[count / 2 - 1] + differences[count / 2]) / 2.0;

    // k - 1 is the largest U whose lower tail stays within half the error level; the
    // interval runs from the k-th smallest difference to the k-th largest.
    const double tail = (1.0 - confidence) / 2.0;
    const std::size_t n1 = x.size();
    const std::size_t n2 = y.size();
    long k = 0;
    if (exactWithoutTies(n1, n2)) {
        const std::size_t small = std::min(n1, n2);
        const std::vector<double>& counts = untiedCounts(n1 + n2, small);
        const double total = std::accumulate(counts.begin(), counts.end(), 0.0);
        // The doubled rank sum of the smaller sample is 2U + small (small + 1).
        const long offset = static_cast<long>(small * (small + 1));
        double below = 0.0;
        for (long u = 0; 2 * u + offset < static_cast<long>(counts.size()); ++u) {
            below += counts[2 * u + offset];
            if (below / total > tail * (1.0 + 1e-9)) {  // 1 - 0.9 is not quite 0.1
                break;
            }
            k = u + 1;
        }
    } else {
        const double mean = static_cast<double>(count) / 2.0;
        const double sd = std::sqrt(static_cast<double>(count * (n1 + n2 + 1)) / 12.0);
        k = static_cast<long>(std::floor(mean - normalQuantile(1.0 - tail) * sd - 0.5)) + 1;
    }
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    if (k < 1) {
        shift.low = -kInfinity;
        shift.high = kInfinity;
    } else {
        shift.low = differences[static_cast<std::size_t>(k) - 1];
        shift.high = differences[count - static_cast<std::size_t>(k)];
    }
    return shift;
}

std::vector<double> holm(std::span<const double> p) {
    std::vector<std::size_t> order(p.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return p[a] < p[b]; });
    std::vector<double> adjusted(p.size());
    double running = 0.0;
    for (std::size_t step = 0; step < order.size(); ++step) {
        const double scaled = static_cast<double>(p.size() - step) * p[order[step]];
        running = std::max(running, std::min(1.0, scaled));
        adjusted[order[step]] = running;
    }
    return adjusted;
}

double normalUpperTail(double z) { return 0.5 * std::erfc(z / std::sqrt(2.0)); }

double normalQuantile(double p) {
    // A rational first guess, good to about 1e-9, and one Halley step on erfc.
    static constexpr double a[] = {-3.969683028665376e+01, 2.209460984245205e+02,
                                   -2.759285104469687e+02, 1.383577518672690e+02,
                                   -3.066479806614716e+01, 2.506628277459239e+00};
    static constexpr double b[] = {-5.447609879822406e+01, 1.615858368580409e+02,
                                   -1.556989798598866e+02, 6.680131188771972e+01,
                                   -1.328068155288572e+01};
    static constexpr double c[] = {-7.784894002430293e-03, -3.223964580411365e-01,
                                   -2.400758277161838e+00, -2.549732539343734e+00,
                                   4.374664141464968e+00,  2.938163982698783e+00};
    static constexpr double d[] = {7.784695709041462e-03, 3.224671290700398e-01,
                                   2.445134137142996e+00, 3.754408661907416e+00};
    constexpr double kLow = 0.02425;
    double z;
    if (p < kLow || p > 1.0 - kLow) {
        const double q = std::sqrt(-2.0 * std::log(p < kLow ? p : 1.0 - p));
        z = (((((c[0] * q + c[1]) * q + c[2]) * q + c[3]) * q + c[4]) * q + c[5]) /
            ((((d[0] * q + d[1]) * q + d[2]) * q + d[3]) * q + 1.0);
        z = p < kLow ? z : -z;
    } else {
        const double q = p - 0.5;
        const double r = q * q;
        z = (((((a[0] * r + a[1]) * r + a[2]) * r + a[3]) * r + a[4]) * r + a[5]) * q /
            (((((b[0] * r + b[1]) * r + b[2]) * r + b[3]) * r + b[4]) * r + 1.0);
    }
    const double error = 0.5 * std::erfc(-z / std::sqrt(2.0)) - p;
    const double step = error * std::sqrt(2.0 * std::numbers::pi) * std::exp(z * z / 2.0);
    return z - step / (1.0 + z * step / 2.0);
}

}  // namespace pt::stats
