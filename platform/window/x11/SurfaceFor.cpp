// SPDX-License-Identifier: MIT
#include "platform/window/x11/SurfaceFor.h"

#include <array>
#include <string_view>

#include "platform/window/x11/CpuSurface.h"
#include "platform/window/x11/GlSurface.h"

namespace platform {

namespace {

// Whether the server has any way to let programs draw with a GPU. Without one,
// OpenGL is software, and looking for it would cost time and memory.
bool mayHaveGpu(const QString& display) {
    const XConnection connection(display);
    if (!connection.isAlive()) return false;
    constexpr std::array<std::string_view, 3> kWays{"DRI3", "DRI2", "NV-GLX"};
    std::array<xcb_query_extension_cookie_t, kWays.size()> asked{};
    for (std::size_t i = 0; i < kWays.size(); ++i)
        asked[i] = xcb_query_extension(
            connection.get(), static_cast<std::uint16_t>(kWays[i].size()), kWays[i].data());
    bool present = false;
    for (const auto cookie : asked) {
        const XcbReply<xcb_query_extension_reply_t> reply(
            xcb_query_extension_reply(connection.get(), cookie, nullptr));
        present = present || (reply && reply->present);
    }
    return present;
}

}  // namespace

std::unique_ptr<Surface> makeSurfaceFor(const SurfaceOptions& options) {
    const bool forced = options.drawer == DrawerChoice::OpenGl;
    if (forced || (options.drawer == DrawerChoice::Auto && mayHaveGpu(options.display))) {
        auto surface = GlSurface::create({.display = options.display,
                                          .window = options.window,
                                          .resetStatus = options.resetStatus});
        if (surface && (forced || !surface->isSoftware())) return surface;
    }
    return CpuSurface::create({.display = options.display,
                               .window = options.window,
                               .ending = options.ending,
                               .resetStatus = options.resetStatus});
}

}  // namespace platform
