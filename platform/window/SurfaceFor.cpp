// SPDX-License-Identifier: MIT
#include "platform/window/SurfaceFor.h"

#include "platform/render/egl/RendererProbe.h"
#include "platform/window/GlSurface.h"

namespace platform {

bool leadsToOpenGl(DrawerChoice drawer, const std::function<bool()>& sharesGpu) {
    if (drawer == DrawerChoice::OpenGl) return true;
    return drawer == DrawerChoice::Auto && !probeRenderer(sharesGpu).software;
}

std::unique_ptr<Surface> surfaceFor(DrawerChoice drawer, const SurfaceWays& ways) {
    if (leadsToOpenGl(drawer, ways.sharesGpu)) {
        auto surface = ways.openGl();
        if (surface && (drawer == DrawerChoice::OpenGl || !surface->isSoftware())) return surface;
    }
    return ways.cpu();
}

}  // namespace platform
