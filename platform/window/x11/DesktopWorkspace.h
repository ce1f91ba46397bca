// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/session/DistributedNotificationCenter.h"
#include "platform/time/Timer.h"
#include "platform/window/WindowServer.h"
#include "platform/window/Workspace.h"
#include "platform/window/x11/RootWatch.h"

namespace platform {

// The workspace of a running X11 desktop, as told by its window manager, compositor
// and saver. Without an X server nothing is active, composited or hidden. The
// server and the notifications must outlive it; one per server. Main thread.
class DesktopWorkspace final : public Workspace {
  public:
    DesktopWorkspace(WindowServer& server, DistributedNotificationCenter& notifications);
    ~DesktopWorkspace() override;

    [[nodiscard]] std::optional<RunningApplication> frontmostApplication() override;
    void activate(const RunningApplication& application) override;
    void activateIgnoringOthers() override;
    void hideCursor() override;
    void unhideCursor() override;
    [[nodiscard]] QPointF mouseLocation() const override;
    [[nodiscard]] bool isComposited() const override;
    [[nodiscard]] bool isSaverActive() const override;
    [[nodiscard]] Observation observe(std::function<void(Change)> action) override;

  private:
    void changed(RootWatch::Change change);
    void compositorChanged();
    void setSaverSaysActive(bool active);

    WindowServer& server_;
    DistributedNotificationCenter& notifications_;
    bool saverSaysActive_ = false;
    bool composited_;
    Timer compositorSettles_;
    Observers<Change> observers_;
    Observation changes_;
};

}  // namespace platform
