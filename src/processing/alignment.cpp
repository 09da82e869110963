// Alignment of two data sets by a longest common subsequence of their keys.
//
// The pairs are those of the classic table walk: fill a table of common-subsequence lengths,
// then walk back from the bottom-right corner, pairing equal keys, stepping up (a left-only
// row) where the cell above holds more than the cell to the left, and stepping left (a
// right-only row) otherwise, ties included. Three things make it cheap without changing a
// single pair:
//   - each row's key is made once and interned as an integer;
//   - the common tail of both lists is paired up front, as the walk always pairs it;
//   - the walk needs only which way each unequal cell steps, so the table keeps one bit per
//     cell and two rows of lengths, and the walk back is a loop.

#include <performance_tracer/comparison.h>
#include <performance_tracer/names.h>
#include <performance_tracer/tracer.h>

#include <pt_platform/ut.h>

#include <boost/unordered_map.hpp>

#include <algorithm>
#include <cstdint>

namespace {

/// One bit per cell of the table, rows of words, allocated through the host's allocator: set
/// where an unequal cell steps up to a left-only row.
class StepTable {
public:
    StepTable(std::size_t rows, std::size_t columns) : _rows(rows), _words((columns + 63) / 64) {
        _bits = static_cast<std::uint64_t**>(utCalloc(rows, sizeof(std::uint64_t*)));
        try {
            for (std::size_t i = 0; i < rows; ++i) {
                _bits[i] = static_cast<std::uint64_t*>(utCalloc(_words, sizeof(std::uint64_t)));
            }
        } catch (...) {
            release();
            throw;
        }
    }
    ~StepTable() { release(); }
    StepTable(const StepTable&) = delete;
    StepTable& operator=(const StepTable&) = delete;

    void setUp(std::size_t i, std::size_t j) { _bits[i][j / 64] |= std::uint64_t{1} << (j % 64); }
    bool stepsUp(std::size_t i, std::size_t j) const { return (_bits[i][j / 64] >> (j % 64)) & 1; }

private:
    void release() {
        for (std::size_t i = 0; i < _rows; ++i) {
            utFree(_bits[i]);
        }
        utFree(_bits);
    }

    std::size_t _rows;
    std::size_t _words;
    std::uint64_t** _bits;
};

/// Common-subsequence lengths of one row of the table; they never exceed the shorter list.
class LengthRow {
public:
    explicit LengthRow(std::size_t columns)
        : _lengths(static_cast<std::uint32_t*>(utCalloc(columns, sizeof(std::uint32_t)))) {}
    ~LengthRow() { utFree(_lengths); }
    LengthRow(const LengthRow&) = delete;
    LengthRow& operator=(const LengthRow&) = delete;

    std::uint32_t* data() { return _lengths; }

private:
    std::uint32_t* _lengths;
};

/// Interns keys as integers: equal keys, equal numbers.
class KeyInterner {
public:
    std::int32_t operator()(const std::string& key) {
        return _ids.try_emplace(key, static_cast<std::int32_t>(_ids.size())).first->second;
    }

private:
    boost::unordered_map<std::string, std::int32_t> _ids;
};

template <typename Row>
std::vector<PTAlignedPairOf<Row>> alignKeys(const std::vector<const Row*>& left,
                                            const std::vector<std::int32_t>& leftKeys,
                                            const std::vector<const Row*>& right,
                                            const std::vector<std::int32_t>& rightKeys) {
    std::size_t n = left.size();
    std::size_t m = right.size();
    std::size_t tail = 0;
    while (tail < n && tail < m && leftKeys[n - 1 - tail] == rightKeys[m - 1 - tail]) {
        ++tail;
    }
    n -= tail;
    m -= tail;

    StepTable steps(n + 1, m + 1);
    {
        LengthRow above(m + 1);
        LengthRow current(m + 1);
        std::uint32_t* prev = above.data();
        std::uint32_t* cur = current.data();
        for (std::size_t i = 1; i <= n; ++i) {
            const std::int32_t key = leftKeys[i - 1];
            cur[0] = 0;
            for (std::size_t j = 1; j <= m; ++j) {
                if (key == rightKeys[j - 1]) {
                    cur[j] = prev[j - 1] + 1;
                } else if (cur[j - 1] < prev[j]) {
                    cur[j] = prev[j];
                    steps.setUp(i, j);
                } else {
                    cur[j] = cur[j - 1];
                }
            }
            std::swap(prev, cur);
        }
    }

    std::vector<PTAlignedPairOf<Row>> pairs;
    pairs.reserve(n + m + tail);
    std::size_t i = n;
    std::size_t j = m;
    while (i > 0 || j > 0) {
        if (i > 0 && j > 0 && leftKeys[i - 1] == rightKeys[j - 1]) {
            --i, --j;
            pairs.push_back({left[i], right[j], PT_ALIGN_BOTH});
        } else if (j == 0 || (i > 0 && steps.stepsUp(i, j))) {
            --i;
            pairs.push_back({left[i], nullptr, PT_ALIGN_LHS_ONLY});
        } else {
            --j;
            pairs.push_back({nullptr, right[j], PT_ALIGN_RHS_ONLY});
        }
    }
    std::reverse(pairs.begin(), pairs.end());
    for (std::size_t t = 0; t < tail; ++t) {
        pairs.push_back({left[n + t], right[m + t], PT_ALIGN_BOTH});
    }
    return pairs;
}

}  // namespace

std::vector<PTAlignedPair> ptAlignRows(PerformanceTracer&, const PTDiagnosticInfoList& left,
                                       const PTDiagnosticInfoList& right) {
    KeyInterner intern;
    const auto prepare = [&](const PTDiagnosticInfoList& rows,
                             std::vector<const PTOrviaProcessedDataPoint*>& points,
                             std::vector<std::int32_t>& keys) {
        for (const auto& info : rows) {
            points.push_back(info->_point.get());
            keys.push_back(intern(info->_point->alignmentKey()));
        }
    };
    std::vector<const PTOrviaProcessedDataPoint*> leftRows, rightRows;
    std::vector<std::int32_t> leftKeys, rightKeys;
    prepare(left, leftRows, leftKeys);
    prepare(right, rightRows, rightKeys);
    return alignKeys(leftRows, leftKeys, rightRows, rightKeys);
}

std::vector<PTAlignedAggregatePair> ptAlignAggregates(PerformanceTracer& tracer,
                                                      const PTAggregateMap& left,
                                                      const PTAggregateMap& right) {
    KeyInterner intern;
    const auto prepare = [&](const PTAggregateMap& map,
                             std::vector<const PTAggregateDataPoint*>& points,
                             std::vector<std::int32_t>& keys) {
        for (const auto& [phase, aggregate] : map) {
            points.push_back(aggregate.get());
            keys.push_back(
                intern(ptDisplayPhaseName(tracer.idToName(PT_TABLE_PHASE, phase), true)));
        }
    };
    std::vector<const PTAggregateDataPoint*> leftRows, rightRows;
    std::vector<std::int32_t> leftKeys, rightKeys;
    prepare(left, leftRows, leftKeys);
    prepare(right, rightRows, rightKeys);
    return alignKeys(leftRows, leftKeys, rightRows, rightKeys);
}
