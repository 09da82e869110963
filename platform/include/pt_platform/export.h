#pragma once

/// Marks a declaration of the host layer as part of libpt_platform's interface;
/// everything else in the library is hidden.
#define PT_PLATFORM_API __attribute__((visibility("default")))
