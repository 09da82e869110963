// The value-file container: a header, a zlib stream of MessagePack pairs [name, value], and a
// CRC-32 of the uncompressed stream.

#include <pt_platform/hv.h>
#include <pt_platform/hvf.h>

#include <zlib.h>

#include <cstdio>
#include <cstring>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "deflate_stream.h"
#include "hv_codec.h"
#include "value_arena.h"

namespace {

constexpr unsigned char kMagic[8] = {0x89, 'H', 'V', 'F', '\r', '\n', 0x1A, '\n'};
constexpr std::uint16_t kVersion = 1;
constexpr std::size_t kHeaderSize = 28;  // magic, version, flags, two 64-bit lengths
constexpr std::size_t kTrailerSize = 4;  // CRC-32
/// Deflate never shrinks data by more than about 1:1032; a header that claims more is lying.
constexpr std::uint64_t kMaxExpansion = 1032;

void putLittleEndian(unsigned char* out, std::uint64_t value, std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; ++i) {
        out[i] = static_cast<unsigned char>(value >> (8 * i));
    }
}

std::uint64_t getLittleEndian(const unsigned char* in, std::size_t bytes) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < bytes; ++i) {
        value |= std::uint64_t{in[i]} << (8 * i);
    }
    return value;
}

/// The whole file in memory, or false.
bool readWhole(const char* path, std::vector<unsigned char>& bytes) {
    std::FILE* file = std::fopen(path, "rb");
    if (!file) {
        return false;
    }
    bool ok = std::fseek(file, 0, SEEK_END) == 0;
    const long size = ok ? std::ftell(file) : -1;
    ok = ok && size >= 0 && std::fseek(file, 0, SEEK_SET) == 0;
    if (ok) {
        bytes.resize(static_cast<std::size_t>(size));
        ok = std::fread(bytes.data(), 1, bytes.size(), file) == bytes.size();
    }
    std::fclose(file);
    return ok;
}

bool inflateAll(const unsigned char* in, std::size_t inSize, std::vector<unsigned char>& out) {
    unsigned char none = 0;  // inflate wants somewhere to write even when nothing comes
    z_stream z{};
    if (inflateInit(&z) != Z_OK) {
        return false;
    }
    z.next_in = const_cast<Bytef*>(in);
    z.avail_in = static_cast<uInt>(inSize);
    z.next_out = out.empty() ? &none : out.data();
    z.avail_out = static_cast<uInt>(out.size());
    const int status = inflate(&z, Z_FINISH);
    const bool ok = status == Z_STREAM_END && z.avail_in == 0 && z.avail_out == 0;
    inflateEnd(&z);
    return ok;
}

}  // namespace

struct hvFile {
    bool writing = false;
    // Reading: the uncompressed content, and where in it each variable's value lies.
    struct Variable {
        std::size_t offset;
        std::size_t size;
    };
    std::map<std::string, Variable> variables;
    std::vector<unsigned char> content;
    // Writing.
    std::FILE* out = nullptr;
    std::unique_ptr<pt::platform::DeflateStream> stream;
    std::set<std::string> written;
    bool failed = false;
};

