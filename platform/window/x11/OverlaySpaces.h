// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <vector>

#include "platform/window/x11/StackKeeper.h"

namespace platform {

// The spaces of SpaceFunctions.h, of one connection to an X server. Main thread.
class OverlaySpaces {
  public:
    // The level of a window of this program's own; 0 for others.
    using LevelOf = std::function<int(xcb_window_t)>;

    OverlaySpaces(StackKeeper& stack, LevelOf levelOf);
    ~OverlaySpaces();
    OverlaySpaces(const OverlaySpaces&) = delete;
    OverlaySpaces& operator=(const OverlaySpaces&) = delete;

    [[nodiscard]] std::uint64_t create();
    void destroy(std::uint64_t space);
    void setLevel(std::uint64_t space, int level);
    void setShown(std::uint64_t space, bool shown);
    void add(xcb_window_t window, std::uint64_t space);
    // The window is no more.
    void forget(xcb_window_t window);

  private:
    struct Space {
        int level = 0;
        bool shown = false;
        std::vector<xcb_window_t> windows;
    };
    void update(const Space& space);
    void update(const Space& space, xcb_window_t window);

    StackKeeper& stack_;
    const LevelOf levelOf_;
    std::uint64_t last_ = 0;
    std::map<std::uint64_t, Space> spaces_;
};

}  // namespace platform
