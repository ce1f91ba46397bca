// SPDX-License-Identifier: MIT
#pragma once

#include "platform/session/DistributedNotificationCenter.h"
#include "platform/window/WindowServer.h"
#include "platform/window/Workspace.h"

namespace platform {

class NativeWorkspace;

// The workspace of a running desktop. The window system reports most of it; screen savers
// report over the session bus, and the program hands in what the session knows of a lock. The server and the notifications outlive the workspace; one
// per server, owned by the program. Main thread.
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

    // The session is locked, whatever a saver says; see SessionLock. Not locked at first.
    void setLocked(bool locked);

  private:
    void setSaverSaysActive(bool active);
    void covered(bool before);
    [[nodiscard]] bool isCovered() const { return saverSaysActive_ || locked_; }

    WindowServer& server_;
    NativeWorkspace& native_;
    DistributedNotificationCenter& notifications_;
    bool saverSaysActive_ = false;
    bool locked_ = false;
    Observers<Change> observers_;
    Observation changes_;
};

}  // namespace platform
