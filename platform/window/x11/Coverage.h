// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/time/Queue.h"
#include "platform/time/Timer.h"
#include "platform/window/x11/Xcb.h"

namespace platform {

// Whether other windows hide this one altogether: opaque ones, above it in the
// stack, that together reach over all of it that is on screen. A window deep
// enough to be seen through, shaped, or made transparent hides nothing. Waits
// for the server.
[[nodiscard]] bool isCovered(const XConnection& connection, xcb_window_t window);

// Looks every so often which windows are covered. The X server says so by
// itself of some, but never of those whose picture it keeps apart: with a
// compositor all of them, and without one those of 32 bits. Looks over a
// connection of its own, in the background. Rests at first. Owned by the
// X11System. Main thread.
class CoverageWatch {
  public:
    struct Actions {
        // The windows to watch.
        std::function<std::vector<xcb_window_t>()> windows;
        std::function<void(xcb_window_t window, bool covered)> tell;
    };
    CoverageWatch(MediaClock& clock, const QString& display, Actions actions);
    ~CoverageWatch();
    CoverageWatch(const CoverageWatch&) = delete;
    CoverageWatch& operator=(const CoverageWatch&) = delete;

    // Begins to look.
    void wake();
    // Looks no more: for as long as there are no windows that it matters of.
    void rest();

  private:
    struct Finding {
        xcb_window_t window;
        bool covered;
    };
    void look();
    void found(const std::vector<Finding>& findings);
    void schedule(bool anyCovered);

    MediaClock& clock_;
    const QString display_;
    const Actions actions_;
    // For the queue's thread.
    std::unique_ptr<XConnection> connection_;
    std::shared_ptr<CoverageWatch*> self_ = std::make_shared<CoverageWatch*>(this);
    std::unique_ptr<SerialQueue> queue_;
    Timer timer_;
    bool awake_ = false;
};

}  // namespace platform
