#include "hv_codec.h"

#include "hv_array.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <set>
#include <vector>

namespace pt::platform {

namespace {

constexpr std::size_t kMaxFieldlessElements = std::size_t{1} << 20;

}  // namespace

std::uint64_t ValueReader::bigEndian(std::size_t bytes) {
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < bytes; ++i) {
        number = (number << 8) | *_p++;
    }
    return number;
}

bool ValueReader::readArray(std::uint32_t& count) {
    if (!need(1)) {
        return false;
    }
    const std::uint8_t tag = *_p;
    if ((tag & 0xF0) == 0x90) {
        ++_p;
        count = tag & 0x0F;
    } else if (tag == 0xDC && need(3)) {
        ++_p;
        count = static_cast<std::uint32_t>(bigEndian(2));
    } else if (tag == 0xDD && need(5)) {
        ++_p;
        count = static_cast<std::uint32_t>(bigEndian(4));
    } else {
        return false;
    }
    // Every element takes at least one byte.
    return count <= remaining() + _beyond;
}

bool ValueReader::readUnsigned(std::uint64_t& number) {
    if (!need(1)) {
        return false;
    }
    const std::uint8_t tag = *_p;
    std::size_t bytes;
    if (tag <= 0x7F) {
        ++_p;
        number = tag;
        return true;
    }
    switch (tag) {
        case 0xCC: bytes = 1; break;
        case 0xCD: bytes = 2; break;
        case 0xCE: bytes = 4; break;
        case 0xCF: bytes = 8; break;
        default: return false;
    }
    if (!need(1 + bytes)) {
        return false;
    }
    ++_p;
    number = bigEndian(bytes);
    return true;
}

bool ValueReader::readText(std::string_view& text) {
    if (!need(1)) {
        return false;
    }
    const std::uint8_t tag = *_p;
    std::size_t header;
    std::size_t length;
    if ((tag & 0xE0) == 0xA0) {
        header = 1;
        length = tag & 0x1F;
    } else if (tag == 0xD9 && need(2)) {
        header = 2;
        length = _p[1];
    } else if (tag == 0xDA && need(3)) {
        header = 3;
        length = (std::size_t{_p[1]} << 8) | _p[2];
    } else if (tag == 0xDB && need(5)) {
        header = 5;
        length = (std::size_t{_p[1]} << 24) | (std::size_t{_p[2]} << 16) |
                 (std::size_t{_p[3]} << 8) | _p[4];
    } else {
        return false;
    }
    if (!need(header + length)) {
        return false;
    }
    text = std::string_view(reinterpret_cast<const char*>(_p + header), length);
    _p += header + length;
    return true;
}

bool ValueReader::readBinary(const std::uint8_t*& bytes, std::size_t& size) {
    if (!need(1)) {
        return false;
    }
    const std::uint8_t tag = *_p;
    std::size_t header;
    if (tag == 0xC4 && need(2)) {
        header = 2;
        size = _p[1];
    } else if (tag == 0xC5 && need(3)) {
        header = 3;
        size = (std::size_t{_p[1]} << 8) | _p[2];
    } else if (tag == 0xC6 && need(5)) {
        header = 5;
        size = (std::size_t{_p[1]} << 24) | (std::size_t{_p[2]} << 16) | (std::size_t{_p[3]} << 8) |
               _p[4];
    } else {
        return false;
    }
    if (!need(header + size)) {
        return false;
    }
    bytes = _p + header;
    _p += header + size;
    return true;
}

bool ValueReader::takeNil() {
    if (need(1) && *_p == 0xC0) {
        ++_p;
        return true;
    }
    return false;
}

bool ValueReader::readValue(hvUniqueArray& value, int depth) {
    value.reset();
    return parseValue<true>(&value, depth);
}

bool ValueReader::skipValue(int depth) { return parseValue<false>(nullptr, depth); }

