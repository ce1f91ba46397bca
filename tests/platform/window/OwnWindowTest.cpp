// SPDX-License-Identifier: MIT
// Windows that Qt makes, on an X server of the test's own.
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QProcess>
#include <QTemporaryDir>

#include "platform/window/Window.h"
#include "tests/support/EigenScherm.h"
#include "tests/support/Paden.h"
#include "tests/support/Until.h"
#include "tests/support/WindowSystems.h"
#include "tests/support/Xvfb.h"

using platform::KeyEvent;
using platform::MouseEvent;
using platform::Screen;
using platform::SystemClock;
using platform::View;
using platform::Window;
using platform::WindowOptions;
using platform::WindowServer;
using platform::WindowStyle;

namespace {

Xvfb* x = nullptr;  // that Qt is connected to

constexpr std::uint32_t kBlack = 0, kGreen = 0x00ff00, kRed = 0xff0000;

// Runs a tool of X on the server; what it prints, or nothing if it fails.
QString tool(const QString& name, const QStringList& words) {
    QProcess process;
    process.start(name, words);
    if (!process.waitForFinished() || process.exitCode() != 0) return {};
    return QString::fromLocal8Bit(process.readAllStandardOutput());
}

struct OwnWindowTest : testing::Test {
    SystemClock clock;
    WindowServer server{clock, {.drawer = platform::DrawerChoice::Cpu, .system = systemOn(clock)}};

