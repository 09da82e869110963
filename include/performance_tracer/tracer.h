#pragma once

// The process-wide tracer object and the switches that decide whether a grouping is traced.

#include <performance_tracer/export.h>
#include <performance_tracer/raw_points.h>
#include <performance_tracer/system_info_record.h>

#include <boost/unordered_map.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class PTNameTable;

/// Enable state of one grouping. Only PT_GROUPING_ON traces; UNSET and OFF differ when
/// sub-groupings inherit their parent's state.
enum EPTGroupingEnabled : std::int32_t {
    PT_GROUPING_UNSET = -1,
    PT_GROUPING_OFF = 0,
    PT_GROUPING_ON = 1,
};

/// All state of the tracer. The singleton, reached through ptTracer(), has every member; the
/// objects that the host class makes per instance are hollow (every member null) and only ever
/// destroyed. Callers serialise access: nothing here takes a lock.
class PT_API PerformanceTracer {
public:
    /// Grouping id to the names of its direct sub-groupings, in the order given.
    using GroupingMap =
        boost::unordered_map<std::int32_t, std::unique_ptr<std::vector<std::string>>>;
    /// Model name to statistics type name.
    using StatisticsTypeMap = boost::unordered_map<std::string, std::string>;

    /// A hollow object.
    PerformanceTracer();
    ~PerformanceTracer();
    PerformanceTracer(const PerformanceTracer&) = delete;
    PerformanceTracer& operator=(const PerformanceTracer&) = delete;

    /// Makes every member of a hollow object, in the order of the singleton's creation.
    void constructMembers();
    /// Frees the members in the clean-up order; null members are skipped.
    void cleanup();

    /// The id of a name; PT_NO_ID for a kind outside 0 to 6, a missing table, or an unknown
    /// name when add is false. A new name gets the table's current size as its id.
    std::uint32_t nameToID(std::uint32_t kind, const std::string& name, bool add);
    /// The name of an id; the empty string for a missing table or an unknown id.
    std::string idToName(std::uint32_t kind, std::int32_t id) const;
    /// The table of a kind, or null.
    PTNameTable* nameTable(std::uint32_t kind) const;

    /// True exactly when the state stored at id is PT_GROUPING_ON; ids outside the state
    /// vector are not enabled. This is the test on every disabled logging call.
    bool isGroupingEnabled(std::int32_t id) const {
        const std::vector<EPTGroupingEnabled>& states = *_groupingEnabled;
        return id >= 0 && static_cast<std::size_t>(id) < states.size() &&
               states[static_cast<std::size_t>(id)] == PT_GROUPING_ON;
    }
    /// Stores a state, growing the vector with UNSET entries when id lies past its end.
    void setGroupingEnabled(std::int32_t id, EPTGroupingEnabled state);
    /// The stored state of id; UNSET outside the vector.
    EPTGroupingEnabled groupingState(std::int32_t id) const;

    /// A deep copy of the raw store for a reader, or null if there is no store.
    std::unique_ptr<PTRawDataVector> snapshotRawData() const;
    /// The points of one grouping, shared with the store, in store order, or null if there is
    /// no store. An unknown grouping name is added to the grouping table.
    std::unique_ptr<PTRawDataVector> rawDataForGrouping(const std::string& grouping);

    /// Set by ptEnableDetailedMemStats; nothing reads it.
    bool _detailedMemStats = false;
    std::unique_ptr<PTRawDataVector> _rawData;
    /// System information of loaded data.
    std::unique_ptr<SystemInfoRecord> _systemInfo;
    std::unique_ptr<StatisticsTypeMap> _modelStatisticsTypes;
    std::unique_ptr<GroupingMap> _groupings;
    std::unique_ptr<PTNameTable> _phaseTable;
    std::unique_ptr<PTNameTable> _groupingTable;
    std::unique_ptr<PTNameTable> _statisticsTypeTable;
    std::unique_ptr<PTNameTable> _modelTable;
    std::unique_ptr<PTNameTable> _targetTable;
    std::unique_ptr<PTNameTable> _machineTable;
    std::unique_ptr<PTNameTable> _chartTable;
    /// The master switch: every logging call records while it is set.
    bool _globalLogging = false;
    /// Enable state per grouping id.
    std::unique_ptr<std::vector<EPTGroupingEnabled>> _groupingEnabled;
};

/// The singleton, made on first use. The library's load makes it, so in practice it exists.
PT_API PerformanceTracer* ptTracer();

/// Holds the id of the grouping "EvalPrms", which the library adds while it loads: 0 in every
/// process, and valid for the life of the process since no clear touches grouping ids.
class PT_API KsPerformanceTracingPoint {
public:
    static std::int32_t _groupingID;
};

/// Sets the master switch and returns the new value.
PT_API bool ptEnableGlobalLogging(bool enable);
/// Stores the flag and returns it; nothing else changes.
PT_API bool ptEnableDetailedMemStats(bool enable);
/// True under global logging, or when the grouping's own state is on.
PT_API bool ptIsTracerEnabled(int groupingID) noexcept;
/// As the id form; the name is looked up but never added.
PT_API bool ptIsTracerEnabled(const std::string& grouping) noexcept;