bool ValueReader::readView(hvfCell& cell, int depth) {
    cell = hvfCell();
    if (takeNil()) {
        return true;
    }
    const std::uint8_t* start = _p;
    ValueHeader header;
    if (depth > kMaxDepth || !readHeader(header)) {
        return false;
    }
    cell.classID = header.classID;
    cell.count = header.count;
    cell.isVector = header.isVector();
    if (header.classID == hvClassID::Char) {
        std::u16string chars;
        std::string_view text;
        if (!readCharacters(header, text, &chars)) {
            return false;
        }
        cell.bytes = text;
        return true;
    }
    if (hvElementSize(header.classID) != 0) {
        const std::uint8_t* bytes;
        std::size_t length;
        if (!readElements(header, bytes, length)) {
            return false;
        }
        cell.bytes = std::string_view(reinterpret_cast<const char*>(bytes), length);
        return true;
    }
    _p = start;
    return parseValue<false>(nullptr, depth);
}

// As hvArray keeps dimensions: trailing ones past the second dropped, at least two.
bool ValueReader::ValueHeader::isVector() const {
    std::size_t rank = ndim;
    while (rank > 2 && dims[rank - 1] == 1) {
        --rank;
    }
    const std::size_t rows = ndim > 0 ? dims[0] : 1;
    const std::size_t columns = ndim > 1 ? dims[1] : 1;
    return rank <= 2 && (rows == 1 || columns == 1);
}

bool ValueReader::readCharacters(const ValueHeader& header, std::string_view& text,
                                 std::u16string* chars) {
    if (!readText(text) || text.size() < header.count) {
        return false;  // every character takes at least one byte of text
    }
    // Most texts are plain ASCII, whose bytes are their characters.
    if (std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; })) {
        return text.size() == header.count;
    }
    *chars = hvUtf8ToChars(text);
    return chars->size() == header.count;
}

bool ValueReader::readElements(const ValueHeader& header, const std::uint8_t*& bytes,
                               std::size_t& length) {
    // count * size cannot overflow once count is no more than the bytes.
    return readBinary(bytes, length) && header.count <= length &&
           length == header.count * hvElementSize(header.classID);
}

bool ValueReader::readHeader(ValueHeader& header) {
    // The opening of nearly every value: [class, [m, n], with m and n below 128, each a byte.
    if (remaining() >= 5 && _p[0] == 0x93 && _p[2] == 0x92 && _p[3] < 0x80 && _p[4] < 0x80 &&
        _p[1] != 0 && _p[1] <= static_cast<std::uint8_t>(hvClassID::UInt64)) {
        header.classID = static_cast<hvClassID>(_p[1]);
        header.ndim = 2;
        header.dims[0] = _p[3];
        header.dims[1] = _p[4];
        header.count = header.dims[0] * header.dims[1];
        _p += 5;
        return true;
    }
    std::uint32_t parts;
    std::uint64_t classNumber;
    if (!readArray(parts) || parts != 3 || !readUnsigned(classNumber) || classNumber == 0 ||
        classNumber > static_cast<std::uint64_t>(hvClassID::UInt64)) {
        return false;
    }
    header.classID = static_cast<hvClassID>(classNumber);

    // Dimensions, and the element count unless some dimension is 0; an overflowing count is
    // no value.
    if (!readArray(header.ndim) || header.ndim > kMaxDimensions) {
        return false;
    }
    bool empty = false;
    for (std::uint32_t i = 0; i < header.ndim; ++i) {
        std::uint64_t d;
        if (!readUnsigned(d) || d > std::numeric_limits<std::size_t>::max()) {
            return false;
        }
        header.dims[i] = static_cast<std::size_t>(d);
        empty = empty || d == 0;
    }
    header.count = 1;
    for (std::uint32_t i = 0; i < header.ndim && !empty; ++i) {
        if (header.count > std::numeric_limits<std::size_t>::max() / header.dims[i]) {
            return false;
        }
        header.count *= header.dims[i];
    }
    if (empty) {
        header.count = 0;
    }
    return true;
}

bool ValueReader::readCellElements(std::uint32_t& elements, const ValueHeader& header) {
    return readArray(elements) && elements == header.count;
}

