#pragma once

// The writing half of hv_codec.h.

#include <string>

#include "hv_array.h"

namespace pt::platform {

template <typename Stream>
void packValue(msgpack::packer<Stream>& packer, const hvArray* value) {
    if (!value) {
        packer.pack_nil();
        return;
    }
    packer.pack_array(3);
    packer.pack_uint8(static_cast<std::uint8_t>(value->classID));
    packer.pack_array(static_cast<std::uint32_t>(value->dims.size()));
    for (std::size_t d : value->dims) {
        packer.pack_uint64(d);
    }
    if (value->classID == hvClassID::Char) {
        const std::string text = hvArrayToStdString(value);
        packer.pack_str(static_cast<std::uint32_t>(text.size()));
        packer.pack_str_body(text.data(), static_cast<std::uint32_t>(text.size()));
    } else if (hvElementSize(value->classID) != 0) {
        packer.pack_bin(static_cast<std::uint32_t>(value->data.size()));
        packer.pack_bin_body(reinterpret_cast<const char*>(value->data.data()),
                             static_cast<std::uint32_t>(value->data.size()));
    } else if (value->classID == hvClassID::Cell) {
        packer.pack_array(static_cast<std::uint32_t>(value->elements().size()));
        for (const hvUniqueArray& element : value->elements()) {
            packValue(packer, element.get());
        }
    } else {
        packer.pack_array(2);
        packer.pack_array(static_cast<std::uint32_t>(value->fieldNames().size()));
        for (const std::string& name : value->fieldNames()) {
            packer.pack_str(static_cast<std::uint32_t>(name.size()));
            packer.pack_str_body(name.data(), static_cast<std::uint32_t>(name.size()));
        }
        packer.pack_array(static_cast<std::uint32_t>(value->elements().size()));
        for (const hvUniqueArray& element : value->elements()) {
            packValue(packer, element.get());
        }
    }
}

}  // namespace pt::platform
