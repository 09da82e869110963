#include "matching_pass.h"

#include <performance_tracer/constants.h>
#include <performance_tracer/names.h>
#include <performance_tracer/tracer.h>

#include <boost/make_shared.hpp>
#include <boost/unordered_set.hpp>

#include <algorithm>
#include <optional>

#include "core/name_table.h"

namespace {

using PointPtr = boost::shared_ptr<PTOrviaDataPoint>;

// ---- Which points a pass takes up ----

/// The filter of one pass variant. Names are resolved to ids once, so that a point costs a
/// hash lookup; the result is what comparing the point's name with the list would give.
class PassFilter {
public:
    enum class Kind { Groupings, Models, Diagnostic };

    PassFilter(PerformanceTracer& tracer, Kind kind, const std::vector<std::string>& names)
        : _kind(kind) {
        // The id of "Unaccounted Phase" as the pass starts; a name that is unknown now matches
        // no point, even if a gap adds it later.
        const std::uint32_t unaccounted =
            tracer.nameToID(PT_TABLE_PHASE, std::string(pt::kUnaccountedPhase), false);
        if (unaccounted != PT_NO_ID) {
            _unaccountedID = static_cast<std::int32_t>(unaccounted);
        }
        const std::uint32_t table = kind == Kind::Models ? PT_TABLE_MODEL : PT_TABLE_GROUPING;
        _table = tracer.nameTable(table);
        for (const std::string& name : names) {
            _all = _all || name == pt::kGlobalGrouping;
            const std::uint32_t id = tracer.nameToID(table, name, false);
            if (kind == Kind::Diagnostic || id != PT_NO_ID) {
                _ids.insert(static_cast<std::int32_t>(id));  // the diagnostic pass matches -1 too
            }
            _emptyNameListed = _emptyNameListed || name.empty();
        }
    }

    bool accepts(const PTOrviaDataPoint& point, std::int32_t phaseID) const {
        if (_kind == Kind::Models && point._pointType == 0) {
            return false;
        }
        if (_all || (_unaccountedID && phaseID == *_unaccountedID)) {
            return true;
        }
        std::int32_t id = point._groupingID;
        if (_kind == Kind::Models) {
            const auto* modelPoint = dynamic_cast<const PTKestruneDataPoint*>(&point);
            id = modelPoint ? modelPoint->_modelID : -1;
        }
        if (_ids.count(id) != 0) {
            return true;
        }
        // An id without a name reads as the empty name.
        return _kind != Kind::Diagnostic && _emptyNameListed && !(_table && _table->find(id));
    }

    bool accepts(const PTOrviaDataPoint& point) const { return accepts(point, point._phaseID); }

private:
    Kind _kind;
    bool _all = false;
    bool _emptyNameListed = false;
    std::optional<std::int32_t> _unaccountedID;
    boost::unordered_set<std::int32_t> _ids;
    const PTNameTable* _table = nullptr;
};

// ---- How generated points enter the list ----

/// Rebuilds the list as the pass walks it: points move to a new vector, generated pairs are
/// placed ahead of the point they precede, and the new vector replaces the list at the end.
/// The list comes out as inserting each pair in place would leave it, but a pass stays linear
/// however many gaps it fills.
class StreamedList {
public:
    explicit StreamedList(PTRawDataVector& list) : _list(list) { _out.reserve(list.size()); }

    bool atEnd() const { return _pending.empty() && _next == _list.size(); }
    const PointPtr& current() const { return _pending.empty() ? _list[_next] : _pending.back(); }
    /// The point before the current one.
    const PointPtr& previous() const { return _out.back(); }

    void advance() {
        if (_pending.empty()) {
            _out.push_back(std::move(_list[_next++]));
        } else {
            _out.push_back(std::move(_pending.back()));
            _pending.pop_back();
        }
    }

