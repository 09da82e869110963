#pragma once

// The matching pass as first described, step by step: the filter compares names, rows are
// found through the point map, generated points are inserted into the list one pair at a time
// and the loop steps back to them. It keeps the two departures that make every pass end
// (nothing is inserted without an open phase, nor what the pass's own filter would skip) and
// the safe growth of the level counters, and leaves outline numbers and descendants out of the
// diagnostic pass, whose report shows neither. Tests compare the library's pass with it.

#include <performance_tracer/constants.h>
#include <performance_tracer/names.h>
#include <performance_tracer/processed_points.h>
#include <performance_tracer/tracer.h>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <deque>
#include <map>
#include <stdexcept>
#include <string>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace pt::testing {

class DirectMatchingPass {
public:
    enum class Variant { Groupings, Models, Diagnostic };
    using Map = std::unordered_map<const PTOrviaDataPoint*, boost::shared_ptr<PTDiagnosticInfo>>;
    using PointPtr = boost::shared_ptr<PTOrviaDataPoint>;

    DirectMatchingPass(Variant variant, std::vector<std::string> names)
        : _t(*ptTracer()), _variant(variant), _names(std::move(names)) {}

    /// Runs over the list, which receives the generated points.
    void run(PTRawDataVector& raw) {
        const std::uint32_t unaccounted =
            _t.nameToID(PT_TABLE_PHASE, std::string(kUnaccountedPhase), false);
        _unaccountedKnown = unaccounted != PT_NO_ID;
        _unaccounted = static_cast<std::int32_t>(unaccounted);
        _diagnosticGrouping =
            static_cast<std::int32_t>(_t.nameToID(PT_TABLE_GROUPING, _names.at(0), false));
        for (std::size_t i = 0; i < raw.size();) {
            const PointPtr cur = raw[i];
            if (!accepted(*cur)) {
                ++i;
                continue;
            }
            if (map.empty()) {
                first(cur);
            } else {
                const bool gap = cur->_wcTime - _prev->_wcTime > static_cast<double>(0.1f) &&
                                 !(_lastWasStart && !cur->_isPhaseStart) && !_stack.empty();
                if (gap && insertGap(raw, cur, i)) {
                    _prev = raw[i - 1];
                    out._hasDetailedMem = hasDetailedMem(*raw[i - 1]);
                    continue;
                }
                if (cur->_isPhaseStart) {
                    start(cur);
                } else {
                    end(cur);
                }
            }
            _prev = cur;
            out._hasDetailedMem = hasDetailedMem(*cur);
            ++i;
        }
        const bool report = _variant != Variant::Diagnostic;
        out._totalWC = report ? out._wcSum : 0.0;
        out._totalCPU = report ? out._cpuSum : 0.0;
        for (const PointPtr& open : _stack) {
            rowOf(open).errorRow = true;
            out._hasError = out._hasError || report;
        }
        leftOpen = !_stack.empty();
        // The library keeps descendants as a run of row numbers, which they must form.
        for (auto& [row, descendants] : _descendants) {
            for (std::size_t i = 1; i < descendants.size(); ++i) {
                if (descendants[i] != descendants[0] + static_cast<std::int32_t>(i)) {
                    throw std::logic_error("descendants that are not consecutive rows");
                }
            }
            row->childrenIDs = PTRowRun(descendants.at(0), descendants.size());
        }
    }

    /// The rows of the start points in list order, as a selection collects them.
    PTDiagnosticInfoList startRows(const PTRawDataVector& raw) const {
        PTDiagnosticInfoList rows;
        for (const PointPtr& point : raw) {
            if (const auto row = map.find(point.get()); point->_isPhaseStart && row != map.end()) {
                rows.push_back(row->second);
            }
        }
        return rows;
    }

    Map map;
    PTProcessedData out;
    bool leftOpen = false;

private:
    bool listed(const std::string& name) const {
        return std::find(_names.begin(), _names.end(), name) != _names.end();
    }

    bool accepted(const PTOrviaDataPoint& p) const {
        const bool unaccounted = _unaccountedKnown && p._phaseID == _unaccounted;
        switch (_variant) {
            case Variant::Groupings:
                return listed(_t.idToName(PT_TABLE_GROUPING, p._groupingID)) || unaccounted ||
                       listed("GLOBAL");
            case Variant::Models: {
                if (p._pointType == 0) {
                    return false;
                }
                const auto* model = dynamic_cast<const PTKestruneDataPoint*>(&p);
                return listed(model ? _t.idToName(PT_TABLE_MODEL, model->_modelID) : "") ||
                       unaccounted || listed("GLOBAL");
            }
            case Variant::Diagnostic:
                return p._groupingID == _diagnosticGrouping || unaccounted || _names[0] == "GLOBAL";
        }
        return false;
    }

    bool numbers() const { return _variant != Variant::Diagnostic; }

    std::string number() const {
        const std::size_t n = std::min<std::size_t>(std::max(_depth, 0), _levels.size());
        std::string text;
        for (std::size_t i = 0; i < n; ++i) {
            text += (i ? "." : "") + std::to_string(_levels[i]);
        }
        return text;
    }

    void grow() {
        while (static_cast<std::size_t>(_depth) >= _levels.size()) {
            _levels.push_back(0);
            ++out._levelCount;
        }
    }

    PTOrviaProcessedDataPoint& rowOf(const PointPtr& p) { return *map.at(p.get())->_point; }

    void first(const PointPtr& cur) {
        if (cur->_isPhaseStart) {
            start(cur);
            std::tie(out._baseWC, out._baseCPU) = std::tie(cur->_wcTime, cur->_cpuTime);
            return;
        }
        auto row = boost::make_shared<PTDiagnosticInfo>(cur, _rowCounter, _depth++);
        row->_point->errorRow = true;
        out._hasError = true;
        map[cur.get()] = row;
        _lastWasStart = false;
    }

