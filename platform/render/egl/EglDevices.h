// SPDX-License-Identifier: MIT
// What EGL tells before any display is open; private to platform/render. Costs
// no driver: only the list of what there is.
#pragma once

#include <vector>

namespace platform {

struct EglDevice {
    void* handle = nullptr;  // EGLDeviceEXT
    bool software = false;
};

// Empty where EGL cannot list them.
[[nodiscard]] std::vector<EglDevice> eglDevices();
// Whether the environment wants Mesa to draw on the CPU.
[[nodiscard]] bool isSoftwareForced();

}  // namespace platform
