#pragma once

// Host values in MessagePack: the form in which values cross to the engine's thread and are
// kept in value files. A value is an array of three: its class (an integer), its dimensions
// (an array of integers) and its payload:
//   char      the characters as UTF-8 text, in column-major order
//   logical   binary, one byte (0 or 1) per element
//   numeric   binary, the elements' bytes in little-endian order
//   cell      an array of the elements, nil for an empty element
//   struct    an array of two: the field names, and the field values element by element
//             (element * number of fields + field), nil for an empty one

#include <pt_platform/hv.h>

#include <msgpack.hpp>

#include <cstddef>

namespace pt::platform {

void packValue(msgpack::packer<msgpack::sbuffer>& packer, const hvArray* value);

/// The value an object describes, if it is well formed; values nest at most kMaxDepth deep.
/// Nothing is allocated beyond what the object's own size justifies.
bool unpackValue(const msgpack::object& object, hvUniqueArray& value);

/// How deep cells and structures may nest in values read back.
inline constexpr int kMaxDepth = 64;

/// Bounds for reading untrusted bytes: no container, text or binary larger than the bytes
/// themselves, and no deeper nesting than values may have.
msgpack::unpack_limit unpackLimit(std::size_t bytes);

}  // namespace pt::platform
