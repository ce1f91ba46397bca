// SPDX-License-Identifier: MIT
#include "platform/window/wayland/Protocols.h"

namespace platform::wayland {

void ProxyEnd::operator()(wl_output* p) const {
    if (wl_output_get_version(p) >= WL_OUTPUT_RELEASE_SINCE_VERSION) {
        wl_output_release(p);
    } else {
        wl_output_destroy(p);
    }
}

void ProxyEnd::operator()(wl_seat* p) const {
    if (wl_seat_get_version(p) >= WL_SEAT_RELEASE_SINCE_VERSION) {
        wl_seat_release(p);
    } else {
        wl_seat_destroy(p);
    }
}

void ProxyEnd::operator()(wl_keyboard* p) const {
    if (wl_keyboard_get_version(p) >= WL_KEYBOARD_RELEASE_SINCE_VERSION) {
        wl_keyboard_release(p);
    } else {
        wl_keyboard_destroy(p);
    }
}

void ProxyEnd::operator()(wl_pointer* p) const {
    if (wl_pointer_get_version(p) >= WL_POINTER_RELEASE_SINCE_VERSION) {
        wl_pointer_release(p);
    } else {
        wl_pointer_destroy(p);
    }
}

void ProxyEnd::operator()(wl_touch* p) const {
    if (wl_touch_get_version(p) >= WL_TOUCH_RELEASE_SINCE_VERSION) {
        wl_touch_release(p);
    } else {
        wl_touch_destroy(p);
    }
}

void ProxyEnd::operator()(zwlr_layer_shell_v1* p) const {
    if (zwlr_layer_shell_v1_get_version(p) >= ZWLR_LAYER_SHELL_V1_DESTROY_SINCE_VERSION) {
        zwlr_layer_shell_v1_destroy(p);
    } else {
        wl_proxy_destroy(reinterpret_cast<wl_proxy*>(p));
    }
}

}  // namespace platform::wayland