    void start(const PointPtr& cur) {
        if (!_stack.empty()) {
            ++rowOf(_stack.front()).numChildren;
            for (const PointPtr& open : _stack) {
                if (numbers()) {
                    _descendants[&rowOf(open)].push_back(_rowCounter);
                }
            }
        }
        grow();
        ++_levels[static_cast<std::size_t>(_depth)];
        auto row = boost::make_shared<PTDiagnosticInfo>(cur, _rowCounter++, _depth++);
        if (!_stack.empty()) {
            row->_point->_parentPhaseID = _stack.front()->_phaseID;
        }
        _stack.push_front(cur);
        row->_point->HTMLPhaseNumString = numbers() ? number() : std::string();
        map[cur.get()] = row;
        _lastWasStart = true;
    }

    void end(const PointPtr& cur) {
        _lastWasStart = false;
        if (_stack.empty()) {
            auto row = boost::make_shared<PTDiagnosticInfo>(cur, _rowCounter++, _depth);
            row->_point->errorRow = true;
            map[cur.get()] = row;
            out._hasError = true;
            return;
        }
        const PointPtr top = _stack.front();
        const auto info = map.at(top.get());
        PTOrviaProcessedDataPoint& r = *info->_point;
        if (!top->isSamePoint(cur)) {
            r.errorRow = true;
            map[cur.get()] = info;
            out._hasError = true;
            return;
        }
        r.wcStartTime = top->_wcTime - out._baseWC;
        r.wcElapsedTime = cur->_wcTime - top->_wcTime;
        r.cpuStartTime = top->_cpuTime - out._baseCPU;
        r.cpuElapsedTime = cur->_cpuTime - top->_cpuTime;
        if (cur->_basicMem) {
            r._basicMem = boost::make_shared<pt::BasicProcessedMemStats>(cur->_basicMem);
            r._basicMem->setDeltas(top->_basicMem);
            if (cur->_detailedMem) {
                r._detailedMem =
                    boost::make_shared<pt::DetailedProcessedMemStats>(cur->_detailedMem);
                r._detailedMem->setDeltas(top->_detailedMem);
                if (r.numChildren > 0 && top->_detailedMem) {
                    r._startDetailedMem =
                        boost::make_shared<pt::DetailedMemStats>(*top->_detailedMem);
                    r._startDetailedMem->toMegabytes();
                }
            }
        }
        map[cur.get()] = info;
        _stack.pop_front();
        grow();
        _levels[static_cast<std::size_t>(_depth)] = 0;
        if (_depth == 1) {
            out._wcSum += r.wcElapsedTime;
            out._cpuSum += r.cpuElapsedTime;
        }
        --_depth;
    }

    bool insertGap(PTRawDataVector& raw, const PointPtr& cur, std::size_t i) {
        const PointPtr top = _stack.front();
        PointPtr g1 = top->clone(), g2 = top->clone();
        std::string name = _prev->_isPhaseStart && cur->_isPhaseStart
                               ? _t.idToName(PT_TABLE_PHASE, top->_phaseID) + "_self"
                               : _t.idToName(PT_TABLE_PHASE, _prev->_phaseID) + "_post";
        if (!_prev->_basicMem) {
            g1 = boost::make_shared<PTOrviaDataPoint>(static_cast<const PTOrviaDataPoint&>(*_prev));
            g2 = boost::make_shared<PTOrviaDataPoint>(static_cast<const PTOrviaDataPoint&>(*cur));
            g1->_pointType = g2->_pointType = 0;
            g1->_groupingID = g2->_groupingID = -1;
            name = std::string(kUnaccountedPhase);
        } else {
            g1->_basicMem = boost::make_shared<pt::BasicMemStats>(*_prev->_basicMem);
            if (_prev->_detailedMem) {
                g1->_detailedMem = boost::make_shared<pt::DetailedMemStats>(*_prev->_detailedMem);
            }
            std::tie(g1->_wcTime, g1->_cpuTime) = std::tie(_prev->_wcTime, _prev->_cpuTime);
            if (cur->_basicMem) {
                g2->_basicMem = boost::make_shared<pt::BasicMemStats>(*cur->_basicMem);
            }
            if (cur->_detailedMem) {
                g2->_detailedMem = boost::make_shared<pt::DetailedMemStats>(*cur->_detailedMem);
            }
            std::tie(g2->_wcTime, g2->_cpuTime) = std::tie(cur->_wcTime, cur->_cpuTime);
        }
        g1->_isPhaseStart = true;
        g2->_isPhaseStart = false;
        g1->_isGenerated = g2->_isGenerated = true;
        g1->_phaseID = g2->_phaseID =
            static_cast<std::int32_t>(_t.nameToID(PT_TABLE_PHASE, name, true));
        if (!accepted(*g1) || !accepted(*g2)) {
            return false;
        }
        raw.insert(raw.begin() + static_cast<std::ptrdiff_t>(i), {g1, g2});
        return true;
    }

    static bool hasDetailedMem(const PTOrviaDataPoint& p) {
        return p._detailedMem && p._detailedMem->freeMem != 0.0;
    }

    PerformanceTracer& _t;
    Variant _variant;
    std::vector<std::string> _names;
    bool _unaccountedKnown = false, _lastWasStart = false;
    std::int32_t _unaccounted = -1, _diagnosticGrouping = -1, _depth = 0, _rowCounter = 1;
    std::deque<PointPtr> _stack;
    std::vector<std::int32_t> _levels;
    PointPtr _prev;
    std::map<PTOrviaProcessedDataPoint*, std::vector<std::int32_t>> _descendants;
};

}  // namespace pt::testing
