// SPDX-License-Identifier: MIT
#pragma once

#include <compare>
#include <vector>

#include "platform/time/Timer.h"
#include "platform/window/x11/RootWatch.h"

namespace platform {

// A window's rank in the stack: its level counts first.
struct StackRank {
    int window = 0;
    int space = 0;
    friend auto operator<=>(const StackRank&, const StackRank&) = default;
};

// Keeps windows above all others, including windows that are opened or raised later,
// full-screen windows and panels; a higher rank lies higher. Checks when the stack changes:
// at once after a quiet time, and then at most ten times a second.
//
// Gives way to a screen saver or lock. One that does not identify itself comes back on top
// each time it is covered: after three times the keeper leaves it on top for as long as it
// is shown.
//
// Main thread. The X11System owns it; the watch and the clock must outlive it.
class StackKeeper {
  public:
    StackKeeper(MediaClock& clock, RootWatch& root);
    StackKeeper(const StackKeeper&) = delete;
    StackKeeper& operator=(const StackKeeper&) = delete;

    // Keeps the window on top. Windows of equal rank stay in the order in which they came.
    void keep(xcb_window_t window, StackRank rank);
    // Stops keeping the window; it stays where it is until others cover it.
    void release(xcb_window_t window);

    // While true, nothing is raised: a saver or lock that is unknown to the root window
    // covers the screen.
    void setHeldBack(bool heldBack);

  private:
    struct Kept {
        xcb_window_t window;
        StackRank rank;
    };
    struct Rival {
        xcb_window_t window = 0;
        int times = 0;
        double last = 0.0;
    };
    [[nodiscard]] bool isKept(xcb_window_t window) const;
    void changed();
    void look();
    void raiseAll();
    [[nodiscard]] bool isInOrder(const std::vector<xcb_window_t>& shown) const;
    // The highest foreign window that lies above one of ours; 0 for none.
    [[nodiscard]] xcb_window_t intruder(const std::vector<xcb_window_t>& shown) const;
    [[nodiscard]] bool givesWay(xcb_window_t intruder);
    // The visible top level windows from our lowest one upwards, lowest first. Forgets our
    // windows that no longer exist.
    [[nodiscard]] std::vector<xcb_window_t> shownFromOurs();

    MediaClock& clock_;
    RootWatch& root_;
    std::vector<Kept> kept_;  // lowest first
    Rival rival_;
    bool heldBack_ = false;
    double looked_;
    Timer later_;
    Observation changes_;
};

}  // namespace platform
