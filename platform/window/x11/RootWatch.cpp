// SPDX-License-Identifier: MIT
#include "platform/window/x11/RootWatch.h"

#include <xcb/xfixes.h>

#include <cstring>
#include <string>

namespace platform {

namespace {

xcb_window_t rootOf(const XConnection& connection) {
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection.get()));
    for (int i = 0; i < connection.screenNumber() && screens.rem > 1; ++i)
        xcb_screen_next(&screens);
    return screens.data->root;
}

}  // namespace

RootWatch::RootWatch(const QString& display) : connection_(display) {
    if (!isAlive()) return;
    root_ = rootOf(connection_);
    managerName_ = atom("_NET_SUPPORTING_WM_CHECK");
    activeWindowName_ = atom("_NET_ACTIVE_WINDOW");
    saverName_ = atom("_SCREENSAVER_STATUS");
    compositorName_ = atom(("_NET_WM_CM_S" + std::to_string(connection_.screenNumber())).c_str());
    watchRoot();
    watchCompositor();
    notifier_ =
        std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(get()), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { read(); });
    readSoon();
}

xcb_atom_t RootWatch::atom(const char* name) const {
    const auto cookie =
        xcb_intern_atom(get(), 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(get(), cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

void RootWatch::watchRoot() const {
    const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(get(), root_, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(get());
}

void RootWatch::watchCompositor() {
    const xcb_query_extension_reply_t* const present =
        xcb_get_extension_data(get(), &xcb_xfixes_id);
    if (!present || !present->present) return;
    // The server listens to nothing else of this extension before this.
    const XcbReply<xcb_xfixes_query_version_reply_t> version(xcb_xfixes_query_version_reply(
        get(), xcb_xfixes_query_version(get(), XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION),
        nullptr));
    if (!version) return;
    selectionEvent_ = static_cast<std::uint8_t>(present->first_event + XCB_XFIXES_SELECTION_NOTIFY);
    xcb_xfixes_select_selection_input(get(), root_, compositorName_,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    xcb_flush(get());
}

Observation RootWatch::observe(std::function<void(Change)> action) {
    return observers_.add(std::move(action));
}

bool RootWatch::isComposited() const {
    if (!isAlive()) return false;
    const XcbReply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        get(), xcb_get_selection_owner(get(), compositorName_), nullptr));
    readSoon();
    return reply && reply->owner != XCB_NONE;
}

bool RootWatch::isSaverOn() const {
    return property(root_, saverName_) != 0;
}

std::optional<std::uint32_t> RootWatch::find(xcb_window_t window, xcb_atom_t name) const {
    if (!isAlive()) return std::nullopt;
    const auto cookie = xcb_get_property(get(), 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, 1);
    xcb_generic_error_t* error = nullptr;
    const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(get(), cookie, &error));
    std::free(error);
    readSoon();
    if (!reply || reply->format != 32 || reply->value_len == 0) return std::nullopt;
    return *static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
}

bool RootWatch::hasWindowManager() const {
    // One that crashed leaves its word behind, but not the window it names.
    const xcb_window_t named = property(root_, managerName_);
    return named != XCB_NONE && property(named, managerName_) == named;
}

xcb_window_t RootWatch::activeWindow() const {
    if (!isAlive()) return XCB_NONE;
    if (hasWindowManager()) return property(root_, activeWindowName_);
    const XcbReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(get(), xcb_get_input_focus(get()), nullptr));
    if (!reply || reply->focus == XCB_INPUT_FOCUS_POINTER_ROOT) return XCB_NONE;
    return reply->focus == root_ ? static_cast<xcb_window_t>(XCB_NONE) : reply->focus;
}

void RootWatch::readSoon() const {
    if (!notifier_) return;
    QMetaObject::invokeMethod(
        notifier_.get(), [this] { const_cast<RootWatch*>(this)->read(); }, Qt::QueuedConnection);
}

void RootWatch::read() {
    while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(get())})
        handle(*event);
    if (!isAlive()) notifier_->setEnabled(false);
}

void RootWatch::handle(const xcb_generic_event_t& event) {
    const std::uint8_t type = event.response_type & 0x7f;
    if (selectionEvent_ != 0 && type == selectionEvent_) return observers_.tell(Change::Compositor);
    switch (type) {
        case XCB_CREATE_NOTIFY:
        case XCB_DESTROY_NOTIFY:
        case XCB_MAP_NOTIFY:
        case XCB_UNMAP_NOTIFY:
        case XCB_REPARENT_NOTIFY:
        case XCB_CONFIGURE_NOTIFY:
        case XCB_CIRCULATE_NOTIFY:
            return observers_.tell(Change::Stack);
        case XCB_PROPERTY_NOTIFY: {
            const xcb_atom_t name =
                reinterpret_cast<const xcb_property_notify_event_t&>(event).atom;
            if (name == activeWindowName_) observers_.tell(Change::ActiveWindow);
            if (name == saverName_) observers_.tell(Change::Saver);
            return;
        }
        default:
            return;
    }
}

}  // namespace platform