// One parser for reading and for checking, so that whatever the check passes, the read makes.
template <bool Build>
bool ValueReader::parseValue(hvUniqueArray* value, int depth) {
    if (takeNil()) {
        return true;
    }
    ValueHeader header;
    if (depth > kMaxDepth || !readHeader(header)) {
        return false;
    }
    const hvClassID classID = header.classID;
    const std::size_t ndim = header.ndim;
    const std::size_t* dims = header.dims;
    const std::size_t count = header.count;

    if (classID == hvClassID::Char) {
        std::string_view text;
        std::u16string chars;
        if (!readCharacters(header, text, &chars)) {
            return false;
        }
        if constexpr (Build) {
            value->reset(hvArray::make(hvClassID::Char, ndim, dims, 0));
            if (chars.empty()) {
                std::copy(text.begin(), text.end(), hvGetChars(value->get()));
            } else {
                std::copy(chars.begin(), chars.end(), hvGetChars(value->get()));
            }
        }
        return true;
    }
    if (hvElementSize(classID) != 0) {
        const std::uint8_t* bytes;
        std::size_t length;
        if (!readElements(header, bytes, length)) {
            return false;
        }
        if constexpr (Build) {
            if (classID == hvClassID::Logical) {
                value->reset(hvArray::make(hvClassID::Logical, ndim, dims, 0));
                bool* flags = hvGetLogicals(value->get());
                for (std::size_t i = 0; i < count; ++i) {
                    flags[i] = bytes[i] != 0;
                }
            } else {
                value->reset(hvArray::make(classID, ndim, dims, 0));
                if (length != 0) {
                    std::memcpy(hvGetData(value->get()), bytes, length);
                }
            }
        }
        return true;
    }
    if (classID == hvClassID::Cell) {
        std::uint32_t elements;
        if (!readCellElements(elements, header)) {
            return false;
        }
        if constexpr (Build) {
            value->reset(hvArray::make(hvClassID::Cell, ndim, dims, 0));
        }
        for (std::size_t i = 0; i < count; ++i) {
            if constexpr (Build) {
                hvUniqueArray element;
                if (!parseValue<true>(&element, depth + 1)) {
                    return false;
                }
                hvSetCell(value->get(), i, element.release());
            } else if (!parseValue<false>(nullptr, depth + 1)) {
                return false;
            }
        }
        return true;
    }
    // A structure: its field names, then the values element by element.
    std::uint32_t halves;
    std::uint32_t nfields;
    if (!readArray(halves) || halves != 2 || !readArray(nfields)) {
        return false;
    }
    std::vector<std::string_view> names;
    std::set<std::string_view> seen;
    for (std::uint32_t f = 0; f < nfields; ++f) {
        std::string_view name;
        // Field names are C strings at the interface: a NUL inside would end one early.
        if (!readText(name) || name.find('\0') != std::string_view::npos ||
            !seen.insert(name).second) {
            return false;
        }
        names.push_back(name);
    }
    std::uint32_t fields;
    if (!readArray(fields) || (nfields != 0 && count > fields / nfields) ||
        fields != count * nfields) {
        return false;
    }
    // Without fields nothing in the bytes bounds the count, so it is bounded here.
    if (nfields == 0 && count > kMaxFieldlessElements) {
        return false;
    }
    if constexpr (Build) {
        value->reset(hvArray::make(hvClassID::Struct, ndim, dims, nfields));
        (*value)->fieldNames().assign(names.begin(), names.end());
    }
    for (std::size_t i = 0; i < fields; ++i) {
        if constexpr (Build) {
            hvUniqueArray element;
            if (!parseValue<true>(&element, depth + 1)) {
                return false;
            }
            hvSetFieldByNumber(value->get(), i / nfields, static_cast<int>(i % nfields),
                               element.release());
        } else if (!parseValue<false>(nullptr, depth + 1)) {
            return false;
        }
    }
    return true;
}

}  // namespace pt::platform
