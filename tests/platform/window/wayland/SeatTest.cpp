// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <vector>

#include "platform/window/wayland/BufferRing.h"
#include "platform/window/wayland/ShellSurface.h"
#include "tests/support/Until.h"
#include "tests/support/wayland/Compositor.h"

namespace platform::wayland {
namespace {

// An overlay that shows one black picture and writes down its input.
class Surface final : public InputTarget, public ShellSurfaceOwner {
  public:
    Surface(Connection& connection, const ShellSurface::Options& options)
        : buffers_(connection.shm(), ring_, [] {}), shell_(connection, options, *this, *this) {}

    void keyPressed(const KeyEvent& event) override { keys.push_back(event); }
    void pointerMoved(QPointF at) override { moves.push_back(at); }
    void buttonPressed(Button button, QPointF) override { buttons.push_back(button); }
    void keyboardChanged() override { ++keyboardChanges; }
    [[nodiscard]] bool hidesCursor() const override { return cursorHidden; }
    void surfaceConfigured(QSize size) override {
        std::vector<QRect> rects;
        Buffer* const buffer = ring_.begin(size, {}, rects);
        const QRect whole(QPoint(0, 0), size);
        ring_.finish(*buffer, {&whole, 1}, true);
        const auto painted = ring_.take(size, rects);
        shell_.show(buffers_.name(*painted.buffer, true), rects, {.points = size, .opaque = true});
    }
    void surfaceRescaled() override {}
    void surfaceTaken() override {}
    void closeAsked() override {}
    void frameDone() override {}
    void presented(double, double) override {}

    std::vector<KeyEvent> keys;
    std::vector<QPointF> moves;
    std::vector<Button> buttons;
    int keyboardChanges = 0;
    bool cursorHidden = true;

  private:
    BufferRing ring_;
    ShmBuffers buffers_;
    ShellSurface shell_;
};

class WaylandSeat : public testing::Test {
  protected:
    void SetUp() override { settle(); }

    // Both sides have seen all that the other did.
    void settle() {
        for (int i = 0; i < 3; ++i)
            ASSERT_TRUE(connection.roundTrip());
    }

    wltest::Compositor compositor;
    ManualClock clock;
    Connection connection{clock, compositor.address()};
    Surface surface{connection, {.role = ShellSurface::Role::Overlay, .takesKeyboard = true}};
};

TEST_F(WaylandSeat, AnOverlayWithTheKeyboardGetsKeysWithTheirMeaning) {
    EXPECT_TRUE(connection.seat().hasKeyboard(surface));
    EXPECT_EQ(surface.keyboardChanges, 1);
    compositor.key(KEY_I, true);
    compositor.key(KEY_I, false);
    compositor.key(KEY_ESC, true);
    compositor.key(KEY_ESC, false);
    settle();
    ASSERT_EQ(surface.keys.size(), 2U);
    EXPECT_EQ(surface.keys[0].key, Qt::Key_I);
    EXPECT_EQ(surface.keys[0].text, QStringLiteral("i"));
    EXPECT_EQ(surface.keys[1].key, Qt::Key_Escape);
    EXPECT_FALSE(surface.keys[1].isRepeat);
}

TEST_F(WaylandSeat, ModifiersAreKeysThemselvesAndChangeOthers) {
    compositor.key(KEY_LEFTSHIFT, true);
    compositor.key(KEY_A, true);
    settle();
    ASSERT_EQ(surface.keys.size(), 2U);
    EXPECT_EQ(surface.keys[0].key, Qt::Key_Shift);
    EXPECT_EQ(surface.keys[1].text, QStringLiteral("A"));
    EXPECT_EQ(surface.keys[1].modifiers, static_cast<std::uint32_t>(Qt::ShiftModifier));
}

TEST_F(WaylandSeat, AHeldKeyRepeatsAsTheCompositorWantsUntilItIsUp) {
    compositor.key(KEY_A, true);
    settle();
    clock.advance(0.59);
    EXPECT_EQ(surface.keys.size(), 1U);
    clock.advance(0.011);
    ASSERT_EQ(surface.keys.size(), 2U);
    EXPECT_TRUE(surface.keys[1].isRepeat);
    clock.advance(0.4);
    EXPECT_EQ(surface.keys.size(), 12U);
    compositor.key(KEY_A, false);
    settle();
    clock.advance(5.0);
    EXPECT_EQ(surface.keys.size(), 12U);
    EXPECT_EQ(clock.timerCount(), 0U);
}

TEST_F(WaylandSeat, ModifiersDoNotRepeat) {
    compositor.key(KEY_LEFTSHIFT, true);
    settle();
    clock.advance(5.0);
    EXPECT_EQ(surface.keys.size(), 1U);
}

TEST_F(WaylandSeat, RepeatingEndsWithTheKeyboard) {
    compositor.key(KEY_A, true);
    settle();
    compositor.giveKeyboard(0);
    settle();
    clock.advance(5.0);
    EXPECT_EQ(surface.keys.size(), 1U);
    EXPECT_FALSE(connection.seat().hasKeyboard(surface));
    EXPECT_EQ(surface.keyboardChanges, 2);
}

TEST_F(WaylandSeat, PointerAndButtonsAreToldInPointsOfTheSurface) {
    compositor.pointerTo({10, 20});
    compositor.pointerTo({30.5, 40});
    compositor.button(BTN_LEFT, true);
    compositor.button(BTN_LEFT, false);
    compositor.button(BTN_RIGHT, true);
    compositor.button(BTN_SIDE, true);
    settle();
    ASSERT_FALSE(surface.moves.empty());
    EXPECT_EQ(surface.moves.back(), QPointF(30.5, 40));
    using Button = InputTarget::Button;
    EXPECT_EQ(surface.buttons, (std::vector{Button::Left, Button::Right, Button::Other}));
}

TEST_F(WaylandSeat, TheHiddenPointerIsAnEmptyCursorAndComesBack) {
    compositor.pointerTo({10, 20});
    settle();
    EXPECT_TRUE(compositor.cursorHidden());
    surface.cursorHidden = false;
    connection.seat().cursorChanged(surface);
    settle();
    EXPECT_FALSE(compositor.cursorHidden());
}

TEST_F(WaylandSeat, KeyboardAndPointerMayBeUnpluggedAndComeBack) {
    compositor.key(KEY_A, true);
    settle();
    compositor.setSeat(false, false);
    settle();
    clock.advance(5.0);
    EXPECT_EQ(surface.keys.size(), 1U);
    EXPECT_FALSE(connection.seat().hasKeyboard(surface));
    compositor.setSeat(true, true);
    settle();
    compositor.key(KEY_B, true);
    settle();
    EXPECT_EQ(surface.keys.size(), 2U);
}

TEST(WaylandKeys, EverySymbolThatQtKnowsHasItsKey) {
    EXPECT_EQ(qtKey(0xff0d), Qt::Key_Return);
    EXPECT_EQ(qtKey(0xffc9), Qt::Key_F12);
    EXPECT_EQ(qtKey('q'), Qt::Key_Q);
    EXPECT_EQ(qtKey('7'), Qt::Key_7);
    EXPECT_EQ(qtKey(' '), Qt::Key_Space);
    EXPECT_EQ(qtKey(0x1008ff11), Qt::Key_unknown);
}

TEST(WaylandKeys, WithoutAKeymapAKeyIsAKeyWithoutMeaning) {
    const Keys keys;
    EXPECT_EQ(keys.press(30, false).key, Qt::Key_unknown);
    EXPECT_FALSE(keys.repeats(30));
}

}  // namespace
}  // namespace platform::wayland
