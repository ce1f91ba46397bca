// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "platform/time/Timer.h"
#include "platform/window/Window.h"
#include "tests/support/Until.h"
#include "tests/support/WindowSystems.h"
#include "tests/support/Xvfb.h"

// A view that is green below the middle, black above, with a white square in the
// lower left corner: the tests look for it in the window's picture.
inline std::shared_ptr<platform::View> makePicture(QSizeF size) {
    auto view = std::make_shared<platform::View>(QRectF(QPointF(0, 0), size));
    view->setWantsLayer(true);
    view->layer()->setBackgroundColor(Qt::black);
    auto low = std::make_shared<platform::View>(QRectF(0, 0, size.width(), size.height() / 2));
    low->setAutoresizingMask(platform::View::WidthSizable);
    low->setWantsLayer(true);
    low->layer()->setBackgroundColor(QColor(0, 255, 0));
    auto corner = std::make_shared<platform::View>(QRectF(0, 0, 10, 10));
    corner->setWantsLayer(true);
    corner->layer()->setBackgroundColor(Qt::white);
    low->addSubview(corner);
    view->addSubview(low);
    return view;
}

// One program's view of one server.
struct Client {
    platform::SystemClock clock;
    platform::WindowServer server;
    std::unique_ptr<platform::Window> window;
    int closed = 0;

    Client(const Xvfb& x, xcb_window_t id,
           platform::DrawerChoice drawer = platform::DrawerChoice::Cpu)
        : server(clock, {.drawer = drawer, .system = systemOn(clock, x.display())}) {
        window = std::make_unique<platform::Window>(server, hostRef(id));
        window->onClose([this] { ++closed; });
        window->setContentView(makePicture(window->frame().size()));
    }
    [[nodiscard]] bool waitForFrames(std::uint64_t count) const {
        return until([&] { return window->statistics().frames >= count; });
    }
};

// Destroys a window while frames are under way in it all the time: the seconds
// until its program was told, and those that letting go of it took.
struct Destruction {
    double told = 0.0, dropped = 0.0;

    explicit Destruction(platform::DrawerChoice drawer) {
        const Xvfb x;
        const xcb_window_t id = x.makeWindow({});
        Client client(x, id, drawer);
        const platform::Timer busy(client.clock, {.interval = 0.005, .repeats = true}, [&] {
            auto& layer = *client.window->contentView()->layer();
            layer.setOpacity(layer.opacity() > 0.5 ? 0.4 : 1.0);
        });
        EXPECT_TRUE(client.waitForFrames(6));
        const double before = client.clock.now();
        x.destroy(id);
        EXPECT_TRUE(until([&] { return client.closed > 0; }));
        told = client.clock.now() - before;
        client.window.reset();
        dropped = client.clock.now() - before - told;
        EXPECT_EQ(client.closed, 1);
    }
    // On a machine that is busy with something else anything may take longer; what
    // always does, does so every time.
    [[nodiscard]] static bool canTakeLessThan(double seconds, platform::DrawerChoice drawer) {
        for (int tries = 0; tries < 8; ++tries) {
            const Destruction once(drawer);
            if (std::max(once.told, once.dropped) < seconds) return true;
        }
        return false;
    }
};

// Beats that pass, seen by frames of another window: for what must not happen
// meanwhile.
class Beats {
  public:
    explicit Beats(const Xvfb& x)
        : client_(x, x.makeWindow({.width = 20, .height = 20, .x = 600, .y = 440})) {}

    [[nodiscard]] bool pass(int count) {
        auto& layer = *client_.window->contentView()->layer();
        for (int i = 0; i < count; ++i) {
            const auto before = client_.window->statistics().frames;
            if (before == 0 && !client_.waitForFrames(1)) return false;
            layer.setOpacity(layer.opacity() > 0.5 ? 0.4 : 1.0);
            if (!client_.waitForFrames(std::max<std::uint64_t>(before, 1) + 1)) return false;
        }
        return true;
    }

  private:
    Client client_;
};
