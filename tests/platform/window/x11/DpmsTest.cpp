// SPDX-License-Identifier: MIT
// The question whether the display sleeps, put to a server made up for it: those
// that tests can start know no sleep.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/window/x11/DisplaySleep.h"
#include "tests/support/Until.h"

namespace {

constexpr std::uint8_t kQueryExtension = 98;
constexpr std::uint8_t kDpms = 140;  // any number that is free
constexpr std::uint8_t kInfo = 7;

// Speaks just enough of the protocol, on a thread of its own, until the other
// end closes.
class FakeServer {
  public:
    FakeServer() {
        std::array<int, 2> ends{};
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()), 0);
        own_ = ends[0];
        thread_ = std::thread([this] { serve(); });
        connection = xcb_connect_to_fd(ends[1], nullptr);
    }
    ~FakeServer() {
        xcb_disconnect(connection);
        thread_.join();
        close(own_);
    }

    xcb_connection_t* connection = nullptr;
    std::atomic<bool> hasDpms{true};
    std::atomic<bool> enabled{true};
    std::atomic<int> level{0};
    std::atomic<bool> silent{false};
    std::atomic<int> asked{0};

  private:
    bool take(std::uint8_t* to, std::size_t count) const {
        for (std::size_t got = 0; got < count;) {
            const auto more = read(own_, to + got, count - got);
            if (more <= 0) return false;
            got += static_cast<std::size_t>(more);
        }
        return true;
    }
    void send(const std::vector<std::uint8_t>& bytes) const {
        EXPECT_EQ(write(own_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    void serve() {
        std::array<std::uint8_t, 12> hello{};
        if (!take(hello.data(), hello.size())) return;
        std::vector<std::uint8_t> setup(40, 0);
        setup[0] = 1;      // welcome
        setup[2] = 11;     // of the protocol
        setup[6] = 8;      // words that follow
        setup[27] = 0xff;  // longest request
        send(setup);
        std::uint16_t sequence = 0;
        std::array<std::uint8_t, 4> head{};
        while (take(head.data(), head.size())) {
            ++sequence;
            std::vector<std::uint8_t> body(4U * (head[2] + 256U * head[3]) - 4U);
            if (!take(body.data(), body.size())) return;
            std::vector<std::uint8_t> reply(32, 0);
            reply[0] = 1;
            reply[2] = static_cast<std::uint8_t>(sequence);
            reply[3] = static_cast<std::uint8_t>(sequence >> 8);
            if (head[0] == kQueryExtension) {
                const std::string_view name(reinterpret_cast<const char*>(body.data()) + 4,
                                            body[0]);
                reply[8] = hasDpms && name == "DPMS";
                reply[9] = kDpms;
            } else if (head[0] == kDpms && head[1] == kInfo) {
                ++asked;
                if (silent) continue;
                reply[8] = static_cast<std::uint8_t>(level);
                reply[10] = enabled;
            }
            send(reply);
        }
    }

    int own_ = -1;
    std::thread thread_;
};

std::optional<bool> answerOf(FakeServer& server) {
    const auto question = platform::dpmsQuestion(server.connection);
    EXPECT_TRUE(question->canAsk());
    question->ask();
    std::optional<bool> answer;
    EXPECT_TRUE(until([&] {
        answer = question->answer();
        return answer.has_value();
    }));
    // The answer is given once.
    EXPECT_FALSE(question->answer());
    return answer;
}

TEST(Dpms, StandbySuspendAndOffAreAllAsleep) {
    FakeServer server;
    EXPECT_EQ(answerOf(server), false);
    for (const int level : {1, 2, 3}) {
        server.level = level;
        EXPECT_EQ(answerOf(server), true) << level;
    }
    server.level = 0;
    EXPECT_EQ(answerOf(server), false);
}

TEST(Dpms, SwitchedOffItIsAwakeWhateverTheLevel) {
    FakeServer server;
    server.enabled = false;
    server.level = 3;
    EXPECT_EQ(answerOf(server), false);
}

TEST(Dpms, AServerWithoutItIsNotAsked) {
    FakeServer server;
    server.hasDpms = false;
    EXPECT_FALSE(platform::dpmsQuestion(server.connection)->canAsk());
}

TEST(Dpms, NobodyWaitsForAnAnswer) {
    FakeServer server;
    server.silent = true;
    const auto question = platform::dpmsQuestion(server.connection);
    ASSERT_TRUE(question->canAsk());
    question->ask();
    ASSERT_TRUE(until([&] { return server.asked == 1; }));
    EXPECT_FALSE(question->answer());
}

}  // namespace
