// SPDX-License-Identifier: MIT
#include "platform/desktop/DisplayCheck.h"

#include <xcb/xcb.h>

namespace platform {

bool isDisplayReachable() {
    xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
    const bool reachable = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return reachable;
}

}  // namespace platform