    /// Places g1 and g2 before the current point; g1 becomes current.
    void insertBefore(PointPtr g1, PointPtr g2) {
        if (_pending.empty()) {
            _pending.push_back(std::move(_list[_next++]));
        }
        _pending.push_back(std::move(g2));
        _pending.push_back(std::move(g1));
    }

    void finish() { _list.swap(_out); }

private:
    PTRawDataVector& _list;
    PTRawDataVector _out;
    std::size_t _next = 0;
    /// Points still to be walked ahead of _list[_next], the next one at the back.
    std::vector<PointPtr> _pending;
};

// ---- The loop ----

bool hasDetailedMem(const PTOrviaDataPoint& point) {
    return point._detailedMem && point._detailedMem->freeMem != 0.0;  // NaN counts as not 0
}

boost::shared_ptr<PTDiagnosticInfo> newRow(const PointPtr& point, std::int32_t row,
                                           std::int32_t depth) {
    return boost::make_shared<PTDiagnosticInfo>(point, row, depth);
}

/// Makes the two points of a gap row before cur, copies of the innermost open phase carrying
/// prev's and cur's clocks and memory, and inserts them. Nothing is inserted, and false is
/// answered, when no phase is open or when the pass's own filter would not take the points up:
/// inserting them then would only bring the pass back to the same gap.
bool ptInsertGapPoints(PTMatchState& state, StreamedList& list, const PassFilter& filter,
                       const PointPtr& prev, const PointPtr& cur, const PointPtr& top) {
    if (!top) {
        return false;
    }
    PerformanceTracer& tracer = state.tracer;
    PointPtr g1 = top->clone();
    PointPtr g2 = top->clone();
    std::string name = prev->_isPhaseStart && cur->_isPhaseStart
                           ? tracer.idToName(PT_TABLE_PHASE, top->_phaseID) + "_self"
                           : tracer.idToName(PT_TABLE_PHASE, prev->_phaseID) + "_post";
    if (!prev->_basicMem) {
        // Host-language stand-ins, whatever the classes of prev and cur.
        g1 = boost::make_shared<PTOrviaDataPoint>(static_cast<const PTOrviaDataPoint&>(*prev));
        g2 = boost::make_shared<PTOrviaDataPoint>(static_cast<const PTOrviaDataPoint&>(*cur));
        g1->_pointType = g2->_pointType = 0;
        g1->_groupingID = g2->_groupingID = -1;
        name = pt::kUnaccountedPhase;
    } else {
        g1->_basicMem = boost::make_shared<pt::BasicMemStats>(*prev->_basicMem);
        if (prev->_detailedMem) {
            g1->_detailedMem = boost::make_shared<pt::DetailedMemStats>(*prev->_detailedMem);
        }
        g1->_wcTime = prev->_wcTime;
        g1->_cpuTime = prev->_cpuTime;
        if (cur->_basicMem) {
            g2->_basicMem = boost::make_shared<pt::BasicMemStats>(*cur->_basicMem);
        }
        if (cur->_detailedMem) {
            g2->_detailedMem = boost::make_shared<pt::DetailedMemStats>(*cur->_detailedMem);
        }
        g2->_wcTime = cur->_wcTime;
        g2->_cpuTime = cur->_cpuTime;
    }
    g1->_isPhaseStart = true;
    g2->_isPhaseStart = false;
    g1->_isGenerated = g2->_isGenerated = true;

    // A name the table does not hold yet cannot be the filter's "Unaccounted Phase".
    const std::uint32_t known = tracer.nameToID(PT_TABLE_PHASE, name, false);
    const auto knownID = known == PT_NO_ID ? -1 : static_cast<std::int32_t>(known);
    if (!filter.accepts(*g1, knownID) || !filter.accepts(*g2, knownID)) {
        return false;
    }
    g1->_phaseID = g2->_phaseID =
        static_cast<std::int32_t>(tracer.nameToID(PT_TABLE_PHASE, name, true));
    list.insertBefore(std::move(g1), std::move(g2));
    return true;
}

/// Whether the wait before cur is shown as a generated row: when it is above the threshold
/// and lies between an end and what follows or between two starts, never between a start and
/// its own end, which already holds that time. It needs an open phase to copy.
bool isGap(const PTMatchState& state, const PTOrviaDataPoint& cur) {
    const double dt = cur._wcTime - state.prev->_wcTime;
    return dt > kGapThreshold && !(state.lastWasStart && !cur._isPhaseStart) &&
           !state.phaseStack.empty();
}

void walk(PTMatchState& state, StreamedList& list, const PassFilter& filter) {
    while (!list.atEnd()) {
        const PointPtr cur = list.current();
        if (!filter.accepts(*cur)) {
            list.advance();  // a point that is not taken up changes nothing, not even prev
            continue;
        }
        if (state.isFirst()) {
            ptOnFirstPoint(state, cur);
        } else if (isGap(state, *cur) && ptInsertGapPoints(state, list, filter, state.prev, cur,
                                                           state.phaseStack.front().point)) {
            // The walk goes on at the generated start, which follows the point before it.
            state.prev = list.previous();
            state.out._hasDetailedMem = hasDetailedMem(*state.prev);
            continue;
        } else if (cur->_isPhaseStart) {
            ptOnStartPoint(state, cur);
        } else {
            ptOnEndPoint(state, cur);
        }
        state.prev = cur;
        state.out._hasDetailedMem = hasDetailedMem(*cur);
        list.advance();
    }
    list.finish();
}

/// Runs the loop over the list; the phases that remain open are left on the state.
void runPass(PTMatchState& state, PTRawDataVector& raw, const PassFilter& filter) {
    StreamedList list(raw);
    walk(state, list, filter);
}

/// Grows the counters so that depth indexes one of them; only a first point that is an end
/// can leave depth more than one past the last.
void ensureLevel(PTMatchState& state) {
    while (static_cast<std::size_t>(state.depth) >= state.levelCounters.size()) {
        state.levelCounters.push_back(0);
        ++state.out._levelCount;
    }
}

/// Counts a phase started at the current depth.
void countStart(PTMatchState& state) {
    const auto level = static_cast<std::size_t>(state.depth);
    ++state.levelCounters[level];
    state.validPrefixes = std::min(state.validPrefixes, level);
}

/// The next phase at the current depth numbers its children from 1 again.
void restartChildren(PTMatchState& state) {
    const auto level = static_cast<std::size_t>(state.depth);
    state.levelCounters[level] = 0;
    state.validPrefixes = std::min(state.validPrefixes, level);
}

/// The outline number of the phase just started (depth already counts it): levelCounters[0]
/// to levelCounters[n-1] joined by ".", n the smaller of depth and the number of counters.
/// Each number is one entry that extends the number of its parent level, so a row costs the
/// same at any depth; only the entries of levels whose counters changed are made anew.
PTOutlineNumber outlineNumber(PTMatchState& state) {
    const std::size_t n =
        std::min(static_cast<std::size_t>(std::max(state.depth, 0)), state.levelCounters.size());
    if (n == 0) {
        return {};
    }
    if (state.outlinePrefixes.size() < n) {
        state.outlinePrefixes.resize(n);
    }
    for (std::size_t level = state.validPrefixes; level < n; ++level) {
        const std::uint32_t prefix =
            level == 0 ? PTOutlineTable::kNoPrefix : state.outlinePrefixes[level - 1];
        state.outlinePrefixes[level] = state.outlines->add(prefix, state.levelCounters[level]);
    }
    state.validPrefixes = std::max(state.validPrefixes, n);
    return PTOutlineNumber(state.outlines, state.outlinePrefixes[n - 1]);
}

/// A start has made its row: it gets its outline number when the pass numbers rows.
void numberRow(PTMatchState& state, PTOrviaProcessedDataPoint& row) {
    if (state.outlines) {
        row.HTMLPhaseNumString = outlineNumber(state);
    }
}

/// An open phase is done with (matched, or left open at the end): its descendants are the
/// rows started since its own, which are consecutive.
void closeDescendants(const PTMatchState& state, PTOrviaProcessedDataPoint& row) {
    if (state.outlines) {
        // The row took its number when the counter passed it, so the count is never negative.
        const std::int32_t first = row.HTMLRowNumber + 1;
        row.childrenIDs = PTRowRun(first, static_cast<std::size_t>(state.rowCounter - first));
    }
}

/// Marks what is left open; the report passes also count it as an error.
bool closeOpenPhases(PTMatchState& state, bool isError) {
    const bool leftOpen = !state.phaseStack.empty();
    for (const auto& open : state.phaseStack) {
        open.row().errorRow = true;
        closeDescendants(state, open.row());
    }
    state.phaseStack.clear();
    state.out._hasError = state.out._hasError || (isError && leftOpen);
    return leftOpen;
}

void finishReportPass(PTMatchState& state) {
    state.out._totalWC = state.out._wcSum;
    state.out._totalCPU = state.out._cpuSum;
    closeOpenPhases(state, true);
}

}  // namespace

