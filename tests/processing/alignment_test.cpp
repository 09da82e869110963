#include <performance_tracer/comparison.h>
#include <performance_tracer/names.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/tracer.h>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <random>
#include <tuple>

#include "direct_alignment.h"
#include "random_log.h"

namespace {

using pt::testing::makePoint;

class Alignment : public ::testing::Test {
protected:
    void SetUp() override {
        ptClearRawData();
        setPathStripRoot("");
    }
};

/// Rows named by the given phases, all host-language rows of one grouping but where a name
/// starts with '@', which puts the row into a second grouping.
PTDiagnosticInfoList rowsOf(const std::vector<std::string>& phases) {
    PTDiagnosticInfoList rows;
    for (const std::string& phase : phases) {
        const bool other = phase.starts_with('@');
        const auto raw =
            makePoint(0, other ? "Other" : "G", other ? phase.substr(1) : phase, true, 0);
        rows.push_back(
            boost::make_shared<PTDiagnosticInfo>(raw, static_cast<int>(rows.size()) + 1, 0));
    }
    return rows;
}

// Random lists of a few keys, empty ones among them, with runs, repeats, stretches on either side
// and the same phase in another grouping.
TEST_F(Alignment, MatchesTheDirectFormOnRandomLists) {
    std::mt19937 rng(11);
    const std::vector<std::string> pool = {"a", "b", "c", "d", "@a"};
    std::uniform_int_distribution<std::size_t> pick(0, pool.size() - 1);
    std::uniform_int_distribution<int> length(0, 24);
    const auto keys = [&](int n) {
        std::vector<std::string> out;
        for (; n > 0; --n) {
            out.push_back(pool[pick(rng)]);
        }
        return out;
    };
    for (int round = 0; round < 4000; ++round) {
        std::vector<std::string> left = keys(length(rng)), right = keys(length(rng));
        if (round % 3 == 0) {  // a common tail
            const std::vector<std::string> tail = keys(length(rng) / 4);
            left.insert(left.end(), tail.begin(), tail.end());
            right.insert(right.end(), tail.begin(), tail.end());
        }
        const PTDiagnosticInfoList l = rowsOf(left), r = rowsOf(right);
        ASSERT_EQ(ptAlignRows(*ptTracer(), l, r), pt::testing::directAlignRows(l, r))
            << "round " << round;
    }
}

TEST_F(Alignment, AggregatesAlignByPhaseNameAlone) {
    const auto entry = [](const char* phase, const char* grouping) {
        const auto id = static_cast<std::int32_t>(ptNameID(PT_TABLE_PHASE, phase));
        const auto group = static_cast<std::int32_t>(ptNameID(PT_TABLE_GROUPING, grouping));
        return std::make_pair(id, std::make_unique<PTAggregateDataPoint>(group, id, false));
    };
    PTAggregateMap left, right;
    left.insert(entry("tool/ks_customization/f", "G1"));
    left.insert(entry("only left", "G1"));
    right.insert(entry("tool/f", "G2"));
    right.insert(entry("only right", "G2"));
    const auto pairs = ptAlignAggregates(*ptTracer(), left, right);
    ASSERT_EQ(pairs.size(), 3u);
    // Ascending phase ids: "tool/ks_customization/f" 0, "only left" 1, "tool/f" 2, ...
    EXPECT_EQ(std::make_tuple(pairs[0].kind, pairs[0].left->_phaseID, pairs[0].right->_phaseID,
                              pairs[1].kind, pairs[2].kind),
              std::make_tuple(PT_ALIGN_BOTH, 0, 2, PT_ALIGN_LHS_ONLY, PT_ALIGN_RHS_ONLY));
}

}  // namespace
