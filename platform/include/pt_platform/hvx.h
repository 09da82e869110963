#pragma once

// Calls into the host.

#include <pt_platform/export.h>

#include <functional>
#include <string>

struct hvArray;

/// The host's print: formats as printf does and writes to the host's output (standard
/// output here). Returns the number of bytes written, or a negative value on failure.
PT_PLATFORM_API int hvxPrintf(const char* format, ...) __attribute__((format(printf, 1, 2)));

/// Runs a host function by name: it takes nrhs inputs and puts up to nlhs new values into
/// plhs, which the caller then owns. 0 on success; non-zero when the function is unknown or
/// fails, in which case plhs holds nothing.
PT_PLATFORM_API int hvxCallOrvia(int nlhs, hvArray** plhs, int nrhs, hvArray** prhs,
                                 const char* functionName);

/// A host function as hvxCallOrvia runs it: status 0 on success.
using hvxHostFunction = std::function<int(int nlhs, hvArray** plhs, int nrhs, hvArray** prhs)>;

/// Replaces (or, with an empty function, removes) one host function and returns what stood
/// there. Tests use it to make the host refuse or answer with values of the wrong class.
PT_PLATFORM_API hvxHostFunction hvxSetHostFunction(const std::string& name,
                                                   hvxHostFunction function);
/// Puts every host function back as the host has it.
PT_PLATFORM_API void hvxRestoreHostFunctions();
