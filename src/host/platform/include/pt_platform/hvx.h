#pragma once

// Calls into the host.

#include <pt_platform/export.h>

/// The host's print: formats as printf does and writes to the host's output (standard
/// output here). Returns the number of bytes written, or a negative value on failure.
PT_PLATFORM_API int hvxPrintf(const char* format, ...) __attribute__((format(printf, 1, 2)));
