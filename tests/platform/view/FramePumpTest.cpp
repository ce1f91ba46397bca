// SPDX-License-Identifier: MIT
#include "platform/view/FramePump.h"

#include <gtest/gtest.h>

#include <limits>

using platform::Frame;
using platform::FramePump;
using platform::ManualClock;

namespace {

constexpr double kNever = std::numeric_limits<double>::infinity();
constexpr double kBeat = 1.0 / 64.0;  // exact in binary

struct Sink : platform::FrameSink {
    int frames = 0;
    void submit(Frame&) override { ++frames; }
};

struct FramePumpTest : testing::Test {
    ManualClock clock{1000.0};
    Sink sink;
    std::vector<double> times;
    std::function<double(double)> next = [](double) { return kNever; };
    FramePump pump{clock, sink, [this](Frame&, double time) {
                       times.push_back(time);
                       return next(time);
                   }};
    FramePumpTest() { pump.setInterval(kBeat); }
};

TEST_F(FramePumpTest, FrozenTreeGivesOneFrameAndThenNone) {
    pump.setVisible(true);
    clock.advance(60.0);
    EXPECT_EQ(times, std::vector<double>{1000.0});
    EXPECT_EQ(sink.frames, 1);
}

TEST_F(FramePumpTest, ContinuousChangeGivesAFrameEachBeatAndNoMore) {
    next = [](double time) { return time; };
    pump.setVisible(true);
    clock.advance(1.0);
    EXPECT_EQ(times.size(), 65U);
    for (std::size_t i = 0; i < times.size(); ++i)
        EXPECT_DOUBLE_EQ(times[i], 1000.0 + static_cast<double>(i) * kBeat);
}

TEST_F(FramePumpTest, AMinuteOfFramesDoesNotDrift) {
    pump.setInterval(1.0 / 60.0);
    next = [](double time) { return time; };
    pump.setVisible(true);
    clock.advance(60.0 + 1e-6);
    EXPECT_EQ(times.size(), 3601U);
    EXPECT_NEAR(times.back(), 1060.0, 1e-6);
}

TEST_F(FramePumpTest, WaitsForTheNextChangeAndThenForTheBeat) {
    next = [](double time) { return time < 1000.25 ? 1000.25 + kBeat / 3 : kNever; };
    pump.setVisible(true);
    clock.advance(10.0);
    EXPECT_EQ(times, (std::vector<double>{1000.0, 1000.25 + kBeat}));
}

// A scene counts its next frame from the moment of this one, which comes a little after the beat.
TEST_F(FramePumpTest, AFrameWantedJustAfterABeatIsOnThatBeat) {
    next = [](double time) { return time + 1.02 * kBeat; };
    pump.setVisible(true);
    clock.advance(1.0);
    EXPECT_EQ(times.size(), 65U);
    times.clear();
    next = [](double time) { return time + 1.1 * kBeat; };
    clock.advance(1.0);
    EXPECT_EQ(times.size(), 32U);
}

TEST_F(FramePumpTest, AChangeByHandShowsAtOnceAfterARest) {
    pump.setVisible(true);
    clock.advance(5.003);
    pump.request();
    pump.request();
    clock.advance(1.0);
    EXPECT_EQ(times, (std::vector<double>{1000.0, 1005.003}));
}

TEST_F(FramePumpTest, ManyChangesByHandGiveOneFrameABeat) {
    pump.setVisible(true);
    clock.advance(0.0);
    for (int i = 0; i < 1000; ++i) {
        pump.request();
        clock.advance(kBeat / 100.0);
    }
    EXPECT_EQ(times.size(), 11U);
    for (std::size_t i = 1; i < times.size(); ++i)
        EXPECT_GE(times[i] - times[i - 1], kBeat * 0.999);
}

TEST_F(FramePumpTest, AChangeWhileBuildingGivesAnotherFrame) {
    int left = 1;
    next = [&](double) {
        if (left-- > 0) pump.request();
        return kNever;
    };
    pump.setVisible(true);
    clock.advance(1.0);
    EXPECT_EQ(times, (std::vector<double>{1000.0, 1000.0 + kBeat}));
}

TEST_F(FramePumpTest, WhileNobodyTakesFramesTheyWaitAndComeAtOnceAfterwards) {
    next = [](double time) { return time; };
    pump.setVisible(true);
    clock.advance(0.0);
    pump.setReady(false);
    pump.request();
    clock.advance(1.0);
    EXPECT_EQ(times.size(), 1U);
    pump.setInterval(kBeat * 2);
    clock.advance(1.0);
    EXPECT_EQ(times.size(), 1U);
    pump.setReady(true);
    clock.advance(0.0);
    EXPECT_EQ(times.size(), 2U);
    clock.advance(kBeat * 2);
    EXPECT_EQ(times.size(), 3U);
}

TEST_F(FramePumpTest, TakingFramesAgainBringsNoneWhereNothingChanged) {
    pump.setVisible(true);
    clock.advance(1.0);
    pump.setReady(false);
    pump.setReady(true);
    clock.advance(1.0);
    EXPECT_EQ(times.size(), 1U);
}

TEST_F(FramePumpTest, HiddenWindowHasNoFrames) {
    next = [](double time) { return time; };
    clock.advance(1.0);
    pump.request();
    clock.advance(1.0);
    EXPECT_TRUE(times.empty());
    pump.setVisible(true);
    clock.advance(4 * kBeat);
    const auto shown = times.size();
    EXPECT_EQ(shown, 5U);
    pump.setVisible(false);
    pump.request();
    clock.advance(10.0);
    EXPECT_EQ(times.size(), shown);
    pump.setVisible(true);
    clock.advance(0.0);
    EXPECT_EQ(times.size(), shown + 1);
}

TEST_F(FramePumpTest, LatenessSkipsBeatsAndKeepsTheRhythm) {
    next = [](double time) { return time; };
    pump.setVisible(true);
    clock.advance(kBeat);
    clock.leap(kBeat * 1.5);
    clock.advance(kBeat * 0.5);
    EXPECT_EQ(times, (std::vector<double>{1000.0, 1000.0 + kBeat, 1000.0 + 2.5 * kBeat,
                                          1000.0 + 3.0 * kBeat}));
}

TEST_F(FramePumpTest, DroppingItLeavesNoTimer) {
    {
        FramePump other(clock, sink, [](Frame&, double time) { return time; });
        other.setVisible(true);
        EXPECT_EQ(clock.timerCount(), 2U);
    }
    EXPECT_EQ(clock.timerCount(), 1U);
}

}  // namespace
