#pragma once

// Number texts of the reports. The page scripts parse these texts back, so their precision is
// part of what a report shows.

#include <performance_tracer/export.h>

#include <cstdint>
#include <string>

/// The value in default float formatting of the classic locale, with precision the smaller of
/// the argument and the type's cap: 9 for integers (where it has no effect), 6 for float, 15
/// for double, 18 for long double. Precision 5 gives 0.125, 1234.6, 1.2346e+05.
PT_API std::string ptNumberText(std::int32_t value, std::int32_t precision);
PT_API std::string ptNumberText(float value, std::int32_t precision);
PT_API std::string ptNumberText(double value, std::int32_t precision);
PT_API std::string ptNumberText(long double value, std::int32_t precision);

/// The value with at most `precision` decimals, cut rather than rounded and never padded
/// except that a whole number gets "." and `precision` zeros; precision 0 cuts one character
/// short of the point (12.9 gives "1").
PT_API std::string ptDoubleToUString(std::int32_t precision, double value);
/// A clock speed for the system information: in GHz when the value divided by 1e6 is above 1,
/// otherwise in MHz (value / 1000); the value is thus taken in kHz.
PT_API std::string ptClockSpeedText(double value);
/// The decimal digits of the value.
PT_API std::string ptIntToUString(std::int32_t value);
