#include <pt_platform/ut.h>

#include <ctime>

namespace {

double readClock(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

}  // namespace

double utRealtime() { return readClock(CLOCK_MONOTONIC); }

double utCPUtime() { return readClock(CLOCK_PROCESS_CPUTIME_ID); }
