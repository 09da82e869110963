#pragma once

// How the shell shows values: "name = value" for a value shown by name, and the bare form of
// print.

#include <pt_platform/hv.h>

#include <string>

namespace ptshell {

/// "name = ..." and, for values of many elements, the lines that list them, each line ending
/// with a line feed.
std::string displayValue(const std::string& name, const hvArray* value);
/// What print shows: text alone, a number's digits, a logical as 1 or 0, anything else in its
/// displayed form without a name.
std::string printValue(const hvArray* value);
/// A number as the shell writes it: up to 5 significant digits.
std::string numberText(double value);

}  // namespace ptshell
