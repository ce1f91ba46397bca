// SPDX-License-Identifier: MIT
#include "platform/files/StandardOutput.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

using platform::printOut;

namespace {

// Prints the text with the standard output at `where`; exits with the error.
[[noreturn]] void printTo(const char* where, const char* before, std::string_view text) {
    if (!std::freopen(where, "w", stdout)) std::abort();
    std::fputs(before, stdout);
    std::_Exit(printOut(text));
}

TEST(StandardOutput, AFullDiskIsAnError) {
    EXPECT_EXIT(printTo("/dev/full", "", "text\n"), testing::ExitedWithCode(ENOSPC), "");
}

TEST(StandardOutput, WhatWasPrintedBeforeCountsToo) {
    EXPECT_EXIT(printTo("/dev/full", "text\n", ""), testing::ExitedWithCode(ENOSPC), "");
}

TEST(StandardOutput, OtherwiseAllIsWell) {
    EXPECT_EXIT(printTo("/dev/null", "", "text\n"), testing::ExitedWithCode(0), "");
}

TEST(StandardOutput, ATextArrivesWhole) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(printOut(std::string_view("a\0b\n", 4)), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), std::string("a\0b\n", 4));
}

}  // namespace
