#include "hv_codec.h"

#include <cstring>
#include <limits>
#include <set>

#include "hv_array.h"

namespace pt::platform {

namespace {

constexpr std::size_t kMaxDimensions = 32;

bool isPlain(hvClassID classID) { return hvElementSize(classID) != 0; }

void packDims(msgpack::packer<msgpack::sbuffer>& packer, const hvArray& value) {
    packer.pack_array(static_cast<std::uint32_t>(value.dims.size()));
    for (std::size_t d : value.dims) {
        packer.pack_uint64(d);
    }
}

bool unpack(const msgpack::object& object, hvUniqueArray& value, int depth);

/// An element of a container: nil for an empty one.
bool unpackElement(const msgpack::object& object, hvUniqueArray& element, int depth) {
    if (object.type == msgpack::type::NIL) {
        element.reset();
        return true;
    }
    return unpack(object, element, depth);
}

bool readDims(const msgpack::object& object, std::vector<std::size_t>& dims, std::size_t& count) {
    if (object.type != msgpack::type::ARRAY || object.via.array.size > kMaxDimensions) {
        return false;
    }
    count = 1;
    bool empty = false;
    for (std::uint32_t i = 0; i < object.via.array.size; ++i) {
        const msgpack::object& d = object.via.array.ptr[i];
        if (d.type != msgpack::type::POSITIVE_INTEGER) {
            return false;
        }
        const std::uint64_t n = d.via.u64;
        dims.push_back(static_cast<std::size_t>(n));
        empty = empty || n == 0;
    }
    // The element count, unless some dimension is 0; a count that overflows is no value.
    for (std::size_t d : dims) {
        if (empty) {
            count = 0;
            break;
        }
        if (count > std::numeric_limits<std::size_t>::max() / d) {
            return false;
        }
        count *= d;
    }
    return true;
}

bool unpack(const msgpack::object& object, hvUniqueArray& value, int depth) {
    if (depth > kMaxDepth || object.type != msgpack::type::ARRAY || object.via.array.size != 3) {
        return false;
    }
    const msgpack::object* parts = object.via.array.ptr;
    if (parts[0].type != msgpack::type::POSITIVE_INTEGER ||
        parts[0].via.u64 > static_cast<std::uint64_t>(hvClassID::UInt64) || parts[0].via.u64 == 0) {
        return false;
    }
    const auto classID = static_cast<hvClassID>(parts[0].via.u64);
    std::vector<std::size_t> dims;
    std::size_t count = 0;
    if (!readDims(parts[1], dims, count)) {
        return false;
    }
    const msgpack::object& payload = parts[2];

    if (classID == hvClassID::Char) {
        if (payload.type != msgpack::type::STR) {
            return false;
        }
        const std::u16string chars =
            hvUtf8ToChars(std::string_view(payload.via.str.ptr, payload.via.str.size));
        if (chars.size() != count) {
            return false;
        }
        value.reset(hvCreateCharArray(dims.size(), dims.data()));
        std::copy(chars.begin(), chars.end(), hvGetChars(value.get()));
        return true;
    }
    if (isPlain(classID)) {
        const std::size_t size = hvElementSize(classID);
        if (payload.type != msgpack::type::BIN || count > payload.via.bin.size / size ||
            payload.via.bin.size != count * size) {
            return false;
        }
        value.reset(classID == hvClassID::Logical
                        ? hvCreateLogicalArray(dims.size(), dims.data())
                        : hvCreateNumericArray(dims.size(), dims.data(), classID));
        if (classID == hvClassID::Logical) {
            bool* flags = hvGetLogicals(value.get());
            for (std::size_t i = 0; i < count; ++i) {
                flags[i] = payload.via.bin.ptr[i] != 0;
            }
        } else if (count != 0) {
            std::memcpy(hvGetData(value.get()), payload.via.bin.ptr, payload.via.bin.size);
        }
        return true;
    }
    if (classID == hvClassID::Cell) {
        if (payload.type != msgpack::type::ARRAY || payload.via.array.size != count) {
            return false;
        }
        value.reset(hvCreateCellArray(dims.size(), dims.data()));
        for (std::size_t i = 0; i < count; ++i) {
            hvUniqueArray element;
            if (!unpackElement(payload.via.array.ptr[i], element, depth + 1)) {
                return false;
            }
            hvSetCell(value.get(), i, element.release());
        }
        return true;
    }
    // A structure: names, then values element by element.
    if (payload.type != msgpack::type::ARRAY || payload.via.array.size != 2) {
        return false;
    }
    const msgpack::object& names = payload.via.array.ptr[0];
    const msgpack::object& fields = payload.via.array.ptr[1];
    if (names.type != msgpack::type::ARRAY || fields.type != msgpack::type::ARRAY) {
        return false;
    }
    const std::size_t nfields = names.via.array.size;
    if (nfields != 0 && count > fields.via.array.size / nfields) {
        return false;
    }
    if (fields.via.array.size != count * nfields) {
        return false;
    }
    std::vector<std::string> fieldNames;
    std::set<std::string> seen;
    for (std::size_t f = 0; f < nfields; ++f) {
        const msgpack::object& name = names.via.array.ptr[f];
        if (name.type != msgpack::type::STR) {
            return false;
        }
        fieldNames.emplace_back(name.via.str.ptr, name.via.str.size);
        if (!seen.insert(fieldNames.back()).second) {
            return false;
        }
    }
    std::vector<const char*> pointers;
    for (const std::string& name : fieldNames) {
        pointers.push_back(name.c_str());
    }
    value.reset(
        hvCreateStructArray(dims.size(), dims.data(), static_cast<int>(nfields), pointers.data()));
    for (std::size_t i = 0; i < count * nfields; ++i) {
        hvUniqueArray element;
        if (!unpackElement(fields.via.array.ptr[i], element, depth + 1)) {
            return false;
        }
        hvSetFieldByNumber(value.get(), i / nfields, static_cast<int>(i % nfields),
                           element.release());
    }
    return true;
}

}  // namespace

void packValue(msgpack::packer<msgpack::sbuffer>& packer, const hvArray* value) {
    if (!value) {
        packer.pack_nil();
        return;
    }
    packer.pack_array(3);
    packer.pack_uint8(static_cast<std::uint8_t>(value->classID));
    packDims(packer, *value);
    if (value->classID == hvClassID::Char) {
        const std::string text = hvArrayToStdString(value);
        packer.pack_str(static_cast<std::uint32_t>(text.size()));
        packer.pack_str_body(text.data(), static_cast<std::uint32_t>(text.size()));
    } else if (isPlain(value->classID)) {
        packer.pack_bin(static_cast<std::uint32_t>(value->data.size()));
        packer.pack_bin_body(reinterpret_cast<const char*>(value->data.data()),
                             static_cast<std::uint32_t>(value->data.size()));
    } else if (value->classID == hvClassID::Cell) {
        packer.pack_array(static_cast<std::uint32_t>(value->elements.size()));
        for (const hvUniqueArray& element : value->elements) {
            packValue(packer, element.get());
        }
    } else {
        packer.pack_array(2);
        packer.pack_array(static_cast<std::uint32_t>(value->fieldNames.size()));
        for (const std::string& name : value->fieldNames) {
            packer.pack(name);
        }
        packer.pack_array(static_cast<std::uint32_t>(value->elements.size()));
        for (const hvUniqueArray& element : value->elements) {
            packValue(packer, element.get());
        }
    }
}

bool unpackValue(const msgpack::object& object, hvUniqueArray& value) {
    try {
        return unpack(object, value, 0);
    } catch (const std::exception&) {
        value.reset();
        return false;
    }
}

msgpack::unpack_limit unpackLimit(std::size_t bytes) {
    const auto bound = static_cast<std::size_t>(std::min<std::size_t>(bytes, 0xffffffffu));
    // A value nests three MessagePack arrays deep per level of cells and structures.
    return msgpack::unpack_limit(bound, bound, bound, bound, bound, 3 * kMaxDepth + 8);
}

}  // namespace pt::platform
