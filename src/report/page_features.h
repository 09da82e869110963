#pragma once

// Tabs of the report pages that are built in. The Call Tree tab of the Detail page and the
// MemChart tab of the detailed-memory pages come with their own scripts; until they are there,
// the pages leave them out whole: no tab, no bar entry, no handler that would call into them.

namespace pt::report {

inline constexpr bool kCallTreeTab = false;
inline constexpr bool kMemChartTab = false;

}  // namespace pt::report
