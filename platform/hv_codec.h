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

class ValueArena;

/// Writes a value (nil for null) to any stream that MessagePack can pack into.
template <typename Stream>
void packValue(msgpack::packer<Stream>& packer, const hvArray* value);

/// How deep cells and structures may nest in values read back.
inline constexpr int kMaxDepth = 64;
/// How many dimensions a value read back may have.
inline constexpr std::size_t kMaxDimensions = 32;

/// Reads MessagePack from a byte range, checking every length against what is left, so that
/// nothing is read past the end and nothing is allocated that the bytes cannot justify.
class ValueReader {
public:
    ValueReader(const std::uint8_t* data, std::size_t size) : _p(data), _end(data + size) {}

    /// Values read from now on are made in the arena (see value_arena.h); null for the heap.
    void useArena(ValueArena* arena) { _arena = arena; }

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
    /// Passes over a value, checking all that readValue checks but making nothing: true
    /// exactly when readValue of the same bytes would succeed.
    bool skipValue();

    /// The class and dimensions that open a value (not nil).
    struct ValueHeader {
        hvClassID classID = hvClassID::Unknown;
        std::uint32_t ndim = 0;
        std::size_t dims[kMaxDimensions];
        std::size_t count = 0;
    };
    bool readHeader(ValueHeader& header);
    /// The element count that opens a cell's payload, which must match the header's.
    bool readCellElements(std::uint32_t& elements, const ValueHeader& header);

private:
    template <bool Build>
    bool parseValue(hvUniqueArray* value, int depth);
    bool need(std::size_t bytes) const { return remaining() >= bytes; }
    std::uint64_t bigEndian(std::size_t bytes);

    const std::uint8_t* _p;
    const std::uint8_t* _end;
    ValueArena* _arena = nullptr;
};

}  // namespace pt::platform

#include "hv_codec_pack.h"
