// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "platform/window/WindowSystem.h"
#include "platform/window/wayland/Connection.h"
#include "platform/window/wayland/WaylandWorkspace.h"

namespace platform::wayland {

class WaylandWindow;

// Wayland as a window system: one connection of the program's own, apart from Qt's. Owned by
// the window server. Main thread.
class WaylandSystem final : public WindowSystem, public ScreenSource {
  public:
    // Connects to the environment's compositor where `address` is empty. The clock outlives
    // the system.
    WaylandSystem(MediaClock& clock, const QString& address);
    ~WaylandSystem() override;

    [[nodiscard]] Capabilities capabilities() const override;
    [[nodiscard]] bool isConnected() const override { return connection_.isAlive(); }
    void onLost(std::function<void()> action) override { connection_.onLost(std::move(action)); }
    [[nodiscard]] QString lossReason() const override { return connection_.protocolError(); }
    void reportLoss() override { connection_.lost(); }
    [[nodiscard]] std::unique_ptr<NativeWindow> makeWindow(const NativeWindowOptions& options,
                                                           NativeWindowDelegate& delegate) override;
    [[nodiscard]] std::unique_ptr<NativeWindow> adopt(const HostRef&,
                                                      NativeWindowDelegate&) override {
        return nullptr;
    }
    [[nodiscard]] ScreenSource* screenSource() override { return found_ ? this : nullptr; }
    [[nodiscard]] NativeWorkspace& workspace() override { return workspace_; }
    [[nodiscard]] OverlaySpaces* overlaySpaces() override { return nullptr; }
    [[nodiscard]] std::unique_ptr<IdleWatch> watchIdle(double seconds, IdleAction action) override;
    // Nothing to watch: a compositor asks for no frames while the display sleeps.
    void watch(std::function<void(bool)>) override {}
    void stopWatching() override {}

    [[nodiscard]] std::vector<Screen> screens() const override {
        return connection_.outputs().screens();
    }
    [[nodiscard]] Observation observeScreens(std::function<void()> action) override {
        return connection_.outputs().observe(std::move(action));
    }

    [[nodiscard]] Connection& connection() { return connection_; }

    // For the windows.
    [[nodiscard]] std::int64_t nextNumber() { return ++lastNumber_; }
    void added(WaylandWindow& window);
    void removed(WaylandWindow& window);
    // Reports that a window was shown or hidden. An opaque overlay keeps the overlays of a
    // lower level on its display down, since each compositor stacks overlays in an order of
    // its own.
    void windowsChanged();
    void keyboardMoved();
    void focusChanged();
    // Whether a lock seems to have the keyboard changed for a window.
    void restingChanged();
    // Whether the windows tell of a lock.
    [[nodiscard]] bool isLockLikely() const { return lockLikely_; }
    void cursorChanged();
    [[nodiscard]] bool hidesCursor() const { return workspace_.hidesCursor(); }
    [[nodiscard]] QPointF pointerPlace() const;
    // Sets whether a saver or lock covers the displays; no overlay shows meanwhile.
    void setCovered(bool covered);

  private:
    void outputsChanged();

    Connection connection_;
    bool found_;  // the compositor answered at the start
    WaylandWorkspace workspace_;
    std::int64_t lastNumber_ = 0;
    std::vector<WaylandWindow*> windows_;
    bool covered_ = false;
    bool lockLikely_ = false;
    mutable QPointF pointerPlace_;
    Observation outputs_, focus_;
};

}  // namespace platform::wayland
