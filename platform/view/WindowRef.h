// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace platform {

// A window of any program, to which a dialog can belong. The text passes from
// program to program on a command line; only the window system reads it. Empty:
// no window. A plain value; any thread.
struct WindowRef {
    QString text;
    [[nodiscard]] bool isEmpty() const { return text.isEmpty(); }
    friend bool operator==(const WindowRef&, const WindowRef&) = default;
};

}  // namespace platform
