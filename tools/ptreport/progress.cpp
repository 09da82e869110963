#include "progress.h"

#include <cstdio>

namespace ptreport {

Progress::Progress(std::string what)
    : _what(std::move(what)), _start(std::chrono::steady_clock::now()) {
    _watch = std::thread([this] {
        std::unique_lock<std::mutex> lock(_mutex);
        if (!_done.wait_for(lock, std::chrono::seconds(1), [this] { return _finished; })) {
            std::fprintf(stderr, "ptreport: %s ...\n", _what.c_str());
            _shown = true;
        }
    });
}

Progress::~Progress() {
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        _finished = true;
    }
    _done.notify_one();
    _watch.join();
    if (_shown) {
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - _start;
        std::fprintf(stderr, "ptreport: %s took %.1f s\n", _what.c_str(), took.count());
    }
}

}  // namespace ptreport
