#pragma once

// Names with a fixed meaning to the tracer. None has a reserved id: a name enters its table on
// first use like any other, except "EvalPrms", which the library adds while it loads.

#include <string_view>

namespace pt {

/// Phase name of the filler points that show unaccounted time between phases.
inline constexpr std::string_view kUnaccountedPhase = "Unaccounted Phase";
/// Grouping that stands for all groupings when data are selected; to logging and to the enable
/// state it is a grouping like any other.
inline constexpr std::string_view kGlobalGrouping = "GLOBAL";
/// Grouping that ptLogKsStartupData logs into.
inline constexpr std::string_view kKestruneStartupGrouping = "Kestrune Startup";
inline constexpr std::string_view kNoAssociatedModel = "No Associated Model";
inline constexpr std::string_view kNoAssociatedChart = "No Associated Chart";
/// The three values of a report's metric; compared whole, never table entries.
inline constexpr std::string_view kMetricTime = "time";
inline constexpr std::string_view kMetricBasicMemory = "basicmemory";
inline constexpr std::string_view kMetricDetailedMemory = "detailedmemory";
/// Grouping added while the library loads, so that its id is 0 in every process.
inline constexpr std::string_view kEvalPrmsGrouping = "EvalPrms";

}  // namespace pt
