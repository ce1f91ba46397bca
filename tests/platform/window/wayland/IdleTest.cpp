// SPDX-License-Identifier: MIT
#include "platform/window/DesktopIdle.h"
#include "platform/window/WindowServer.h"
#include "tests/platform/window/wayland/WaylandFixture.h"
#include "tests/support/DBusDaemon.h"
#include "tests/support/IdleBus.h"

namespace platform::wayland {
namespace {

wltest::Options with(bool idle, bool kdeIdle) {
    wltest::Options options;
    options.globals.idle = idle;
    options.globals.kdeIdle = kdeIdle;
    return options;
}

class WaylandIdleBy : public testing::TestWithParam<bool> {
  protected:
    WaylandFixture there{with(GetParam(), true)};
    std::vector<bool> told;

    [[nodiscard]] std::unique_ptr<IdleWatch> watch(double seconds) {
        auto made = there.system.watchIdle(seconds, [this](bool idle) { told.push_back(idle); });
        there.settle();
        return made;
    }
};

TEST_P(WaylandIdleBy, ItIsAskedOnceAndTellsEachChangeOnce) {
    EXPECT_TRUE(there.system.capabilities().knowsIdle);
    auto watching = watch(90.0);
    ASSERT_TRUE(watching);
    // The newer protocol alone, where both are offered.
    EXPECT_EQ(there.compositor.count("ext_idle_notifier_v1", "get_idle_notification"),
              GetParam() ? 1 : 0);
    EXPECT_EQ(there.compositor.count("org_kde_kwin_idle", "get_idle_timeout"), GetParam() ? 0 : 1);
    EXPECT_EQ(there.compositor.idleTimes(), std::vector<std::uint32_t>{90'000});
    for (const bool idle : {false, true, true, false}) {
        there.compositor.setIdle(idle);
        there.settle();
    }
    EXPECT_EQ(told, (std::vector<bool>{true, false}));
    watching.reset();
    there.settle();
    EXPECT_TRUE(there.compositor.idleTimes().empty());
    there.compositor.setIdle(true);
    there.settle();
    EXPECT_EQ(told.size(), 2U);
}

TEST_P(WaylandIdleBy, TwoWatchesHaveTheirOwnTimes) {
    const auto first = watch(1.0);
    const auto second = watch(7200.0);
    auto times = there.compositor.idleTimes();
    std::sort(times.begin(), times.end());
    EXPECT_EQ(times, (std::vector<std::uint32_t>{1000, 7'200'000}));
}

INSTANTIATE_TEST_SUITE_P(Protocols, WaylandIdleBy, testing::Bool(),
                         [](const auto& each) { return each.param ? "ExtIdleNotify" : "KdeIdle"; });

TEST(WaylandIdle, WithoutEitherProtocolTheSystemCannotTell) {
    WaylandFixture there(with(false, false));
    EXPECT_FALSE(there.system.capabilities().knowsIdle);
    EXPECT_FALSE(there.system.watchIdle(60.0, [](bool) {}));
}

TEST(WaylandIdle, WithoutACompositorNobodyKnows) {
    wltest::Compositor compositor(with(true, true));
    ManualClock clock;
    compositor.die();
    const WaylandSystem system(clock, compositor.address());
    EXPECT_FALSE(system.capabilities().knowsIdle);
}

// --- the desktop's, on this window system ---

struct DesktopIdleOnWayland : testing::Test {
    ManualClock clock{100.0};
    DBusDaemon bus;
    int started = 0;
    std::vector<bool> watching;

    struct Desktop {
        Desktop(MediaClock& clock, const wltest::Options& options)
            : compositor(options),
              server(clock,
                     {.system = std::make_shared<WaylandSystem>(clock, compositor.address())}) {}
        void setIdle(bool idle) {
            compositor.setIdle(idle);
            auto& system = static_cast<WaylandSystem&>(server.system());
            for (int i = 0; i < 3; ++i) {
                (void)system.connection().roundTrip();
                QCoreApplication::processEvents();
            }
        }
        wltest::Compositor compositor;
        WindowServer server;
    };
    [[nodiscard]] std::unique_ptr<DesktopIdle> watch(Desktop& desktop) {
        return std::make_unique<DesktopIdle>(
            desktop.server,
            DesktopIdleOptions{.busAddress = bus.address(),
                               .seconds = 300.0,
                               .watching = [this](bool is) { watching.push_back(is); }},
            [this] { ++started; });
    }
    // Whether the watch comes to know of the film. The monitor of the bus is there after a
    // while.
    static bool holds(Inhibitor& film, const DesktopIdle& idle) {
        return until([&] {
            film.holdSaver();
            return idle.isInhibited();
        });
    }
    static bool letsGo(Inhibitor& film, const DesktopIdle& idle) {
        return until([&] {
            film.letGoOfSaver();
            return !idle.isInhibited();
        });
    }
};

TEST_F(DesktopIdleOnWayland, EachRestStartsOnce) {
    Desktop desktop(clock, with(true, true));
    const auto idle = watch(desktop);
    EXPECT_EQ(watching, std::vector<bool>{true});
    desktop.setIdle(true);
    EXPECT_EQ(started, 1);
    clock.advance(1000.0);
    EXPECT_EQ(started, 1);
    desktop.setIdle(false);
    EXPECT_EQ(started, 1);
    desktop.setIdle(true);
    EXPECT_EQ(started, 2);
}

TEST_F(DesktopIdleOnWayland, AFilmHoldsItUpAndTheWholeTimePassesAfterIt) {
    Desktop desktop(clock, with(true, true));
    const auto idle = watch(desktop);
    Inhibitor film(bus.address());
    ASSERT_TRUE(holds(film, *idle));
    desktop.setIdle(true);
    EXPECT_EQ(started, 0);
    clock.advance(1000.0);
    EXPECT_EQ(started, 0);
    ASSERT_TRUE(letsGo(film, *idle));
    clock.advance(299.0);
    EXPECT_EQ(started, 0);
    clock.advance(1.0);
    EXPECT_EQ(started, 1);
    clock.advance(1000.0);
    EXPECT_EQ(started, 1);
}

TEST_F(DesktopIdleOnWayland, InputEndsTheWaitAfterAFilm) {
    Desktop desktop(clock, with(true, true));
    const auto idle = watch(desktop);
    Inhibitor film(bus.address());
    ASSERT_TRUE(holds(film, *idle));
    desktop.setIdle(true);
    ASSERT_TRUE(letsGo(film, *idle));
    desktop.setIdle(false);
    clock.advance(1000.0);
    EXPECT_EQ(started, 0);
}

TEST_F(DesktopIdleOnWayland, WithoutAProtocolGnomesMonitorIsAsked) {
    Desktop desktop(clock, with(false, false));
    IdleMonitor gnome(bus.address());
    ASSERT_TRUE(gnome.appear());
    const auto idle = watch(desktop);
    ASSERT_TRUE(until([&] { return watching == std::vector<bool>{true}; }));
    ASSERT_EQ(gnome.idleWatches.size(), 1U);
    EXPECT_EQ(gnome.idleWatches.begin()->second, 300'000U);
    gnome.fire(gnome.idleWatches.begin()->first);
    EXPECT_TRUE(until([&] { return started == 1; }));
}

TEST_F(DesktopIdleOnWayland, WithAProtocolGnomesMonitorIsNotAsked) {
    Desktop desktop(clock, with(true, false));
    IdleMonitor gnome(bus.address());
    ASSERT_TRUE(gnome.appear());
    const auto idle = watch(desktop);
    Inhibitor film(bus.address());
    // By then the bus has been asked whatever there was to ask.
    ASSERT_TRUE(holds(film, *idle));
    EXPECT_TRUE(gnome.idleWatches.empty());
}

TEST_F(DesktopIdleOnWayland, WhereNobodyKnowsItSaysSo) {
    Desktop desktop(clock, with(false, false));
    const auto idle = watch(desktop);
    EXPECT_TRUE(watching.empty());
    ASSERT_TRUE(until([&] { return !watching.empty(); }));
    EXPECT_EQ(watching, std::vector<bool>{false});
}

}  // namespace
}  // namespace platform::wayland
