#include <pt_platform/ut.h>

#include <fstream>
#include <string>

// The speed of the first processor in kilohertz, from the kernel: the current clock of its
// processor listing, else the highest frequency of its frequency scaling, else 0.
double utCPUspeedOS() {
    std::ifstream cpuinfo("/proc/cpuinfo");
    for (std::string line; std::getline(cpuinfo, line);) {
        if (line.rfind("cpu MHz", 0) == 0) {
            const std::size_t colon = line.find(':');
            if (colon != std::string::npos) {
                try {
                    return std::stod(line.substr(colon + 1)) * 1000.0;
                } catch (const std::exception&) {
                    break;
                }
            }
        }
    }
    std::ifstream scaling("/sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq");
    double kilohertz = 0.0;
    return scaling >> kilohertz ? kilohertz : 0.0;
}
