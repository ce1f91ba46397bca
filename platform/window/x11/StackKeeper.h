// SPDX-License-Identifier: MIT
#pragma once

#include <compare>
#include <vector>

#include "platform/time/Timer.h"
#include "platform/window/x11/RootWatch.h"

namespace platform {

// How high a window is kept: the window's own level counts first.
struct StackRank {
    int window = 0;
    int space = 0;
    friend auto operator<=>(const StackRank&, const StackRank&) = default;
};

// Keeps windows above all others, whatever is opened or raised later, full-screen
// windows and panels included; the higher a window's rank, the higher it stays.
// Looks when the stack changes, at once after a quiet time and then at most ten
// times a second.
//
// Gives way to a screen saver or lock. One that does not say what it is shows
// itself by coming back on top each time it is covered: after three times it is
// left there for as long as it is up.
//
// Main thread. The watch and the clock must outlive it.
class StackKeeper {
  public:
    StackKeeper(MediaClock& clock, RootWatch& root);
    StackKeeper(const StackKeeper&) = delete;
    StackKeeper& operator=(const StackKeeper&) = delete;

    // Windows of equal rank stay in the order in which they came.
    void keep(xcb_window_t window, StackRank rank);
    // It stays where it is, for others to cover.
    void release(xcb_window_t window);

    // While this holds, nothing is raised: something covers the screen that says
    // so other than through the root window.
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
    // The highest window that is not ours and lies above one of ours; 0 for none.
    [[nodiscard]] xcb_window_t intruder(const std::vector<xcb_window_t>& shown) const;
    [[nodiscard]] bool givesWay(xcb_window_t intruder);
    // Top level windows that can be seen, lowest first, from our lowest up.
    // Forgets those of ours that are no more.
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
