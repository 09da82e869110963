#pragma once

// Utilities of the host.

#include <pt_platform/export.h>

#include <cstddef>

/// Seconds on a monotonic wall clock with an arbitrary epoch; only differences matter.
PT_PLATFORM_API double utRealtime();
/// Seconds of CPU time used by the whole process so far.
PT_PLATFORM_API double utCPUtime();

/// The host's allocator: memory that the host can account for. Never null: an allocation that
/// fails raises std::bad_alloc. utFree accepts null.
PT_PLATFORM_API void* utMalloc(std::size_t size);
PT_PLATFORM_API void* utCalloc(std::size_t count, std::size_t size);
PT_PLATFORM_API void utFree(void* memory);

/// The processor's clock speed in kilohertz, from the operating system; 0 if it cannot tell.
PT_PLATFORM_API double utCPUspeedOS();
