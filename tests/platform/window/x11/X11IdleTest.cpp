// SPDX-License-Identifier: MIT
#include "platform/window/x11/X11Idle.h"

#include <gtest/gtest.h>

#include <vector>

namespace platform {
namespace {

// A server whose input comes when the test says.
struct Server {
    ManualClock clock{500.0};
    double lastInput = 500.0;
    bool saver = false;
    bool answers = true;
    int asked = 0;
    std::vector<bool> told;

    class Question final : public IdleQuestion {
      public:
        explicit Question(Server& server) : server_(server) {}
        std::optional<double> sinceInput() override {
            ++server_.asked;
            if (!server_.answers) return std::nullopt;
            return server_.clock.now() - server_.lastInput;
        }
        bool isSaverThere() override { return server_.saver; }

      private:
        Server& server_;
    };
    [[nodiscard]] X11Idle watch(double seconds) {
        return {clock, std::make_unique<Question>(*this), seconds,
                [this](bool idle) { told.push_back(idle); }};
    }
    void input() { lastInput = clock.now(); }
};

TEST(X11Idle, IsToldWhenTheTimeIsOverAndTheServerIsAskedTwiceUntilThen) {
    Server server;
    const X11Idle idle = server.watch(60.0);
    server.clock.advance(59.9);
    EXPECT_TRUE(server.told.empty());
    EXPECT_EQ(server.asked, 1);
    server.clock.advance(0.1);
    EXPECT_EQ(server.told, std::vector<bool>{true});
    EXPECT_EQ(server.asked, 2);
    // Nobody comes back: nothing more is told, and the server is asked once a minute.
    server.clock.advance(600.0);
    EXPECT_EQ(server.told, std::vector<bool>{true});
    EXPECT_EQ(server.asked, 12);
}

TEST(X11Idle, TimeBeforeTheWatchCounts) {
    Server server;
    server.clock.advance(40.0);
    const X11Idle idle = server.watch(60.0);
    server.clock.advance(19.9);
    EXPECT_TRUE(server.told.empty());
    server.clock.advance(0.1);
    EXPECT_EQ(server.told, std::vector<bool>{true});
}

TEST(X11Idle, InputMovesTheTimeOnExactly) {
    Server server;
    const X11Idle idle = server.watch(60.0);
    server.clock.advance(45.0);
    server.input();
    server.clock.advance(59.9);
    EXPECT_TRUE(server.told.empty());
    server.clock.advance(0.1);
    EXPECT_EQ(server.told, std::vector<bool>{true});
}

TEST(X11Idle, AfterInputTheNextRestIsToldOnTime) {
    Server server;
    const X11Idle idle = server.watch(60.0);
    server.clock.advance(60.0);
    server.clock.advance(25.0);
    server.input();
    server.clock.advance(59.9);
    EXPECT_EQ(server.told, (std::vector<bool>{true, false}));
    server.clock.advance(0.1);
    EXPECT_EQ(server.told, (std::vector<bool>{true, false, true}));
}

TEST(X11Idle, WhileXscreensaverRunsNobodyIsIdle) {
    Server server;
    server.saver = true;
    const X11Idle idle = server.watch(60.0);
    server.clock.advance(600.0);
    EXPECT_TRUE(server.told.empty());
    server.saver = false;
    server.clock.advance(60.0);
    EXPECT_EQ(server.told, std::vector<bool>{true});
}

TEST(X11Idle, AServerWithoutAnAnswerIsAskedAgain) {
    Server server;
    server.answers = false;
    const X11Idle idle = server.watch(60.0);
    server.clock.advance(60.0);
    EXPECT_TRUE(server.told.empty());
    server.answers = true;
    server.clock.advance(60.0);
    EXPECT_EQ(server.told, std::vector<bool>{true});
}

TEST(X11Idle, ADroppedWatchAsksNothing) {
    Server server;
    { const X11Idle idle = server.watch(60.0); }
    server.clock.advance(600.0);
    EXPECT_EQ(server.asked, 1);
    EXPECT_TRUE(server.told.empty());
}

}  // namespace
}  // namespace platform
