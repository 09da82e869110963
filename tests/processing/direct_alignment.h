#pragma once

// The alignment exactly as first described: an n+1 by m+1 table of 64-bit counters from the
// host's allocator, keys made anew from the name tables in every cell, and a recursive walk
// back. Tests compare the library's alignment with it; a benchmark measures both.

#include <performance_tracer/comparison.h>
#include <performance_tracer/names.h>
#include <performance_tracer/tracer.h>

#include <pt_platform/ut.h>

#include <cstdint>
#include <functional>
#include <vector>

namespace pt::testing {

template <typename Row>
class DirectAlignment {
public:
    using KeyOf = std::function<std::string(const Row&)>;

    DirectAlignment(std::vector<const Row*> left, std::vector<const Row*> right, KeyOf keyOf)
        : _left(std::move(left)), _right(std::move(right)), _keyOf(std::move(keyOf)) {}

    std::vector<PTAlignedPairOf<Row>> align() {
        const std::size_t n = _left.size(), m = _right.size();
        _table = static_cast<std::uint64_t**>(utMalloc((n + 1) * sizeof(std::uint64_t*)));
        for (std::size_t i = 0; i <= n; ++i) {
            _table[i] = static_cast<std::uint64_t*>(utCalloc(m + 1, sizeof(std::uint64_t)));
        }
        for (std::size_t i = 1; i <= n; ++i) {
            for (std::size_t j = 1; j <= m; ++j) {
                _table[i][j] = equal(i, j) ? _table[i - 1][j - 1] + 1
                                           : std::max(_table[i - 1][j], _table[i][j - 1]);
            }
        }
        std::vector<PTAlignedPairOf<Row>> pairs;
        walk(n, m, pairs);
        for (std::size_t i = 0; i <= n; ++i) {
            utFree(_table[i]);
        }
        utFree(_table);
        return pairs;
    }

private:
    bool equal(std::size_t i, std::size_t j) const {
        return _keyOf(*_left[i - 1]) == _keyOf(*_right[j - 1]);
    }

    void walk(std::size_t i, std::size_t j, std::vector<PTAlignedPairOf<Row>>& pairs) {
        if (i > 0 && j > 0) {
            if (equal(i, j)) {
                walk(i - 1, j - 1, pairs);
                pairs.push_back({_left[i - 1], _right[j - 1], PT_ALIGN_BOTH});
            } else if (_table[i][j - 1] < _table[i - 1][j]) {
                walk(i - 1, j, pairs);
                pairs.push_back({_left[i - 1], nullptr, PT_ALIGN_LHS_ONLY});
            } else {
                walk(i, j - 1, pairs);
                pairs.push_back({nullptr, _right[j - 1], PT_ALIGN_RHS_ONLY});
            }
        } else if (i == 0 && j > 0) {
            walk(0, j - 1, pairs);
            pairs.push_back({nullptr, _right[j - 1], PT_ALIGN_RHS_ONLY});
        } else if (j == 0 && i > 0) {
            walk(i - 1, 0, pairs);
            pairs.push_back({_left[i - 1], nullptr, PT_ALIGN_LHS_ONLY});
        }
    }

    std::vector<const Row*> _left, _right;
    KeyOf _keyOf;
    std::uint64_t** _table = nullptr;
};

inline std::vector<PTAlignedPair> directAlignRows(const PTDiagnosticInfoList& left,
                                                  const PTDiagnosticInfoList& right) {
    const auto points = [](const PTDiagnosticInfoList& rows) {
        std::vector<const PTOrviaProcessedDataPoint*> out;
        for (const auto& info : rows) {
            out.push_back(info->_point.get());
        }
        return out;
    };
    return DirectAlignment<PTOrviaProcessedDataPoint>(
               points(left), points(right),
               [](const PTOrviaProcessedDataPoint& row) { return row.alignmentKey(); })
        .align();
}

}  // namespace pt::testing
