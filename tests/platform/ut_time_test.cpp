#include <pt_platform/ut.h>

#include <gtest/gtest.h>

namespace {

TEST(HostClocks, AdvanceMonotonically) {
    const double wall = utRealtime();
    const double cpu = utCPUtime();
    volatile double sink = 0;
    for (int i = 0; i < 2000000; ++i) {
        sink = sink + i;
    }
    EXPECT_GT(utRealtime(), wall);
    EXPECT_GT(utCPUtime(), cpu);
    EXPECT_GE(cpu, 0.0);
}

}  // namespace
