// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/time/Queue.h"
#include "platform/time/Timer.h"
#include "platform/window/x11/Xcb.h"

namespace platform {

// Whether other windows hide this one altogether: opaque windows above it in the stack that
// together cover its whole part on screen. A window hides nothing if its depth lets it be
// seen through, if it is shaped, or if it is made transparent. Waits for the server.
[[nodiscard]] bool isCovered(const XConnection& connection, xcb_window_t window);

// Checks at intervals which windows are covered. The X server reports that itself for some
// windows, but never for redirected ones: with a compositor all windows, and without one
// those of 32 bits. Checks over a connection of its own, in the background. Rests at first.
// Owned by the X11System. Main thread.
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

    // Starts checking.
    void wake();
    // Stops checking; for the time without windows to watch.
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
    // The connection belongs to the queue's thread.
    std::unique_ptr<XConnection> connection_;
    std::shared_ptr<CoverageWatch*> self_ = std::make_shared<CoverageWatch*>(this);
    std::unique_ptr<SerialQueue> queue_;
    Timer timer_;
    bool awake_ = false;
};

}  // namespace platform
