// SPDX-License-Identifier: MIT
#include "platform/render/egl/RendererProbe.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "platform/render/egl/EglDevices.h"

namespace platform {

namespace {

bool offersAny(xcb_connection_t* connection) {
    constexpr std::array<std::string_view, 3> kNames{"DRI3", "DRI2", "NV-GLX"};
    std::array<xcb_query_extension_cookie_t, kNames.size()> asked{};
    for (std::size_t i = 0; i < kNames.size(); ++i)
        asked[i] = xcb_query_extension(connection, static_cast<std::uint16_t>(kNames[i].size()),
                                       kNames[i].data());
    bool any = false;
    for (const auto& cookie : asked) {
        const std::unique_ptr<xcb_query_extension_reply_t, decltype(&std::free)> reply(
            xcb_query_extension_reply(connection, cookie, nullptr), std::free);
        any = any || (reply && reply->present);
    }
    return any;
}

}  // namespace

RendererKind judgeRenderer(const RendererSigns& signs) {
    if (signs.forced) return {.name = "software (by the environment)", .software = true};
    if (!signs.egl) return {.name = "none (no EGL)", .software = true};
    if (signs.server && !signs.sharesGpu)
        return {.name = "software (the display shares no GPU)", .software = true};
    if (signs.devices > 0 && signs.softwareDevices == signs.devices)
        return {.name = "software (no GPU)", .software = true};
    return {.name = "GPU", .software = false};
}

RendererKind probeRenderer(xcb_connection_t* connection) {
    RendererSigns signs;
    signs.forced = isSoftwareForced();
    signs.server = connection != nullptr;
    if (signs.server && !signs.forced) signs.sharesGpu = offersAny(connection);
    RendererKind kind = judgeRenderer(signs);
    if (kind.software) return kind;
    signs.egl = eglClientOffers("EGL_EXT_platform_base");
    const auto devices = eglDevices();
    signs.devices = static_cast<int>(devices.size());
    signs.softwareDevices = static_cast<int>(std::count_if(
        devices.begin(), devices.end(), [](auto& device) { return device.software; }));
    return judgeRenderer(signs);
}

}  // namespace platform
