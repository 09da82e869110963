#include <performance_tracer/number_text.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <vector>

namespace {

template <typename T>
std::string streamed(T value, int precision) {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream.precision(precision);
    stream << value;
    return stream.str();
}

// Precision is capped at 15 for double and has no effect on integers. Decimal casts are cut,
// not rounded, and precision 0 cuts one character short of the point; a clock of 1000 MHz is
// not above 1 GHz after the division.
TEST(NumberText, ReportTextsAndDecimalCasts) {
    const double nan = std::numeric_limits<double>::quiet_NaN(),
                 inf = std::numeric_limits<double>::infinity();
    const std::vector<std::string> texts = {
        ptNumberText(0.125, 5),        ptNumberText(1234.56, 5),
        ptNumberText(123456.7, 5),     ptNumberText(100000.0, 5),
        ptNumberText(0.0001, 5),       ptNumberText(0.00001234, 5),
        ptNumberText(-2.5, 5),         ptNumberText(3.14159, 2),
        ptNumberText(1.0 / 3.0, 99),   ptNumberText(1.0L / 3.0L, 99),
        ptNumberText(1.0f / 3.0f, 99), ptNumberText(0, 5),
        ptNumberText(0.0f, 5),         ptNumberText(0.0, 5),
        ptNumberText(0.0L, 5),         ptNumberText(-123456789, 5),
        ptNumberText(inf, 5),          ptDoubleToUString(2, 1.5),
        ptDoubleToUString(2, 1.0),     ptDoubleToUString(0, 12.9),
        ptDoubleToUString(0, 7.0),     ptDoubleToUString(3, 2.718281828),
        ptDoubleToUString(-1, 2.5),    ptDoubleToUString(2, nan),
        ptDoubleToUString(1, -inf),    ptClockSpeedText(1000000),
        ptClockSpeedText(2893437),     ptIntToUString(-42),
        ptIntToUString(2147483647)};
    std::string joined;
    for (const std::string& text : texts) {
        joined += text + "|";
    }
    EXPECT_EQ(joined,
              "0.125|1234.6|1.2346e+05|1e+05|0.0001|1.234e-05|-2.5|3.1|0.333333333333333|"
              "0.333333333333333333|0.333333|0|0|0|0|-123456789|inf|1.5|1.00|1|7|2.718|2.5|"
              "nan.00|-inf.0|1000 MHz|2.8934 GHz|-42|2147483647|");
}

TEST(NumberText, MatchesTheClassicStream) {
    std::mt19937_64 rng(5);
    std::uniform_real_distribution<double> mantissa(-10.0, 10.0);
    std::uniform_int_distribution<int> exponent(-30, 30);
    using L = std::numeric_limits<double>;
    const double specials[] = {0.0,    -0.0,   1.0,     0.5,      1e15,           9.99995,
                               1e-300, 5e-324, 99999.5, L::max(), L::quiet_NaN(), -L::infinity()};
    for (int i = 0; i < 20000; ++i) {
        const double value = i < 12 ? specials[i] : mantissa(rng) * std::pow(10.0, exponent(rng));
        for (int precision : {-1, 0, 1, 2, 5, 6, 9, 15, 17, 18, 25}) {
            ASSERT_EQ(ptNumberText(value, precision), streamed(value, std::min(precision, 15)))
                << value << " at " << precision;
            const auto single = static_cast<float>(value);
            ASSERT_EQ(ptNumberText(single, precision), streamed(single, std::min(precision, 6)))
                << single << " at " << precision;
            const long double wide = static_cast<long double>(value) / 3;
            ASSERT_EQ(ptNumberText(wide, precision), streamed(wide, std::min(precision, 18)))
                << static_cast<double>(wide) << " at " << precision;
        }
    }
}

}  // namespace
