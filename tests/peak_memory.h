#pragma once

// The most memory a test process has held, for tests of inputs whose cost once grew out of
// proportion to their size. Under AddressSanitizer a process holds shadow memory and freed
// blocks besides, so such builds do not measure.

#include <sys/resource.h>

#include <cstddef>

namespace pt::testing {

#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kMeasuresPeakMemory = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
inline constexpr bool kMeasuresPeakMemory = false;
#else
inline constexpr bool kMeasuresPeakMemory = true;
#endif
#else
inline constexpr bool kMeasuresPeakMemory = true;
#endif

inline constexpr std::size_t kGiB = std::size_t{1} << 30;

/// The peak resident set of this process so far, in bytes.
inline std::size_t peakResidentBytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
}

}  // namespace pt::testing
