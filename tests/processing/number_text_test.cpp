#include <performance_tracer/number_text.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <locale>
#include <random>
#include <sstream>

namespace {

template <typename T>
std::string streamed(T value, int precision) {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream.precision(precision);
    stream << value;
    return stream.str();
}

TEST(NumberText, ReportTexts) {
    EXPECT_EQ(ptNumberText(0.125, 5), "0.125");
    EXPECT_EQ(ptNumberText(1234.56, 5), "1234.6");
    EXPECT_EQ(ptNumberText(123456.7, 5), "1.2346e+05");
    EXPECT_EQ(ptNumberText(100000.0, 5), "1e+05");
    EXPECT_EQ(ptNumberText(0.0001, 5), "0.0001");
    EXPECT_EQ(ptNumberText(0.00001234, 5), "1.234e-05");
    EXPECT_EQ(ptNumberText(-2.5, 5), "-2.5");
    EXPECT_EQ(ptNumberText(3.14159, 2), "3.1");
    EXPECT_EQ(ptNumberText(1.0 / 3.0, 99), "0.333333333333333");  // capped at 15
    EXPECT_EQ(ptNumberText(1.0L / 3.0L, 99), "0.333333333333333333");
    EXPECT_EQ(ptNumberText(1.0f / 3.0f, 99), "0.333333");
    for (const std::string& zero :
         {ptNumberText(0, 5), ptNumberText(0.0f, 5), ptNumberText(0.0, 5), ptNumberText(0.0L, 5)}) {
        EXPECT_EQ(zero, "0");
    }
    EXPECT_EQ(ptNumberText(-123456789, 5), "-123456789");  // precision has no effect
    EXPECT_EQ(ptNumberText(std::numeric_limits<double>::infinity(), 5), "inf");
}

TEST(NumberText, MatchesTheClassicStream) {
    std::mt19937_64 rng(5);
    std::uniform_real_distribution<double> mantissa(-10.0, 10.0);
    std::uniform_int_distribution<int> exponent(-30, 30);
    const double specials[] = {0.0,
                               -0.0,
                               1.0,
                               0.5,
                               9.99995,
                               99999.5,
                               1e15,
                               1e-300,
                               5e-324,
                               std::numeric_limits<double>::max(),
                               std::numeric_limits<double>::quiet_NaN(),
                               -std::numeric_limits<double>::infinity()};
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

TEST(NumberText, DecimalCasts) {
    EXPECT_EQ(ptDoubleToUString(2, 1.5), "1.5");
    EXPECT_EQ(ptDoubleToUString(2, 1.0), "1.00");
    EXPECT_EQ(ptDoubleToUString(0, 12.9), "1");  // cut one character short of the point
    EXPECT_EQ(ptDoubleToUString(0, 7.0), "7");
    EXPECT_EQ(ptDoubleToUString(3, 2.718281828), "2.718");  // cut, not rounded
    EXPECT_EQ(ptDoubleToUString(-1, 2.5), "2.5");
    EXPECT_EQ(ptDoubleToUString(2, std::numeric_limits<double>::quiet_NaN()), "nan.00");
    EXPECT_EQ(ptDoubleToUString(1, -std::numeric_limits<double>::infinity()), "-inf.0");
    EXPECT_EQ(ptClockSpeedText(1000000), "1000 MHz");  // not above 1 after the division
    EXPECT_EQ(ptClockSpeedText(2893437), "2.8934 GHz");
    EXPECT_EQ(ptIntToUString(-42), "-42");
    EXPECT_EQ(ptIntToUString(2147483647), "2147483647");
}

}  // namespace
