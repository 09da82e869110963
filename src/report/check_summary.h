#pragma once

// The summary page of a check of many runs against many (performance_tracer/check.h): one
// self-contained file with the check's result as data and the script that draws it.

#include <performance_tracer/check.h>

#include <string>

namespace pt::report {

/// Writes the page; false if the file cannot be opened.
bool writeCheckSummary(const std::string& htmlFile, const pt::CheckResult& result);

}  // namespace pt::report
