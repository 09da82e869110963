#pragma once

// Phases as scopes: a guard logs the start of a phase when it is made and the end when it goes
// out of scope, on every way out, unwinding included.
//
//     void assemble() {
//         PT_PHASE("Solver", "assemble");          // a host-language phase
//         ...
//     }
//
// A guard logs its end only if its start was recorded, so a grouping that is enabled while
// the scope runs never leaves an end without a start. (A grouping disabled while the scope
// runs drops the end, as any logging call of a disabled grouping does, and the run shows a
// start without an end.) While nothing is enabled, a guard costs one enable test when it is
// made and one flag test when it ends; names are copied only for a phase that is recorded.

#include <performance_tracer/groupings.h>
#include <performance_tracer/logging.h>
#include <performance_tracer/names.h>
#include <performance_tracer/tracer.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace pt {

/// The grouping a guard logs under, by id. A name is looked up in the grouping table, and only
/// a name the table does not know yet is added, as a leaf grouping (ptAddGrouping). The id of
/// a grouping with sub-groupings serves as well as any: a phase logged with it records while
/// the grouping itself is enabled.
class GroupingRef {
public:
    GroupingRef(std::int32_t id) noexcept : _id(id) {}  // NOLINT: ids convert implicitly
    GroupingRef(const std::string& name) : _id(resolve(name)) {}
    GroupingRef(const char* name) : _id(resolve(name)) {}

    std::int32_t id() const noexcept { return _id; }

private:
    static std::int32_t resolve(const std::string& name) {
        const std::uint32_t known = ptTracer()->nameToID(PT_TABLE_GROUPING, name, false);
        return known != PT_NO_ID ? static_cast<std::int32_t>(known) : ptAddGrouping(name);
    }

    std::int32_t _id;
};

namespace detail {

/// Copies a guard's names, unless that fails; the measured code never sees a failure.
template <typename... Views>
bool copyNames(std::string* targets, Views... views) noexcept {
    try {
        ((targets++)->assign(views), ...);
    } catch (...) {
        return false;
    }
    return true;
}

}  // namespace detail

/// A host-language phase (a point of the class PTOrviaDataPoint).
class OrviaPhase {
public:
    OrviaPhase(GroupingRef grouping, std::string_view phase) noexcept : _grouping(grouping.id()) {
        if (ptIsTracerEnabled(_grouping) && detail::copyNames(&_phase, phase)) {
            _started = ptLogOrviaData(_grouping, _phase, true);
        }
    }
    ~OrviaPhase() {
        if (_started) {
            ptLogOrviaData(_grouping, _phase, false);
        }
    }
    OrviaPhase(const OrviaPhase&) = delete;
    OrviaPhase& operator=(const OrviaPhase&) = delete;

    /// Whether the start was recorded, and so the end will be.
    bool recorded() const noexcept { return _started; }

private:
    std::int32_t _grouping;
    bool _started = false;
    std::string _phase;
};

/// A phase of a block-diagram model (a point of the class PTKestruneDataPoint).
class KestrunePhase {
public:
    KestrunePhase(GroupingRef grouping, std::string_view model, std::string_view target,
                  std::string_view phase) noexcept
        : _grouping(grouping.id()) {
        if (ptIsTracerEnabled(_grouping) && detail::copyNames(_names, model, target, phase)) {
            _started = ptLogKestruneData(_grouping, _names[0], _names[1], _names[2], true);
        }
    }
    ~KestrunePhase() {
        if (_started) {
            ptLogKestruneData(_grouping, _names[0], _names[1], _names[2], false);
        }
    }
    KestrunePhase(const KestrunePhase&) = delete;
    KestrunePhase& operator=(const KestrunePhase&) = delete;

    bool recorded() const noexcept { return _started; }

private:
    std::int32_t _grouping;
    bool _started = false;
    std::string _names[3];  // model, target, phase
};

/// A phase of a state chart (a point of the class PTYlvaneDataPoint).
class YlvanePhase {
public:
    YlvanePhase(GroupingRef grouping, std::string_view model, std::string_view target,
                std::string_view machine, std::string_view chart, std::string_view phase) noexcept
        : _grouping(grouping.id()) {
        if (ptIsTracerEnabled(_grouping) &&
            detail::copyNames(_names, model, target, machine, chart, phase)) {
            _started = log(true);
        }
    }
    ~YlvanePhase() {
        if (_started) {
            log(false);
        }
    }
    YlvanePhase(const YlvanePhase&) = delete;
    YlvanePhase& operator=(const YlvanePhase&) = delete;

    bool recorded() const noexcept { return _started; }

private:
    bool log(bool isStart) const noexcept {
        return ptLogYlvaneData(_grouping, _names[0], _names[1], _names[2], _names[3], _names[4],
                               isStart);
    }

    std::int32_t _grouping;
    bool _started = false;
    std::string _names[5];  // model, target, machine, chart, phase
};

}  // namespace pt

#define PT_SCOPE_CONCAT_(a, b) a##b
#define PT_SCOPE_CONCAT(a, b) PT_SCOPE_CONCAT_(a, b)

/// A host-language phase for the rest of the enclosing scope. The grouping is resolved to its
/// id once per line, the first time the line runs, and the id is kept for the life of the
/// process (see pt::GroupingRef): pass the same grouping at every run of the line.
#define PT_PHASE(grouping, phase)                                                         \
    static const ::pt::GroupingRef PT_SCOPE_CONCAT(ptPhaseGrouping_, __LINE__)(grouping); \
    const ::pt::OrviaPhase PT_SCOPE_CONCAT(ptPhase_, __LINE__)(                           \
        PT_SCOPE_CONCAT(ptPhaseGrouping_, __LINE__), phase)

/// A block-diagram phase of a model and target for the rest of the enclosing scope.
#define PT_KESTRUNE_PHASE(grouping, model, target, phase)                                 \
    static const ::pt::GroupingRef PT_SCOPE_CONCAT(ptPhaseGrouping_, __LINE__)(grouping); \
    const ::pt::KestrunePhase PT_SCOPE_CONCAT(ptPhase_, __LINE__)(                        \
        PT_SCOPE_CONCAT(ptPhaseGrouping_, __LINE__), model, target, phase)

/// A state-chart phase for the rest of the enclosing scope.
#define PT_YLVANE_PHASE(grouping, model, target, machine, chart, phase)                   \
    static const ::pt::GroupingRef PT_SCOPE_CONCAT(ptPhaseGrouping_, __LINE__)(grouping); \
    const ::pt::YlvanePhase PT_SCOPE_CONCAT(ptPhase_, __LINE__)(                          \
        PT_SCOPE_CONCAT(ptPhaseGrouping_, __LINE__), model, target, machine, chart, phase)
