// SPDX-License-Identifier: MIT
// When a window has no frames, or fewer, out of consideration.
#include <gtest/gtest.h>

#include <QProcess>
#include <QProcessEnvironment>
#include <string>

#include "platform/time/RestableClock.h"
#include "platform/window/x11/Coverage.h"
#include "platform/window/x11/DisplaySleep.h"
#include "tests/platform/window/x11/Client.h"
#include "tests/support/WindowSystems.h"

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

// Whether frames stop coming for a window that changes all the time.
bool fallsStill(Client& client, Beats& beats) {
    auto& layer = *client.window->contentView()->layer();
    for (int i = 0; i < 200; ++i) {
        const auto before = client.window->statistics().frames;
        layer.setBackgroundColor(i % 2 == 0 ? QColor(0, 0, 255) : QColor(0, 0, 254));
        if (!beats.pass(3)) return false;
        if (client.window->statistics().frames == before) return true;
    }
    return false;
}

// The server itself never says so of a window of 32 bits.
TEST(PoliteWindow, OfThirtyTwoBitsAndFullyCoveredItFallsStillUntilItIsSeenAgain) {
    const Xvfb x;
    Client client(x, x.makeWindow({.depth = 32}));
    ASSERT_TRUE(client.waitForFrames(1));
    const xcb_window_t cover = x.makeWindow({.width = 300, .height = 300});
    Beats beats(x);
    EXPECT_TRUE(fallsStill(client, beats));
    const auto before = client.window->statistics().frames;
    x.destroy(cover);
    EXPECT_TRUE(client.waitForFrames(before + 1));
}

struct Coverage : testing::Test {
    const Xvfb x;
    const platform::XConnection own{x.display()};
    [[nodiscard]] bool covered(xcb_window_t id) const { return platform::isCovered(own, id); }
};

TEST_F(Coverage, OpaqueWindowsAboveCoverAlsoTogether) {
    const auto id = x.makeWindow({.depth = 32});
    EXPECT_FALSE(covered(id));
    const auto left = x.makeWindow({.width = 100, .height = 150});
    EXPECT_FALSE(covered(id));
    (void)x.makeWindow({.width = 100, .height = 150, .x = 100});
    EXPECT_TRUE(covered(id));
    x.unmap(left);
    EXPECT_FALSE(covered(id));
}

TEST_F(Coverage, OneBelowOrBesideDoesNot) {
    (void)x.makeWindow({.width = 640, .height = 480});
    const auto id = x.makeWindow({});
    (void)x.makeWindow({.width = 300, .height = 300, .x = 200});
    EXPECT_FALSE(covered(id));
}

TEST_F(Coverage, OneThatCanBeSeenThroughDoesNot) {
    const auto id = x.makeWindow({});
    (void)x.makeWindow({.width = 300, .height = 300, .depth = 32});
    EXPECT_FALSE(covered(id));
    const auto glass = x.makeWindow({.width = 300, .height = 300});
    EXPECT_TRUE(covered(id));
    const std::string name = "_NET_WM_WINDOW_OPACITY";
    auto* const atom = xcb_intern_atom_reply(
        x.connection(),
        xcb_intern_atom(x.connection(), 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr);
    const std::uint32_t half = 0x80000000;
    xcb_change_property(x.connection(), XCB_PROP_MODE_REPLACE, glass, atom->atom, XCB_ATOM_CARDINAL,
                        32, 1, &half);
    std::free(atom);
    x.clear(glass, {0, 0, 1, 1});  // waits
    EXPECT_FALSE(covered(id));
}

TEST_F(Coverage, AChildOfAHostsWindowIsCoveredWithIt) {
    const auto host = x.makeWindow({.width = 300, .height = 300});
    const auto id = x.makeWindow({.parent = host});
    EXPECT_FALSE(covered(id));
    (void)x.makeWindow({.width = 400, .height = 400});
    EXPECT_TRUE(covered(id));
}

TEST_F(Coverage, TheRootAndWhatDoesNotExistAreNot) {
    (void)x.makeWindow({.width = 640, .height = 480});
    EXPECT_FALSE(covered(x.screen().root));
    EXPECT_FALSE(covered(0x00abcdef));
}

TEST_F(Coverage, UnderACompositorItIsFoundOutAllTheSame) {
    QProcess picom;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DISPLAY"), x.display());
    environment.insert(QStringLiteral("HOME"), QStringLiteral("/nonexistent"));
    picom.setProcessEnvironment(environment);
    picom.start(QStringLiteral("picom"), {QStringLiteral("--backend"), QStringLiteral("xrender"),
                                          QStringLiteral("--config"), QStringLiteral("/dev/null")});
    const std::string name = "_NET_WM_CM_S0";
    auto* const atom = xcb_intern_atom_reply(
        x.connection(),
        xcb_intern_atom(x.connection(), 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr);
    ASSERT_TRUE(until([&] {
        auto* const owner = xcb_get_selection_owner_reply(
            x.connection(), xcb_get_selection_owner(x.connection(), atom->atom), nullptr);
        const bool there = owner->owner != XCB_NONE;
        std::free(owner);
        return there;
    }));
    std::free(atom);
    const auto id = x.makeWindow({});
    EXPECT_FALSE(covered(id));
    const auto cover = x.makeWindow({.width = 300, .height = 300});
    EXPECT_TRUE(covered(id));
    x.destroy(cover);
    EXPECT_FALSE(covered(id));
    picom.terminate();
    picom.waitForFinished();
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
    platform::WindowServer server{clock,
                                  {.drawer = platform::DrawerChoice::Cpu,
                                   .system = systemOn(clock, x.display()),
                                   .pictures = &pictures}};
    platform::Window window{server, hostRef(x.makeWindow({}))};
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
    platform::Window second(server, hostRef(x.makeWindow({})));
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
    // A change by hand shows all the same.
    view->layer()->setBackgroundColor(Qt::blue);
    EXPECT_EQ(perSecond(), 1);
    pictures.setResting(false);
    server.setNeedsFrames();
    EXPECT_GT(perSecond(), 50);
}

}  // namespace