// ---- The steps ----

void ptOnFirstPoint(PTMatchState& state, const PointPtr& cur) {
    PTProcessedData& out = state.out;
    if (cur->_isPhaseStart) {
        state.levelCounters.push_back(0);
        ++out._levelCount;
        countStart(state);
        auto row = newRow(cur, state.rowCounter++, state.depth++);
        numberRow(state, *row->_point);
        state.phaseStack.push_front({cur, row});
        state.enter(cur, row, true);
        out._baseWC = cur->_wcTime;
        out._baseCPU = cur->_cpuTime;
        state.lastWasStart = true;
    } else {
        // An end first: the depth is raised as if its start had been seen, and the row number
        // is used again by the next row.
        auto row = newRow(cur, state.rowCounter, state.depth++);
        row->_point->errorRow = true;
        out._hasError = true;
        state.enter(cur, row, false);
        ++state.endRows;
        state.lastWasStart = false;
    }
}

void ptOnStartPoint(PTMatchState& state, const PointPtr& cur) {
    // Only the parent counts its direct children here; every open phase gets the new row as a
    // descendant when it closes, since its descendants are the rows started while it is open.
    if (!state.phaseStack.empty()) {
        ++state.phaseStack.front().row().numChildren;
    }
    ensureLevel(state);
    countStart(state);
    auto row = newRow(cur, state.rowCounter++, state.depth++);
    if (!state.phaseStack.empty()) {
        row->_point->_parentPhaseID = state.phaseStack.front().point->_phaseID;
    }
    numberRow(state, *row->_point);
    state.phaseStack.push_front({cur, row});
    state.enter(cur, row, true);
    state.lastWasStart = true;
}

