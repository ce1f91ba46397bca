// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <vector>

#include "platform/window/WindowSystem.h"
#include "platform/window/x11/Coverage.h"
#include "platform/window/x11/DisplaySleep.h"
#include "platform/window/x11/EventConnection.h"
#include "platform/window/x11/ScreenWatch.h"
#include "platform/window/x11/StackedSpaces.h"
#include "platform/window/x11/X11Workspace.h"

namespace platform {

class WindowWatch;

// Whether Qt logs this message as its own connection breaks.
[[nodiscard]] bool isQtsLament(const QString& message);

// The program's connections to an X server, beside Qt's own. The program listens to windows
// and draws in them through connections of its own, so that a vanished host's window is an
// event and never the end of the program. Owned by the window server; the clock outlives
// the system. Main thread.
class X11System final : public WindowSystem {
  public:
    // Connects to the environment's display where `display` is empty. Never fails:
    // isConnected() tells the result.
    explicit X11System(MediaClock& clock, const QString& display = {});
    ~X11System() override;

    [[nodiscard]] Capabilities capabilities() const override;
    [[nodiscard]] bool isConnected() const override { return events_.isAlive(); }
    void onLost(std::function<void()> action) override;
    void reportLoss() override { events_.lost(); }
    [[nodiscard]] std::unique_ptr<NativeWindow> makeWindow(const NativeWindowOptions& options,
                                                           NativeWindowDelegate& delegate) override;
    [[nodiscard]] std::unique_ptr<NativeWindow> adopt(const HostRef& host,
                                                      NativeWindowDelegate& delegate) override;
    [[nodiscard]] std::uint64_t announcedScreenChanges() const override {
        return screens_ ? screens_->announced() : 0;
    }
    [[nodiscard]] NativeWorkspace& workspace() override;
    [[nodiscard]] OverlaySpaces* overlaySpaces() override { return &spaces(); }
    [[nodiscard]] std::unique_ptr<IdleWatch> watchIdle(double seconds, IdleAction action) override;
    void watch(std::function<void(bool asleep)> displaySlept) override;
    void stopWatching() override;

    // The events of the native windows.
    [[nodiscard]] EventConnection& events() { return events_; }
    [[nodiscard]] const QString& display() const { return display_; }
    // Whether the server shows its windows on a Wayland compositor.
    [[nodiscard]] bool isOnWayland() const { return isOnWayland_; }
    [[nodiscard]] StackKeeper& stack();
    void added(WindowWatch& window) { windows_.push_back(&window); }
    void removed(WindowWatch& window) { std::erase(windows_, &window); }
    // Sets the level of a window that is shown; 0 for a hidden one.
    void setLevel(xcb_window_t window, int level);
    // Forgets a window that no longer exists.
    void forget(xcb_window_t window);
    // Reports that a window of the program lost the keyboard.
    void keyboardMoved();

  private:
    // The members below are made on first use, since most programs need none of them.
    [[nodiscard]] RootWatch& root();
    [[nodiscard]] StackedSpaces& spaces();
    [[nodiscard]] std::vector<xcb_window_t> mapped() const;
    void setCovered(xcb_window_t id, bool covered);

    MediaClock& clock_;
    const QString display_;
    EventConnection events_;
    std::vector<WindowWatch*> windows_;
    std::map<xcb_window_t, int> levels_;  // of the shown windows above the others
    std::unique_ptr<RootWatch> root_;
    std::unique_ptr<StackKeeper> stack_;
    std::unique_ptr<StackedSpaces> spaces_;
    std::unique_ptr<X11Workspace> workspace_;
    bool isOnWayland_ = false;
    bool asleep_ = false;
    std::function<void(bool)> displaySlept_;
    std::optional<DisplaySleep> sleep_;
    std::optional<CoverageWatch> coverage_;
    std::optional<ScreenWatch> screens_;
};

// Reads a window's number as hosts write it, decimal or hexadecimal after "0x"; none for 0
// or for other text. Any thread.
[[nodiscard]] std::optional<xcb_window_t> readWindowNumber(const QString& text);

}  // namespace platform
