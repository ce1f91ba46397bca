// SPDX-License-Identifier: MIT
#include "hosts/gedeeld/Signalen.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <QCoreApplication>

#include "tests/support/Until.h"

using brixtel::Signalen;

namespace {

TEST(Signalen, AHundredNewBeginningsBeforeTheNextTurnAreOne) {
    int begonnen = 0;
    const Signalen signalen([](int) {}, [&] { ++begonnen; });
    for (int i = 0; i < 100; ++i)
        raise(SIGUSR1);
    ASSERT_TRUE(until([&] { return begonnen > 0; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(begonnen, 1);
}

TEST(Signalen, ThoseThatComeWhileItBeginsAreOneMore) {
    int begonnen = 0;
    const Signalen signalen([](int) {},
                            [&] {
                                if (++begonnen > 1) return;
                                for (int i = 0; i < 1000; ++i)
                                    raise(SIGUSR1);
                            });
    raise(SIGUSR1);
    ASSERT_TRUE(until([&] { return begonnen > 1; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(begonnen, 2);
}

// In a process of its own, since the system ends it shortly afterwards.
TEST(Signalen, AnEndAfterAStormIsNotKeptWaiting) {
    EXPECT_EXIT(
        {
            const Signalen signalen([](int signaal) { std::_Exit(signaal == SIGTERM ? 7 : 8); },
                                    [] { std::_Exit(9); });
            for (int i = 0; i < 100; ++i)
                raise(SIGUSR1);
            raise(SIGTERM);
            QCoreApplication::processEvents();
        },
        testing::ExitedWithCode(7), "");
}

TEST(Signalen, AfterItsEndANewBeginningIsIgnored) {
    int begonnen = 0;
    {
        const Signalen signalen([](int) {}, [&] { ++begonnen; });
    }
    for (int i = 0; i < 100; ++i)
        raise(SIGUSR1);
    QCoreApplication::processEvents();
    EXPECT_EQ(begonnen, 0);
}

}  // namespace
