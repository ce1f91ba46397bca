// SPDX-License-Identifier: MIT
#include "platform/window/wayland/WaylandDoor.h"

#include "platform/window/wayland/WaylandSystem.h"

namespace platform {

namespace {

struct HangUp {
    void operator()(wl_display* display) const {
        if (display) wl_display_disconnect(display);
    }
};

std::shared_ptr<void> reach() {
    // The library would report a wrong environment on standard error.
    wl_log_set_handler_client([](const char*, va_list) {});
    const std::shared_ptr<wl_display> display(wl_display_connect(nullptr), HangUp());
    return display && wayland::answers(*display) ? display : nullptr;
}

std::unique_ptr<WindowSystem> open(MediaClock& clock) {
    return std::make_unique<wayland::WaylandSystem>(clock, QString());
}

}  // namespace

}  // namespace platform

const platform::WaylandDoor* brixtelWaylandDoor() {
    static constexpr platform::WaylandDoor door{.reach = platform::reach, .open = platform::open};
    return &door;
}
