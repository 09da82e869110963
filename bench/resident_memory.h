#pragma once

// The resident memory of this process, for the footprint programs: a field of /proc/self/status
// and a fresh high-water mark of the resident set.

#include <malloc.h>

#include <fstream>
#include <string>

namespace bench {

/// A line of /proc/self/status, in KiB.
inline long statusKiB(const std::string& field) {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind(field, 0) == 0) {
            return std::stol(line.substr(field.size()));
        }
    }
    return 0;
}

/// Returns freed memory to the system and starts a new high-water mark; the resident size.
inline long startPeak() {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5";
    return statusKiB("VmRSS:");
}

}  // namespace bench
