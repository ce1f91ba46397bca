// SPDX-License-Identifier: MIT
#include "platform/files/StandardOutput.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

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

// Opens a file with no standard stream open; exits with 0 where the file's number is above
// theirs, the standard output refuses a text, and standard error takes one.
[[noreturn]] void openWithoutStreams() {
    for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        close(number);
    platform::holdStandardStreams();
    if (open("/dev/null", O_WRONLY) <= STDERR_FILENO) std::_Exit(1);
    if (printOut("text\n") != EBADF) std::_Exit(2);
    std::_Exit(write(STDERR_FILENO, "x", 1) == 1 ? 0 : 3);
}

TEST(StandardOutput, AClosedStreamsNumberGoesToNoFile) {
    EXPECT_EXIT(openWithoutStreams(), testing::ExitedWithCode(0), "");
}

TEST(StandardOutput, AnOpenStreamStaysAsItIs) {
    testing::internal::CaptureStdout();
    platform::holdStandardStreams();
    EXPECT_EQ(printOut("text\n"), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "text\n");
}

TEST(StandardOutput, ATextArrivesWhole) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(printOut(std::string_view("a\0b\n", 4)), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), std::string("a\0b\n", 4));
}

}  // namespace