void ptOnEndPoint(PTMatchState& state, const PointPtr& cur) {
    PTProcessedData& out = state.out;
    state.lastWasStart = false;
    if (state.phaseStack.empty()) {
        auto row = newRow(cur, state.rowCounter++, state.depth);
        row->_point->errorRow = true;
        state.enter(cur, row, false);
        ++state.endRows;
        out._hasError = true;
        return;
    }
    const PTMatchState::OpenPhase top = state.phaseStack.front();
    PTOrviaProcessedDataPoint& row = top.row();
    if (!top.point->isSamePoint(cur)) {
        // No search further down: the innermost phase stays open, and every end that does not
        // fit it marks it again.
        row.errorRow = true;
        state.enter(cur, top.info, false);
        out._hasError = true;
        return;
    }

    row.wcStartTime = top.point->_wcTime - out._baseWC;
    row.wcElapsedTime = cur->_wcTime - top.point->_wcTime;
    row.cpuStartTime = top.point->_cpuTime - out._baseCPU;
    row.cpuElapsedTime = cur->_cpuTime - top.point->_cpuTime;
    // The row's records are its own, so the end figures are written over them in place.
    if (cur->_basicMem) {
        *row._basicMem = pt::BasicProcessedMemStats(cur->_basicMem);
        row._basicMem->setDeltas(top.point->_basicMem);
        if (cur->_detailedMem) {
            *row._detailedMem = pt::DetailedProcessedMemStats(cur->_detailedMem);
            row._detailedMem->setDeltas(top.point->_detailedMem);
            if (row.numChildren > 0 && top.point->_detailedMem) {
                row._startDetailedMem =
                    boost::make_shared<pt::DetailedMemStats>(*top.point->_detailedMem);
                row._startDetailedMem->toMegabytes();
            }
        }
    }
    closeDescendants(state, row);
    state.enter(cur, top.info, false);
    state.phaseStack.pop_front();

    ensureLevel(state);
    restartChildren(state);
    if (state.depth == 1) {
        out._wcSum += row.wcElapsedTime;
        out._cpuSum += row.cpuElapsedTime;
    }
    --state.depth;
}

