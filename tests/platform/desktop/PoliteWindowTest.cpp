// SPDX-License-Identifier: MIT
// When a window has no frames, or fewer, out of consideration.
#include <gtest/gtest.h>

#include "platform/desktop/DisplaySleep.h"
#include "platform/time/RestableClock.h"
#include "tests/platform/desktop/Client.h"

using platform::ManualClock;
using platform::RestableClock;
using platform::Timer;

namespace {

TEST(PoliteWindow, WhileTheDisplayIsAsleepThereAreNoFrames) {
    const Xvfb x;
    Client client(x, x.makeWindow({}));
    ASSERT_TRUE(client.waitForFrames(1));
    client.server.setDisplayAsleep(true);
    Beats beats(x);
    ASSERT_TRUE(beats.pass(2));  // what was under way
    const auto before = client.window->statistics().frames;
    auto& layer = *client.window->contentView()->layer();
    bool blue = false;
    const Timer restless(client.clock, {.interval = 0.001, .repeats = true}, [&] {
        blue = !blue;
        layer.setBackgroundColor(blue ? QColor(0, 0, 255) : QColor(0, 0, 254));
    });
    ASSERT_TRUE(beats.pass(10));
    EXPECT_EQ(client.window->statistics().frames, before);
    client.server.setDisplayAsleep(false);
    EXPECT_TRUE(client.waitForFrames(before + 5));
}

TEST(PoliteWindow, AServerWithoutPowerManagementIsAwake) {
    const Xvfb x;
    const platform::XConnection connection(x.display());
    const auto question = platform::dpmsQuestion(connection.get());
    if (question->canAsk()) {
        question->ask();
        EXPECT_TRUE(until([&] { return question->answer() == false; }));
    }
    EXPECT_EQ(xcb_connection_has_error(connection.get()), 0);
}

// Counts the frames that are built of it, and looks different each time.
class Counting : public platform::View {
  public:
    Counting() : View(QRectF(0, 0, 200, 150)) { setWantsLayer(true); }
    int built = 0;

    void build(platform::FrameBuilder& builder, QPointF origin) override {
        ++built;
        View::build(builder, origin);
    }
};

struct ByHand : testing::Test {
    Xvfb x;
    ManualClock clock;
    RestableClock pictures{clock};
    platform::WindowServer server{
        clock,
        {.drawer = platform::DrawerChoice::Cpu, .display = x.display(), .pictures = &pictures}};
    platform::Window window{server, platform::HostWindow{.id = x.makeWindow({})}};
    std::shared_ptr<Counting> view = std::make_shared<Counting>();

    void SetUp() override {
        window.setContentView(view);
        // Moves all the time.
        view->layer()->addAnimation(
            "fade", platform::BasicAnimation{.to = 1.0, .timing = {.duration = 1e6}},
            pictures.now());
        ASSERT_TRUE(window.isVisible());
        clock.advance(0.5);
    }
    // Frames in one second.
    int perSecond() {
        const int before = view->built;
        clock.advance(1.0);
        return view->built - before;
    }
};

TEST_F(ByHand, AtHalfPaceThereAreHalfTheFrames) {
    const int full = perSecond();
    EXPECT_GT(full, 50);
    server.setPace(2);
    clock.advance(0.5);
    EXPECT_NEAR(perSecond(), full / 2, 1);
    server.setPace(1);
    clock.advance(0.5);
    EXPECT_NEAR(perSecond(), full, 1);
}

TEST_F(ByHand, AWindowMadeAtHalfPaceKeepsItToo) {
    const int full = perSecond();
    server.setPace(2);
    platform::Window second(server, platform::HostWindow{.id = x.makeWindow({})});
    const auto own = std::make_shared<Counting>();
    second.setContentView(own);
    own->layer()->addAnimation(
        "fade", platform::BasicAnimation{.to = 1.0, .timing = {.duration = 1e6}}, pictures.now());
    clock.advance(0.5);
    const int before = own->built;
    clock.advance(1.0);
    EXPECT_NEAR(own->built - before, full / 2, 1);
}

TEST_F(ByHand, WhileThePicturesRestThereIsAFrameForEachLeapAndNoOther) {
    pictures.setResting(true);
    clock.advance(0.5);
    EXPECT_EQ(perSecond(), 0);
    pictures.leap(10.0);
    server.setNeedsFrames();
    EXPECT_EQ(perSecond(), 1);
    // What is changed by hand shows all the same.
    view->layer()->setBackgroundColor(Qt::blue);
    EXPECT_EQ(perSecond(), 1);
    pictures.setResting(false);
    server.setNeedsFrames();
    EXPECT_GT(perSecond(), 50);
}

}  // namespace
