#pragma once

// The check of many runs against many (performance_tracer/check.h) once every run is reduced
// to its times per phase: the comparisons, their tests and the verdicts.

#include <performance_tracer/check.h>

#include <vector>

#include "processing/phase_times.h"

/// Raises std::invalid_argument for a clock other than "wall" or "cpu", a threshold that is
/// negative or above 10 (1000%), or an alpha not above 0 or above 0.5.
void ptValidateCheckOptions(const pt::CheckOptions& options);

/// Compares the two sides' runs phase by phase; the options' files are only copied into the
/// result. Both sides must have runs, and every time must be finite (std::invalid_argument).
pt::CheckResult ptCheckRuns(const std::vector<PTRunPhaseTimes>& base,
                            const std::vector<PTRunPhaseTimes>& changed,
                            const pt::CheckOptions& options);
