// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <memory>

#include "platform/desktop/Window.h"
#include "platform/time/Timer.h"
#include "tests/support/Until.h"
#include "tests/support/Xvfb.h"

// What a look at the window's picture expects: green below the middle, black
// above, and a white square in the lower left corner.
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
        : server(clock, {.drawer = drawer, .display = x.display()}) {
        window = std::make_unique<platform::Window>(server, platform::HostWindow{.id = id});
        window->onClose([this] { ++closed; });
        window->setContentView(makePicture(window->frame().size()));
    }
    [[nodiscard]] bool waitForFrames(std::uint64_t count) const {
        return until([&] { return window->statistics().frames >= count; });
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
