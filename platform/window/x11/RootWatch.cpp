// SPDX-License-Identifier: MIT
#include "platform/window/x11/RootWatch.h"

#include <xcb/xfixes.h>

#include <algorithm>
#include <span>
#include <string>
#include <vector>

namespace platform {

namespace {
constexpr std::string_view kManager = "_NET_SUPPORTING_WM_CHECK";
constexpr std::string_view kActiveWindow = "_NET_ACTIVE_WINDOW";
constexpr std::string_view kSaver = "_SCREENSAVER_STATUS";

// A window that xscreensaver 6 may own: its daemon's, which is never seen and tells the
// version, or one of its graphics process, which covers a display.
class SaverCandidate {
  public:
    SaverCandidate(const XConnection& connection, xcb_window_t window)
        : connection_(connection.get()),
          version_(ask(window, connection.atom("_SCREENSAVER_VERSION"))),
          class_(ask(window, XCB_ATOM_WM_CLASS)),
          look_(xcb_get_window_attributes(connection_, window)) {}

    // Waits for the server; once.
    [[nodiscard]] bool isSaver() const {
        const auto version = answer(connection_, version_, xcb_get_property_reply);
        const auto named = answer(connection_, class_, xcb_get_property_reply);
        const auto look = answer(connection_, look_, xcb_get_window_attributes_reply);
        if (version && version->type != XCB_ATOM_NONE) return true;
        return look && look->override_redirect && look->map_state == XCB_MAP_STATE_VIEWABLE &&
               named && text(*named).find("XScreenSaver") != std::string_view::npos;
    }

  private:
    [[nodiscard]] xcb_get_property_cookie_t ask(xcb_window_t window, xcb_atom_t name) const {
        constexpr std::uint32_t kWords = 64;
        return xcb_get_property(connection_, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, kWords);
    }
    [[nodiscard]] static std::string_view text(const xcb_get_property_reply_t& reply) {
        return {static_cast<const char*>(xcb_get_property_value(&reply)),
                static_cast<std::size_t>(xcb_get_property_value_length(&reply))};
    }

    xcb_connection_t* connection_;
    xcb_get_property_cookie_t version_, class_;
    xcb_get_window_attributes_cookie_t look_;
};
}  // namespace

RootWatch::RootWatch(const QString& display) : connection_(display) {
    if (!isAlive()) return;
    root_ = connection_.root();
    activeWindowName_ = connection_.atom(kActiveWindow);
    saverName_ = connection_.atom(kSaver);
    compositorName_ = connection_.atom("_NET_WM_CM_S" + std::to_string(connection_.screenNumber()));
    watchRoot();
    watchCompositor();
    saverSays_ = property(root_, kSaver) != 0;
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
    return property(root_, kSaver) != 0 && hasSaverWindow();
}

bool RootWatch::hasSaverWindow() const {
    const auto tree = answer(get(), xcb_query_tree(get(), root_), xcb_query_tree_reply);
    if (!tree) return false;
    const std::span windows(xcb_query_tree_children(tree.get()), tree->children_len);
    // All is asked before the first answer is waited for.
    std::vector<SaverCandidate> candidates;
    candidates.reserve(windows.size());
    for (const xcb_window_t window : windows)
        candidates.emplace_back(connection_, window);
    const auto savers = std::count_if(candidates.begin(), candidates.end(),
                                      [](const SaverCandidate& one) { return one.isSaver(); });
    readSoon();
    return savers > 0;
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

void RootWatch::tellOfSaver() {
    saverSays_ = property(root_, kSaver) != 0;
    observers_.tell(Change::Saver);
}

void RootWatch::handle(const xcb_generic_event_t& event) {
    const int type = typeOf(event);
    if (selectionEvent_ != 0 && type == selectionEvent_) return observers_.tell(Change::Compositor);
    switch (type) {
        case XCB_DESTROY_NOTIFY:
            observers_.tell(Change::Stack);
            // The window may have been the last one of a killed saver.
            if (saverSays_) observers_.tell(Change::Saver);
            return;
        case XCB_CREATE_NOTIFY:
        case XCB_MAP_NOTIFY:
        case XCB_UNMAP_NOTIFY:
        case XCB_REPARENT_NOTIFY:
        case XCB_CONFIGURE_NOTIFY:
        case XCB_CIRCULATE_NOTIFY:
            return observers_.tell(Change::Stack);
        case XCB_PROPERTY_NOTIFY: {
            const xcb_atom_t name = as<xcb_property_notify_event_t>(event).atom;
            if (name == activeWindowName_) observers_.tell(Change::ActiveWindow);
            if (name == saverName_) tellOfSaver();
            return;
        }
        default:
            return;
    }
}

}  // namespace platform
