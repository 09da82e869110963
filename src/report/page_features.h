#pragma once

// Tabs of the report pages that are built in. The MemChart tab of the detailed-memory pages
// comes with its own scripts; until they are there, the pages leave it out whole: no tab, no
// bar entry, no handler that would call into it.

namespace pt::report {

inline constexpr bool kCallTreeTab = true;
inline constexpr bool kMemChartTab = false;

}  // namespace pt::report
