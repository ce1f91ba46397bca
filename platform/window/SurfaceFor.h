// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include "platform/window/Surface.h"

namespace platform {

class GlSurface;

// The ways in which a window system can have a window drawn; each gives null
// where it cannot. The caller's for the length of a call.
struct SurfaceWays {
    // Whether the system shares a GPU with programs; see probeRenderer().
    std::function<bool()> sharesGpu;
    std::function<std::unique_ptr<GlSurface>()> openGl;
    std::function<std::unique_ptr<Surface>()> cpu;
};

// The surface for a window as the choice says, and the one place that chooses:
// the processor's where OpenGL was asked for and there is none, or where OpenGL
// would be software. Null if the window or the system is not there. The
// window's render thread.
[[nodiscard]] std::unique_ptr<Surface> surfaceFor(DrawerChoice drawer, const SurfaceWays& ways);

}  // namespace platform
