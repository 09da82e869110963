#pragma once

// The compressed body of a value file being written. MessagePack's packer writes a few bytes at
// a time; they gather in blocks, and a worker thread compresses each full block while the
// packer fills the next and sums the checksum, so that on two cores a save costs little more
// than its compression.

#include <zlib.h>

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace pt::platform {

class DeflateStream {
public:
    /// Where the compressed bytes go, in order; false if they could not all be taken. Called
    /// from the worker.
    using Sink = std::function<bool(const unsigned char* data, std::size_t size)>;

    explicit DeflateStream(Sink sink);
    /// Stops the worker; what was not finished is dropped.
    ~DeflateStream();
    DeflateStream(const DeflateStream&) = delete;
    DeflateStream& operator=(const DeflateStream&) = delete;

    /// What MessagePack's packer writes to, a few bytes at a time.
    void write(const char* data, std::size_t size) {
        if (size <= kBlock - _used) {
            std::memcpy(_filling.get() + _used, data, size);
            _used += size;
            _uncompressed += size;
        } else {
            writeAcross(data, size);
        }
    }
    /// Waits until everything written so far has gone to the compressor; false if anything
    /// written so far could not be compressed or taken by the sink. What the compressor holds
    /// back reaches the sink only with finish.
    bool drain();
    /// Ends the stream; false if anything could not be compressed or written.
    bool finish();

    std::uint64_t uncompressed() const { return _uncompressed; }
    std::uint64_t compressed() const { return _compressed; }
    std::uint32_t crc() const { return static_cast<std::uint32_t>(_crc); }

private:
    static constexpr std::size_t kBlock = std::size_t{1} << 18;

    /// A write that fills the block: hands blocks over as they fill.
    void writeAcross(const char* data, std::size_t size);
    /// Gives the filled block to the worker, waiting until it has taken the previous one.
    void handOver(bool last);
    void work();
    /// Compresses a block into the sink (the worker's side, or the caller's without a worker).
    void compress(const unsigned char* data, std::size_t size, int flush);

    Sink _sink;
    z_stream _z{};
    std::unique_ptr<unsigned char[]> _filling;
    std::size_t _used = 0;
    std::unique_ptr<unsigned char[]> _handed;
    std::size_t _handedSize = 0;
    std::vector<unsigned char> _out;
    std::uint64_t _uncompressed = 0;
    uLong _crc;
    // The worker's, read by the writer only when the worker is idle.
    std::uint64_t _compressed = 0;
    bool _ok;

    std::mutex _mutex;
    std::condition_variable _changed;
    bool _blockWaiting = false;  // _handed holds a block the worker has not finished
    bool _lastBlock = false;
    bool _stopping = false;
    std::thread _worker;
};

}  // namespace pt::platform
