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
#include <pt_platform/hvf_rows.h>

#include <msgpack.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace pt::platform {

/// Writes a value (nil for null) to any stream that MessagePack can pack into.
template <typename Stream>
void packValue(msgpack::packer<Stream>& packer, const hvArray* value);

/// How deep cells and structures may nest in values read back.
inline constexpr int kMaxDepth = 64;
/// How many dimensions a value read back may have.
inline constexpr std::size_t kMaxDimensions = 32;

/// Reads MessagePack from a byte range, checking every length against what is left, so that
/// nothing is read past the end and nothing is allocated that the bytes cannot justify. The
/// range may be a window on a longer content: counts are then judged against all of the
/// content that is left, and a read that fails for want of bytes says so (ranShort).
class ValueReader {
public:
    ValueReader(const std::uint8_t* data, std::size_t size) : _p(data), _end(data + size) {}

    /// How many content bytes follow the range.
    void setBytesBeyond(std::uint64_t bytes) { _beyond = bytes; }

    bool atEnd() const { return _p == _end; }
    std::size_t remaining() const { return static_cast<std::size_t>(_end - _p); }
    /// True when a read failed because the range ended, where more content could follow.
    bool ranShort() const { return _short; }

    bool readArray(std::uint32_t& count);
    bool readUnsigned(std::uint64_t& number);
    bool readText(std::string_view& text);
    bool readBinary(const std::uint8_t*& bytes, std::size_t& size);
    /// Takes a nil if one stands next.
    bool takeNil();
    /// A value, or null for nil; false if the bytes are no well-formed value. Depth counts the
    /// containers around the value.
    bool readValue(hvUniqueArray& value, int depth = 0);
    /// Passes over a value, checking all that readValue checks but making nothing: true
    /// exactly when readValue of the same bytes would succeed.
    bool skipValue(int depth = 0);
    /// Sees a value without making it, checking all that readValue checks: its class, shape
    /// and data; a cell or structure is checked whole, but what it holds is not shown.
    bool readView(hvfCell& cell, int depth);

    /// The class and dimensions that open a value (not nil).
    struct ValueHeader {
        hvClassID classID = hvClassID::Unknown;
        std::uint32_t ndim = 0;
        std::size_t dims[kMaxDimensions];
        std::size_t count = 0;
        /// Whether a value of these dimensions is a vector, as hvIsVector tells.
        bool isVector() const;
    };
    bool readHeader(ValueHeader& header);
    /// The element count that opens a cell's payload, which must match the header's.
    bool readCellElements(std::uint32_t& elements, const ValueHeader& header);

private:
    template <bool Build>
    bool parseValue(hvUniqueArray* value, int depth);
    /// The text of a character value, checked against the header's count of characters; chars
    /// is filled when the text is not plain ASCII.
    bool readCharacters(const ValueHeader& header, std::string_view& text, std::u16string* chars);
    /// The bytes of a logical or numeric value, checked against the header's count.
    bool readElements(const ValueHeader& header, const std::uint8_t*& bytes, std::size_t& length);
    bool need(std::size_t bytes) {
        if (remaining() >= bytes) {
            return true;
        }
        _short = true;
        return false;
    }
    std::uint64_t bigEndian(std::size_t bytes);

    const std::uint8_t* _p;
    const std::uint8_t* _end;
    std::uint64_t _beyond = 0;
    bool _short = false;
};

}  // namespace pt::platform

#include "hv_codec_pack.h"
