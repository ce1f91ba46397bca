// SPDX-License-Identifier: MIT
#pragma once

#include "platform/window/NativeWorkspace.h"

namespace platform::wayland {

class WaylandSystem;

// The workspace of a Wayland desktop, where no program may look at another. The compositor
// itself returns the keyboard, and windows are always composited. Owned by the system. Main
// thread.
class WaylandWorkspace final : public NativeWorkspace {
  public:
    // The system outlives the workspace.
    explicit WaylandWorkspace(WaylandSystem& system) : system_(system) {}

    [[nodiscard]] std::optional<RunningApplication> frontmostApplication() override { return {}; }
    void activate(const RunningApplication&) override {}
    void hideCursor() override;
    void unhideCursor() override;
    // The pointer's last known place, over the program's own windows.
    [[nodiscard]] QPointF mouseLocation() const override;
    [[nodiscard]] bool isComposited() const override;
    [[nodiscard]] bool isSaverActive() const override;
    void setSaverCovers(bool covers) override;
    [[nodiscard]] Observation observe(std::function<void(Workspace::Change)> action) override;

    [[nodiscard]] bool hidesCursor() const { return hidings_ > 0; }
    void tell(Workspace::Change change) { observers_.tell(change); }

  private:
    WaylandSystem& system_;
    int hidings_ = 0;
    Observers<Workspace::Change> observers_;
};

}  // namespace platform::wayland
