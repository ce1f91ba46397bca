// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>

#include "platform/window/x11/X11System.h"

// The window system for a test's window server: on the display of that name, or on
// the environment's where the name is empty.
inline std::shared_ptr<platform::WindowSystem> systemOn(platform::MediaClock& clock,
                                                        const QString& display = {}) {
    return std::make_shared<platform::X11System>(clock, display);
}

// No window system answers: windows have everything but a picture.
inline std::shared_ptr<platform::WindowSystem> withoutSystem(platform::MediaClock& clock) {
    return systemOn(clock, QStringLiteral(":none"));
}

// A window of a test's X server as a host hands it over; 0 is the root window.
inline platform::HostRef hostRef(std::uint32_t id) {
    return {QString::number(id)};
}
