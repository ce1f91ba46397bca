// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/damage.h>

#include <QSize>
#include <algorithm>
#include <cstdlib>
#include <memory>

#include "tests/support/Xvfb.h"

// Counts how often a picture of this size is drawn whole, in whichever window of the server.
// The server tells of every drawing, so that a picture that shows for a moment counts too.
class WholeRepaints {
  public:
    WholeRepaints(const Xvfb& server, QSize size) : connection_(server.connection()), size_(size) {
        std::free(xcb_damage_query_version_reply(
            connection_, xcb_damage_query_version(connection_, 1, 1), nullptr));
        notify_ = xcb_get_extension_data(connection_, &xcb_damage_id)->first_event;
        damage_ = xcb_generate_id(connection_);
        xcb_damage_create(connection_, damage_, server.screen().root,
                          XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
        // At first the server tells of the whole screen.
        count();
        count_ = 0;
    }
    ~WholeRepaints() { xcb_damage_destroy(connection_, damage_); }
    WholeRepaints(const WholeRepaints&) = delete;
    WholeRepaints& operator=(const WholeRepaints&) = delete;

    // The number since this object was made.
    int count() {
        // The answer comes after all drawing that was reported before it.
        std::free(
            xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
        struct Free {
            void operator()(void* event) const { std::free(event); }
        };
        while (const std::unique_ptr<xcb_generic_event_t, Free> event{
            xcb_poll_for_event(connection_)}) {
            if ((event->response_type & 0x7f) != notify_ + XCB_DAMAGE_NOTIFY) continue;
            const auto& told = reinterpret_cast<const xcb_damage_notify_event_t&>(*event);
            count_ += QSize(told.area.width, told.area.height) == size_ ? 1 : 0;
        }
        return count_;
    }

  private:
    xcb_connection_t* const connection_;
    const QSize size_;
    int notify_ = 0, count_ = 0;
    xcb_damage_damage_t damage_ = 0;
};
