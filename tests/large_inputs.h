#pragma once

// For tests of inputs whose cost once grew out of proportion to their size: whether this build
// runs under a sanitizer, the sizes such tests use, and the peak memory of the test process.
// A sanitized process is several times slower and holds shadow memory and freed blocks besides,
// so it runs smaller sizes and does not measure memory; the plain build runs the full sizes.

#include <sys/resource.h>

#include <cstddef>

namespace pt::testing {

#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kSanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
inline constexpr bool kSanitized = true;
#else
inline constexpr bool kSanitized = false;
#endif
#else
inline constexpr bool kSanitized = false;
#endif

/// full in a plain build, sanitized under a sanitizer.
inline constexpr int largeSize(int full, int sanitized) { return kSanitized ? sanitized : full; }

inline constexpr std::size_t kGiB = std::size_t{1} << 30;

/// The peak resident set of this process so far, in bytes.
inline std::size_t peakResidentBytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
}

}  // namespace pt::testing
