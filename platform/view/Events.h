// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <QString>
#include <cstdint>

namespace platform {

// A key that goes down, repeats included. A plain value; any thread.
struct KeyEvent {
    int key = 0;                  // Qt::Key
    QString text;                 // the typed text; empty for a key that types nothing
    std::uint32_t modifiers = 0;  // Qt::KeyboardModifiers
    bool isRepeat = false;
};

// A press or movement of the mouse, in points, y up. A plain value; any thread.
struct MouseEvent {
    QPointF location;        // in the window, from its lower left
    QPointF screenLocation;  // in the space of Screen::frame
};

}  // namespace platform
