// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <functional>
#include <optional>

#include "platform/time/Observers.h"
#include "platform/window/Workspace.h"

namespace platform {

// The desktop around the program's windows, as far as a window system itself knows
// it; Workspace is the whole. The window system owns it. Main thread. Where the system is
// not reachable nothing is ever active, composited or hidden.
class NativeWorkspace {
  public:
    virtual ~NativeWorkspace() = default;

    // As in Workspace.
    [[nodiscard]] virtual std::optional<RunningApplication> frontmostApplication() = 0;
    virtual void activate(const RunningApplication& application) = 0;
    virtual void hideCursor() = 0;
    virtual void unhideCursor() = 0;
    [[nodiscard]] virtual QPointF mouseLocation() const = 0;
    [[nodiscard]] virtual bool isComposited() const = 0;
    // Whether the system itself tells of a screen saver or lock.
    [[nodiscard]] virtual bool isSaverActive() const = 0;

    // While this holds, the program's windows are not raised over others: a saver
    // or lock covers the screen of which only the session knows.
    virtual void setSaverCovers(bool covers) = 0;

    [[nodiscard]] virtual Observation observe(std::function<void(Workspace::Change)> action) = 0;
};

}  // namespace platform
