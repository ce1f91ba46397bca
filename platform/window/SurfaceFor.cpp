// SPDX-License-Identifier: MIT
#include "platform/window/SurfaceFor.h"

#include "platform/render/egl/RendererProbe.h"
#include "platform/window/GlSurface.h"

namespace platform {

bool leadsToOpenGl(DrawerChoice drawer, const std::function<bool()>& sharesGpu) {
    if (drawer == DrawerChoice::OpenGl) return true;
    return drawer == DrawerChoice::Auto && !probeRenderer(sharesGpu).software;
}

std::unique_ptr<Surface> surfaceFor(const SurfaceOptions& options, const SurfaceWays& ways) {
    const bool isAskedFor = options.drawer == DrawerChoice::OpenGl;
    if (leadsToOpenGl(options.drawer, ways.sharesGpu)) {
        auto surface = ways.openGl();
        if (surface && (isAskedFor || !surface->isSoftware())) return surface;
    }
    auto surface = ways.cpu();
    if (surface && isAskedFor && options.withoutOpenGl) options.withoutOpenGl();
    return surface;
}

}  // namespace platform