    static std::shared_ptr<View> coloured(const QColor& colour) {
        auto view = std::make_shared<View>(QRectF());
        view->setWantsLayer(true);
        view->layer()->setBackgroundColor(colour);
        return view;
    }
    static std::uint32_t screenPixel(int column, int row) {
        return x->pixel(x->screen().root, column, row);
    }
    static bool shows(int column, int row, std::uint32_t colour) {
        return until([=] { return screenPixel(column, row) == colour; });
    }
    static bool drawn(const Window& window) {
        return until([&] { return window.statistics().frames >= 1; });
    }
};

TEST_F(OwnWindowTest, ShowsItsPictureWhereItStands) {
    Window window(server, {.frame = {100, 60, 200, 150}});
    window.setContentView(coloured(Qt::green));
    EXPECT_FALSE(window.isVisible());
    window.show();
    ASSERT_TRUE(drawn(window));
    EXPECT_TRUE(window.isVisible());
    // The screen is 480 high: rows 270 to 419.
    EXPECT_TRUE(shows(100, 270, kGreen));
    EXPECT_TRUE(shows(299, 419, kGreen));
    EXPECT_NE(screenPixel(100, 269), kGreen);
    EXPECT_NE(screenPixel(99, 300), kGreen);
    EXPECT_EQ(window.frame(), QRectF(100, 60, 200, 150));
    EXPECT_EQ(window.contentView()->frame(), QRectF(0, 0, 200, 150));
    // The render thread reports the first frame, in a turn of the event loop.
    EXPECT_TRUE(until([&] { return window.statistics().firstFrameTime.has_value(); }));
}

TEST_F(OwnWindowTest, IsBlackBeforeAnythingIsDrawn) {
    Window below(server, {.frame = {0, 0, 640, 480}});
    below.setContentView(coloured(Qt::green));
    below.show();
    ASSERT_TRUE(shows(150, 300, kGreen));
    // A server without a system cannot draw at all.
    WindowServer nowhere(clock, {.drawer = {}, .system = withoutSystem(clock)});
    Window window(nowhere, {.frame = {100, 60, 200, 150}});
    window.show();
    EXPECT_TRUE(shows(150, 300, kBlack));
}

TEST_F(OwnWindowTest, AServerOfItsOwnIsNoCompositorsClient) {
    EXPECT_TRUE(server.system().capabilities().passesClicks);
    Window window(server, {.frame = {0, 0, 64, 48}, .style = WindowStyle::FullScreen});
    window.show();
    EXPECT_FALSE(window.reference().isEmpty());
}

TEST_F(OwnWindowTest, FullScreenCoversTheScreenUnderIt) {
    Window window(server, {.frame = {300, 200, 10, 10}, .style = WindowStyle::FullScreen});
    window.setContentView(coloured(Qt::green));
    window.setCursorHidden(true);
    window.showWithKeyboard();
    ASSERT_TRUE(drawn(window));
    EXPECT_TRUE(shows(0, 0, kGreen));
    EXPECT_TRUE(shows(639, 479, kGreen));
    EXPECT_EQ(window.frame(), QRectF(0, 0, 640, 480));
}

TEST_F(OwnWindowTest, OrderedOutItIsGoneAndComesBack) {
    Window window(server, {.frame = {0, 0, 100, 100}});
    window.setContentView(coloured(Qt::green));
    window.show();
    ASSERT_TRUE(shows(50, 450, kGreen));
    window.hide();
    EXPECT_FALSE(window.isVisible());
    EXPECT_TRUE(until([&] { return x->mappedWindows().empty(); }));
    window.contentView()->layer()->setBackgroundColor(Qt::red);
    window.show();
    EXPECT_TRUE(shows(50, 450, kRed));
}

TEST_F(OwnWindowTest, SetFrameMovesAndResizesItAndItsContent) {
    Window window(server, {.frame = {0, 0, 100, 100}});
    window.setContentView(coloured(Qt::green));
    window.show();
    ASSERT_TRUE(drawn(window));
    window.setFrame({300, 200, 200, 100});
    EXPECT_TRUE(shows(499, 180, kGreen));
    EXPECT_EQ(window.contentView()->frame(), QRectF(0, 0, 200, 100));
}

TEST_F(OwnWindowTest, DroppedItIsGoneFromTheScreen) {
    {
        Window window(server, {.frame = {0, 0, 100, 100}});
        window.show();
        ASSERT_TRUE(drawn(window));
        EXPECT_EQ(x->mappedWindows().size(), 1U);
    }
    EXPECT_TRUE(until([&] { return x->mappedWindows().empty(); }));
}

TEST_F(OwnWindowTest, AHigherLevelStaysOnTop) {
    Window high(server, {.frame = {0, 0, 100, 100}, .level = 1001});
    Window low(server, {.frame = {0, 0, 100, 100}, .level = 1000});
    Window plain(server, {.frame = {0, 0, 100, 100}});
    high.setContentView(coloured(Qt::green));
    low.setContentView(coloured(Qt::red));
    plain.setContentView(coloured(Qt::blue));
    high.show();
    ASSERT_TRUE(shows(50, 450, kGreen));
    low.show();
    plain.show();
    ASSERT_TRUE(until([] { return x->mappedWindows().size() == 3; }));
    EXPECT_TRUE(shows(50, 450, kGreen));
    high.hide();
    EXPECT_TRUE(shows(50, 450, kRed));
    low.hide();
    EXPECT_TRUE(shows(50, 450, 0x0000ff));
}

TEST_F(OwnWindowTest, ASeeThroughOneIsDeepAndClear) {
    Window window(server, {.frame = {0, 0, 100, 100}, .opaque = false, .level = 1});
    auto view = coloured(QColor(0, 255, 0, 128));
    auto part = std::make_shared<View>(QRectF(50, 0, 50, 100));
    view->layer()->setOpacity(1.0);
    window.setContentView(view);
    window.show();
    ASSERT_TRUE(drawn(window));
    const auto windows = x->mappedWindows();
    ASSERT_EQ(windows.size(), 1U);
    // Premultiplied; 128 of 255, to a rounding.
    const std::uint32_t pixel = x->pixel(windows[0], 10, 10);
    EXPECT_NEAR(pixel >> 24, 128, 1);
    EXPECT_NEAR(pixel >> 8 & 255, 128, 1);
    view->layer()->setBackgroundColor(QColor());
    EXPECT_TRUE(until([&] { return x->pixel(windows[0], 10, 10) == 0; }));
}

TEST_F(OwnWindowTest, ItsAlphaIsTheCompositorsToShow) {
    Window window(server, {.frame = {0, 0, 100, 100}});
    window.setAlpha(0.5);
    window.show();
    ASSERT_TRUE(drawn(window));
    const auto id = QStringLiteral("0x%1").arg(x->mappedWindows().at(0), 0, 16);
    const auto opacity = [&] {
        return tool(QStringLiteral("xprop"),
                    {QStringLiteral("-id"), id, QStringLiteral("_NET_WM_WINDOW_OPACITY")});
    };
    EXPECT_TRUE(opacity().trimmed().endsWith(QStringLiteral("= 2147483648")))
        << qPrintable(opacity());
    window.fadeTo(0.0);
    EXPECT_TRUE(until([&] { return window.alpha() == 0.0; }));
    EXPECT_TRUE(until([&] { return opacity().trimmed().endsWith(QStringLiteral("= 0")); }));
}

struct Listening : View {
    using View::View;
    int keys = 0, left = 0, right = 0, other = 0, moved = 0;
    KeyEvent key;
    MouseEvent mouse;
    bool acceptsFirstResponder() const override { return true; }
    void keyDown(const KeyEvent& e) override { ++keys, key = e; }
    void mouseDown(const MouseEvent& e) override { ++left, mouse = e; }
    void rightMouseDown(const MouseEvent& e) override { ++right, mouse = e; }
    void otherMouseDown(const MouseEvent& e) override { ++other, mouse = e; }
    void mouseMoved(const MouseEvent& e) override { ++moved, mouse = e; }
};

TEST_F(OwnWindowTest, KeysAndMouseReachItsViews) {
    const auto view = std::make_shared<Listening>(QRectF());
    Window window(server,
                  {.frame = {100, 60, 200, 150}, .style = WindowStyle::Borderless, .level = 1});
    window.setContentView(view);
    window.makeFirstResponder(view.get());
    window.showWithKeyboard();
    ASSERT_TRUE(drawn(window));
    const auto xdotool = [](const QStringList& words) { tool(QStringLiteral("xdotool"), words); };
    // The first place differs from the last of an earlier round: Qt keeps back a movement to a
    // place that it knows.
    xdotool({QStringLiteral("mousemove"), QStringLiteral("120"), QStringLiteral("310")});
    ASSERT_TRUE(until([&] { return view->moved > 0; }));
    xdotool({QStringLiteral("mousemove"), QStringLiteral("110"), QStringLiteral("300")});
    ASSERT_TRUE(until([&] { return view->mouse.location == QPointF(10, 120); }));
    EXPECT_EQ(view->mouse.screenLocation, QPointF(110, 180));
    xdotool({QStringLiteral("click"), QStringLiteral("1")});
    EXPECT_TRUE(until([&] { return view->left == 1; }));
    xdotool({QStringLiteral("click"), QStringLiteral("3")});
    EXPECT_TRUE(until([&] { return view->right == 1; }));
    xdotool({QStringLiteral("click"), QStringLiteral("2")});
    EXPECT_TRUE(until([&] { return view->other == 1; }));
    EXPECT_EQ(view->left, 1);
    xdotool({QStringLiteral("key"), QStringLiteral("a")});
    EXPECT_TRUE(until([&] { return view->keys == 1; }));
    EXPECT_EQ(view->key.text, QStringLiteral("a"));
    EXPECT_EQ(view->key.key, Qt::Key_A);
}

struct CanBeKey final : Window {
    using Window::Window;
    bool canBecomeKey() const override { return true; }
};

TEST_F(OwnWindowTest, OnlyOneThatCanBecomesKey) {
    Window cannot(server, {.frame = {0, 0, 100, 100}, .level = 1});
    CanBeKey can(server, {.frame = {200, 0, 100, 100}, .level = 1});
    cannot.showWithKeyboard();
    can.showWithKeyboard();
    ASSERT_TRUE(drawn(can));
    EXPECT_TRUE(until([&] { return can.isKey(); }));
    EXPECT_FALSE(cannot.isKey());
}

TEST_F(OwnWindowTest, ClicksGoThroughOneThatIgnoresThem) {
    const auto low = std::make_shared<Listening>(QRectF());
    const auto high = std::make_shared<Listening>(QRectF());
    Window below(server, {.frame = {100, 60, 200, 150}});
    Window above(server, {.frame = {100, 60, 200, 150}, .opaque = false, .level = 1});
    below.setContentView(low);
    above.setContentView(high);
    above.setIgnoresMouseEvents(true);
    below.show();
    above.show();
    ASSERT_TRUE(drawn(above));
    tool(QStringLiteral("xdotool"),
         {QStringLiteral("mousemove"), QStringLiteral("150"), QStringLiteral("320"),
          QStringLiteral("click"), QStringLiteral("1")});
    EXPECT_TRUE(until([&] { return low->left == 1; }));
    EXPECT_EQ(high->left, 0);
}

struct Tracking final : Listening {
    using Listening::Listening;
    void updateTrackingAreas() override {
        addTrackingArea(std::make_shared<platform::TrackingArea>(platform::TrackingArea{
            .rect = {0, 0, 100, 150},
            .options = platform::TrackingArea::MouseMoved | platform::TrackingArea::ActiveAlways}));
    }
};

TEST_F(OwnWindowTest, ATrackingAreaHearsOfAMouseOverAnotherView) {
    const auto content = std::make_shared<View>(QRectF());
    const auto below = std::make_shared<Tracking>(QRectF(0, 0, 200, 150));
    const auto above = std::make_shared<Listening>(QRectF(0, 0, 200, 150));
    content->addSubview(below);
    content->addSubview(above);
    Window window(server, {.frame = {100, 60, 200, 150}, .level = 1});
    window.setContentView(content);
    window.show();
    ASSERT_TRUE(drawn(window));
    tool(QStringLiteral("xdotool"),
         {QStringLiteral("mousemove"), QStringLiteral("250"), QStringLiteral("300")});
    ASSERT_TRUE(until([&] { return above->moved > 0; }));
    EXPECT_EQ(below->moved, 0);
    tool(QStringLiteral("xdotool"),
         {QStringLiteral("mousemove"), QStringLiteral("150"), QStringLiteral("300")});
    EXPECT_TRUE(until([&] { return below->moved == 1; }));
}

TEST_F(OwnWindowTest, ASeeThroughOneTellsTheCompositorNotToStop) {
    Window window(server, {.frame = {0, 0, 100, 100},
                           .opaque = false,
                           .level = 1,
                           .collectionBehavior = platform::CanJoinAllSpaces,
                           .hasShadow = false});
    window.show();
    ASSERT_TRUE(drawn(window));
    const auto id = QStringLiteral("0x%1").arg(window.windowNumber(), 0, 16);
    const QString all = tool(QStringLiteral("xprop"), {QStringLiteral("-id"), id});
    EXPECT_TRUE(all.contains(QStringLiteral("_NET_WM_BYPASS_COMPOSITOR(CARDINAL) = 2")))
        << qPrintable(all);
    EXPECT_TRUE(all.contains(QStringLiteral("_NET_WM_DESKTOP(CARDINAL) = 4294967295")));
    EXPECT_TRUE(all.contains(QStringLiteral("_COMPTON_SHADOW(CARDINAL) = 0")));
}

TEST_F(OwnWindowTest, TheUserMayAskToCloseIt) {
    Window window(server, {.frame = {0, 0, 100, 100}, .style = WindowStyle::Titled});
    int asked = 0;
    window.onClose([&] { ++asked; });
    window.show();
    ASSERT_TRUE(drawn(window));
    const auto atom = [](const char* name) {
        auto* const reply = xcb_intern_atom_reply(
            x->connection(),
            xcb_intern_atom(x->connection(), 0, static_cast<std::uint16_t>(strlen(name)), name),
            nullptr);
        const xcb_atom_t found = reply->atom;
        std::free(reply);
        return found;
    };
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = x->mappedWindows().at(0);
    event.type = atom("WM_PROTOCOLS");
    event.data.data32[0] = atom("WM_DELETE_WINDOW");
    xcb_send_event(x->connection(), 0, event.window, 0, reinterpret_cast<const char*>(&event));
    xcb_flush(x->connection());
    EXPECT_TRUE(until([&] { return asked == 1; }));
    EXPECT_TRUE(window.isVisible());
}

// Splits the screen in two; RandR's monitors are Qt's screens. The second one
// has two pixels a point, as this program's environment says.
class Split {
  public:
    Split() {
        monitor({QStringLiteral("--setmonitor"), QStringLiteral("left"),
                 QStringLiteral("320/80x480/120+0+0"), QStringLiteral("screen")});
        monitor({QStringLiteral("--setmonitor"), QStringLiteral("right"),
                 QStringLiteral("320/80x480/120+320+0"), QStringLiteral("none")});
        until([] { return Screen::all().size() == 2; });
    }
    ~Split() {
        monitor({QStringLiteral("--delmonitor"), QStringLiteral("right")});
        monitor({QStringLiteral("--delmonitor"), QStringLiteral("left")});
        until([] { return Screen::all().size() == 1; });
    }
    Split(const Split&) = delete;
    Split& operator=(const Split&) = delete;

