#pragma once

// Name tables: every recurring name is held once per kind, and points carry 32-bit ids.

#include <performance_tracer/export.h>

#include <cstdint>
#include <string>

/// Selects one of the seven name tables. Callers pass the values as plain integers.
enum EPTNameTable : std::uint32_t {
    PT_TABLE_PHASE = 0,
    PT_TABLE_GROUPING = 1,
    PT_TABLE_STATISTICS_TYPE = 2,
    PT_TABLE_MODEL = 3,
    PT_TABLE_TARGET = 4,
    PT_TABLE_MACHINE = 5,
    PT_TABLE_CHART = 6,
};

inline constexpr std::uint32_t PT_TABLE_COUNT = 7;
/// The id that means "no such name" (-1 as a signed id); never stored in a table.
inline constexpr std::uint32_t PT_NO_ID = ~0U;

/// The id of a name in the singleton's table of that kind, adding the name if it is new.
PT_API std::uint32_t ptNameID(std::uint32_t kind, const std::string& name);
/// The name of an id in the singleton's table of that kind; the empty string if there is none.
PT_API std::string ptNameStr(std::uint32_t kind, std::int32_t id);

PT_API std::string ptGetPhaseStr(int id);
PT_API std::string ptGetStatisticsTypeStr(int id);
PT_API std::string ptGetModelStr(int id);
PT_API std::string ptGetTargetStr(int id);
PT_API std::string ptGetMachineStr(int id);
PT_API std::string ptGetChartStr(int id);

/// The form of a phase name that is shown and saved: backslashes become slashes, the stored
/// root prefix and a leading slash go, and either the customisation folders
/// (stripCustomization true) or a lone leading slash that remains (false) are removed.
PT_API std::string ptDisplayPhaseName(const std::string& name, bool stripCustomization);
/// Stores the root prefix that ptDisplayPhaseName removes, with backslashes made slashes.
PT_API void setPathStripRoot(const std::string& path);
