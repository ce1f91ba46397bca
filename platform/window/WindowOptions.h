// SPDX-License-Identifier: MIT
#pragma once

#include <QRectF>
#include <QString>
#include <cstdint>

#include "platform/view/WindowRef.h"

namespace platform {

enum class WindowStyle {
    Titled,      // an ordinary window with a frame of the window manager
    Borderless,  // its content and nothing else
    FullScreen,  // covers the screen that its frame lies on, panels included
};

// How a window behaves among spaces. A window with a level above 0 is on every
// space, stationary, left out of cycling and over full-screen windows anyway.
enum CollectionBehavior : std::uint32_t {
    CanJoinAllSpaces = 0x1,
    Stationary = 0x10,
    IgnoresCycle = 0x40,
    FullScreenAuxiliary = 0x100,
};

// The makings of a window of the program's own. A plain value; any thread.
struct WindowOptions {
    QRectF frame;  // of the content: points, as in Screen::frame
    WindowStyle style = WindowStyle::Borderless;
    QString title;
    // An opaque window is black where nothing is drawn, from its first moment;
    // another window shows what lies below.
    bool opaque = true;
    // 0 is an ordinary window. Above 0 the window is out of the window manager's
    // hands and on top, on every space, the higher level the higher.
    int level = 0;
    std::uint32_t collectionBehavior = 0;  // CollectionBehavior bits
    bool hasShadow = true;                 // where a compositor gives windows one
    // Nothing that is opened or raised later covers the window while it is shown,
    // but a screen saver or lock. For a level above 0.
    bool staysOnTop = false;
};

// A window that another program made and keeps, and in which this program draws.
// The text is the host's; only the window system reads it. Empty: the whole
// screen behind all windows. Plain value, any thread.
struct HostRef {
    QString text;
    friend bool operator==(const HostRef&, const HostRef&) = default;
};

}  // namespace platform
