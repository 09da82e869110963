#pragma once

// The content of a value file on disk, inflated a piece at a time. Every check of the container
// is made as the pieces come: the content may never grow past the length that the header
// states, the stream must end exactly there and at the end of the file, and the checksum must
// match at the end. So nothing larger than what was actually inflated is ever asked for, and a
// file whose stream disagrees with its header fails as soon as it does. A worker thread inflates
// a few pieces ahead of the reader, so that on two cores a load costs little more than its
// parsing.

#include <zlib.h>

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace pt::platform {

class ContentReader {
public:
    ContentReader() = default;
    ~ContentReader();
    ContentReader(const ContentReader&) = delete;
    ContentReader& operator=(const ContentReader&) = delete;

    /// Opens a regular file and checks its header. False for anything else that the name may
    /// stand for (a folder, a pipe, a device), and for a file that is no value file; none of
    /// these is waited on.
    bool open(const char* path);
    /// Copies the next content bytes into out, at most room of them; the count, which is 0 only
    /// at the end of the content or on a failure.
    std::size_t read(unsigned char* out, std::size_t room);
    /// True once all of the content was read and found sound.
    bool complete() const { return _ended && _state == State::Complete; }
    /// The content's length as the header states it, and how much of it read has not given yet.
    std::uint64_t contentSize() const { return _contentSize; }
    std::uint64_t contentLeft() const { return _contentSize - _delivered; }
    /// Closes the file; false if closing fails.
    bool close();

private:
    enum class State { Closed, Reading, Complete, Failed };
    /// Inflated content that the worker has handed over.
    struct Piece {
        std::unique_ptr<unsigned char[]> bytes;
        std::size_t size = 0;
        std::size_t taken = 0;
    };

    // The inflating side: the worker's, or the reader's own without a worker.
    std::size_t inflateInto(unsigned char* out, std::size_t room);
    std::size_t fail();
    /// Refills the input from the file; false if the file could not be read.
    bool readInput();
    void work();
    void stopWorker();

    int _fd = -1;
    State _state = State::Closed;
    z_stream _z{};
    bool _inflating = false;
    std::unique_ptr<unsigned char[]> _input;
    std::uint64_t _inputOffset = 0;  // of the next compressed byte in the file
    std::uint64_t _inputEnd = 0;     // where the compressed stream ends in the file
    std::uint64_t _contentSize = 0;
    std::uint64_t _produced = 0;
    std::uint32_t _expectedCrc = 0;
    uLong _crc = 0;

    // The reading side.
    std::uint64_t _delivered = 0;
    Piece _current;
    bool _ended = false;  // nothing more will come: the worker is done, or the stream is

    std::mutex _mutex;
    std::condition_variable _changed;
    std::deque<Piece> _ready;
    std::vector<std::unique_ptr<unsigned char[]>> _spare;
    bool _workerDone = false;
    bool _stopping = false;
    std::thread _worker;
};

}  // namespace pt::platform
