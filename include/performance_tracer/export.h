#pragma once

/// Marks a declaration as part of libperformance_tracer's interface; everything else in the
/// library is hidden.
#define PT_API __attribute__((visibility("default")))
