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
// docs/value_files.md describes the format for readers in other languages.

#include <pt_platform/hv.h>

#include <msgpack.hpp>

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace pt::platform {

/// Writes a value (nil for null) to any stream that MessagePack can pack into.
template <typename Stream>
void packValue(msgpack::packer<Stream>& packer, const hvArray* value);

/// How deep cells and structures may nest in values read back.
inline constexpr int kMaxDepth = 64;

/// Reads MessagePack from a byte range, checking every length against what is left, so that
/// nothing is read past the end and nothing is allocated that the bytes cannot justify.
class ValueReader {
public:
    ValueReader(const std::uint8_t* data, std::size_t size) : _p(data), _end(data + size) {}

    bool atEnd() const { return _p == _end; }
    std::size_t remaining() const { return static_cast<std::size_t>(_end - _p); }

    bool readArray(std::uint32_t& count);
    bool readUnsigned(std::uint64_t& number);
    bool readText(std::string_view& text);
    bool readBinary(const std::uint8_t*& bytes, std::size_t& size);
    /// Takes a nil if one stands next.
    bool takeNil();
    /// A value, or null for nil; false if the bytes are no well-formed value.
    bool readValue(hvUniqueArray& value, int depth = 0);

private:
    bool need(std::size_t bytes) const { return remaining() >= bytes; }
    std::uint64_t bigEndian(std::size_t bytes);

    const std::uint8_t* _p;
    const std::uint8_t* _end;
};

}  // namespace pt::platform

#include "hv_codec_pack.h"
