// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QRect>

#include "platform/window/NativeWindow.h"
#include "platform/window/x11/Xcb.h"

class QScreen;

namespace platform {

class X11System;

// Listens to the events of one X window of any maker, and tells the delegate of its size
// and place, visibility, lost picture and end. Owned by the native window. Main thread; the
// system and the delegate outlive the watch.
class WindowWatch {
  public:
    WindowWatch(X11System& system, xcb_window_t window, NativeWindowDelegate& delegate);
    ~WindowWatch();
    WindowWatch(const WindowWatch&) = delete;
    WindowWatch& operator=(const WindowWatch&) = delete;

    [[nodiscard]] xcb_window_t id() const { return window_; }
    // Pixels; the place is relative to the root window, as last reported.
    [[nodiscard]] const QRect& geometry() const { return geometry_; }
    [[nodiscard]] bool isMapped() const { return mapped_; }
    // Whether any part of the window is visible, as last reported.
    [[nodiscard]] bool isInSight() const { return mapped_ && !obscured_ && !covered_; }
    // Sets whether other windows hide the whole window.
    void setCovered(bool covered);

    // Asks the server whether the window still exists.
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
    // Receives later calls, for the watch's lifetime.
    QObject mailbox_;
};

// The screen with most of a rectangle in the root window's pixels; null without screens.
[[nodiscard]] QScreen* screenUnderPixels(const QRect& rect);

// Converts a rectangle from the root window's pixels to Qt's points.
[[nodiscard]] QRectF pixelsToQt(const QRect& rect);

}  // namespace platform
