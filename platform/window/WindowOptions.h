// SPDX-License-Identifier: MIT
#pragma once

#include <QRectF>
#include <QString>
#include <cstdint>

#include "platform/view/WindowRef.h"

namespace platform {

enum class WindowStyle {
    Titled,      // an ordinary window with a frame of the window manager
    Borderless,  // the content alone
    FullScreen,  // covers the screen that its frame lies on, panels included
};

// A window's behaviour among spaces. A window with a level above 0 is on every space,
// stationary, left out of cycling and over full-screen windows anyway.
enum CollectionBehavior : std::uint32_t {
    CanJoinAllSpaces = 0x1,
    Stationary = 0x10,
    IgnoresCycle = 0x40,
    FullScreenAuxiliary = 0x100,
};

// The options of a window of the program's own. A plain value; any thread.
struct WindowOptions {
    QRectF frame;  // of the content: points, as in Screen::frame
    WindowStyle style = WindowStyle::Borderless;
    QString title;
    // An opaque window is black where nothing is drawn, from its first moment;
    // another window shows what lies below.
    bool opaque = true;
    // 0 is an ordinary window. A window of a level above 0 escapes the window manager: it
    // lies on top, on every space; higher levels lie higher.
    int level = 0;
    std::uint32_t collectionBehavior = 0;  // CollectionBehavior bits
    bool hasShadow = true;                 // where a compositor gives windows one
    // Keeps any window that is opened or raised later from covering this one while it is
    // shown; a screen saver or lock still covers it. For a level above 0.
    bool staysOnTop = false;
};

// A window that another program made and owns, in which this program draws. The text is the
// host's; only the window system reads it. Empty: the whole screen behind all windows.
// Plain value, any thread.
struct HostRef {
    QString text;
    friend bool operator==(const HostRef&, const HostRef&) = default;
};

}  // namespace platform
