// SPDX-License-Identifier: MIT
#include "platform/render/egl/RendererProbe.h"

#include <algorithm>

#include "platform/render/egl/Egl.h"
#include "platform/render/egl/EglDevices.h"

namespace platform {

RendererKind judgeRenderer(const RendererSigns& signs) {
    if (signs.forced) return {.name = "software (by the environment)", .software = true};
    if (!signs.egl) return {.name = "none (no EGL)", .software = true};
    if (signs.server && !signs.sharesGpu)
        return {.name = "software (the display shares no GPU)", .software = true};
    if (signs.devices > 0 && signs.softwareDevices == signs.devices)
        return {.name = "software (no GPU)", .software = true};
    return {.name = "GPU", .software = false};
}

RendererKind probeRenderer(const std::function<bool()>& sharesGpu) {
    RendererSigns signs;
    signs.forced = isSoftwareForced();
    signs.server = sharesGpu != nullptr;
    if (signs.server && !signs.forced) signs.sharesGpu = sharesGpu();
    RendererKind kind = judgeRenderer(signs);
    if (kind.software) return kind;
    signs.egl = EglDisplay::clientOffers("EGL_EXT_platform_base");
    const auto devices = eglDevices();
    signs.devices = static_cast<int>(devices.size());
    signs.softwareDevices = static_cast<int>(std::count_if(
        devices.begin(), devices.end(), [](auto& device) { return device.software; }));
    return judgeRenderer(signs);
}

}  // namespace platform
