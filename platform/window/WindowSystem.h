// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <memory>

#include "platform/session/IdleWatch.h"
#include "platform/window/NativeWindow.h"
#include "platform/window/NativeWorkspace.h"
#include "platform/window/OverlaySpaces.h"
#include "platform/window/Screen.h"
#include "platform/window/WindowOptions.h"

namespace platform {

// The capabilities of a window system. Callers ask for a capability, never for the system's
// name. Plain values that stay the same while the system runs.
struct Capabilities {
    // A window can lie above everything, full-screen windows included.
    bool liesAboveAll = false;
    // Clicks on a window that ignores the mouse reach what lies below, whatever
    // that is.
    bool passesClicks = false;
    // The program can give the keyboard to another program's window. Elsewhere the system
    // itself returns the keyboard when a window closes.
    bool returnsKeyboard = false;
    // The system fades a whole window; elsewhere the drawer does.
    bool fadesWindows = false;
    // OpenGL of a GPU can draw windows.
    bool drawsOnGpu = false;
    // The program chooses a window's place on the screen.
    bool placesWindows = false;
    // watchIdle() counts the inhibitors that the system knows, and is the first to be
    // asked for the time without input.
    bool knowsIdle = false;
};

// A window system: makes the program's windows, adopts hosts' windows, and reports the
// desktop around them. One implementation per system, each in a folder of its own;
// platform/window/systems opens the session's system.
//
// One per WindowServer, which keeps it alive and outlives all windows. Main
// thread, under a QGuiApplication for windows of the program's own.
class WindowSystem {
  public:
    virtual ~WindowSystem() = default;

    [[nodiscard]] virtual Capabilities capabilities() const = 0;

    // Whether the system is connected; without it windows stay empty.
    [[nodiscard]] virtual bool isConnected() const = 0;
    // Called once when the connection is lost, as in WindowServer.
    virtual void onLost(std::function<void()> action) = 0;
    // The system's own reason for the loss; empty where the system just went away.
    [[nodiscard]] virtual QString lossReason() const { return {}; }
    // Takes a surface's word that the connection is lost: the same follows as where the
    // system itself finds it so.
    virtual void reportLoss() = 0;

    // Makes a hidden window. The delegate outlives it.
    [[nodiscard]] virtual std::unique_ptr<NativeWindow> makeWindow(
        const NativeWindowOptions& options, NativeWindowDelegate& delegate) = 0;
    // Adopts the host's window. A window that does not exist is reported as gone in a later
    // turn of the event loop. The delegate outlives the result. Null where the system is not
    // connected or has no hosts.
    [[nodiscard]] virtual std::unique_ptr<NativeWindow> adopt(const HostRef& host,
                                                              NativeWindowDelegate& delegate) = 0;

    // The source of the screens and their changes, the same while the system lives; null
    // where Qt knows the screens. The WindowServer has Screen ask the source.
    [[nodiscard]] virtual ScreenSource* screenSource() { return nullptr; }
    // The number of changes of the screens so far that the system announced before Screen
    // knew them. A movement of the mouse during which it grows may be the system's own: a
    // mouse outside a smaller screen is moved back inside.
    [[nodiscard]] virtual std::uint64_t announcedScreenChanges() const { return 0; }

    // The workspace, made on first use.
    [[nodiscard]] virtual NativeWorkspace& workspace() = 0;
    // The spaces above everything; null where the system has none.
    [[nodiscard]] virtual OverlaySpaces* overlaySpaces() = 0;

    // Tells when there has been no input for `seconds` (above 0), in a later turn of the
    // event loop. The system outlives the watch. Null where the system cannot tell.
    [[nodiscard]] virtual std::unique_ptr<IdleWatch> watchIdle([[maybe_unused]] double seconds,
                                                               [[maybe_unused]] IdleAction action) {
        return nullptr;
    }

    // Watches the display's sleep and the covering of windows until stopWatching(). The
    // display counts as awake at first. A window server watches while it has windows.
    virtual void watch(std::function<void(bool asleep)> displaySlept) = 0;
    virtual void stopWatching() = 0;
};

}  // namespace platform
