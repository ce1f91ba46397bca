// SPDX-License-Identifier: MIT
#include "platform/window/x11/EventConnection.h"

#include <utility>

namespace platform {

namespace {

// The window of an event, if the connection listens for such events of windows; else 0.
xcb_window_t windowOf(const xcb_generic_event_t& event) {
    switch (typeOf(event)) {
        case XCB_CONFIGURE_NOTIFY:
            return as<xcb_configure_notify_event_t>(event).window;
        case XCB_DESTROY_NOTIFY:
            return as<xcb_destroy_notify_event_t>(event).window;
        case XCB_MAP_NOTIFY:
            return as<xcb_map_notify_event_t>(event).window;
        case XCB_UNMAP_NOTIFY:
            return as<xcb_unmap_notify_event_t>(event).window;
        case XCB_EXPOSE:
            return as<xcb_expose_event_t>(event).window;
        case XCB_VISIBILITY_NOTIFY:
            return as<xcb_visibility_notify_event_t>(event).window;
        default:
            return XCB_NONE;
    }
}

}  // namespace

EventConnection::EventConnection(const QString& display) : connection_(display) {
    if (!isAlive()) return;
    notifier_ =
        std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(get()), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { read(); });
}

void EventConnection::listen(xcb_window_t window, Handler handler) {
    handlers_[window] = std::move(handler);
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_EXPOSURE |
                               XCB_EVENT_MASK_VISIBILITY_CHANGE;
    xcb_change_window_attributes(get(), window, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(get());
}

void EventConnection::ignore(xcb_window_t window) {
    if (handlers_.erase(window) == 0) return;
    const std::uint32_t mask = XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(get(), window, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(get());
}

void EventConnection::readSoon() {
    if (!notifier_) return;
    QMetaObject::invokeMethod(
        notifier_.get(), [this] { read(); }, Qt::QueuedConnection);
}

void EventConnection::read() {
    while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(get())})
        handle(*event);
    if (!isAlive()) lost();
}

void EventConnection::handle(const xcb_generic_event_t& event) {
    xcb_destroy_notify_event_t gone{};
    const xcb_generic_event_t* told = &event;
    if (event.response_type == 0) {
        const auto& error = as<xcb_generic_error_t>(event);
        if (!tellsOfNoWindow(error)) return;
        gone.response_type = XCB_DESTROY_NOTIFY;
        gone.window = error.resource_id;
        told = reinterpret_cast<const xcb_generic_event_t*>(&gone);
    }
    const auto found = handlers_.find(windowOf(*told));
    if (found == handlers_.end()) return;
    // The handler may remove itself.
    const Handler handler = found->second;
    handler(*told);
}

void EventConnection::lost() {
    if (notifier_) notifier_->setEnabled(false);
    if (const auto action = std::exchange(lost_, nullptr)) action();
}

}  // namespace platform
