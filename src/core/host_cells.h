#pragma once

// The host values that hold single fields of the tracer's data: how they are made, and how the
// tracer reads values it did not make itself, where a value of an unexpected class, or none at
// all, reads as zero, false or the empty text, never as an error.

#include <cstdint>
#include <string>

struct hvArray;

namespace pt {

/// New 1-by-1 integer scalars.
hvArray* makeInt32(std::int32_t value);
hvArray* makeUInt32(std::uint32_t value);

/// The first element of a value of one of the eight integer classes, wrapped to 32 bits; 0 for
/// any other value.
std::int32_t readInt32(const hvArray* value);
/// The value of a numeric scalar; 0.0 for anything else, a character or logical included.
double readDouble(const hvArray* value);
/// The flag of a logical scalar; false for anything else.
bool readBool(const hvArray* value);
/// The characters of a character value; empty for anything else.
std::string readText(const hvArray* value);

}  // namespace pt
