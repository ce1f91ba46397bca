// SPDX-License-Identifier: MIT
#pragma once

#include <QSocketNotifier>
#include <QString>
#include <memory>
#include <optional>

#include "platform/time/Observers.h"
#include "platform/window/x11/Xcb.h"

namespace platform {

// The doings of the rest of the desktop, as the root window of an X server tells them,
// over a connection of its own. Without a server everything is absent. Owned by
// the X11System. Main thread.
class RootWatch {
  public:
    // To the environment's display where `display` is empty.
    explicit RootWatch(const QString& display);
    RootWatch(const RootWatch&) = delete;
    RootWatch& operator=(const RootWatch&) = delete;

    [[nodiscard]] bool isAlive() const { return connection_.isAlive(); }
    [[nodiscard]] const XConnection& connection() const { return connection_; }
    [[nodiscard]] xcb_connection_t* get() const { return connection_.get(); }
    [[nodiscard]] xcb_window_t root() const { return root_; }

    enum class Change {
        Stack,         // a top level window came, went or was moved
        ActiveWindow,  // the window manager gave the keyboard to another window
        Saver,
        Compositor,
    };
    [[nodiscard]] Observation observe(std::function<void(Change)> action);

    // Whether a compositing manager runs: only then can windows be seen through.
    [[nodiscard]] bool isComposited() const;
    // Whether xscreensaver covers the screen, blanked or locked.
    [[nodiscard]] bool isSaverOn() const;
    [[nodiscard]] bool hasWindowManager() const;
    // The window that has the keyboard: the window manager's word for it, or the
    // server's where there is no manager. 0 for none.
    [[nodiscard]] xcb_window_t activeWindow() const;

    // Whether the server can hide the pointer, and tells who manages selections.
    [[nodiscard]] bool hasFixes() const { return selectionEvent_ != 0; }

    // The first number of a property; none where it is absent, and 0 in the second.
    [[nodiscard]] std::optional<std::uint32_t> find(xcb_window_t window,
                                                    std::string_view name) const;
    [[nodiscard]] std::uint32_t property(xcb_window_t window, std::string_view name) const {
        return find(window, name).value_or(0);
    }

    // Tells of another active window, where only this program can know: the keyboard
    // may go to one that no window manager calls active.
    void keysMoved() { observers_.tell(Change::ActiveWindow); }

    // Hands out, in a later turn of the event loop, what came with a reply.
    void readSoon() const;

  private:
    void watchRoot() const;
    void watchCompositor();
    void read();
    void handle(const xcb_generic_event_t& event);

    const XConnection connection_;
    xcb_window_t root_ = 0;
    xcb_atom_t activeWindowName_ = 0;
    xcb_atom_t saverName_ = 0;
    xcb_atom_t compositorName_ = 0;
    std::uint8_t selectionEvent_ = 0;  // 0 without the extension
    Observers<Change> observers_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace platform
