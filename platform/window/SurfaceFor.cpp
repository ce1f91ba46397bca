// SPDX-License-Identifier: MIT
#include "platform/window/SurfaceFor.h"

#include "platform/render/egl/RendererProbe.h"
#include "platform/window/GlSurface.h"

namespace platform {

std::unique_ptr<Surface> surfaceFor(DrawerChoice drawer, const SurfaceWays& ways) {
    const bool forced = drawer == DrawerChoice::OpenGl;
    if (forced || (drawer == DrawerChoice::Auto && !probeRenderer(ways.sharesGpu).software)) {
        auto surface = ways.openGl();
        if (surface && (forced || !surface->isSoftware())) return surface;
    }
    return ways.cpu();
}

}  // namespace platform
