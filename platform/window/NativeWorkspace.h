// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <functional>
#include <optional>

#include "platform/time/Observers.h"
#include "platform/window/Workspace.h"

namespace platform {

// The part of the desktop that a window system itself knows; Workspace is the whole. The
// window system owns it. Main thread. Without a connection nothing is ever active,
// composited or hidden.
class NativeWorkspace {
  public:
    virtual ~NativeWorkspace() = default;

    // The same as in Workspace.
    [[nodiscard]] virtual std::optional<RunningApplication> frontmostApplication() = 0;
    virtual void activate(const RunningApplication& application) = 0;
    virtual void hideCursor() = 0;
    virtual void unhideCursor() = 0;
    [[nodiscard]] virtual QPointF mouseLocation() const = 0;
    [[nodiscard]] virtual bool isComposited() const = 0;
    // Whether the window system itself reports a screen saver or lock.
    [[nodiscard]] virtual bool isSaverActive() const = 0;

    // While true, the program's windows are not raised over others. The session alone may
    // know of a saver or lock that covers the screen.
    virtual void setSaverCovers(bool covers) = 0;

    [[nodiscard]] virtual Observation observe(std::function<void(Workspace::Change)> action) = 0;
};

}  // namespace platform
