#include "content_reader.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "hvf_format.h"

namespace pt::platform {

namespace {

constexpr std::size_t kInputBlock = std::size_t{1} << 18;
/// The worker's pieces: how large, and how many it may fill ahead of the reader.
constexpr std::size_t kPiece = std::size_t{1} << 20;
constexpr std::size_t kPiecesAhead = 4;

/// Reads exactly size bytes at offset; false if the file has fewer or cannot be read.
bool readAt(int fd, std::uint64_t offset, unsigned char* out, std::size_t size) {
    while (size != 0) {
        const ssize_t got = ::pread(fd, out, size, static_cast<off_t>(offset));
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            return false;
        }
        out += got;
        offset += static_cast<std::uint64_t>(got);
        size -= static_cast<std::size_t>(got);
    }
    return true;
}

}  // namespace

ContentReader::~ContentReader() { close(); }

bool ContentReader::open(const char* path) {
    close();
    // Opening without waiting: a pipe would otherwise wait for a writer.
    _fd = ::open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (_fd < 0) {
        return false;
    }
    struct stat st;
    unsigned char header[kHeaderSize];
    unsigned char trailer[kTrailerSize];
    if (::fstat(_fd, &st) != 0 || !S_ISREG(st.st_mode) ||
        static_cast<std::uint64_t>(st.st_size) < kHeaderSize + kTrailerSize ||
        !readAt(_fd, 0, header, kHeaderSize) ||
        !readAt(_fd, static_cast<std::uint64_t>(st.st_size) - kTrailerSize, trailer,
                kTrailerSize) ||
        std::memcmp(header, kMagic, sizeof kMagic) != 0 ||
        getLittleEndian(&header[8], 2) != kVersion || getLittleEndian(&header[10], 2) != 0) {
        close();
        return false;
    }
    const auto size = static_cast<std::uint64_t>(st.st_size);
    _contentSize = getLittleEndian(&header[12], 8);
    const std::uint64_t compressed = getLittleEndian(&header[20], 8);
    if (compressed != size - kHeaderSize - kTrailerSize ||
        _contentSize > (compressed + 64) * kMaxExpansion || _contentSize > kMaxContent) {
        close();
        return false;
    }
    _expectedCrc = static_cast<std::uint32_t>(getLittleEndian(trailer, kTrailerSize));
    _input.reset(new unsigned char[kInputBlock]);
    _inputOffset = kHeaderSize;
    _inputEnd = size - kTrailerSize;
    _produced = 0;
    _crc = crc32_z(0, nullptr, 0);
    _z = z_stream{};
    if (inflateInit(&_z) != Z_OK) {
        close();
        return false;
    }
    _inflating = true;
    _state = State::Reading;
    _delivered = 0;
    _ended = false;
    _workerDone = false;
    _stopping = false;
    try {
        for (std::size_t i = 0; i < kPiecesAhead; ++i) {
            _spare.emplace_back(new unsigned char[kPiece]);
        }
        _worker = std::thread([this] { work(); });
    } catch (const std::exception&) {
        _spare.clear();  // no worker to be had: the reader inflates as it reads
    }
    return true;
}

void ContentReader::work() {
    for (;;) {
        std::unique_ptr<unsigned char[]> bytes;
        {
            std::unique_lock lock(_mutex);
            _changed.wait(lock, [this] { return !_spare.empty() || _stopping; });
            if (_stopping) {
                return;
            }
            bytes = std::move(_spare.back());
            _spare.pop_back();
        }
        std::size_t filled = 0;
        while (filled < kPiece) {
            const std::size_t got = inflateInto(bytes.get() + filled, kPiece - filled);
            if (got == 0) {
                break;
            }
            filled += got;
        }
        {
            std::lock_guard lock(_mutex);
            _ready.push_back(Piece{std::move(bytes), filled, 0});
            _workerDone = _state != State::Reading;
        }
        _changed.notify_all();
        if (_workerDone) {
            return;
        }
    }
}

