// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QRect>

#include "platform/window/NativeWindow.h"
#include "platform/window/x11/Xcb.h"

class QScreen;

namespace platform {

class X11System;

// Listens to what becomes of one X window, whoever made it, and tells the
// delegate: size and place, being seen, what was lost, the end. Owned by the
// native window. Main thread; the system and the delegate outlive the watch.
class WindowWatch {
  public:
    WindowWatch(X11System& system, xcb_window_t window, NativeWindowDelegate& delegate);
    ~WindowWatch();
    WindowWatch(const WindowWatch&) = delete;
    WindowWatch& operator=(const WindowWatch&) = delete;

    [[nodiscard]] xcb_window_t id() const { return window_; }
    // Pixels; the place is relative to the root window, as last told.
    [[nodiscard]] const QRect& geometry() const { return geometry_; }
    [[nodiscard]] bool isMapped() const { return mapped_; }
    // Whether any of the window is in sight, as far as was told.
    [[nodiscard]] bool isInSight() const { return mapped_ && !obscured_ && !covered_; }
    // Other windows hide it altogether, or no longer.
    void setCovered(bool covered);

    // Asks the server whether the window is still there.
    [[nodiscard]] bool exists();

    [[nodiscard]] NativeWindow::SurfaceMaker surfaceMaker(const SurfaceOptions& options) const;

  private:
    void handle(const xcb_generic_event_t& event);
    void moved(const QRect& geometry);
    void findPlace();
    void setGone();

    X11System& system_;
    const xcb_window_t window_;
    NativeWindowDelegate& delegate_;
    xcb_window_t root_ = 0;
    QRect geometry_;
    bool mapped_ = false;
    bool obscured_ = false;
    bool covered_ = false;
    bool gone_ = false;
    // For what is told later, as long as the watch lives.
    QObject mailbox_;
};

// The screen with most of a rectangle of the root window's pixels; null without
// screens.
[[nodiscard]] QScreen* screenUnderPixels(const QRect& rect);

// The same rectangle in Qt's points.
[[nodiscard]] QRectF pixelsToQt(const QRect& rect);

}  // namespace platform
