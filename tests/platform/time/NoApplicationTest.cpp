// SPDX-License-Identifier: MIT
// A program without an application object: before its beginning and after its end.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <algorithm>
#include <future>
#include <vector>

#include "platform/time/Queue.h"

namespace {

TEST(NoApplication, WhatIsForTheMainQueueIsDropped) {
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    bool ran = false;
    platform::runOnMainQueue([&] { ran = true; });
    int count = 1;
    char name[] = "test";
    char* arguments[] = {name, nullptr};
    const QCoreApplication app(count, arguments);
    QCoreApplication::processEvents();
    EXPECT_FALSE(ran);
    platform::runOnMainQueue([&] { ran = true; });
    EXPECT_FALSE(ran);
    QCoreApplication::processEvents();
    EXPECT_TRUE(ran);
}

TEST(NoApplication, AQueueOfItsOwnRunsItsTasksInOrder) {
    std::promise<std::vector<int>> done;
    std::vector<int> order;
    platform::SerialQueue queue("test");
    for (int i = 0; i < 100; ++i)
        queue.async([&order, i] { order.push_back(i); });
    queue.async([&] { done.set_value(order); });
    const std::vector<int> told = done.get_future().get();
    ASSERT_EQ(told.size(), 100U);
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
}

}  // namespace
