// SPDX-License-Identifier: MIT
#pragma once

#include "platform/window/x11/Xcb.h"

namespace platform {

// Whether the server shows its windows on a Wayland compositor, whose own windows get none
// of the clicks that pass an X window. Waits for the server. The caller keeps the
// connection. Any thread.
[[nodiscard]] bool isOnWayland(const XConnection& connection);

}  // namespace platform
