// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include "platform/window/Surface.h"

namespace platform {

class GlSurface;

// A window system's ways to draw a window; each gives null where it cannot. The caller owns
// the ways, and keeps them for the length of a call.
struct SurfaceWays {
    // Whether the system shares a GPU with programs; see probeRenderer().
    std::function<bool()> sharesGpu;
    std::function<std::unique_ptr<GlSurface>()> openGl;
    std::function<std::unique_ptr<Surface>()> cpu;
};

// Whether the choice leads to OpenGL: asked for, or on a GPU. `sharesGpu` as in
// probeRenderer(). Any thread.
[[nodiscard]] bool leadsToOpenGl(DrawerChoice drawer, const std::function<bool()>& sharesGpu);

// Makes a window's surface for the choice. This is the one place that chooses: the
// processor draws where OpenGL was asked for and is absent, and where OpenGL would be
// software. Null if the window or the system is gone. The window's render thread.
[[nodiscard]] std::unique_ptr<Surface> surfaceFor(const SurfaceOptions& options,
                                                  const SurfaceWays& ways);

}  // namespace platform
