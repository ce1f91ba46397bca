// SPDX-License-Identifier: MIT
#include "platform/window/x11/DisplayCheck.h"

#include <xcb/xcb.h>

namespace platform {

DisplayCheck::DisplayCheck() : connection_(xcb_connect(nullptr, nullptr)) {}

DisplayCheck::~DisplayCheck() {
    xcb_disconnect(connection_);
}

bool DisplayCheck::isReachable() const {
    return xcb_connection_has_error(connection_) == 0;
}

}  // namespace platform
