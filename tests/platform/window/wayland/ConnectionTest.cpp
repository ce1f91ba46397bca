// SPDX-License-Identifier: MIT
#include "platform/window/wayland/Connection.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QTemporaryDir>

#include "tests/support/Until.h"
#include "tests/support/wayland/Compositor.h"

namespace platform::wayland {
namespace {

TEST(WaylandConnection, WithoutACompositorItIsNotAlive) {
    ManualClock clock;
    const Connection connection(clock, QStringLiteral("/nonexistent/wayland-7"));
    EXPECT_FALSE(connection.isAlive());
}

TEST(WaylandConnection, ASocketThatNeverAnswersIsNoCompositor) {
    const QTemporaryDir folder;
    const QByteArray path = folder.filePath(QStringLiteral("stom")).toLocal8Bit();
    const int listening = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::copy(path.begin(), path.end(), address.sun_path);
    ASSERT_EQ(bind(listening, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(listening, 1), 0);
    ManualClock clock;
    const Connection connection(clock, QString::fromLocal8Bit(path));
    EXPECT_FALSE(connection.isAlive());
    close(listening);
}

TEST(WaylandConnection, KnowsTheOutputsFromTheStart) {
    wltest::Options options;
    options.outputs = {{.name = "A", .mode = {1920, 1080}},
                       {.name = "B", .mode = {1600, 900}, .scale = 1.25, .at = {1920, 100}}};
    wltest::Compositor compositor(options);
    ManualClock clock;
    Connection connection(clock, compositor.address());
    ASSERT_TRUE(connection.isAlive());
    const auto screens = connection.outputs().screens();
    ASSERT_EQ(screens.size(), 2U);
    EXPECT_EQ(screens[0], (Screen{.name = QStringLiteral("A"), .frame = {0, 0, 1920, 1080}}));
    // 1280 × 720 points; 260 points of the main screen lie below its lower edge.
    EXPECT_EQ(
        screens[1],
        (Screen{.name = QStringLiteral("B"), .frame = {1920, 260, 1280, 720}, .scale = 1.25}));
}

TEST(WaylandConnection, WithoutXdgOutputTheScaleIsWhole) {
    wltest::Options options;
    options.globals.xdgOutput = false;
    options.outputs = {{.name = "A", .mode = {2560, 1440}, .scale = 2.0}};
    wltest::Compositor compositor(options);
    ManualClock clock;
    Connection connection(clock, compositor.address());
    EXPECT_EQ(connection.outputs().screens(),
              (std::vector{
                  Screen{.name = QStringLiteral("A"), .frame = {0, 0, 1280, 720}, .scale = 2.0}}));
}

TEST(WaylandConnection, ATurnedOutputStandsUpright) {
    for (const bool xdgOutput : {true, false}) {
        wltest::Options options;
        options.globals.xdgOutput = xdgOutput;
        options.outputs = {{.name = "A", .mode = {1920, 1080}, .transform = 1}};
        wltest::Compositor compositor(options);
        ManualClock clock;
        Connection connection(clock, compositor.address());
        EXPECT_EQ(connection.outputs().screens().front().frame, QRectF(0, 0, 1080, 1920));
        EXPECT_EQ(connection.outputs().screens().front().scale, 1.0);
    }
}

TEST(WaylandConnection, OutputsComeGoAndChange) {
    wltest::Compositor compositor;
    ManualClock clock;
    Connection connection(clock, compositor.address());
    int told = 0;
    const Observation watch = connection.outputs().observe([&] { ++told; });
    compositor.addOutput({.name = "B", .at = {640, 0}});
    ASSERT_TRUE(until([&] { return connection.outputs().screens().size() == 2; }));
    compositor.changeOutput({.name = "B", .mode = {800, 600}, .at = {640, 0}});
    ASSERT_TRUE(until([&] {
        const Output* const b = connection.outputs().named(QStringLiteral("B"));
        return b && b->place().size() == QSize(800, 600);
    }));
    compositor.removeOutput("B");
    ASSERT_TRUE(until([&] { return connection.outputs().screens().size() == 1; }));
    EXPECT_EQ(connection.outputs().named(QStringLiteral("B")), nullptr);
    EXPECT_GE(told, 3);
}

TEST(WaylandConnection, TheLossIsToldOnceWithoutAReasonWhereTheCompositorDies) {
    wltest::Compositor compositor;
    ManualClock clock;
    Connection connection(clock, compositor.address());
    int lost = 0;
    connection.onLost([&] { ++lost; });
    compositor.die();
    EXPECT_TRUE(until([&] { return lost > 0; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(lost, 1);
    EXPECT_FALSE(connection.isAlive());
    EXPECT_EQ(connection.protocolError(), QString());
}

TEST(WaylandConnection, AProtocolErrorIsALossWithAReason) {
    wltest::Compositor compositor;
    ManualClock clock;
    Connection connection(clock, compositor.address());
    int lost = 0;
    connection.onLost([&] { ++lost; });
    compositor.postError();
    EXPECT_TRUE(until([&] { return lost > 0; }));
    EXPECT_EQ(connection.protocolError(), QStringLiteral("wl_display, 3"));
}

TEST(WaylandConnection, ACompositorThatStopsReadingHoldsNothingUp) {
    wltest::Compositor compositor;
    ManualClock clock;
    Connection connection(clock, compositor.address());
    compositor.freeze();
    // Fewer than fill the socket, more than one writing.
    std::vector<Proxy<wl_region>> regions;
    for (int i = 0; i < 2000; ++i)
        regions.emplace_back(wl_compositor_create_region(connection.compositor()));
    connection.flush();
    EXPECT_TRUE(connection.isAlive());
    compositor.thaw();
    EXPECT_TRUE(connection.roundTrip());
    EXPECT_EQ(compositor.count("wl_compositor", "create_region"), 2000);
}

TEST(WaylandConnection, LeavesNothingBehind) {
    wltest::Compositor compositor;
    ManualClock clock;
    {
        const Connection connection(clock, compositor.address());
        EXPECT_EQ(compositor.clients(), 1);
    }
    EXPECT_TRUE(until([&] { return compositor.clients() == 0; }));
}

}  // namespace
}  // namespace platform::wayland
