// SPDX-License-Identifier: MIT
#pragma once

#include "platform/time/Timer.h"
#include "platform/window/NativeWorkspace.h"
#include "platform/window/x11/RootWatch.h"

namespace platform {

class StackKeeper;

// The workspace of an X11 desktop, as its window manager and compositor report it. Owned by
// the X11System; the clock, the watch and the keeper outlive the workspace. Main thread.
class X11Workspace final : public NativeWorkspace {
  public:
    X11Workspace(MediaClock& clock, RootWatch& root, StackKeeper& stack);

    [[nodiscard]] std::optional<RunningApplication> frontmostApplication() override;
    void activate(const RunningApplication& application) override;
    void hideCursor() override;
    void unhideCursor() override;
    [[nodiscard]] QPointF mouseLocation() const override;
    [[nodiscard]] bool isComposited() const override { return composited_; }
    [[nodiscard]] bool isSaverActive() const override { return root_.isSaverOn(); }
    void setSaverCovers(bool covers) override;
    [[nodiscard]] Observation observe(std::function<void(Workspace::Change)> action) override;

  private:
    void changed(RootWatch::Change change);
    void compositorChanged();

    MediaClock& clock_;
    RootWatch& root_;
    StackKeeper& stack_;
    bool composited_;
    Timer compositorSettles_;
    Observers<Workspace::Change> observers_;
    Observation changes_;
};

}  // namespace platform
