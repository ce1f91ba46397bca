// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <vector>

#include "platform/window/OverlaySpaces.h"
#include "platform/window/x11/StackKeeper.h"

namespace platform {

// Spaces made of windows that a stack keeper keeps on top. Owned by the X11System; the
// keeper outlives the spaces. Main thread.
class StackedSpaces final : public OverlaySpaces {
  public:
    // The level of a window of this program; 0 for others.
    using LevelOf = std::function<int(xcb_window_t)>;

    StackedSpaces(StackKeeper& stack, LevelOf levelOf);
    ~StackedSpaces() override;
    StackedSpaces(const StackedSpaces&) = delete;
    StackedSpaces& operator=(const StackedSpaces&) = delete;

    [[nodiscard]] std::uint64_t create() override;
    void destroy(std::uint64_t space) override;
    void setLevel(std::uint64_t space, int level) override;
    void setShown(std::uint64_t space, bool shown) override;
    void add(std::uint64_t window, std::uint64_t space) override;
    // Forgets a window that no longer exists.
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
