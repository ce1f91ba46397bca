// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <QString>
#include <cstdint>

namespace platform {

// A key going down, repeats included. A value: any thread, like any other value.
struct KeyEvent {
    int key = 0;                  // Qt::Key
    QString text;                 // what it types; empty for a key that types nothing
    std::uint32_t modifiers = 0;  // Qt::KeyboardModifiers
    bool isRepeat = false;
};

// The mouse, in points, y up.
struct MouseEvent {
    QPointF location;        // in the window, from its lower left
    QPointF screenLocation;  // as in Screen::frame
};

}  // namespace platform
