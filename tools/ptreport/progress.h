#pragma once

// A progress line for work that may take a while: nothing for work that ends within a second,
// then one line on standard error that says what is being done, and how long it took at the end.

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace ptreport {

class Progress {
public:
    explicit Progress(std::string what);
    /// Ends the watch; says how long the work took if the line was shown.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

private:
    std::string _what;
    std::chrono::steady_clock::time_point _start;
    std::mutex _mutex;
    std::condition_variable _done;
    bool _finished = false;
    bool _shown = false;
    std::thread _watch;
};

}  // namespace ptreport
