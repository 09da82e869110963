#pragma once

// How the host loads a module: the module exports QueryHVFcnTable_<name>, which answers the
// address of a static descriptor; the host checks the descriptor's layout version and calls
// the module's entry points through it.

#include <pt_platform/export.h>

#include <cstdint>
#include <string>

/// The layout of hvModuleDescriptor that this host understands.
inline constexpr std::uint32_t HV_MODULE_DESCRIPTOR_VERSION = 1;

struct hvModuleDescriptor {
    std::uint32_t layoutVersion;
    const char* moduleName;
    void (*initialize)();
    void (*terminate)();
};

using hvQueryFcnTable = const hvModuleDescriptor* (*)();

/// A module loaded into the host.
struct hvLoadedModule {
    void* handle = nullptr;
    const hvModuleDescriptor* descriptor = nullptr;
};

/// Loads the module at path, whose name is its file name without "lib" and extensions
/// (libperformance_tracer.so is "performance_tracer"), and runs its initialise entry point.
/// On failure answers false with a message in error.
PT_PLATFORM_API bool hvLoadModule(const std::string& path, hvLoadedModule& module,
                                  std::string& error);
/// Runs the module's terminate entry point; the module stays mapped.
PT_PLATFORM_API void hvTerminateModule(const hvLoadedModule& module);
