// SPDX-License-Identifier: MIT
// An X server of the test's own whose screen changes its size.
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QProcess>

#include "platform/window/Window.h"
#include "tests/support/EigenScherm.h"
#include "tests/support/Until.h"
#include "tests/support/WindowSystems.h"

using platform::MouseEvent;
using platform::Screen;
using platform::View;
using platform::Window;
using platform::WindowServer;

namespace {

Xvfb* x = nullptr;  // that Qt is connected to

bool xrandr(const char* words) {
    return QProcess::execute(QStringLiteral("xrandr"), QString::fromLatin1(words).split(u' ')) == 0;
}

// Notes how many changes were announced by each movement of the mouse.
struct Noting final : View {
    explicit Noting(platform::WindowSystem& system) : View(QRectF()), system_(system) {}
    void mouseMoved(const MouseEvent& event) override {
        announced.push_back(system_.announcedScreenChanges());
        place = event.location;
    }
    std::vector<std::uint64_t> announced;
    QPointF place;

  private:
    platform::WindowSystem& system_;
};

struct ScreenChange : testing::Test {
    platform::SystemClock clock;
    WindowServer server{clock, {.drawer = platform::DrawerChoice::Cpu, .system = systemOn(clock)}};
    platform::WindowSystem& system = server.system();

    void TearDown() override { EXPECT_TRUE(becomes("640x480", {640, 480})); }
    static bool becomes(const char* mode, QSizeF size) {
        return xrandr((QByteArray("--output screen --mode ") + mode).constData()) &&
               until([&] { return Screen::main() && Screen::main()->frame.size() == size; });
    }
};

TEST_F(ScreenChange, IsAnnouncedBySystemsThatWereThere) {
    EXPECT_EQ(system.announcedScreenChanges(), 0U);
    ASSERT_TRUE(becomes("small", {320, 240}));
    const std::uint64_t first = system.announcedScreenChanges();
    EXPECT_GT(first, 0U);
    const auto later = systemOn(clock);
    ASSERT_TRUE(becomes("640x480", {640, 480}));
    EXPECT_GT(system.announcedScreenChanges(), first);
    EXPECT_GT(later->announcedScreenChanges(), 0U);
    EXPECT_LT(later->announcedScreenChanges(), system.announcedScreenChanges());
}

// The server moves a mouse that is outside the smaller screen back inside.
TEST_F(ScreenChange, IsAnnouncedBeforeTheMouseThatTheServerMoves) {
    const auto view = std::make_shared<Noting>(system);
    Window window(server, {.frame = {0, 0, 640, 480}, .level = 1});
    window.setContentView(view);
    window.show();
    ASSERT_TRUE(until([&] { return window.statistics().frames >= 1; }));
    for (const std::int16_t place : {600, 610})
        xcb_warp_pointer(x->connection(), XCB_NONE, x->screen().root, 0, 0, 0, 0, place, 440);
    xcb_flush(x->connection());
    ASSERT_TRUE(until([&] { return view->place.x() == 610; }));
    const std::size_t before = view->announced.size();
    const std::uint64_t known = view->announced.back();
    ASSERT_TRUE(becomes("small", {320, 240}));
    ASSERT_TRUE(until([&] { return view->announced.size() > before; }));
    EXPECT_GT(view->announced.at(before), known);
    EXPECT_LT(view->place.x(), 320.0);
}

}  // namespace

int main(int argc, char** argv) {
    return steun::draaiOpEigenScherm(argc, argv, {}, [](Xvfb& server, const QString&) {
        x = &server;
        // Qt knows them from the beginning.
        (void)xrandr("--newmode small 1 320 320 320 320 240 240 240 240");
        (void)xrandr("--addmode screen small");
    });
}
