// SPDX-License-Identifier: MIT
#include "hosts/gedeeld/Reden.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

using brixtel::reden;

namespace {

TEST(Reden, NoErrorIsToldInTheSystemsWords) {
    for (int nummer = 1; nummer <= EHWPOISON; ++nummer) {
        EXPECT_FALSE(reden(nummer).isEmpty()) << nummer;
        EXPECT_NE(reden(nummer).toStdString(), std::strerror(nummer)) << nummer;
    }
}

TEST(Reden, ErrorsThatUsersDoNotMeetHaveTheirNumber) {
    EXPECT_EQ(reden(EINVAL), QStringLiteral("het systeem meldt fout 22"));
    EXPECT_EQ(reden(EBADF), QStringLiteral("dat staat niet open"));
}

}  // namespace
