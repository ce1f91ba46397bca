// SPDX-License-Identifier: MIT
#pragma once

#include <QSocketNotifier>
#include <QString>
#include <memory>
#include <optional>

#include "platform/time/Observers.h"
#include "platform/window/x11/Xcb.h"

namespace platform {

// Watches the rest of the desktop through the root window of an X server, over a connection
// of its own. Without a server everything is absent. Owned by the X11System. Main thread.
class RootWatch {
  public:
    // Connects to the environment's display where `display` is empty.
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

    // Whether a compositing manager runs, which windows need to be see-through.
    [[nodiscard]] bool isComposited() const;
    // Whether xscreensaver covers the screen, blanked or locked. A daemon that was killed
    // leaves its word behind, which counts only while a window of xscreensaver exists.
    [[nodiscard]] bool isSaverOn() const;
    [[nodiscard]] bool hasWindowManager() const;
    // The window that has the keyboard: as the window manager reports it, or the server
    // where there is no manager. 0 for none.
    [[nodiscard]] xcb_window_t activeWindow() const;

    // Whether the server can hide the pointer and reports the managers of selections.
    [[nodiscard]] bool hasFixes() const { return selectionEvent_ != 0; }

    // The first number of a property. For an absent property find() gives none and
    // property() 0.
    [[nodiscard]] std::optional<std::uint32_t> find(xcb_window_t window,
                                                    std::string_view name) const;
    [[nodiscard]] std::uint32_t property(xcb_window_t window, std::string_view name) const {
        return find(window, name).value_or(0);
    }

    // Reports another active window where only this program knows of the change: the
    // keyboard may go to a window that no window manager calls active.
    void keysMoved() { observers_.tell(Change::ActiveWindow); }

    // Delivers events that came with a reply, in a later turn of the event loop.
    void readSoon() const;

  private:
    [[nodiscard]] bool hasSaverWindow() const;
    void watchRoot() const;
    void watchCompositor();
    void tellOfSaver();
    void read();
    void handle(const xcb_generic_event_t& event);

    const XConnection connection_;
    xcb_window_t root_ = 0;
    xcb_atom_t activeWindowName_ = 0;
    xcb_atom_t saverName_ = 0;
    xcb_atom_t compositorName_ = 0;
    std::uint8_t selectionEvent_ = 0;  // 0 without the extension
    bool saverSays_ = false;           // by its property, at the last event
    Observers<Change> observers_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace platform
