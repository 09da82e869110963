// Opening value files, and writing them: variables go through the compressor as they are
// put, and hvfClose finishes the stream, writes the lengths and the checksum, and puts the
// file in place (see save_target.h).

#include <pt_platform/hv.h>
#include <pt_platform/hvf.h>
#include <pt_platform/hvf_rows.h>

#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>

#include "hv_codec.h"
#include "hvf_file.h"
#include "hvf_format.h"

namespace {

using pt::platform::DeflateStream;

/// Checks a put's handle and name, and writes the name that opens the variable.
bool startVariable(hvFile* file, const char* name) {
    if (!file || !file->writing || file->failed || !name || !file->written.insert(name).second) {
        return false;
    }
    msgpack::packer<DeflateStream> packer(*file->stream);
    packer.pack_array(2);
    const std::size_t length = std::strlen(name);
    packer.pack_str(static_cast<std::uint32_t>(length));
    packer.pack_str_body(name, static_cast<std::uint32_t>(length));
    return true;
}

/// A put answers for every byte written so far that the compressor has let go of; what it
/// still holds is answered for by the close.
int endVariable(hvFile* file) {
    if (!file->stream->drain()) {
        file->failed = true;
        return 1;
    }
    return 0;
}

hvFile* openForWriting(const char* path) {
    auto file = std::make_unique<hvFile>();
    if (!file->target.open(path)) {
        return nullptr;
    }
    file->writing = true;
    hvFile* raw = file.get();
    if (raw->target.replacesFile()) {
        // The header's lengths are known at the end; hvfClose comes back for them.
        const unsigned char placeholder[pt::platform::kHeaderSize] = {};
        raw->failed = !raw->target.write(placeholder, sizeof placeholder);
        raw->stream =
            std::make_unique<DeflateStream>([raw](const unsigned char* data, std::size_t size) {
                return raw->target.write(data, size);
            });
    } else {
        raw->stream =
            std::make_unique<DeflateStream>([raw](const unsigned char* data, std::size_t size) {
                try {
                    raw->held.insert(raw->held.end(), data, data + size);
                    return true;
                } catch (const std::bad_alloc&) {
                    return false;
                }
            });
    }
    return file.release();
}

/// Finishes the stream and writes the header and the checksum around it.
bool finishContent(hvFile* file) {
    using namespace pt::platform;
    if (file->failed || !file->stream->finish()) {
        return false;
    }
    unsigned char header[kHeaderSize];
    std::memcpy(header, kMagic, sizeof kMagic);
    putLittleEndian(&header[8], kVersion, 2);
    putLittleEndian(&header[10], 0, 2);
    putLittleEndian(&header[12], file->stream->uncompressed(), 8);
    putLittleEndian(&header[20], file->stream->compressed(), 8);
    unsigned char trailer[kTrailerSize];
    putLittleEndian(trailer, file->stream->crc(), kTrailerSize);
    if (file->target.replacesFile()) {
        return file->target.write(trailer, kTrailerSize) &&
               file->target.writeAt(0, header, kHeaderSize);
    }
    return file->target.write(header, kHeaderSize) &&
           file->target.write(file->held.data(), file->held.size()) &&
           file->target.write(trailer, kTrailerSize);
}

/// Stops the compressor, which may still be writing, then drops what was written.
void abandon(hvFile* file) {
    file->stream.reset();
    file->target.discard();
}

}  // namespace

hvFile* hvfOpen(const char* path, const char* mode) {
    if (!path || !mode) {
        return nullptr;
    }
    const std::string how(mode);
    if (how == "w") {
        return openForWriting(path);
    }
    return how == "r" ? pt::platform::openForReading(path) : nullptr;
}

int hvfPutVariable(hvFile* file, const char* name, const hvArray* value) {
    if (!value || !startVariable(file, name)) {
        return 1;
    }
    msgpack::packer<DeflateStream> packer(*file->stream);
    try {
        pt::platform::packValue(packer, value);
    } catch (const std::length_error&) {
        file->failed = true;  // what was packed of it is in the stream already
        return 1;
    }
    return endVariable(file);
}

int hvfPutRows(hvFile* file, const char* name, std::size_t count,
               const std::function<void(std::size_t, hvfRowWriter&)>& row) {
    if (count > std::numeric_limits<std::uint32_t>::max() || !startVariable(file, name)) {
        return 1;
    }
    hvfRowWriter writer(*file->stream);
    try {
        writer._due = 1;
        writer.cellRow(count);
        for (std::size_t i = 0; i < count && writer._fits; ++i) {
            writer._due = 1;
            row(i, writer);
            writer._fits = writer._fits && writer._due == 0;
        }
    } catch (...) {
        file->failed = true;  // part of the variable is in the stream already
        throw;
    }
    if (!writer._fits) {
        file->failed = true;
        return 1;
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
    if (!finishContent(file) || !file->target.commit()) {
        abandon(file);
        return 1;
    }
    return 0;
}

void hvfDiscard(hvFile* file) {
    const std::unique_ptr<hvFile> owned(file);
    if (file && file->writing) {
        abandon(file);
    }
}
