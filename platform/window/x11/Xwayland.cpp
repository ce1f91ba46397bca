// SPDX-License-Identifier: MIT
#include "platform/window/x11/Xwayland.h"

#include <xcb/randr.h>

#include <algorithm>
#include <array>
#include <span>

namespace platform {

namespace {

// Servers since version 23.1 offer the extension, and name their outputs as the compositor
// does. Earlier servers have no extension, and number their outputs after the same word.
constexpr std::string_view kMark = "XWAYLAND";

bool hasMarkedOutput(const XConnection& connection) {
    constexpr std::array<std::string_view, 1> kRandr{"RANDR"};
    if (!connection.offersAny(kRandr)) return false;
    xcb_connection_t* const x = connection.get();
    const auto all = answer(x, xcb_randr_get_screen_resources_current(x, connection.root()),
                            xcb_randr_get_screen_resources_current_reply);
    if (!all) return false;
    const std::span outputs(
        xcb_randr_get_screen_resources_current_outputs(all.get()),
        static_cast<std::size_t>(xcb_randr_get_screen_resources_current_outputs_length(all.get())));
    return std::any_of(outputs.begin(), outputs.end(), [&](xcb_randr_output_t output) {
        const auto info = answer(x, xcb_randr_get_output_info(x, output, all->config_timestamp),
                                 xcb_randr_get_output_info_reply);
        if (!info) return false;
        const auto* const letters =
            reinterpret_cast<const char*>(xcb_randr_get_output_info_name(info.get()));
        const auto count =
            static_cast<std::size_t>(xcb_randr_get_output_info_name_length(info.get()));
        return std::string_view(letters, count).starts_with(kMark);
    });
}

}  // namespace

bool isOnWayland(const XConnection& connection) {
    constexpr std::array<std::string_view, 1> kExtension{kMark};
    return connection.offersAny(kExtension) || hasMarkedOutput(connection);
}

}  // namespace platform
