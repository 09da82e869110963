#pragma once

// Groupings: named switches and selection units, with sub-groupings forming a tree. Children
// are held by name; a name may sit under several parents. Cycles are tolerated: enabling and
// removing visit each grouping once per call, and listing never re-enters a grouping that is
// already on its path.

#include <performance_tracer/export.h>

#include <cstdint>
#include <string>
#include <vector>

/// Adds a leaf grouping and returns its id; -1 if the grouping exists with sub-groupings.
/// Adding an existing leaf again returns its id and keeps its enable state.
PT_API std::int32_t ptAddGrouping(const std::string& grouping);
/// Adds a grouping with sub-groupings, each added as a leaf and given the parent's explicit
/// enable state. Returns the empty string, or "Group: <name>" if the grouping already has
/// sub-groupings (nothing changes), or "Sub group: <name>" for the first sub-grouping that has
/// sub-groupings of its own (the list and the sub-groupings before it stay).
PT_API std::string ptAddGrouping(const std::string& grouping,
                                 const std::vector<std::string>& subGroupings);
/// Removes the current sub-groupings (with their subtrees) and stores the new names, which
/// become groupings only when the parent is enabled. Always true.
PT_API bool ptUpdateGrouping(const std::string& grouping,
                             const std::vector<std::string>& subGroupings);
/// Removes a grouping and its whole subtree; false if it is not a grouping. Names and ids stay
/// in the grouping table and raw points stay in the store.
PT_API bool ptRemoveGrouping(const std::string& grouping);
/// Sets the state of a grouping and of everything below it, creating unknown names as leaves.
PT_API void ptEnableTracer(const std::string& grouping, bool enable);
/// The grouping and everything below it in post-order (descendants first); a grouping under
/// several parents is listed under each. Empty if the name is not a grouping.
PT_API std::vector<std::string> ptGetGroupingList(const std::string& grouping);
