#include <performance_tracer/number_text.h>

#include <pt_platform/hvx.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <exception>
#include <locale>
#include <sstream>

namespace {

/// What a classic-locale stream in default float formatting writes at this precision.
/// std::to_chars in general format with a precision prints the same text; a negative precision
/// is left to the stream itself, whose meaning for it is its own.
template <typename Float>
std::string floatText(Float value, std::int32_t precision, std::int32_t cap) {
    precision = std::min(precision, cap);
    if (precision < 0) {
        std::ostringstream stream;
        stream.imbue(std::locale::classic());
        stream.precision(precision);
        stream << value;
        return stream.str();
    }
    char buffer[64];
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, precision);
    return result.ec == std::errc() ? std::string(buffer, result.ptr) : std::string();
}

}  // namespace

std::string ptNumberText(std::int32_t value, std::int32_t) { return std::to_string(value); }

std::string ptNumberText(float value, std::int32_t precision) {
    return floatText(value, precision, 6);
}

std::string ptNumberText(double value, std::int32_t precision) {
    return floatText(value, precision, 15);
}

std::string ptNumberText(long double value, std::int32_t precision) {
    return floatText(value, precision, 18);
}

std::string ptDoubleToUString(std::int32_t precision, double value) {
    std::string text;
    try {
        char buffer[64];
        std::snprintf(buffer, sizeof buffer, "%.*g", 17, value);
        text = buffer;
        const std::size_t point = text.find('.');
        if (point == std::string::npos) {
            if (precision > 0) {
                text += '.';
                text.append(static_cast<std::size_t>(precision), '0');
            }
        } else if (precision == 0) {
            // Settled behaviour: the cut falls one character short of the point.
            text.erase(point == 0 ? 0 : point - 1);
        } else if (precision > 0) {
            text.erase(std::min(text.size(), point + 1 + static_cast<std::size_t>(precision)));
        }
    } catch (const std::exception& e) {
        hvxPrintf("Exception in ptDoubleToUString\n %s\nParams: val=%f\tprecision=%d\n", e.what(),
                  value, precision);
    }
    return text;
}

std::string ptClockSpeedText(double value) {
    if (value / 1e6 > 1) {
        return ptNumberText(value / 1e6, 5) + " GHz";
    }
    return ptNumberText(value / 1000.0, 5) + " MHz";
}

std::string ptIntToUString(std::int32_t value) {
    std::string text;
    try {
        text = std::to_string(value);
    } catch (const std::exception& e) {
        hvxPrintf("Exception in ptIntToUString\n %s\nParam: val=%d\n", e.what(), value);
    }
    return text;
}
