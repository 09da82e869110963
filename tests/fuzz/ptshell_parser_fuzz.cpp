// Any text: the parser answers a program or a syntax error, and never crashes or hangs.

#include <cstddef>
#include <cstdint>
#include <string>

#include "parser.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    try {
        ptshell::parse(text);
    } catch (const ptshell::SyntaxError&) {
    }
    return 0;
}
