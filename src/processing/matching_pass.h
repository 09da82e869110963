#pragma once

// The matching pass: reads raw points in logged order, pairs every end with its start, gives
// each phase its depth, outline number and children, and makes unaccounted wall-clock time
// visible by inserting generated phases into the raw list as it reads. Broken instrumentation
// does not stop it; it marks the rows concerned and sets _hasError.

#include <performance_tracer/processed_points.h>

#include <boost/make_shared.hpp>
#include <boost/unordered_map.hpp>

#include <cstddef>
#include <deque>
#include <string>
#include <utility>
#include <vector>

class PerformanceTracer;

/// The row of each raw point the pass took up, by identity; a phase's start and end map to
/// one row. The keys identify points of the list the pass ran over.
using PTPointMap =
    boost::unordered_map<const PTOrviaDataPoint*, boost::shared_ptr<PTDiagnosticInfo>>;

/// A wait longer than this (in wall-clock seconds, strictly) between an end and what follows,
/// or between two starts, becomes a generated row. It is the single-precision 0.1 widened to
/// double, 0.10000000149011612, as the host's instrumentation has always compared it.
inline constexpr double kGapThreshold = static_cast<double>(0.1f);

/// Points of the named groupings ("GLOBAL" for all). An empty list sets _hasError.
void ptMatchGroupings(PerformanceTracer& tracer, PTRawDataVector& raw,
                      const std::vector<std::string>& groupings, PTPointMap& map,
                      PTProcessedData& out);
/// Points of the wider classes in the named models ("GLOBAL" for all of them); a null list
/// means a snapshot of the raw store. No points at all set _hasError.
void ptMatchModels(PerformanceTracer& tracer, PTRawDataVector* raw,
                   const std::vector<std::string>& models, PTPointMap& map, PTProcessedData& out);
/// Points of one grouping, for the diagnostic report: totals stay 0 and phases left open are
/// marked without _hasError. True if any phase was left open, or if there were no points.
bool ptMatchDiagnostic(PerformanceTracer& tracer, PTRawDataVector* raw, const std::string& grouping,
                       PTPointMap& map, PTProcessedData& out);

/// The rows opened at start points, with their points, in list order.
using PTStartRows =
    std::vector<std::pair<const PTOrviaDataPoint*, boost::shared_ptr<PTDiagnosticInfo>>>;

/// The report pass of a selection (models when byModel, else groupings) without a point map:
/// the rows opened at start points are appended to startRows, which is all a selection keeps
/// of a pass. The pass's other rows are those that an end without a start opened, all of them
/// error rows; endRows, if given, receives their number.
void ptMatchRows(PerformanceTracer& tracer, PTRawDataVector& raw,
                 const std::vector<std::string>& names, bool byModel, PTStartRows& startRows,
                 PTProcessedData& out, std::size_t* endRows = nullptr);

/// State of one pass.
struct PTMatchState {
    struct OpenPhase {
        boost::shared_ptr<PTOrviaDataPoint> point;
        boost::shared_ptr<PTDiagnosticInfo> info;
        PTOrviaProcessedDataPoint& row() const { return *info->_point; }
    };

    /// A pass that numbers its rows gives each an outline number and its descendants; the
    /// diagnostic pass shows neither and leaves them out.
    PTMatchState(PerformanceTracer& tracer, PTPointMap* map, PTStartRows* startRows,
                 PTProcessedData& out, bool numbersRows = true)
        : tracer(tracer),
          map(map),
          startRows(startRows),
          out(out),
          outlines(numbersRows ? boost::make_shared<PTOutlineTable>() : nullptr) {}

    /// Whether the next point taken up is the first: the map is still empty, or, without a
    /// map, nothing has been taken up yet.
    bool isFirst() const { return map ? map->empty() : !tookAny; }
    /// Records the row of a point; a row opened at a start is also one of the start rows.
    void enter(const boost::shared_ptr<PTOrviaDataPoint>& point,
               const boost::shared_ptr<PTDiagnosticInfo>& row, bool opensRow) {
        tookAny = true;
        if (map) {
            (*map)[point.get()] = row;
        }
        if (startRows && opensRow) {
            startRows->emplace_back(point.get(), row);
        }
    }

    PerformanceTracer& tracer;
    PTPointMap* map;
    PTStartRows* startRows;
    PTProcessedData& out;
    bool tookAny = false;
    /// Rows opened at an end that had no start.
    std::size_t endRows = 0;
    /// Open phases; the front is the innermost.
    std::deque<OpenPhase> phaseStack;
    /// Phases started so far at each depth under the current parent.
    std::vector<std::int32_t> levelCounters;
    /// The outline numbers of the rows; null when rows are not numbered.
    boost::shared_ptr<PTOutlineTable> outlines;
    /// outlinePrefixes[d] is the entry of levelCounters[0 .. d] joined, for d below
    /// validPrefixes; a counter that changes makes its own and all deeper entries stale.
    std::vector<std::uint32_t> outlinePrefixes;
    std::size_t validPrefixes = 0;
    std::int32_t depth = 0;
    std::int32_t rowCounter = 1;
    bool lastWasStart = false;
    /// The last point the pass stood on.
    boost::shared_ptr<PTOrviaDataPoint> prev;
};

void ptOnFirstPoint(PTMatchState& state, const boost::shared_ptr<PTOrviaDataPoint>& cur);
void ptOnStartPoint(PTMatchState& state, const boost::shared_ptr<PTOrviaDataPoint>& cur);
void ptOnEndPoint(PTMatchState& state, const boost::shared_ptr<PTOrviaDataPoint>& cur);
