#include "deflate_stream.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace pt::platform {

DeflateStream::DeflateStream(Sink sink)
    : _sink(std::move(sink)),
      _filling(new unsigned char[kBlock]),
      _handed(new unsigned char[kBlock]),
      _out(kBlock),
      _crc(crc32_z(0, nullptr, 0)) {
    _ok = deflateInit(&_z, Z_BEST_SPEED) == Z_OK;
    try {
        _worker = std::thread([this] { work(); });
    } catch (const std::system_error&) {
        // No thread to be had: the writer compresses each block itself.
    }
}

DeflateStream::~DeflateStream() {
    if (_worker.joinable()) {
        {
            std::lock_guard lock(_mutex);
            _stopping = true;
        }
        _changed.notify_all();
        _worker.join();
    }
    deflateEnd(&_z);
}

void DeflateStream::writeAcross(const char* data, std::size_t size) {
    _uncompressed += size;
    while (size != 0) {
        const std::size_t part = std::min(size, kBlock - _used);
        std::memcpy(_filling.get() + _used, data, part);
        _used += part;
        data += part;
        size -= part;
        if (_used == kBlock) {
            handOver(false);
        }
    }
}

bool DeflateStream::drain() {
    if (_used != 0) {
        handOver(false);
    }
    std::unique_lock lock(_mutex);
    _changed.wait(lock, [this] { return !_blockWaiting; });
    return _ok;
}

bool DeflateStream::finish() {
    handOver(true);
    std::unique_lock lock(_mutex);
    _changed.wait(lock, [this] { return !_blockWaiting; });
    return _ok;
}

void DeflateStream::handOver(bool last) {
    // The checksum is the writer's share of the work, so that the worker only compresses.
    if (_used != 0) {
        _crc = crc32_z(_crc, _filling.get(), _used);
    }
    if (!_worker.joinable()) {
        compress(_filling.get(), _used, last ? Z_FINISH : Z_NO_FLUSH);
        _used = 0;
        return;
    }
    {
        std::unique_lock lock(_mutex);
        _changed.wait(lock, [this] { return !_blockWaiting; });
        _filling.swap(_handed);
        _handedSize = _used;
        _blockWaiting = true;
        _lastBlock = last;
    }
    _changed.notify_all();
    _used = 0;
}

void DeflateStream::work() {
    std::unique_lock lock(_mutex);
    for (;;) {
        _changed.wait(lock, [this] { return _blockWaiting || _stopping; });
        if (!_blockWaiting) {
            return;
        }
        const int flush = _lastBlock ? Z_FINISH : Z_NO_FLUSH;
        lock.unlock();
        compress(_handed.get(), _handedSize, flush);
        lock.lock();
        _blockWaiting = false;
        _changed.notify_all();
    }
}

void DeflateStream::compress(const unsigned char* data, std::size_t size, int flush) {
    if (!_ok || (size == 0 && flush == Z_NO_FLUSH)) {
        return;
    }
    _z.next_in = const_cast<Bytef*>(data);
    _z.avail_in = static_cast<uInt>(size);
    do {
        _z.next_out = _out.data();
        _z.avail_out = static_cast<uInt>(_out.size());
        if (deflate(&_z, flush) == Z_STREAM_ERROR) {
            _ok = false;
            return;
        }
        const std::size_t produced = _out.size() - _z.avail_out;
        if (produced && !_sink(_out.data(), produced)) {
            _ok = false;
            return;
        }
        _compressed += produced;
    } while (_z.avail_out == 0 || (flush == Z_FINISH && _z.avail_in != 0));
}

}  // namespace pt::platform
