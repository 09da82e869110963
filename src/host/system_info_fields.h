#pragma once

// The eight texts of the system information as the fields of a structure, in order.

#include <performance_tracer/system_info_record.h>

#include <string>

namespace performance_tracer {

inline constexpr const char* kSystemInfoFields[] = {
    "processorStr",       "cpuSpeedStr",     "numCoresStr",      "totalPhysMemStr",
    "operatingSystemStr", "OrviaVersionStr", "javaVMVersionStr", "installedProductsStr"};

inline std::string SystemInfoRecord::*const kSystemInfoMembers[] = {
    &SystemInfoRecord::processorStr,       &SystemInfoRecord::cpuSpeedStr,
    &SystemInfoRecord::numCoresStr,        &SystemInfoRecord::totalPhysMemStr,
    &SystemInfoRecord::operatingSystemStr, &SystemInfoRecord::OrviaVersionStr,
    &SystemInfoRecord::javaVMVersionStr,   &SystemInfoRecord::installedProductsStr};

}  // namespace performance_tracer
