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
/// What the host layer holds for a value, in bytes: each value's header and dimensions, its
/// elements, and for cells and structures the values inside them. Counting stops once it
/// passes limit.
std::size_t valueBytes(const hvArray* value, std::size_t limit);
/// The bytes of a new two-dimensional value of count elements, before anything is put into
/// the elements of a cell or the fields of a structure.
std::size_t newValueBytes(hvClassID classID, std::size_t count, std::size_t fields = 0);
/// a + b, or the largest size where that would overflow.
std::size_t addBytes(std::size_t a, std::size_t b);
/// A size in bytes as people read it: "1 GiB", "512 MiB", "3 KiB" or "100 bytes".
std::string byteText(std::size_t bytes);
/// A 1-by-n double row.
hvUniqueArray doubleRow(const std::vector<double>& numbers);

}  // namespace ptshell