  private:
    static void monitor(const QStringList& words) { tool(QStringLiteral("xrandr"), words); }
};

struct TwoScreens : OwnWindowTest {
    const Split split;
    static std::optional<Screen> named(const QString& name) {
        for (const Screen& screen : Screen::all())
            if (screen.name == name) return screen;
        return std::nullopt;
    }
};

TEST_F(TwoScreens, OfDifferentScaleEachHaveTheirPoints) {
    const auto left = named(QStringLiteral("left")), right = named(QStringLiteral("right"));
    ASSERT_TRUE(left && right);
    EXPECT_EQ(left->frame.size(), QSizeF(320, 480));
    EXPECT_EQ(left->scale, 1.0);
    EXPECT_EQ(right->frame.size(), QSizeF(160, 240));
    EXPECT_EQ(right->scale, 2.0);
}

TEST_F(TwoScreens, AFullScreenWindowOnEach) {
    const auto right = named(QStringLiteral("right"));
    ASSERT_TRUE(right);
    Window window(server, {.frame = right->frame, .style = WindowStyle::FullScreen});
    window.setContentView(coloured(Qt::green));
    window.showWithKeyboard();
    ASSERT_TRUE(drawn(window));
    EXPECT_TRUE(shows(320, 0, kGreen));
    EXPECT_TRUE(shows(639, 479, kGreen));
    EXPECT_NE(screenPixel(319, 0), kGreen);
    EXPECT_EQ(window.backingScaleFactor(), 2.0);
    EXPECT_EQ(window.contentView()->frame(), QRectF(0, 0, 160, 240));
    EXPECT_EQ(window.screen(), right);
}

TEST_F(TwoScreens, AWindowNotYetShownHasTheScaleOfTheScreenItWillBeOn) {
    const auto left = named(QStringLiteral("left")), right = named(QStringLiteral("right"));
    ASSERT_TRUE(left && right);
    for (const WindowStyle style : {WindowStyle::FullScreen, WindowStyle::Titled}) {
        EXPECT_EQ(Window(server, {.frame = left->frame, .style = style}).backingScaleFactor(), 1.0);
        const Window window(server, {.frame = right->frame, .style = style});
        EXPECT_EQ(window.backingScaleFactor(), 2.0);
        EXPECT_EQ(window.screen(), right);
        EXPECT_EQ(window.contentView()->frame().size(), right->frame.size());
    }
}

TEST_F(TwoScreens, AHostsWindowHasTheScaleOfItsScreen) {
    const xcb_window_t id = x->makeWindow({.width = 200, .height = 100, .x = 400, .y = 100});
    Window window(server, hostRef(id));
    EXPECT_EQ(window.backingScaleFactor(), 2.0);
    EXPECT_EQ(window.contentView()->frame().size(), QSizeF(100, 50));
    ASSERT_TRUE(drawn(window));
    x->destroy(id);
}

TEST_F(OwnWindowTest, AScreenThatComesAndGoesIsTold) {
    int told = 0;
    std::size_t screens = 0;
    const platform::ScreenObserver observer([&] {
        ++told;
        screens = Screen::all().size();
    });
    {
        const Split split;
        EXPECT_TRUE(until([&] { return screens == 2; }));
        EXPECT_GT(told, 0);
    }
    EXPECT_TRUE(until([&] { return screens == 1; }));
}

TEST(Program, EndsQuietlyWhenTheServerDies) {
    Xvfb mortal;
    ASSERT_TRUE(mortal.isRunning());
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DISPLAY"), mortal.display());
    const QTemporaryDir session;
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), session.path());
    // Qt 6.8 warns of a locale without UTF-8.
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(BRIXTEL_BUILD_DIR "/tests/window_program"), QStringList());
    ASSERT_TRUE(program.waitForReadyRead(20'000));
    EXPECT_EQ(program.readLine(), "shown\n");
    mortal.kill();
    ASSERT_TRUE(program.waitForFinished());
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0);
    EXPECT_EQ(program.readAllStandardError(), "");
}

}  // namespace

int main(int argc, char** argv) {
    return steun::draaiOpEigenScherm(argc, argv,
                                     {.omgeving = {{"QT_SCREEN_SCALE_FACTORS", "right=2"}}},
                                     [](Xvfb& server, const QString&) { x = &server; });
}
