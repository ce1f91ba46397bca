// SPDX-License-Identifier: MIT
// The screen-saver extension of a real server.
#include <gtest/gtest.h>
#include <xcb/xtest.h>

#include "platform/window/x11/X11Idle.h"
#include "platform/window/x11/X11System.h"
#include "tests/support/Until.h"
#include "tests/support/Xvfb.h"

namespace platform {
namespace {

struct ServerIdle : testing::Test {
    Xvfb server;
    SystemClock clock;

    void SetUp() override { ASSERT_TRUE(server.isRunning()); }
    void moveMouse(int x) const {
        xcb_test_fake_input(server.connection(), XCB_MOTION_NOTIFY, 0, 0, server.screen().root,
                            static_cast<std::int16_t>(x), 50, 0);
        xcb_flush(server.connection());
    }
};

TEST_F(ServerIdle, RestIsToldAndInputEndsIt) {
    X11System system(clock, server.display());
    std::vector<bool> told;
    const auto idle = system.watchIdle(1.5, [&](bool is) { told.push_back(is); });
    ASSERT_TRUE(idle);
    EXPECT_FALSE(system.capabilities().knowsIdle);
    ASSERT_TRUE(until([&] { return told.size() == 1; }));
    moveMouse(60);
    ASSERT_TRUE(until([&] { return told.size() == 3; }));
    EXPECT_EQ(told, (std::vector<bool>{true, false, true}));
}

TEST_F(ServerIdle, XscreensaversWindowIsFoundAndNoOther) {
    const RootWatch root(server.display());
    const auto question = idleQuestion(root);
    ASSERT_TRUE(question);
    EXPECT_TRUE(question->sinceInput().has_value());
    const xcb_window_t window = server.makeWindow({.mapped = false});
    EXPECT_FALSE(question->isSaverThere());
    const xcb_atom_t name = root.connection().atom("_SCREENSAVER_VERSION");
    xcb_change_property(server.connection(), XCB_PROP_MODE_REPLACE, window, name, XCB_ATOM_STRING,
                        8, 4, "6.06");
    EXPECT_FALSE(server.mappedWindows().size() > 1);  // the server has done it
    EXPECT_TRUE(question->isSaverThere());
    server.destroy(window);
    EXPECT_FALSE(question->isSaverThere());
}

TEST(ServerIdleWithoutServer, ThereIsNoWatch) {
    SystemClock clock;
    X11System system(clock, QStringLiteral(":none"));
    EXPECT_FALSE(system.watchIdle(60.0, [](bool) {}));
}

}  // namespace
}  // namespace platform
