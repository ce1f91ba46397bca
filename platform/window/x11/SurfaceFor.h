// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>

#include "platform/window/Surface.h"
#include "platform/window/WindowServer.h"

namespace platform {

struct SurfaceOptions {
    DrawerChoice drawer = DrawerChoice::Auto;
    QString display;
    std::uint32_t window = 0;
    int ending = -1;  // ends all waiting once it is readable
    ResetQuery resetStatus{};
};

// The surface for a window as the choice says; the processor's where OpenGL was
// asked for and there is none. Null if the window or the server is not there.
[[nodiscard]] std::unique_ptr<Surface> makeSurfaceFor(const SurfaceOptions& options);

}  // namespace platform
