// SPDX-License-Identifier: MIT
// The desktop of a program without an application object.
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <csignal>

#include "platform/window/DesktopWorkspace.h"
#include "tests/support/WindowSystems.h"

namespace {

struct NoApplication : testing::Test {
    platform::ManualClock clock{1.0};
    platform::WindowServer server{clock, {.system = withoutSystem(clock)}};
    platform::DistributedNotificationCenter notifications{QString()};
    platform::DesktopWorkspace desktop{server, notifications};

    // Another process asks for the front. The connections here have threads, so that a fork
    // alone will not do.
    void expectTheEnd() {
        testing::FLAGS_gtest_death_test_style = "threadsafe";
        EXPECT_EXIT(desktop.activateIgnoringOthers(), testing::KilledBySignal(SIGABRT), "");
    }
};

TEST_F(NoApplication, TheDesktopAnswersAndComingToTheFrontEndsTheProgram) {
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    EXPECT_FALSE(desktop.isSaverActive());
    EXPECT_FALSE(desktop.frontmostApplication());
    expectTheEnd();
}

TEST_F(NoApplication, AnApplicationWithoutWindowsIsNone) {
    int count = 1;
    char name[] = "test";
    char* arguments[] = {name, nullptr};
    const QCoreApplication app(count, arguments);
    expectTheEnd();
}

TEST_F(NoApplication, WithOneNothingEnds) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    int count = 1;
    char name[] = "test";
    char* arguments[] = {name, nullptr};
    const QGuiApplication app(count, arguments);
    desktop.activateIgnoringOthers();
}

}  // namespace
