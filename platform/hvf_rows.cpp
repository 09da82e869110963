// Rows written straight into the compressor, and the reading rules of the values that cells of
// a file stand for.

#include <pt_platform/hvf_rows.h>

#include <algorithm>
#include <cstring>

#include "deflate_stream.h"
#include "hv_codec.h"

namespace {

using pt::platform::DeflateStream;

/// A 1-by-1 value of a plain class, as packValue writes it: [class, [1, 1], bin of its bytes].
void putScalar(DeflateStream& stream, hvClassID classID, const void* data, std::size_t size) {
    unsigned char bytes[16] = {0x93, static_cast<unsigned char>(classID), 0x92, 0x01, 0x01,
                               0xC4, static_cast<unsigned char>(size)};
    std::memcpy(bytes + 7, data, size);
    stream.write(reinterpret_cast<const char*>(bytes), 7 + size);
}

bool isPlainAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; });
}

}  // namespace

void hvfRowWriter::element() {
    if (_due == 0) {
        _fits = false;
    } else {
        --_due;
    }
}

void hvfRowWriter::cellRow(std::size_t cells) {
    element();
    _due += cells;
    if (cells < 16) {  // the row of a point: [cell, [1, n], fixarray n]
        const unsigned char bytes[] = {0x93,
                                       static_cast<unsigned char>(hvClassID::Cell),
                                       0x92,
                                       0x01,
                                       static_cast<unsigned char>(cells),
                                       static_cast<unsigned char>(0x90 | cells)};
        _stream.write(reinterpret_cast<const char*>(bytes), sizeof bytes);
        return;
    }
    msgpack::packer<DeflateStream> packer(_stream);
    const std::size_t dims[] = {1, cells};
    pt::platform::packHeader(packer, hvClassID::Cell, dims);
    packer.pack_array(pt::platform::packedLength(cells));
}

void hvfRowWriter::text(std::string_view utf8) {
    element();
    if (utf8.size() < 32 && isPlainAscii(utf8)) {  // most names: [char, [1, n], fixstr n]
        unsigned char bytes[6 + 31] = {0x93,
                                       static_cast<unsigned char>(hvClassID::Char),
                                       0x92,
                                       0x01,
                                       static_cast<unsigned char>(utf8.size()),
                                       static_cast<unsigned char>(0xA0 | utf8.size())};
        std::memcpy(bytes + 6, utf8.data(), utf8.size());
        _stream.write(reinterpret_cast<const char*>(bytes), 6 + utf8.size());
        return;
    }
    msgpack::packer<DeflateStream> packer(_stream);
    if (isPlainAscii(utf8)) {
        const std::size_t dims[] = {1, utf8.size()};
        pt::platform::packHeader(packer, hvClassID::Char, dims);
        packer.pack_str(pt::platform::packedLength(utf8.size()));
        packer.pack_str_body(utf8.data(), static_cast<std::uint32_t>(utf8.size()));
        return;
    }
    // As the value holds it: 16-bit characters, written back as UTF-8.
    const std::u16string chars = hvUtf8ToChars(utf8);
    const std::string text = hvCharsToUtf8(chars.data(), chars.size());
    const std::size_t dims[] = {1, chars.size()};
    pt::platform::packHeader(packer, hvClassID::Char, dims);
    packer.pack_str(pt::platform::packedLength(text.size()));
    packer.pack_str_body(text.data(), static_cast<std::uint32_t>(text.size()));
}

void hvfRowWriter::int32Scalar(std::int32_t value) {
    element();
    putScalar(_stream, hvClassID::Int32, &value, sizeof value);
}

void hvfRowWriter::logicalScalar(bool value) {
    element();
    const unsigned char byte = value ? 1 : 0;
    putScalar(_stream, hvClassID::Logical, &byte, 1);
}

void hvfRowWriter::doubleScalar(double value) {
    element();
    putScalar(_stream, hvClassID::Double, &value, sizeof value);
}

std::string_view hvfCellText(const hvfCell* cell, std::string& scratch) {
    if (!cell || cell->classID != hvClassID::Char) {
        return {};
    }
    if (isPlainAscii(cell->bytes)) {
        return cell->bytes;
    }
    const std::u16string chars = hvUtf8ToChars(cell->bytes);
    scratch = hvCharsToUtf8(chars.data(), chars.size());
    return scratch;
}

namespace {

template <typename T>
double firstAsDouble(std::string_view bytes) {
    T element;
    std::memcpy(&element, bytes.data(), sizeof element);
    return static_cast<double>(element);
}

}  // namespace

double hvfCellScalar(const hvfCell* cell) {
    if (!cell || cell->count == 0) {
        return 0.0;
    }
    const std::string_view bytes = cell->bytes;
    switch (cell->classID) {
        case hvClassID::Logical: return bytes[0] != 0 ? 1.0 : 0.0;
        case hvClassID::Char:
            if ((bytes[0] & 0x80) == 0) {
                return static_cast<double>(bytes[0]);
            }
            return static_cast<double>(hvUtf8ToChars(bytes)[0]);
        case hvClassID::Double: return firstAsDouble<double>(bytes);
        case hvClassID::Int8: return firstAsDouble<std::int8_t>(bytes);
        case hvClassID::UInt8: return firstAsDouble<std::uint8_t>(bytes);
        case hvClassID::Int16: return firstAsDouble<std::int16_t>(bytes);
        case hvClassID::UInt16: return firstAsDouble<std::uint16_t>(bytes);
        case hvClassID::Int32: return firstAsDouble<std::int32_t>(bytes);
        case hvClassID::UInt32: return firstAsDouble<std::uint32_t>(bytes);
        case hvClassID::Int64: return firstAsDouble<std::int64_t>(bytes);
        case hvClassID::UInt64: return firstAsDouble<std::uint64_t>(bytes);
        default: return 0.0;
    }
}

std::int32_t hvfCellInt32Bits(const hvfCell* cell) {
    if (!cell || !hvIsIntegerClass(cell->classID)) {
        return 0;
    }
    std::uint32_t bits = 0;
    std::memcpy(&bits, cell->bytes.data(), std::min(cell->bytes.size(), sizeof bits));
    return static_cast<std::int32_t>(bits);
}

bool hvfCellIsTrue(const hvfCell* cell) {
    return cell && cell->classID == hvClassID::Logical && cell->count == 1 && cell->bytes[0] != 0;
}
