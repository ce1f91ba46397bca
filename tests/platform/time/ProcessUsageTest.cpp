// SPDX-License-Identifier: MIT
#include "platform/time/ProcessUsage.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

TEST(ProcessUsage, AThreadsOwnTimeLeavesOutThatOfOthers) {
    double other = 0.0;
    const double before = platform::threadCpuSeconds();
    std::thread([&] {
        while (other < 0.05)
            other = platform::threadCpuSeconds();
    }).join();
    const double own = platform::threadCpuSeconds() - before;
    EXPECT_GE(other, 0.05);
    EXPECT_GT(own, 0.0);
    EXPECT_LT(own, other);
}

}  // namespace
