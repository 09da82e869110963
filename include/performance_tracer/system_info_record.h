#pragma once

#include <string>

/// Eight texts that describe the machine and the host a data set comes from.
struct SystemInfoRecord {
    std::string processorStr;
    std::string cpuSpeedStr;
    std::string numCoresStr;
    std::string totalPhysMemStr;
    std::string operatingSystemStr;
    std::string OrviaVersionStr;
    std::string javaVMVersionStr;
    std::string installedProductsStr;
};
