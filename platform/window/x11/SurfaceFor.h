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

// Makes the surface that the choice asks for; the processor's where OpenGL was
// asked for and is missing. Null if the window or the server is gone. The
// caller owns the surface. The render thread.
[[nodiscard]] std::unique_ptr<Surface> makeSurfaceFor(const SurfaceOptions& options);

}  // namespace platform
