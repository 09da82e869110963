#pragma once

// The writing half of hv_codec.h.

#include <algorithm>
#include <limits>
#include <span>
#include <stdexcept>
#include <string>

#include "hv_array.h"

namespace pt::platform {

/// MessagePack counts in 32 bits; a longer text, array or payload has no form.
inline std::uint32_t packedLength(std::size_t length) {
    if (length > std::numeric_limits<std::uint32_t>::max()) {
        throw std::length_error("packValue: a value too large for its encoding");
    }
    return static_cast<std::uint32_t>(length);
}

/// The characters of a char value as UTF-8 text.
template <typename Stream>
void packText(msgpack::packer<Stream>& packer, const hvArray* value) {
    const auto* chars = reinterpret_cast<const hvChar*>(value->data());
    const std::size_t count = value->count;
    if (!std::all_of(chars, chars + count, [](hvChar c) { return c < 0x80; })) {
        const std::string text = hvCharsToUtf8(chars, count);
        packer.pack_str(packedLength(text.size()));
        packer.pack_str_body(text.data(), static_cast<std::uint32_t>(text.size()));
        return;
    }
    // Plain ASCII: each character is its byte.
    packer.pack_str(packedLength(count));
    char bytes[256];
    for (std::size_t done = 0; done < count; done += sizeof bytes) {
        const std::size_t part = std::min(sizeof bytes, count - done);
        std::copy(chars + done, chars + done + part, bytes);
        packer.pack_str_body(bytes, static_cast<std::uint32_t>(part));
    }
}

/// What opens every value: its class and its dimensions.
template <typename Stream>
void packHeader(msgpack::packer<Stream>& packer, hvClassID classID,
                std::span<const std::size_t> dims) {
    packer.pack_array(3);
    packer.pack_uint8(static_cast<std::uint8_t>(classID));
    packer.pack_array(static_cast<std::uint32_t>(dims.size()));
    for (std::size_t d : dims) {
        packer.pack(static_cast<std::uint64_t>(d));  // the shortest form of the number
    }
}

template <typename Stream>
void packValue(msgpack::packer<Stream>& packer, const hvArray* value) {
    if (!value) {
        packer.pack_nil();
        return;
    }
    packHeader(packer, value->classID, value->dimSpan());
    if (value->classID == hvClassID::Char) {
        packText(packer, value);
    } else if (hvElementSize(value->classID) != 0) {
        const std::uint32_t size = packedLength(value->dataSize());
        packer.pack_bin(size);
        packer.pack_bin_body(reinterpret_cast<const char*>(value->data()), size);
    } else if (value->classID == hvClassID::Cell) {
        packer.pack_array(packedLength(value->elements().size()));
        for (const hvUniqueArray& element : value->elements()) {
            packValue(packer, element.get());
        }
    } else {
        packer.pack_array(2);
        packer.pack_array(packedLength(value->fieldNames().size()));
        for (const std::string& name : value->fieldNames()) {
            packer.pack_str(static_cast<std::uint32_t>(name.size()));
            packer.pack_str_body(name.data(), static_cast<std::uint32_t>(name.size()));
        }
        packer.pack_array(packedLength(value->elements().size()));
        for (const hvUniqueArray& element : value->elements()) {
            packValue(packer, element.get());
        }
    }
}

}  // namespace pt::platform
