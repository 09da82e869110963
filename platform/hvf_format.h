#pragma once

// The container of a value file (docs/value_files.md): a header, a zlib stream of MessagePack
// pairs [name, value], and a CRC-32 of the uncompressed stream.

#include <cstddef>
#include <cstdint>

namespace pt::platform {

inline constexpr unsigned char kMagic[8] = {0x89, 'H', 'V', 'F', '\r', '\n', 0x1A, '\n'};
inline constexpr std::uint16_t kVersion = 1;
/// Magic, version, flags, and the two 64-bit lengths: uncompressed, then compressed.
inline constexpr std::size_t kHeaderSize = 28;
/// The CRC-32 of the content.
inline constexpr std::size_t kTrailerSize = 4;
/// Deflate never shrinks data by more than about 1:1032; a header that claims more is lying.
inline constexpr std::uint64_t kMaxExpansion = 1032;
/// Content no reader takes, whatever the file's size.
inline constexpr std::uint64_t kMaxContent = std::uint64_t{1} << 40;

inline void putLittleEndian(unsigned char* out, std::uint64_t value, std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; ++i) {
        out[i] = static_cast<unsigned char>(value >> (8 * i));
    }
}

inline std::uint64_t getLittleEndian(const unsigned char* in, std::size_t bytes) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < bytes; ++i) {
        value |= std::uint64_t{in[i]} << (8 * i);
    }
    return value;
}

}  // namespace pt::platform
