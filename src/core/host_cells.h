#pragma once

// How the tracer reads host values it did not make itself: a value of an unexpected class, or
// none at all, reads as zero, false or the empty text, never as an error.

#include <cstdint>
#include <string>

struct hvArray;

namespace pt {

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
