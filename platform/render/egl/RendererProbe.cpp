// SPDX-License-Identifier: MIT
#include "platform/render/egl/RendererProbe.h"

#include <QDir>
#include <algorithm>

#include "platform/render/egl/Egl.h"
#include "platform/render/egl/EglDevices.h"

namespace platform {

namespace {

// Whether the kernel offers a GPU, with a driver of any maker.
bool hasDevice() {
    if (!QDir(QStringLiteral("/dev/dri"))
             .entryList({QStringLiteral("renderD*"), QStringLiteral("card*")}, QDir::System)
             .isEmpty())
        return true;
    const QDir devices(QStringLiteral("/dev"));
    return !devices
                .entryList({QStringLiteral("nvidia[0-9]*"), QStringLiteral("dxg"),
                            QStringLiteral("mali*"), QStringLiteral("kgsl*")},
                           QDir::System)
                .isEmpty();
}

}  // namespace

RendererKind judgeRenderer(const RendererSigns& signs) {
    if (signs.forced) return {.name = "software (by the environment)", .software = true};
    if (!signs.node) return {.name = "software (no GPU)", .software = true};
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
    signs.node = hasDevice();
    if (const RendererKind kind = judgeRenderer(signs); kind.software) return kind;
    signs.server = sharesGpu != nullptr;
    if (signs.server) signs.sharesGpu = sharesGpu();
    const RendererKind kind = judgeRenderer(signs);
    if (kind.software) return kind;
    signs.egl = EglDisplay::clientOffers("EGL_EXT_platform_base");
    const auto devices = eglDevices();
    signs.devices = static_cast<int>(devices.size());
    signs.softwareDevices = static_cast<int>(std::count_if(
        devices.begin(), devices.end(), [](auto& device) { return device.software; }));
    return judgeRenderer(signs);
}

}  // namespace platform
