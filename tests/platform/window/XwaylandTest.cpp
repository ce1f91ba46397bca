// SPDX-License-Identifier: MIT
// Windows of an X server that is itself a client of a Wayland compositor.
#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <QGuiApplication>
#include <algorithm>

#include "platform/window/Window.h"
#include "platform/window/x11/Xcb.h"
#include "platform/window/x11/Xwayland.h"
#include "tests/platform/window/wayland/WaylandFixture.h"
#include "tests/support/Until.h"
#include "tests/support/WindowSystems.h"
#include "tests/support/wayland/Sway.h"
#include "tests/support/wayland/VirtualKeyboard.h"

namespace {

using platform::Screen;
using platform::SystemClock;
using platform::View;
using platform::Window;
using platform::WindowOptions;
using platform::WindowServer;
using platform::WindowStyle;

wltest::Sway* sway = nullptr;  // with the X server that Qt is connected to

constexpr QRgb kGreen = 0xff00ff00, kRed = 0xffff0000;
const WindowOptions kRain{.frame = {0, 0, 640, 480}, .opaque = false, .level = 1000};

// Hears nothing of a window.
struct Deaf final : platform::NativeWindowDelegate {
    void geometryChanged() override {}
    void visibilityChanged() override {}
    void readyForFrame(bool) override {}
    void exposed(const QRect&) override {}
    void keyDown(const platform::KeyEvent&) override {}
    void mouse(Mouse, const platform::MouseEvent&) override {}
    void closeAsked() override {}
    void gone() override {}
};

struct OnXwayland : testing::Test {
    void SetUp() override {
        if (!sway->isRunning()) GTEST_SKIP() << sway->reason();
        server.emplace(clock, platform::WindowServerOptions{.drawer = platform::DrawerChoice::Cpu,
                                                            .system = systemOn(clock)});
        ASSERT_TRUE(server->isConnected());
    }
    static std::shared_ptr<View> coloured(const QColor& colour) {
        auto view = std::make_shared<View>(QRectF());
        view->setWantsLayer(true);
        view->layer()->setBackgroundColor(colour);
        return view;
    }
    // Whether the screen is the left output, HEADLESS-1; the main one can be either.
    static bool isLeft(const Screen& screen) {
        const auto all = Screen::all();
        return std::none_of(all.begin(), all.end(), [&](const Screen& other) {
            return other.frame.x() < screen.frame.x();
        });
    }
    // Whether the output comes to show that colour in three of its corners.
    static bool shows(const char* output, QRgb colour) {
        return until([&] {
            const QImage picture = sway->picture(QLatin1String(output));
            return !picture.isNull() && picture.pixel(0, 0) == colour &&
                   picture.pixel(639, 0) == colour && picture.pixel(639, 479) == colour;
        });
    }
    // The names of the window's types, by the server.
    static std::vector<std::string> types(const platform::NativeWindow& window) {
        const platform::XConnection x((QString()));
        const auto reply = platform::answer(
            x.get(),
            xcb_get_property(x.get(), 0, static_cast<xcb_window_t>(window.number()),
                             x.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 0, 32),
            xcb_get_property_reply);
        std::vector<std::string> names;
        if (!reply) return names;
        const auto* const atoms =
            static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
        for (int i = 0; i < xcb_get_property_value_length(reply.get()) / 4; ++i) {
            const auto name = platform::answer(x.get(), xcb_get_atom_name(x.get(), atoms[i]),
                                               xcb_get_atom_name_reply);
            if (name)
                names.emplace_back(
                    xcb_get_atom_name_name(name.get()),
                    static_cast<std::size_t>(xcb_get_atom_name_name_length(name.get())));
        }
        return names;
    }
    static bool isNotification(const platform::NativeWindow& window) {
        const auto all = types(window);
        return std::find(all.begin(), all.end(), "_NET_WM_WINDOW_TYPE_NOTIFICATION") != all.end();
    }

    SystemClock clock;
    std::optional<WindowServer> server;
};

struct BlackScreen final : Window {
    using Window::Window;
    [[nodiscard]] bool canBecomeKey() const override { return true; }
};

struct KeyView : View {
    using View::View;
    std::vector<int> keys;
    [[nodiscard]] bool acceptsFirstResponder() const override { return true; }
    void keyDown(const platform::KeyEvent& event) override { keys.push_back(event.key); }
};

// A native window of another program, which has the keyboard.
struct NativeWindowBelow {
    explicit NativeWindowBelow(const platform::Rgba& colour) {
        window.native->show();
        EXPECT_TRUE(until([&] { return window.native->isSeen(); }));
        window.paintAll(colour);
        EXPECT_TRUE(until([&] { return hasKeyboard(); }));
    }
    [[nodiscard]] bool hasKeyboard() const { return window.native->hasKeyboard(); }
    [[nodiscard]] bool hasKeys(std::size_t count) const {
        return until([&] { return window.keys.size() == count; });
    }

