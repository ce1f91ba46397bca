// SPDX-License-Identifier: MIT
#pragma once

#include <QWindow>
#include <cstdint>
#include <optional>

namespace platform {

// Asks the window manager for a dark frame around an own window that is made and
// not yet shown. A manager without dark frames gives the ordinary one. Main thread.
void askForDarkFrame(QWindow& window);

// Asks it, of such a window, for a title bar and nothing to close, shrink, grow
// or resize the window with; it can still be moved. Some leave the buttons there
// all the same.
void askForTitleOnly(QWindow& window);

// Where the content of a window is on screen, in Qt's points; any program's
// window, by its X id. None if there is no such window.
[[nodiscard]] std::optional<QRect> placeOf(std::uint32_t xWindow);

}  // namespace platform
