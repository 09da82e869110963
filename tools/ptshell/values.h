#pragma once

// Small operations on host values that the shell's evaluation and built-ins share.

#include <pt_platform/hv.h>

#include <string>
#include <vector>

namespace ptshell {

/// The value of a real scalar (numeric, logical or character); an error for anything else.
double realScalar(const hvArray* value, const char* what);
/// Element i of a plain-data value as a double.
double elementAsDouble(const hvArray* value, std::size_t i);
/// A value of a numeric or logical or character class made from doubles, rounded and clamped
/// as the class needs.
hvUniqueArray convertTo(const hvArray* value, hvClassID classID);
/// A 1-by-1 value of element i (of any class).
hvUniqueArray elementOf(const hvArray* value, std::size_t i);
/// Column c of a two-dimensional value, of the value's class; for a row, its element c.
hvUniqueArray columnOf(const hvArray* value, std::size_t column);
/// The elements of a value, those inside its cells and fields included; counting stops once
/// it passes limit.
std::size_t deepCount(const hvArray* value, std::size_t limit);
/// How deep cells and structures nest in a value (0 for plain data); stops past limit.
std::size_t nestingDepth(const hvArray* value, std::size_t limit);
/// A 1-by-n double row.
hvUniqueArray doubleRow(const std::vector<double>& numbers);

}  // namespace ptshell
