#pragma once

// Tabs of the report pages that are built in. The MemChart tab of the detailed-memory pages
// comes with its own scripts, one chart for Detail pages and one for Difference pages; a page
// whose chart is not built leaves the tab out whole: no tab, no bar entry, no handler that
// would call into it.

namespace pt::report {

inline constexpr bool kCallTreeTab = true;
inline constexpr bool kMemChartTab = true;
inline constexpr bool kMemChartDiffTab = false;

/// The page of that kind has its memory chart built.
constexpr bool memChartBuilt(bool isComparison) {
    return isComparison ? kMemChartDiffTab : kMemChartTab;
}

}  // namespace pt::report
