// Any text, run: without the tracer module, with sleep and exit switched off and loops and
// values capped, so that no input can wait, end the process, touch a file or run away.

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "session.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ptshell::EvalOptions options;
    options.allowSleep = false;
    options.allowExit = false;
    options.maxLoopSteps = 20000;
    options.maxElements = 100000;
    options.maxValueBytes = std::size_t{16} << 20;
    std::ostringstream out;
    std::ostringstream err;
    ptshell::Session session(out, err, options);
    int status = 0;
    session.run(std::string(reinterpret_cast<const char*>(data), size), status);
    return 0;
}
