// SPDX-License-Identifier: MIT
// EGL's answers before any display is open; private to platform/render. Loads
// no driver: only the list of devices.
#pragma once

#include <vector>

namespace platform {

struct EglDevice {
    void* handle = nullptr;  // EGLDeviceEXT
    bool software = false;
};

// The devices that EGL lists; empty where EGL cannot list any. Any thread.
[[nodiscard]] std::vector<EglDevice> eglDevices();
// Whether the environment asks Mesa to draw on the CPU.
[[nodiscard]] bool isSoftwareForced();

}  // namespace platform
