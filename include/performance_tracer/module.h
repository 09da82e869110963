#pragma once

// The library as a module of the host: the entry points that the host's module loader calls.
// Loading registers the package PerfTools with its class Tracer; nothing is ever unregistered
// and the tracer lives until the process ends.

#include <performance_tracer/export.h>

#include <pt_platform/module.h>

extern "C" {
/// Runs initialize_performance_tracer.
PT_API void HVInitialize_performance_tracer();
/// Runs destroy_performance_tracer.
PT_API void HVTerminate_performance_tracer();
/// The module descriptor of this library.
PT_API const hvModuleDescriptor* QueryHVFcnTable_performance_tracer();
}

/// Registers the package, once per process.
PT_API void initialize_performance_tracer();
/// Runs the deregistration, once per process; it leaves everything registered.
PT_API void destroy_performance_tracer();
/// Hands the package description of PerfTools to the class system, once per process.
PT_API void ptRegisterPerfVOSPackage();
/// Does nothing: the class stays registered until the process ends.
PT_API void ptUnregisterPerfVOSPackage();
