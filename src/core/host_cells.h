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

/// The first 32 bits of the data of a value of one of the eight integer classes (zeros past the
/// end of a shorter value); 0 for any other value.
std::int32_t readInt32(const hvArray* value);
/// The value of a scalar, as hvGetScalar gives it (a character its code, a logical 0 or 1);
/// 0.0 for anything that is not a scalar.
double readDouble(const hvArray* value);
/// The flag of a logical scalar; false for anything else.
bool readBool(const hvArray* value);
/// The characters of a character value; empty for anything else.
std::string readText(const hvArray* value);

}  // namespace pt
