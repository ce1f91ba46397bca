// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

namespace platform {

struct RendererKind {
    std::string name;       // for people: the reason for the judgement
    bool software = false;  // OpenGL would draw on the CPU
};

// Tells whether OpenGL for windows would be software, without starting it. Mesa's
// software renderer costs a process some 55 MB and 35 ms before it has drawn
// anything, and drawing without OpenGL is then cheaper.
//
// Software is certain after one of these tests, in this order of rising cost:
//  1. The environment asks for it, the machine has no device of a GPU, or there is
//     no EGL at all.
//  2. The window system itself answers that it shares no GPU with programs. One
//     round trip.
//  3. EGL lists devices, and all of them are software: no graphics device is
//     open to this process, as in a container. 2 ms and 2 MB, which OpenGL
//     would cost anyway.
// All other cases count as a GPU. A broken driver may still draw in software;
// GlContext::isSoftware() tells once a context is made.
//
// `sharesGpu` asks the window system, and is called at most once. Without it, only the first
// and the last test are made, for drawing off screen. Any thread; owns nothing.
[[nodiscard]] RendererKind probeRenderer(const std::function<bool()>& sharesGpu);

// The probe's findings as plain values, so that tests reach the judgement.
struct RendererSigns {
    bool forced = false;      // the environment wants software
    bool node = true;         // the machine has a GPU's device
    bool egl = true;          // EGL exists
    bool server = false;      // a window system was asked
    bool sharesGpu = false;   // the window system shares a GPU with programs
    int devices = 0;          // the devices that EGL lists; 0 if EGL cannot list any
    int softwareDevices = 0;  // the software ones among them
};
[[nodiscard]] RendererKind judgeRenderer(const RendererSigns& signs);

}  // namespace platform
