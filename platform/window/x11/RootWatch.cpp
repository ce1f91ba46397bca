// SPDX-License-Identifier: MIT
#include "platform/window/x11/RootWatch.h"

#include <xcb/xfixes.h>

#include <string>

namespace platform {

namespace {
constexpr std::string_view kManager = "_NET_SUPPORTING_WM_CHECK";
constexpr std::string_view kActiveWindow = "_NET_ACTIVE_WINDOW";
constexpr std::string_view kSaver = "_SCREENSAVER_STATUS";
}  // namespace

RootWatch::RootWatch(const QString& display) : connection_(display) {
    if (!isAlive()) return;
    root_ = connection_.root();
    activeWindowName_ = connection_.atom(kActiveWindow);
    saverName_ = connection_.atom(kSaver);
    compositorName_ = connection_.atom("_NET_WM_CM_S" + std::to_string(connection_.screenNumber()));
    watchRoot();
    watchCompositor();
    notifier_ =
        std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(get()), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] { read(); });
    readSoon();
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
    // The server accepts no other request of this extension before this one.
    const auto version = answer(
        get(), xcb_xfixes_query_version(get(), XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION),
        xcb_xfixes_query_version_reply);
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
    const auto reply = answer(get(), xcb_get_selection_owner(get(), compositorName_),
                              xcb_get_selection_owner_reply);
    readSoon();
    return reply && reply->owner != XCB_NONE;
}

bool RootWatch::isSaverOn() const {
    return property(root_, kSaver) != 0;
}

std::optional<std::uint32_t> RootWatch::find(xcb_window_t window, std::string_view name) const {
    const auto found = connection_.number(window, name);
    readSoon();
    return found;
}

bool RootWatch::hasWindowManager() const {
    // A window manager that crashed leaves the property behind, but not the window named
    // there.
    const xcb_window_t named = property(root_, kManager);
    return named != XCB_NONE && property(named, kManager) == named;
}

xcb_window_t RootWatch::activeWindow() const {
    if (!isAlive()) return XCB_NONE;
    if (hasWindowManager()) return property(root_, kActiveWindow);
    const auto reply = answer(get(), xcb_get_input_focus(get()), xcb_get_input_focus_reply);
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
    const int type = typeOf(event);
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
            const xcb_atom_t name = as<xcb_property_notify_event_t>(event).atom;
            if (name == activeWindowName_) observers_.tell(Change::ActiveWindow);
            if (name == saverName_) observers_.tell(Change::Saver);
            return;
        }
        default:
            return;
    }
}

}  // namespace platform