// ---- The three variants ----

namespace {

/// A report pass: an empty list is an error, and phases left open are errors.
void matchReport(PerformanceTracer& tracer, PTRawDataVector& raw, const PassFilter& filter,
                 PTPointMap* map, PTStartRows* startRows, PTProcessedData& out,
                 std::size_t* endRows = nullptr) {
    if (raw.empty()) {
        out._hasError = true;
        return;
    }
    PTMatchState state(tracer, map, startRows, out);
    runPass(state, raw, filter);
    finishReportPass(state);
    if (endRows) {
        *endRows = state.endRows;
    }
}

/// The snapshot that a null list stands for; null if there is no store.
PTRawDataVector* listOrSnapshot(PerformanceTracer& tracer, PTRawDataVector* raw,
                                std::unique_ptr<PTRawDataVector>& snapshot) {
    if (raw) {
        return raw;
    }
    snapshot = tracer.snapshotRawData();
    return snapshot.get();
}

}  // namespace

void ptMatchGroupings(PerformanceTracer& tracer, PTRawDataVector& raw,
                      const std::vector<std::string>& groupings, PTPointMap& map,
                      PTProcessedData& out) {
    const PassFilter filter(tracer, PassFilter::Kind::Groupings, groupings);
    matchReport(tracer, raw, filter, &map, nullptr, out);
}

void ptMatchModels(PerformanceTracer& tracer, PTRawDataVector* raw,
                   const std::vector<std::string>& models, PTPointMap& map, PTProcessedData& out) {
    std::unique_ptr<PTRawDataVector> snapshot;
    raw = listOrSnapshot(tracer, raw, snapshot);
    if (!raw) {
        out._hasError = true;
        return;
    }
    const PassFilter filter(tracer, PassFilter::Kind::Models, models);
    matchReport(tracer, *raw, filter, &map, nullptr, out);
}

void ptMatchRows(PerformanceTracer& tracer, PTRawDataVector& raw,
                 const std::vector<std::string>& names, bool byModel, PTStartRows& startRows,
                 PTProcessedData& out, std::size_t* endRows) {
    const PassFilter filter(
        tracer, byModel ? PassFilter::Kind::Models : PassFilter::Kind::Groupings, names);
    matchReport(tracer, raw, filter, nullptr, &startRows, out, endRows);
}

bool ptMatchDiagnostic(PerformanceTracer& tracer, PTRawDataVector* raw, const std::string& grouping,
                       PTPointMap& map, PTProcessedData& out) {
    std::unique_ptr<PTRawDataVector> snapshot;
    raw = listOrSnapshot(tracer, raw, snapshot);
    if (!raw || raw->empty()) {
        return true;
    }
    PTMatchState state(tracer, &map, nullptr, out, false);
    runPass(state, *raw, PassFilter(tracer, PassFilter::Kind::Diagnostic, {grouping}));
    out._totalWC = 0.0;
    out._totalCPU = 0.0;
    return closeOpenPhases(state, false);
}
