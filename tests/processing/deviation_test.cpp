#include <performance_tracer/comparison.h>
#include <performance_tracer/raw_store.h>
#include <performance_tracer/tracer.h>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <cmath>
#include <limits>

#include "random_log.h"

namespace {

PerformanceTracer& tracer() { return *ptTracer(); }

struct Result {
    double abs, rel;
    std::string colour;
};

Result deviation(const std::string& metric, double left, double right) {
    Result r{};
    ptDeviation(tracer(), r.abs, r.rel, r.colour, metric, left, right);
    return r;
}

TEST(Deviation, WorkedExamples) {
    const Result tiny = deviation("time", 0.004, 0.006);  // rounded to 0 and 0.01
    EXPECT_DOUBLE_EQ(tiny.abs, 0.01);
    EXPECT_EQ(tiny.rel, 100.0);
    EXPECT_EQ(tiny.colour, " GT50");

    const Result half = deviation("time", 2, 3);
    EXPECT_EQ(half.abs, 1.0);
    EXPECT_EQ(half.rel, 50.0);
    EXPECT_EQ(half.colour, " BETWN_45_50");  // 50 is not above 50

    const Result gap = deviation("detailedmemory", 4, 5.3);
    EXPECT_DOUBLE_EQ(gap.rel, 32.5);
    EXPECT_EQ(gap.colour, " BETWN_25_30");  // no step between 30 and 35

    const Result none = deviation("time", 0, 0);
    EXPECT_EQ(none.abs, 0.0);
    EXPECT_EQ(none.rel, 0.0);
    EXPECT_EQ(none.colour, " BETWN_M5_0");

    // Basic memory keeps signs; the other metrics compare magnitudes.
    const Result signedBasic = deviation("basicmemory", -2, 1);
    EXPECT_EQ(signedBasic.abs, 3.0);
    EXPECT_EQ(signedBasic.rel, 150.0);
    const Result magnitudes = deviation("time", -2, 1);
    EXPECT_EQ(magnitudes.abs, -1.0);
    EXPECT_EQ(magnitudes.rel, 50.0);  // divided by the left value as it is, negative
    EXPECT_EQ(deviation("basicmemory", 0, -3).rel, -100.0);
    EXPECT_EQ(deviation("basicmemory", 0, 3).rel, 100.0);
    EXPECT_EQ(deviation("basicmemory", 0, 0).rel, 0.0);

    // A difference within the single-precision 0.01 is rounded away.
    const Result small = deviation("time", 10, 10.005);
    EXPECT_EQ(small.abs, 0.01);
    EXPECT_DOUBLE_EQ(small.rel, 0.1);
    EXPECT_EQ(deviation("time", 0, 0.0049).rel, 0.0);    // rounds to 0
    EXPECT_EQ(deviation("time", 0, 0.0099).rel, 100.0);  // rounds to 0.01, just above t
    const Result leftOnly = deviation("time", 7, 0);
    EXPECT_EQ(leftOnly.abs, -7.0);
    EXPECT_EQ(leftOnly.rel, -100.0);
    EXPECT_EQ(leftOnly.colour, " LTM50");
}

TEST(Deviation, ClassLadder) {
    const struct {
        double rel;
        const char* colour;
    } cases[] = {
        {1000, " GT50"},
        {50.001, " GT50"},
        {50, " BETWN_45_50"},
        {45, " BETWN_40_45"},
        {40, " BETWN_35_40"},
        {35.001, " BETWN_35_40"},
        {35, " BETWN_25_30"},
        {32, " BETWN_25_30"},
        {30, " BETWN_25_30"},
        {25, " BETWN_20_25"},
        {20, " BETWN_15_20"},
        {15, " BETWN_10_15"},
        {10, " BETWN_5_10"},
        {5, " BETWN_0_5"},
        {0.001, " BETWN_0_5"},
        {0, " BETWN_M5_0"},
        {-5, " BETWN_M10_M5"},
        {-4.999, " BETWN_M5_0"},
        {-10, " BETWN_M15_M10"},
        {-15, " BETWN_M20_M15"},
        {-20, " BETWN_M25_M20"},
        {-25, " BETWN_M30_M25"},
        {-30, " BETWN_M35_M30"},
        {-35, " BETWN_M40_M35"},
        {-40, " BETWN_M45_M40"},
        {-45, " BETWN_M50_M45"},
        {-49.99, " BETWN_M50_M45"},
        {-50, " LTM50"},
        {-1e9, " LTM50"},
        {std::numeric_limits<double>::quiet_NaN(), " LTM50"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ptDeviationClass(tracer(), c.rel), c.colour) << c.rel;
    }
}

TEST(Deviation, RoundingToHundredths) {
    EXPECT_EQ(ptRoundHundredths(tracer(), 0.005), 0.01);
    EXPECT_EQ(ptRoundHundredths(tracer(), 0.0049), 0.0);
    EXPECT_EQ(ptRoundHundredths(tracer(), -0.005), -0.01);
    EXPECT_EQ(ptRoundHundredths(tracer(), -0.0049), -0.0);
    EXPECT_EQ(ptRoundHundredths(tracer(), 1.234), 1.23);
    EXPECT_TRUE(std::isnan(ptRoundHundredths(tracer(), std::nan(""))));
}

class Compare : public ::testing::Test {
protected:
    void SetUp() override { ptClearRawData(); }

