// SPDX-License-Identifier: MIT
#pragma once

#include <string>

struct xcb_connection_t;

namespace platform {

struct RendererKind {
    std::string name;       // for people: the reason for the judgement
    bool software = false;  // OpenGL would draw on the CPU
};

// Tells whether OpenGL on this X server would be software, without starting it.
// Starting costs: Mesa's software renderer takes some 55 MB and 35 ms before
// its first picture, and a program that will draw without OpenGL can save both.
//
// Software is certain after one of these tests, in this order of rising cost:
//  1. The environment asks for it, or there is no EGL at all.
//  2. The X server offers neither DRI3 nor DRI2, by which it shares a GPU, nor
//  2. The X server offers neither DRI3 nor DRI2, which share a GPU, nor NV-GLX,
//     the sign of a driver with its own way. This holds for Xvfb, VNC and
//     remote servers, and for Xorg and Xwayland without a GPU, whose software
//     drawing offers none of these extensions. One round trip.
//  3. EGL lists devices, and all of them are software: no graphics device is
//     open to this process, as in a container. 2 ms and 2 MB, which OpenGL
//     would cost anyway.
// All other cases count as a GPU. A broken driver may still draw in software;
// GlContext::isSoftware() tells once a context is made.
//
// Without a connection (off-screen drawing), only the first and last tests are
// made. The caller owns the connection. Any thread.
[[nodiscard]] RendererKind probeRenderer(xcb_connection_t* connection);

// The probe's findings as plain values, so that tests reach the judgement.
struct RendererSigns {
    bool forced = false;      // the environment wants software
    bool egl = true;          // EGL is present
    bool server = false;      // an X server was asked
    bool sharesGpu = false;   // the server offers an extension that shares a GPU
    int devices = 0;          // listed by EGL; 0 if it cannot list
    int softwareDevices = 0;  // software devices among them
};
[[nodiscard]] RendererKind judgeRenderer(const RendererSigns& signs);

}  // namespace platform