hvFile* hvfOpen(const char* path, const char* mode) {
    if (!path || !mode) {
        return nullptr;
    }
    const std::string how(mode);
    if (how == "w") {
        std::FILE* out = std::fopen(path, "wb");
        if (!out) {
            return nullptr;
        }
        auto file = std::make_unique<hvFile>();
        file->writing = true;
        file->out = out;
        // The header's lengths are known at the end; hvfClose comes back for them.
        const unsigned char placeholder[kHeaderSize] = {};
        file->failed = std::fwrite(placeholder, 1, kHeaderSize, out) != kHeaderSize;
        file->stream = std::make_unique<pt::platform::DeflateStream>(out);
        return file.release();
    }
    if (how != "r") {
        return nullptr;
    }
    std::vector<unsigned char> bytes;
    if (!readWhole(path, bytes) || bytes.size() < kHeaderSize + kTrailerSize ||
        std::memcmp(bytes.data(), kMagic, sizeof kMagic) != 0 ||
        getLittleEndian(&bytes[8], 2) != kVersion || getLittleEndian(&bytes[10], 2) != 0) {
        return nullptr;
    }
    const std::uint64_t uncompressed = getLittleEndian(&bytes[12], 8);
    const std::uint64_t compressed = getLittleEndian(&bytes[20], 8);
    if (compressed != bytes.size() - kHeaderSize - kTrailerSize ||
        uncompressed > (compressed + 64) * kMaxExpansion || uncompressed > (uint64_t{1} << 40) ||
        compressed > std::numeric_limits<uInt>::max() ||
        uncompressed > std::numeric_limits<uInt>::max()) {
        return nullptr;
    }
    std::vector<unsigned char> content;
    try {
        content.resize(static_cast<std::size_t>(uncompressed));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
    if (!inflateAll(&bytes[kHeaderSize], static_cast<std::size_t>(compressed), content)) {
        return nullptr;
    }
    const std::uint32_t crc =
        static_cast<std::uint32_t>(getLittleEndian(&bytes[bytes.size() - 4], 4));
    if (crc32_z(crc32_z(0, nullptr, 0), content.data(), content.size()) != crc) {
        return nullptr;
    }
    bytes = {};

    auto file = std::make_unique<hvFile>();
    file->content = std::move(content);
    // Every value is checked here; it is made only when it is asked for.
    const unsigned char* start = file->content.data();
    pt::platform::ValueReader reader(start, file->content.size());
    while (!reader.atEnd()) {
        std::uint32_t parts;
        std::string_view name;
        if (!reader.readArray(parts) || parts != 2 || !reader.readText(name)) {
            return nullptr;
        }
        const std::size_t offset = file->content.size() - reader.remaining();
        if (reader.takeNil() || !reader.skipValue()) {
            return nullptr;
        }
        const std::size_t size = file->content.size() - reader.remaining() - offset;
        if (!file->variables.emplace(std::string(name), hvFile::Variable{offset, size}).second) {
            return nullptr;  // one name, one variable
        }
    }
    return file.release();
}

namespace {

/// The bytes of a variable of a file open for reading, or null.
const hvFile::Variable* findVariable(const hvFile* file, const char* name) {
    if (!file || file->writing || !name) {
        return nullptr;
    }
    const auto found = file->variables.find(name);
    return found == file->variables.end() ? nullptr : &found->second;
}

/// Checks a put's handle and name, and writes the name that opens the variable.
bool startVariable(hvFile* file, const char* name) {
    if (!file || !file->writing || !name || !file->written.insert(name).second) {
        return false;
    }
    msgpack::packer<pt::platform::DeflateStream> packer(*file->stream);
    packer.pack_array(2);
    const std::size_t length = std::strlen(name);
    packer.pack_str(static_cast<std::uint32_t>(length));
    packer.pack_str_body(name, static_cast<std::uint32_t>(length));
    return true;
}

/// A put answers for its own bytes: they are all in the file before it returns.
int endVariable(hvFile* file) {
    if (!file->stream->drain() || std::ferror(file->out)) {
        file->failed = true;
        return 1;
    }
    return 0;
}

}  // namespace

hvArray* hvfGetVariable(hvFile* file, const char* name) {
    const hvFile::Variable* variable = findVariable(file, name);
    if (!variable) {
        return nullptr;
    }
    pt::platform::ValueReader reader(file->content.data() + variable->offset, variable->size);
    hvUniqueArray value;
    reader.readValue(value);  // checked when the file was opened
    return value.release();
}

bool hvfForEachCell(hvFile* file, const char* name,
                    const std::function<bool(const hvArray*)>& visit) {
    const hvFile::Variable* variable = findVariable(file, name);
    if (!variable) {
        return false;
    }
    // Checked when the file was opened, so each step reads what it expects.
    pt::platform::ValueReader reader(file->content.data() + variable->offset, variable->size);
    pt::platform::ValueReader::ValueHeader header;
    std::uint32_t elements = 0;
    if (!reader.readHeader(header) || header.classID != hvClassID::Cell ||
        !reader.readCellElements(elements, header)) {
        return true;
    }
    // Each element lives only for its visit, so all of its values share an arena.
    pt::platform::ValueArena arena;
    reader.useArena(&arena);
    for (std::uint32_t i = 0; i < elements; ++i) {
        hvUniqueArray element;
        const bool more = reader.readValue(element, 1) && visit(element.get());
        element.reset();
        arena.reset();
        if (!more) {
            break;
        }
    }
    return true;
}

int hvfPutVariable(hvFile* file, const char* name, const hvArray* value) {
    if (!value || !startVariable(file, name)) {
        return 1;
    }
    msgpack::packer<pt::platform::DeflateStream> packer(*file->stream);
    try {
        pt::platform::packValue(packer, value);
    } catch (const std::length_error&) {
        file->failed = true;  // what was packed of it is in the stream already
        return 1;
    }
    return endVariable(file);
}

int hvfPutCellRow(hvFile* file, const char* name, std::size_t count,
                  const std::function<hvArray*(std::size_t)>& element) {
    if (count > std::numeric_limits<std::uint32_t>::max() || !startVariable(file, name)) {
        return 1;
    }
    msgpack::packer<pt::platform::DeflateStream> packer(*file->stream);
    const std::size_t dims[] = {1, count};
    pt::platform::packHeader(packer, hvClassID::Cell, dims);
    packer.pack_array(static_cast<std::uint32_t>(count));
    try {
        for (std::size_t i = 0; i < count; ++i) {
            const hvUniqueArray value(element(i));
            pt::platform::packValue(packer, value.get());
        }
    } catch (...) {
        file->failed = true;
        throw;
    }
    return endVariable(file);
}

int hvfClose(hvFile* file) {
    if (!file) {
        return 1;
    }
    std::unique_ptr<hvFile> owned(file);
    if (!file->writing) {
        return 0;
    }
    bool ok = !file->failed && file->stream->finish();
    unsigned char trailer[kTrailerSize];
    putLittleEndian(trailer, file->stream->crc(), 4);
    ok = ok && std::fwrite(trailer, 1, kTrailerSize, file->out) == kTrailerSize;
    unsigned char header[kHeaderSize];
    std::memcpy(header, kMagic, sizeof kMagic);
    putLittleEndian(&header[8], kVersion, 2);
    putLittleEndian(&header[10], 0, 2);
    putLittleEndian(&header[12], file->stream->uncompressed(), 8);
    putLittleEndian(&header[20], file->stream->compressed(), 8);
    ok = ok && std::fseek(file->out, 0, SEEK_SET) == 0 &&
         std::fwrite(header, 1, kHeaderSize, file->out) == kHeaderSize;
    ok = std::fclose(file->out) == 0 && ok;
    return ok ? 0 : 1;
}
