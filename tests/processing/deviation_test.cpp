#include <performance_tracer/comparison.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/tracer.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>

namespace {

PerformanceTracer& tracer() { return *ptTracer(); }

TEST(Deviation, WorkedExamplesClassesAndRounding) {
    // Metric, left and right figures, then the absolute and relative deviation and the class.
    const std::tuple<const char*, double, double, double, double, const char*> cases[] = {
        {"time", 0.004, 0.006, 0.01, 100, " GT50"},             // rounded to 0 and 0.01
        {"time", 2, 3, 1, 50, " BETWN_45_50"},                  // 50 is not above 50
        {"detailedmemory", 4, 5.3, 1.3, 32.5, " BETWN_25_30"},  // no step between 30 and 35
        {"time", 0, 0, 0, 0, " BETWN_M5_0"},
        {"time", 7, 0, -7, -100, " LTM50"},
        // Basic memory keeps signs; the others compare magnitudes, divided by the left value
        // as it is, negative.
        {"basicmemory", -2, 1, 3, 150, " GT50"},
        {"time", -2, 1, -1, 50, " BETWN_45_50"},
        {"basicmemory", 0, -3, -3, -100, " LTM50"},
        {"basicmemory", 0, 3, 3, 100, " GT50"},
        {"basicmemory", 0, 0, 0, 0, " BETWN_M5_0"},
        // A difference within the single-precision 0.01 is rounded away.
        {"time", 10, 10.005, 0.01, 0.1, " BETWN_0_5"},
        {"time", 0, 0.0049, 0, 0, " BETWN_M5_0"},
        {"time", 0, 0.0099, 0.01, 100, " GT50"},  // rounds to 0.01, just above it
    };
    for (const auto& [metric, left, right, abs, rel, colour] : cases) {
        double absolute = 0, relative = 0;
        std::string deviationClass;
        ptDeviation(tracer(), absolute, relative, deviationClass, metric, left, right);
        EXPECT_DOUBLE_EQ(absolute, abs) << metric << " " << left << " " << right;
        EXPECT_DOUBLE_EQ(relative, rel) << metric << " " << left << " " << right;
        EXPECT_EQ(deviationClass, colour) << metric << " " << left << " " << right;
    }

    const std::pair<double, const char*> ladder[] = {
        {1000, " GT50"},         {50.001, " GT50"},       {50, " BETWN_45_50"},
        {45, " BETWN_40_45"},    {40, " BETWN_35_40"},    {35.001, " BETWN_35_40"},
        {35, " BETWN_25_30"},    {32, " BETWN_25_30"},    {30, " BETWN_25_30"},
        {25, " BETWN_20_25"},    {20, " BETWN_15_20"},    {15, " BETWN_10_15"},
        {10, " BETWN_5_10"},     {5, " BETWN_0_5"},       {0.001, " BETWN_0_5"},
        {0, " BETWN_M5_0"},      {-5, " BETWN_M10_M5"},   {-4.999, " BETWN_M5_0"},
        {-10, " BETWN_M15_M10"}, {-15, " BETWN_M20_M15"}, {-20, " BETWN_M25_M20"},
        {-25, " BETWN_M30_M25"}, {-30, " BETWN_M35_M30"}, {-35, " BETWN_M40_M35"},
        {-40, " BETWN_M45_M40"}, {-45, " BETWN_M50_M45"}, {-49.99, " BETWN_M50_M45"},
        {-50, " LTM50"},         {-1e9, " LTM50"},        {std::nan(""), " LTM50"}};
    for (const auto& [rel, colour] : ladder) {
        EXPECT_EQ(ptDeviationClass(tracer(), rel), colour) << rel;
    }

    const std::pair<double, double> rounded[] = {
        {0.005, 0.01}, {0.0049, 0.0}, {-0.005, -0.01}, {-0.0049, -0.0}, {1.234, 1.23}};
    for (const auto& [value, expected] : rounded) {
        EXPECT_EQ(ptRoundHundredths(tracer(), value), expected) << value;
    }
    EXPECT_TRUE(std::isnan(ptRoundHundredths(tracer(), std::nan(""))));
}

}  // namespace
