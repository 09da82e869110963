#pragma once

// Where the rows of a data set lie on a trace's timeline, in whole microseconds. A viewer
// rebuilds the nesting of one thread's events from their times alone, so the times must nest
// as the rows do. Start and end of each row are rounded once, and the duration is the
// difference of the two rounded ends, so that rounding cannot move a child past its parent's
// end; where the figures themselves disagree with the nesting (clocks that stepped backwards
// in a damaged file), a row is held inside its parent and after its previous sibling.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace pt::report {

class TraceTimeline {
public:
    /// The largest magnitude written: integers up to 2^53 read back exactly as doubles.
    static constexpr std::int64_t kLimit = std::int64_t{1} << 53;

    struct Span {
        std::int64_t begin;
        std::int64_t end;
    };

    /// Times count from origin, in seconds on the rows' own scale.
    explicit TraceTimeline(double origin) : _origin(std::isfinite(origin) ? origin : 0.0) {}

    /// The span of the next row in order of the starts, at the given depth.
    Span place(std::int32_t depth, double start, double elapsed) {
        while (!_open.empty() && _open.back().depth >= depth) {
            _open.pop_back();
        }
        std::int64_t& cursor = _open.empty() ? _topCursor : _open.back().cursor;
        const std::int64_t limit = _open.empty() ? kLimit : _open.back().end;
        const std::int64_t begin = std::clamp(micros(start - _origin), cursor, limit);
        const std::int64_t end = std::clamp(micros(start + elapsed - _origin), begin, limit);
        cursor = end;
        _open.push_back({depth, end, begin});
        return {begin, end};
    }

private:
    struct Open {
        std::int32_t depth;
        std::int64_t end;
        /// Where the next child may begin: the end of the last one placed.
        std::int64_t cursor;
    };

    static std::int64_t micros(double seconds) {
        const double value = seconds * 1e6;
        if (std::isnan(value)) {
            return 0;
        }
        const double limit = static_cast<double>(kLimit);
        return static_cast<std::int64_t>(std::llround(std::clamp(value, -limit, limit)));
    }

    double _origin;
    std::int64_t _topCursor = -kLimit;
    std::vector<Open> _open;
};

}  // namespace pt::report
