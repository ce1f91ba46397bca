// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/time/MediaClock.h"
#include "platform/window/WindowSystem.h"

namespace platform {

// The entrance to this folder's library, which a program loads only in a session of
// compositors: elsewhere no program needs the libraries that come with it. A constant that the
// library owns, as long as the process lasts. Main thread.
struct WaylandDoor {
    // As in WindowSystemKind.
    std::shared_ptr<void> (*reach)();
    std::unique_ptr<WindowSystem> (*open)(MediaClock& clock);
};

}  // namespace platform

// Found by this name in the loaded library.
extern "C" const platform::WaylandDoor* brixtelWaylandDoor();