    static PTOrviaProcessedDataPoint row(double wc, int children) {
        PTOrviaProcessedDataPoint point(*pt::testing::makePoint(0, "G", "p", true, 0));
        point.wcElapsedTime = wc;
        point.cpuElapsedTime = wc / 2;
        point.numChildren = children;
        point._basicMem->procMemUsageDelta = -wc;
        point._detailedMem->freeMem = wc;
        point._startDetailedMem->freeMem = 100 + wc;
        return point;
    }
};

TEST_F(Compare, EachSideLooksAtItsOwnChildren) {
    PTCompareRecord record;
    const PTOrviaProcessedDataPoint parent = row(4, 2);
    const PTOrviaProcessedDataPoint leaf = row(5, 0);
    ptCompareRows(tracer(), &parent, &leaf, record, "time");
    EXPECT_EQ(record.WCSelf.abs, 5.0);  // the parent's self is 0
    EXPECT_EQ(record.WCSelf.rel, 100.0);
    EXPECT_EQ(record.WCSC.abs, 1.0);
    EXPECT_EQ(record.CPUSC.abs, 0.5);
    EXPECT_TRUE(record.Free.colour.empty());  // only the report's metric is computed

    ptCompareRows(tracer(), &parent, &leaf, record, "detailedmemory");
    EXPECT_EQ(record.FreeStart.abs, 5.0 - 104.0);  // start figures of the parent only
    EXPECT_EQ(record.Free.abs, 1.0);

    ptCompareRows(tracer(), nullptr, &leaf, record, "basicmemory");
    EXPECT_EQ(record.UsageDelta.abs, -5.0);
    EXPECT_EQ(record.UsageDelta.rel, -100.0);
    ptCompareRows(tracer(), &leaf, nullptr, record, "time");
    EXPECT_EQ(record.WCSC.abs, -5.0);
    EXPECT_EQ(record.WCSC.rel, -100.0);
}

TEST_F(Compare, AggregatesUseSumsAndMaxima) {
    PTAggregateDataPoint left(0, 0, true), right(0, 0, true);
    left._wcSelf = 2, right._wcSelf = 3;
    left._wcTotal = 10, right._wcTotal = 10;
    left._usageDeltaSum = 1.5L, right._usageDeltaSum = -1.5L;
    left._nonProcessMax = 8, right._nonProcessMax = 4;
    PTCompareRecord record;
    ptCompareAggregates(tracer(), &left, &right, record, "time");
    EXPECT_EQ(record.WCSelf.rel, 50.0);
    EXPECT_EQ(record.WCSC.colour, " BETWN_M5_0");
    ptCompareAggregates(tracer(), &left, &right, record, "basicmemory");
    EXPECT_EQ(record.UsageDelta.abs, -3.0);
    ptCompareAggregates(tracer(), &left, nullptr, record, "detailedmemory");
    EXPECT_EQ(record.NonProcess.rel, -100.0);
}

}  // namespace
