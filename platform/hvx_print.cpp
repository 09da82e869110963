#include <pt_platform/hvx.h>

#include <cstdarg>
#include <cstdio>

int hvxPrintf(const char* format, ...) {
    va_list args;
    va_start(args, format);
    const int written = std::vfprintf(stdout, format, args);
    va_end(args);
    std::fflush(stdout);
    return written;
}
