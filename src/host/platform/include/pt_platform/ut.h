#pragma once

// Utilities of the host.

#include <pt_platform/export.h>

/// Seconds on a monotonic wall clock with an arbitrary epoch; only differences matter.
PT_PLATFORM_API double utRealtime();
/// Seconds of CPU time used by the whole process so far.
PT_PLATFORM_API double utCPUtime();
