// SPDX-License-Identifier: MIT
#include "platform/window/x11/X11Workspace.h"

#include <xcb/xfixes.h>

#include <QCursor>
#include <utility>

#include "platform/window/ScreenSpace.h"
#include "platform/window/x11/StackKeeper.h"
#include "platform/window/x11/X11System.h"

namespace platform {

namespace {

// The source of a request that acts for the user; no window manager takes it for a program
// that raises itself.
constexpr std::uint32_t kFromPager = 2;

constexpr std::uint32_t kAllDesktops = 0xffffffff;

// The time from a compositor's claim until it holds every window, in seconds. A window
// drawn earlier would be taken for opaque.
constexpr double kCompositorSettles = 0.5;

}  // namespace

X11Workspace::X11Workspace(MediaClock& clock, RootWatch& root, StackKeeper& stack)
    : clock_(clock), root_(root), stack_(stack), composited_(root.isComposited()) {
    changes_ = root.observe([this](RootWatch::Change change) { changed(change); });
}

void X11Workspace::changed(RootWatch::Change change) {
    switch (change) {
        case RootWatch::Change::Stack:
            return;
        case RootWatch::Change::ActiveWindow:
            return observers_.tell(Workspace::Change::FrontmostApplication);
        case RootWatch::Change::Saver:
            return observers_.tell(Workspace::Change::Saver);
        case RootWatch::Change::Compositor:
            return compositorChanged();
    }
}

void X11Workspace::compositorChanged() {
    compositorSettles_ = Timer();
    if (root_.isComposited()) {
        compositorSettles_ = Timer(clock_, {.interval = kCompositorSettles}, [this] {
            if (!std::exchange(composited_, true)) observers_.tell(Workspace::Change::Compositor);
        });
    } else if (std::exchange(composited_, false)) {
        observers_.tell(Workspace::Change::Compositor);
    }
}

void X11Workspace::setSaverCovers(bool covers) {
    stack_.setHeldBack(covers);
}

std::optional<RunningApplication> X11Workspace::frontmostApplication() {
    const xcb_window_t window = root_.activeWindow();
    if (window == XCB_NONE) return std::nullopt;
    return RunningApplication{.window = {QString::number(window)},
                              .process = root_.property(window, "_NET_WM_PID")};
}

void X11Workspace::activate(const RunningApplication& application) {
    const auto window = readWindowNumber(application.window.text);
    if (!root_.isAlive() || !window) return;
    const XConnection& connection = root_.connection();
    if (!root_.hasWindowManager()) {
        xcb_set_input_focus(connection.get(), XCB_INPUT_FOCUS_PARENT, *window, XCB_CURRENT_TIME);
    } else {
        // Some window managers leave a window on another virtual desktop there.
        const auto at = root_.find(*window, "_NET_WM_DESKTOP");
        const auto here = root_.find(root_.root(), "_NET_CURRENT_DESKTOP");
        if (at && here && at != here && at != kAllDesktops)
            connection.askManager(root_.root(), "_NET_CURRENT_DESKTOP", *at);
        connection.askManager(*window, "_NET_ACTIVE_WINDOW", kFromPager);
    }
    connection.flush();
}

// The server counts a client's hidings, and undoes them when the client is gone.
void X11Workspace::hideCursor() {
    if (!root_.isAlive() || !root_.hasFixes()) return;
    xcb_xfixes_hide_cursor(root_.get(), root_.root());
    root_.connection().flush();
}

void X11Workspace::unhideCursor() {
    if (!root_.isAlive() || !root_.hasFixes()) return;
    xcb_xfixes_show_cursor(root_.get(), root_.root());
    root_.connection().flush();
}

QPointF X11Workspace::mouseLocation() const {
    return fromQt(QPointF(QCursor::pos()));
}

Observation X11Workspace::observe(std::function<void(Workspace::Change)> action) {
    return observers_.add(std::move(action));
}

}  // namespace platform
