// SPDX-License-Identifier: MIT
#include "platform/window/RenderThread.h"

#include <gtest/gtest.h>

#include <future>

using platform::DisplayItem;
using platform::Frame;
using platform::ManualClock;
using platform::RenderThread;
using platform::Surface;

namespace {

// The calls that a surface received, for the test's thread to wait for.
struct Log {
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<std::vector<QRect>> drawn, repaired;
    bool hold = false;
    bool holding = false;
    bool failsScenes = false;
    int failuresTold = 0;
    Surface::Result result = Surface::Result::Drawn;

    template <typename Condition>
    bool waitFor(Condition condition) {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, std::chrono::seconds(10), condition);
    }
};

struct FakeSurface final : Surface {
    explicit FakeSurface(Log& l) : log(l) {}
    Log& log;
    Result draw(const Frame&, std::span<const QRect> damage) override {
        std::unique_lock lock(log.mutex);
        log.drawn.emplace_back(damage.begin(), damage.end());
        log.holding = true;
        log.changed.notify_all();
        log.changed.wait(lock, [this] { return !log.hold; });
        return log.result;
    }
    Result repair(const Frame&, std::span<const QRect> lost) override {
        const std::lock_guard lock(log.mutex);
        log.repaired.emplace_back(lost.begin(), lost.end());
        log.changed.notify_all();
        return log.result;
    }
    Result finish() override { return Result::Drawn; }
    const QString& drawer() const override {
        static const QString name = QStringLiteral("fake");
        return name;
    }
    bool failsScenes() const override {
        const std::lock_guard lock(log.mutex);
        return log.failsScenes;
    }
};

// One green square on 100 by 100 pixels.
Frame frameWith(double x) {
    Frame frame{.grid = {.scale = 1.0, .size = {100, 100}}, .background = {}, .passes = {}};
    frame.passes.resize(1);
    auto& list = frame.passes[0].layers;
    DisplayItem& item = list.items.emplace_back();
    item.rect = QRectF(x, 0, 10, 10);
    item.clip = QRectF(0, 0, 100, 100);
    item.colour = {0, 1, 0, 1};
    list.structure = 1;
    return frame;
}

struct RenderThreadTest : testing::Test {
    Log log;
    std::promise<void> first;
    std::promise<Surface::Result> ended;
    ManualClock clock;
    RenderThread thread{clock,
                        {.makeSurface = [this](int) { return std::make_unique<FakeSurface>(log); },
                         .firstFrameShown = [this] { first.set_value(); },
                         .scenesFailed =
                             [this] {
                                 const std::lock_guard lock(log.mutex);
                                 ++log.failuresTold;
                                 log.changed.notify_all();
                             },
                         .ended = [this](Surface::Result r) { ended.set_value(r); }}};

    void submit(Frame frame) { thread.submit(frame); }
};

TEST_F(RenderThreadTest, FirstFrameIsDrawnWholeAndToldOf) {
    submit(frameWith(0));
    first.get_future().wait();
    EXPECT_EQ(log.drawn.at(0), std::vector<QRect>{QRect(0, 0, 100, 100)});
    EXPECT_EQ(thread.framesDrawn(), 1U);
    EXPECT_EQ(thread.drawer(), QStringLiteral("fake"));
}

TEST_F(RenderThreadTest, LaterFramesOnlyWhereTheyDiffer) {
    submit(frameWith(0));
    ASSERT_TRUE(log.waitFor([&] { return log.drawn.size() == 1; }));
    submit(frameWith(50));
    ASSERT_TRUE(log.waitFor([&] { return log.drawn.size() == 2; }));
    EXPECT_EQ(log.drawn[1], (std::vector<QRect>{QRect(0, 90, 10, 10), QRect(50, 90, 10, 10)}));
}

TEST_F(RenderThreadTest, EveryFrameWhoseSceneFailsIsToldOf) {
    log.failsScenes = true;
    for (int frame = 1; frame <= 3; ++frame) {
        submit(frameWith(20.0 * frame));
        ASSERT_TRUE(log.waitFor([&] { return log.failuresTold == frame; })) << frame;
    }
    {
        const std::lock_guard lock(log.mutex);
        log.failsScenes = false;
    }
    submit(frameWith(0.0));
    while (thread.framesDrawn() < 4)
        std::this_thread::yield();
    EXPECT_EQ(log.failuresTold, 3);
}

TEST_F(RenderThreadTest, AnEqualFrameIsNotDrawn) {
    submit(frameWith(0));
    ASSERT_TRUE(log.waitFor([&] { return log.drawn.size() == 1; }));
    submit(frameWith(0));
    thread.expose({1, 2, 3, 4});
    ASSERT_TRUE(log.waitFor([&] { return log.repaired.size() == 1; }));
    submit(frameWith(50));
    ASSERT_TRUE(log.waitFor([&] { return log.drawn.size() == 2; }));
    // The frame is counted after the surface has told of it.
    while (thread.framesDrawn() < 2)
        std::this_thread::yield();
    EXPECT_EQ(thread.framesDrawn(), 2U);
}

TEST_F(RenderThreadTest, TheLatestFrameWins) {
    log.hold = true;
    submit(frameWith(0));
    ASSERT_TRUE(log.waitFor([&] { return log.holding; }));
    for (double x = 10; x <= 60; x += 10)
        submit(frameWith(x));
    {
        const std::lock_guard lock(log.mutex);
        log.hold = false;
    }
    log.changed.notify_all();
    ASSERT_TRUE(log.waitFor([&] { return log.drawn.size() == 2; }));
    EXPECT_EQ(log.drawn[1], (std::vector<QRect>{QRect(0, 90, 10, 10), QRect(60, 90, 10, 10)}));
}

TEST_F(RenderThreadTest, AnotherSizeIsDrawnWhole) {
    submit(frameWith(0));
    ASSERT_TRUE(log.waitFor([&] { return log.drawn.size() == 1; }));
    Frame larger = frameWith(0);
    larger.grid.size = {120, 90};
    submit(larger);
    ASSERT_TRUE(log.waitFor([&] { return log.drawn.size() == 2; }));
    EXPECT_EQ(log.drawn[1], std::vector<QRect>{QRect(0, 0, 120, 90)});
}

TEST_F(RenderThreadTest, ALostWindowEndsTheDrawing) {
    log.result = Surface::Result::WindowGone;
    submit(frameWith(0));
    EXPECT_EQ(ended.get_future().get(), Surface::Result::WindowGone);
    submit(frameWith(50));
    EXPECT_EQ(thread.framesDrawn(), 0U);
}

TEST(RenderThread, NothingToDrawOnIsAnEnd) {
    std::promise<Surface::Result> ended;
    const ManualClock clock;
    RenderThread thread(clock, {.makeSurface = [](int) { return nullptr; },
                                .firstFrameShown = [] {},
                                .ended = [&](Surface::Result r) { ended.set_value(r); }});
    EXPECT_EQ(ended.get_future().get(), Surface::Result::WindowGone);
}

}  // namespace
