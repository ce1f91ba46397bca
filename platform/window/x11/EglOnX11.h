// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/render/egl/Egl.h"
#include "platform/window/GlSurface.h"
#include "platform/window/x11/Xcb.h"

namespace platform {

// Opens EGL for windows of this X server. The caller owns the connection, which must
// outlive everything made on the display. Null where EGL cannot. Any thread.
[[nodiscard]] std::shared_ptr<EglDisplay> eglDisplayOn(xcb_connection_t* connection, int screen);

// Opens EGL for drivers without xcb, over a connection of Xlib's own to the environment's
// server. eglDisplayOn() calls this by itself. A handler that ignores errors replaces
// Xlib's process-wide one, which ends the program when a window has gone.
[[nodiscard]] std::shared_ptr<EglDisplay> eglDisplayThroughXlib(xcb_connection_t* connection,
                                                                int screen);

// Makes the surface for OpenGL in an X window of any maker. Null if the window is gone, has
// a surface already, or has a visual that the driver cannot draw into. The X errors of a
// window that vanishes arrive on the connection, as events for its owner. The window's
// render thread.
[[nodiscard]] std::unique_ptr<EglWindowSurface> eglSurfaceFor(std::shared_ptr<EglDisplay> display,
                                                              xcb_connection_t* connection,
                                                              xcb_window_t window);

// Makes the target for the window over a connection of its own, to the environment's
// display where `display` is empty; null if there is no EGL for the window. The window's
// render thread.
[[nodiscard]] std::unique_ptr<EglTarget> eglTargetFor(const QString& display, xcb_window_t window);

// Whether the server shares a GPU with programs: by DRI3, by DRI2, or by NV-GLX, which
// stands for a driver that uses neither. Xvfb, VNC, remote servers, and Xorg and Xwayland
// on machines without a GPU offer none of them. Waits for the server.
[[nodiscard]] bool sharesGpu(const XConnection& connection);

}  // namespace platform
