// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>

#include "platform/render/egl/Egl.h"
#include "platform/window/GlSurface.h"
#include "platform/window/x11/Xcb.h"

namespace platform {

// EGL for windows of this X server. The connection stays the caller's and must
// outlive everything made on the display. None where EGL cannot. Any thread.
[[nodiscard]] std::shared_ptr<EglDisplay> eglDisplayOn(xcb_connection_t* connection, int screen);

// The same for drivers that know no xcb: a connection of Xlib's own, to the server
// that the environment names. eglDisplayOn() comes here by itself. Xlib's
// process-wide error handler is replaced by one that ignores, since the usual one
// ends the program when a window has gone.
[[nodiscard]] std::shared_ptr<EglDisplay> eglDisplayThroughXlib(xcb_connection_t* connection,
                                                                int screen);

// The surface that OpenGL draws into to show it in an X window, whoever made that
// window. None
// if the window is gone, has a surface already, or is of a visual that the driver
// cannot draw into (then it must be made in a visual of visualFor()). The X errors
// of a window that vanishes arrive on the connection, as events for its owner.
[[nodiscard]] std::unique_ptr<EglWindowSurface> eglSurfaceFor(std::shared_ptr<EglDisplay> display,
                                                              xcb_connection_t* connection,
                                                              xcb_window_t window);

// A visual of this depth (24 or 32) that the driver draws into; 0 if none.
[[nodiscard]] std::uint32_t visualFor(const EglDisplay& display, int depth);

// The window over a connection of its own, to the environment's display where
// `display` is empty; null if there is no EGL for the window. The window's render
// thread.
[[nodiscard]] std::unique_ptr<EglTarget> eglTargetFor(const QString& display, xcb_window_t window);

// Whether the server shares a GPU with programs: by DRI3 or DRI2, or by NV-GLX,
// which stands for a driver that goes its own way. Xvfb, VNC, remote servers, and
// Xorg and Xwayland on machines without a GPU offer none of them. Waits for the
// server.
[[nodiscard]] bool sharesGpu(const XConnection& connection);

}  // namespace platform
