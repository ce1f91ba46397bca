// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace platform {

// The spaces of SpaceFunctions.h: sets of windows that lie above all others while their
// space is shown. The window system owns the spaces. Main thread. A call for a space or a
// window that does not exist is ignored.
class OverlaySpaces {
  public:
    virtual ~OverlaySpaces() = default;

    // Makes an empty, hidden space of level 0.
    [[nodiscard]] virtual std::uint64_t create() = 0;
    virtual void destroy(std::uint64_t space) = 0;
    virtual void setLevel(std::uint64_t space, int level) = 0;
    virtual void setShown(std::uint64_t space, bool shown) = 0;
    // `window` is a NativeWindow::number().
    virtual void add(std::uint64_t window, std::uint64_t space) = 0;
};

}  // namespace platform