std::size_t ContentReader::read(unsigned char* out, std::size_t room) {
    if (_ended || room == 0) {
        return 0;
    }
    if (!_worker.joinable()) {
        const std::size_t got = inflateInto(out, room);
        _delivered += got;
        _ended = got == 0;
        return got;
    }
    for (;;) {
        if (_current.taken < _current.size) {
            const std::size_t part = std::min(room, _current.size - _current.taken);
            std::memcpy(out, _current.bytes.get() + _current.taken, part);
            _current.taken += part;
            _delivered += part;
            return part;
        }
        std::unique_lock lock(_mutex);
        if (_current.bytes) {
            _spare.push_back(std::move(_current.bytes));
            _changed.notify_all();
        }
        _changed.wait(lock, [this] { return !_ready.empty() || _workerDone; });
        if (_ready.empty()) {
            lock.unlock();
            _worker.join();  // done: what it left of the stream's state is now the reader's
            _ended = true;
            return 0;
        }
        _current = std::move(_ready.front());
        _ready.pop_front();
    }
}

void ContentReader::stopWorker() {
    if (_worker.joinable()) {
        {
            std::lock_guard lock(_mutex);
            _stopping = true;
        }
        _changed.notify_all();
        _worker.join();
    }
    _ready.clear();
    _spare.clear();
    _current = Piece();
}

bool ContentReader::readInput() {
    const std::size_t part =
        static_cast<std::size_t>(std::min<std::uint64_t>(kInputBlock, _inputEnd - _inputOffset));
    if (!readAt(_fd, _inputOffset, _input.get(), part)) {
        return false;
    }
    _inputOffset += part;
    _z.next_in = _input.get();
    _z.avail_in = static_cast<uInt>(part);
    return true;
}

std::size_t ContentReader::inflateInto(unsigned char* out, std::size_t room) {
    if (_state != State::Reading) {
        return 0;
    }
    // Past the stated length the stream must end: one spare byte shows whether it goes on.
    unsigned char spare;
    for (;;) {
        if (_z.avail_in == 0 && _inputOffset < _inputEnd && !readInput()) {
            return fail();
        }
        const std::uint64_t left = _contentSize - _produced;
        const bool atLength = left == 0;
        _z.next_out = atLength ? &spare : out;
        _z.avail_out = atLength ? 1
                                : static_cast<uInt>(std::min<std::uint64_t>(
                                      {room, left, std::numeric_limits<uInt>::max()}));
        const uInt offered = _z.avail_out;
        const int status = inflate(&_z, Z_NO_FLUSH);
        const std::size_t produced = offered - _z.avail_out;
        if (atLength && produced != 0) {
            return fail();  // more content than the header states
        }
        if (produced != 0) {
            _crc = crc32_z(_crc, out, produced);
            _produced += produced;
        }
        if (status == Z_STREAM_END) {
            // The stream must end with the file, at the stated length, with the stated sum.
            if (_z.avail_in != 0 || _inputOffset != _inputEnd || _produced != _contentSize ||
                static_cast<std::uint32_t>(_crc) != _expectedCrc) {
                return fail();
            }
            _state = State::Complete;
            return produced;
        }
        if (status == Z_BUF_ERROR && _z.avail_in == 0 && _inputOffset == _inputEnd) {
            return fail();  // the file ends inside the stream
        }
        if (status != Z_OK && status != Z_BUF_ERROR) {
            return fail();
        }
        if (produced != 0) {
            return produced;
        }
    }
}

std::size_t ContentReader::fail() {
    _state = State::Failed;
    return 0;
}

bool ContentReader::close() {
    stopWorker();
    if (_inflating) {
        inflateEnd(&_z);
        _inflating = false;
    }
    _input.reset();
    _state = State::Closed;
    if (_fd < 0) {
        return true;
    }
    const bool closed = ::close(_fd) == 0;
    _fd = -1;
    return closed;
}

}  // namespace pt::platform
