// SPDX-License-Identifier: MIT
#include "platform/window/x11/DesktopWorkspace.h"

#include <xcb/xfixes.h>

#include <QCursor>
#include <QGuiApplication>
#include <utility>

#include "platform/session/NotificationNames.h"
#include "platform/time/Require.h"
#include "platform/window/Window.h"
#include "platform/window/x11/ScreenSpace.h"
#include "platform/window/x11/StackKeeper.h"

namespace platform {

namespace {

// Asked for by something that acts for the user, so that no window manager
// takes it for a program that pushes itself to the front.
constexpr std::uint32_t kFromPager = 2;

constexpr std::uint32_t kAllDesktops = 0xffffffff;

// Asks the window manager, as the Extended Window Manager Hints say.
void wish(const RootWatch& root, xcb_window_t window, const char* what, std::uint32_t value) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = root.atom(what);
    event.data.data32[0] = value;
    xcb_send_event(root.get(), 0, root.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&event));
}

// From a compositor's claim to its hold on every window. What is drawn in
// between would be taken for opaque.
constexpr double kCompositorSettles = 0.5;

}  // namespace

DesktopWorkspace::DesktopWorkspace(WindowServer& server,
                                   DistributedNotificationCenter& notifications)
    : server_(server), notifications_(notifications), composited_(server.root().isComposited()) {
    changes_ = server.root().observe([this](RootWatch::Change change) { changed(change); });
    notifications_.addObserver(this, QLatin1String(kSaverDidStart),
                               [this] { setSaverSaysActive(true); });
    notifications_.addObserver(this, QLatin1String(kSaverWillStop),
                               [this] { setSaverSaysActive(false); });
}

DesktopWorkspace::~DesktopWorkspace() {
    notifications_.removeObserver(this);
}

void DesktopWorkspace::changed(RootWatch::Change change) {
    switch (change) {
        case RootWatch::Change::Stack:
            return;
        case RootWatch::Change::ActiveWindow:
            return observers_.tell(Change::FrontmostApplication);
        case RootWatch::Change::Saver:
            return observers_.tell(Change::Saver);
        case RootWatch::Change::Compositor:
            return compositorChanged();
    }
}

void DesktopWorkspace::compositorChanged() {
    compositorSettles_ = Timer();
    if (server_.root().isComposited()) {
        compositorSettles_ = Timer(server_.clock(), {.interval = kCompositorSettles}, [this] {
            if (!std::exchange(composited_, true)) observers_.tell(Change::Compositor);
        });
    } else if (std::exchange(composited_, false)) {
        observers_.tell(Change::Compositor);
    }
}

void DesktopWorkspace::setSaverSaysActive(bool active) {
    if (std::exchange(saverSaysActive_, active) == active) return;
    server_.stack().setHeldBack(active);
    observers_.tell(Change::Saver);
}

std::optional<RunningApplication> DesktopWorkspace::frontmostApplication() {
    RootWatch& root = server_.root();
    const xcb_window_t window = root.activeWindow();
    if (window == XCB_NONE) return std::nullopt;
    return RunningApplication{.window = window,
                              .process = root.property(window, root.atom("_NET_WM_PID"))};
}

void DesktopWorkspace::activate(const RunningApplication& application) {
    RootWatch& root = server_.root();
    if (!root.isAlive()) return;
    if (!root.hasWindowManager()) {
        xcb_set_input_focus(root.get(), XCB_INPUT_FOCUS_PARENT, application.window,
                            XCB_CURRENT_TIME);
    } else {
        // Managers may leave one that is on another of the user's desktops where it is.
        const auto at = root.find(application.window, root.atom("_NET_WM_DESKTOP"));
        const auto here = root.find(root.root(), root.atom("_NET_CURRENT_DESKTOP"));
        if (at && here && at != here && at != kAllDesktops)
            wish(root, root.root(), "_NET_CURRENT_DESKTOP", *at);
        wish(root, application.window, "_NET_ACTIVE_WINDOW", kFromPager);
    }
    xcb_flush(root.get());
}

void DesktopWorkspace::activateIgnoringOthers() {
    require(qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr);
    if (Window* const key = server_.keyWindow()) key->makeKey();
}

// The server itself keeps count of a client's hidings, and takes them back when
// the client is gone.
void DesktopWorkspace::hideCursor() {
    RootWatch& root = server_.root();
    if (!root.isAlive() || !root.hasFixes()) return;
    xcb_xfixes_hide_cursor(root.get(), root.root());
    xcb_flush(root.get());
}

void DesktopWorkspace::unhideCursor() {
    RootWatch& root = server_.root();
    if (!root.isAlive() || !root.hasFixes()) return;
    xcb_xfixes_show_cursor(root.get(), root.root());
    xcb_flush(root.get());
}

QPointF DesktopWorkspace::mouseLocation() const {
    return fromQt(QPointF(QCursor::pos()));
}

bool DesktopWorkspace::isComposited() const {
    return composited_;
}

bool DesktopWorkspace::isSaverActive() const {
    return saverSaysActive_ || server_.root().isSaverOn();
}

Observation DesktopWorkspace::observe(std::function<void(Change)> action) {
    return observers_.add(std::move(action));
}

}  // namespace platform
