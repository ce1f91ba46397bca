// SPDX-License-Identifier: MIT
// The traces of xscreensaver's daemon on an X server: a window that is never mapped and
// tells a version, and a status on the root window. Its destruction leaves the traces of a
// killed daemon: the status stays.
#pragma once

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "tests/support/Xvfb.h"

class SaverStandIn {
  public:
    explicit SaverStandIn(const Xvfb& x) : x_(x), window_(x.makeWindow({.mapped = false})) {
        static constexpr const char* kVersion = "6.06";
        xcb_change_property(x_.connection(), XCB_PROP_MODE_REPLACE, window_,
                            atom("_SCREENSAVER_VERSION"), XCB_ATOM_STRING, 8,
                            static_cast<std::uint32_t>(std::strlen(kVersion)), kVersion);
    }
    ~SaverStandIn() { x_.destroy(window_); }
    SaverStandIn(const SaverStandIn&) = delete;
    SaverStandIn& operator=(const SaverStandIn&) = delete;

    // The numbers are of the version of 6.06: what it does, since when, and with which program.
    void blank() const { say(254); }
    void unblank() const { say(0); }

  private:
    [[nodiscard]] xcb_atom_t atom(const char* name) const {
        const auto cookie = xcb_intern_atom(x_.connection(), 0,
                                            static_cast<std::uint16_t>(std::strlen(name)), name);
        xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(x_.connection(), cookie, nullptr);
        const xcb_atom_t found = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
        std::free(reply);
        return found;
    }
    void say(std::uint32_t blanked) const {
        constexpr std::uint32_t kSince = 1'795'233'919;
        const std::array<std::uint32_t, 3> word{blanked, kSince, 0};
        xcb_change_property(x_.connection(), XCB_PROP_MODE_REPLACE, x_.screen().root,
                            atom("_SCREENSAVER_STATUS"), XCB_ATOM_INTEGER, 32, word.size(),
                            word.data());
        xcb_flush(x_.connection());
    }

    const Xvfb& x_;
    xcb_window_t window_;
};