    SystemClock clock;
    platform::wayland::WaylandSystem system{clock, sway->address()};
    platform::wayland::TestWindow window{
        system, {.window = {.frame = {0, 0, 640, 480}, .style = WindowStyle::Titled}}};
};

TEST_F(OnXwayland, NoClickPassesToTheCompositorsWindows) {
    EXPECT_FALSE(server->system().capabilities().passesClicks);
    EXPECT_TRUE(platform::isOnWayland(platform::XConnection(QString())));
}

TEST_F(OnXwayland, AnOverlayWithoutTheKeyboardIsANotificationBeforeItIsMapped) {
    Deaf deaf;
    const auto rain = server->system().makeWindow({.window = kRain, .ignoresMouse = true}, deaf);
    EXPECT_FALSE(rain->isShown());
    EXPECT_TRUE(isNotification(*rain));
    rain->setIgnoresMouse(false);
    rain->show();
    rain->setIgnoresMouse(true);
    EXPECT_TRUE(isNotification(*rain));
}

TEST_F(OnXwayland, AWindowWithTheKeyboardOrAFrameIsNoNotification) {
    Deaf deaf;
    for (const platform::NativeWindowOptions& options :
         {platform::NativeWindowOptions{.window = kRain, .takesKeyboard = true},
          platform::NativeWindowOptions{
              .window = {.frame = {0, 0, 64, 48}, .style = WindowStyle::Titled}}}) {
        const auto window = server->system().makeWindow(options, deaf);
        EXPECT_FALSE(types(*window).empty());
        EXPECT_FALSE(isNotification(*window));
    }
}

TEST_F(OnXwayland, EachOutputHasItsOwnFullScreenWindow) {
    const auto screens = Screen::all();
    ASSERT_EQ(screens.size(), 2U);
    std::vector<std::unique_ptr<Window>> windows;
    for (const Screen& screen : screens) {
        windows.push_back(std::make_unique<Window>(
            *server, WindowOptions{.frame = screen.frame, .style = WindowStyle::FullScreen}));
        windows.back()->setContentView(coloured(isLeft(screen) ? Qt::green : Qt::red));
        windows.back()->showWithKeyboard();
    }
    EXPECT_TRUE(shows("HEADLESS-1", kGreen));
    EXPECT_TRUE(shows("HEADLESS-2", kRed));
    // Another program's sheet could not be seen above such a window.
    EXPECT_TRUE(windows.front()->reference().isEmpty());
}

TEST_F(OnXwayland, TheBlackScreenHasTheKeysAndGivesThemBack) {
    wltest::VirtualKeyboard keyboard(sway->address());
    ASSERT_TRUE(keyboard.isThere());
    const NativeWindowBelow below({0.0F, 1.0F, 0.0F, 1.0F});
    ASSERT_TRUE(below.hasKeyboard());

    BlackScreen black(*server, {.frame = {0, 0, 640, 480}, .level = 1001, .staysOnTop = true});
    auto view = std::make_shared<KeyView>(QRectF());
    black.setContentView(view);
    black.showWithKeyboard();
    black.makeFirstResponder(view.get());
    ASSERT_TRUE(until([&] { return !below.hasKeyboard(); }));
    keyboard.type(KEY_X);
    EXPECT_TRUE(until([&] { return view->keys == std::vector<int>{Qt::Key_X}; }));
    EXPECT_TRUE(below.window.keys.empty());
    black.hide();
    EXPECT_TRUE(until([&] { return below.hasKeyboard(); }));
    keyboard.type(KEY_Y);
    EXPECT_TRUE(below.hasKeys(1));
    EXPECT_EQ(view->keys.size(), 1U);
}

TEST_F(OnXwayland, TheRainsWindowLeavesTheKeyboardWhereItIs) {
    wltest::VirtualKeyboard keyboard(sway->address());
    ASSERT_TRUE(keyboard.isThere());
    const NativeWindowBelow below({0.0F, 0.0F, 0.0F, 1.0F});
    ASSERT_TRUE(below.hasKeyboard());

    Window rain(*server, kRain);
    rain.setContentView(coloured(Qt::green));
    rain.setIgnoresMouseEvents(true);
    rain.show();
    // The rain falls on the main screen.
    const auto main = Screen::main();
    ASSERT_TRUE(main);
    ASSERT_TRUE(shows(isLeft(*main) ? "HEADLESS-1" : "HEADLESS-2", kGreen));
    keyboard.type(KEY_Z);
    EXPECT_TRUE(below.hasKeys(1));
    EXPECT_TRUE(below.hasKeyboard());
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
    // Until() turns an event loop.
    std::unique_ptr<wltest::Sway> compositor;
    {
        const QCoreApplication start(argc, argv);
        compositor = std::make_unique<wltest::Sway>(2, "xwayland force\n");
        if (compositor->isRunning()) qputenv("DISPLAY", compositor->xDisplay().toLocal8Bit());
    }
    sway = compositor.get();
    qunsetenv("WAYLAND_DISPLAY");
    qputenv("QT_QPA_PLATFORM", sway->isRunning() ? "xcb" : "offscreen");
    const QGuiApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
