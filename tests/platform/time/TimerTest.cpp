// SPDX-License-Identifier: MIT
#include "platform/time/Timer.h"

#include <gtest/gtest.h>

#include <QEventLoop>

#include <limits>
#include <vector>

using platform::ManualClock;
using platform::SystemClock;
using platform::Timer;

namespace {

TEST(Timer, FiresAtItsDueTimesAndNeverBefore) {
    ManualClock clock(10.0);
    std::vector<double> fired;
    const Timer timer(clock, {.interval = 0.25, .repeats = true},
                      [&] { fired.push_back(clock.now()); });
    clock.advance(0.2499);
    EXPECT_TRUE(fired.empty());
    clock.advance(0.7501);
    EXPECT_EQ(fired, (std::vector<double>{10.25, 10.5, 10.75, 11.0}));
}

TEST(Timer, LatenessSkipsWhatWasMissedAndKeepsTheBeat) {
    ManualClock clock(0.0);
    std::vector<double> fired;
    const Timer timer(clock, {.interval = 1.0, .repeats = true},
                      [&] { fired.push_back(clock.now()); });
    clock.leap(3.5);
    clock.advance(1.0);
    EXPECT_EQ(fired, (std::vector<double>{3.5, 4.0}));
}

TEST(Timer, AMillionIntervalsDoNotDrift) {
    ManualClock clock(0.0);
    long count = 0;
    const Timer timer(clock, {.interval = 0.1, .repeats = true}, [&] { ++count; });
    clock.advance(100'000.05);
    EXPECT_EQ(count, 1'000'000);
}

TEST(Timer, CanBeParkedAndToldWhenToFireNext) {
    ManualClock clock(0.0);
    std::vector<double> fired;
    Timer timer(clock, {.interval = 1.0, .repeats = true}, [&] {
        fired.push_back(clock.now());
        if (fired.size() == 2) timer.fireNextAt(std::numeric_limits<double>::infinity());
    });
    timer.fireNextAt(0.5);
    clock.advance(10.0);
    EXPECT_EQ(fired, (std::vector<double>{0.5, 1.5}));
    timer.fireNextAt(clock.now());
    clock.advance(1.0);
    EXPECT_EQ(fired, (std::vector<double>{0.5, 1.5, 10.0, 11.0}));
}

TEST(Timer, MayDropItselfInsideItsAction) {
    ManualClock clock;
    int count = 0;
    Timer timer;
    timer = Timer(clock, {.interval = 1.0, .repeats = true}, [&] {
        ++count;
        timer.invalidate();
    });
    clock.advance(5.0);
    EXPECT_EQ(count, 1);
    EXPECT_FALSE(timer.isValid());
    EXPECT_EQ(clock.timerCount(), 0U);
}

TEST(Timer, DroppingItEndsIt) {
    ManualClock clock;
    int count = 0;
    {
        const Timer timer(clock, {.interval = 1.0, .repeats = true}, [&] { ++count; });
    }
    clock.advance(5.0);
    EXPECT_EQ(count, 0);
}

TEST(Timer, OnceMeansOnce) {
    ManualClock clock;
    int count = 0;
    const Timer timer(clock, {.interval = 1.0}, [&] { ++count; });
    clock.advance(5.0);
    EXPECT_EQ(count, 1);
    EXPECT_FALSE(timer.isValid());
}

TEST(SystemClock, FiresInNestedEventLoopsAndNeverEarly) {
    SystemClock clock;
    const double begin = clock.now();
    std::vector<double> fired;
    QEventLoop outer, inner;
    const Timer timer(clock, {.interval = 0.002, .repeats = true}, [&] {
        fired.push_back(clock.now() - begin);
        if (fired.size() == 1) inner.exec();
        if (fired.size() == 3) inner.quit();
        if (fired.size() == 5) outer.quit();
    });
    outer.exec();
    for (std::size_t i = 0; i < fired.size(); ++i)
        EXPECT_GE(fired[i], 0.002 * static_cast<double>(i + 1) - 1e-9);
}

TEST(SystemClock, ATimerOfThePastFiresAtOnce) {
    SystemClock clock;
    QEventLoop loop;
    Timer timer(clock, {.interval = 1000.0, .repeats = true}, [&] { loop.quit(); });
    timer.fireNextAt(clock.now() - 5.0);
    const double begin = clock.now();
    loop.exec();
    EXPECT_LT(clock.now() - begin, 10.0);
}

TEST(Timer, OutlivesItsClockHarmlessly) {
    Timer timer;
    {
        ManualClock clock;
        timer = Timer(clock, {.interval = 1.0, .repeats = true}, [] {});
    }
    EXPECT_FALSE(timer.isValid());
    timer.invalidate();
}

}  // namespace
