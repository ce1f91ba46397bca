// SPDX-License-Identifier: MIT
// A window system on a compositor of the test's own, and windows that write down
// what they are told.
#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <vector>

#include "platform/window/wayland/WaylandSystem.h"
#include "platform/window/wayland/WaylandWindow.h"
#include "tests/support/Until.h"
#include "tests/support/wayland/Compositor.h"

namespace platform::wayland {

// A native window with its delegate. Frames are painted by the test, on its thread.
class TestWindow final : public NativeWindowDelegate {
  public:
    TestWindow(WaylandSystem& system, const NativeWindowOptions& options,
               DrawerChoice drawer = DrawerChoice::Auto)
        : native(system.makeWindow(options, *this)),
          surface_(native->surfaceMaker({.drawer = drawer})(-1)) {}

    void geometryChanged() override { ++geometryChanges; }
    void visibilityChanged() override { ++visibilityChanges; }
    void readyForFrame(bool is) override { ready = is; }
    void exposed(const QRect& rect) override { exposures.push_back(rect); }
    void keyDown(const KeyEvent& event) override { keys.push_back(event); }
    void mouse(Mouse what, const MouseEvent& event) override {
        if (what == Mouse::Moved) {
            moves.push_back(event);
        } else {
            clicks.push_back(what);
        }
    }
    void closeAsked() override { ++closings; }
    void gone() override {}

    // Everything has that colour from now on.
    void paintAll(const Rgba& colour, double opacity = 1.0) {
        frame_.passes.assign(1, {});
        frame_.background = colour;
        draw({QRect(QPoint(0, 0), native->pixelSize())}, opacity);
    }
    // The rectangles (pixels) have that colour from now on.
    void paint(const Rgba& colour, const std::vector<QRect>& rects) {
        const double scale = native->scale();
        const QSizeF size = native->size();
        for (const QRect& rect : rects) {
            DisplayItem item;
            item.order = static_cast<std::uint32_t>(frame_.passes[0].layers.items.size());
            item.rect = {rect.x() / scale, size.height() - (rect.y() + rect.height()) / scale,
                         rect.width() / scale, rect.height() / scale};
            item.clip = QRectF(QPointF(0, 0), size);
            item.colour = colour;
            frame_.passes[0].layers.items.push_back(item);
        }
        draw(rects, 1.0);
    }

    // The scene fills the window from now on.
    void paintScene(DrawList list) {
        frame_.passes.assign(2, {});
        frame_.background = {0.0F, 0.0F, 0.0F, 1.0F};
        SceneFrame& scene = frame_.passes[1].scene;
        scene.isShown = scene.hasScene = true;
        scene.frame = QRectF(QPointF(0, 0), native->size());
        scene.list = std::move(list);
        draw({QRect(QPoint(0, 0), native->pixelSize())}, 1.0);
    }

    [[nodiscard]] bool isDrawnByProcessor() const {
        return surface_->drawer() == QStringLiteral("cpu");
    }

  private:
    void draw(const std::vector<QRect>& damage, double opacity) {
        frame_.grid = {.scale = native->scale(), .size = native->pixelSize()};
        frame_.opacity = opacity;
        surface_->draw(frame_, damage);
    }

    Frame frame_;

  public:
    int geometryChanges = 0, visibilityChanges = 0, closings = 0;
    bool ready = true;
    std::vector<QRect> exposures;
    std::vector<KeyEvent> keys;
    std::vector<MouseEvent> moves;
    std::vector<Mouse> clicks;
    std::unique_ptr<NativeWindow> native;

  private:
    std::unique_ptr<Surface> surface_;
};

class WaylandFixture {
  public:
    explicit WaylandFixture(const wltest::Options& options = {}) : compositor(options) {}

    // Lets both sides see and handle everything that the other side sent.
    void settle() {
        for (int i = 0; i < 3; ++i) {
            QCoreApplication::processEvents();
            if (!system.connection().roundTrip()) return;
        }
        QCoreApplication::processEvents();
    }

    // The surface that is shown; there must be one.
    wltest::Surface only() {
        auto all = compositor.shown();
        EXPECT_EQ(all.size(), 1U);
        return all.empty() ? wltest::Surface() : std::move(all.front());
    }
    int commits() { return compositor.count("wl_surface", "commit"); }

    wltest::Compositor compositor;
    ManualClock clock;
    WaylandSystem system{clock, compositor.address()};
};

inline NativeWindowOptions saver(const QRectF& frame = {0, 0, 640, 480}) {
    return {.window = {.frame = frame, .style = WindowStyle::FullScreen},
            .takesKeyboard = true,
            .cursorHidden = true};
}

inline NativeWindowOptions rain(const QRectF& frame = {0, 0, 640, 480}) {
    return {.window = {.frame = frame, .opaque = false, .level = 1000}, .ignoresMouse = true};
}

}  // namespace platform::wayland
