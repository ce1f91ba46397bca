// SPDX-License-Identifier: MIT
// The needs of dialogs that Qt draws, from the window system that Qt runs on. Where that
// system cannot do a thing, nothing happens. Main thread, under a QGuiApplication.
#pragma once

#include <QRect>
#include <memory>
#include <optional>

#include "platform/view/WindowRef.h"

class QWindow;

namespace platform {

// Asks for a dark frame around an own window that has been made and not yet shown.
// Where no dark frames are known, the ordinary one comes.
void askForDarkFrame(QWindow& window);

// Asks, for such a window, for a title bar and nothing to close, shrink, grow or
// resize the window with; it can still be moved. Some leave the buttons there all
// the same.
void askForTitleOnly(QWindow& window);

// Where the content of a window is on screen, in Qt's points; any program's
// window. None if there is no such window, or the system does not tell.
[[nodiscard]] std::optional<QRect> placeOf(const WindowRef& window);

// Makes a dialog, not yet shown, belong to a window of any program and lie above
// it, until the result is dropped. Null where that cannot be.
[[nodiscard]] std::shared_ptr<void> attach(QWindow& dialog, const WindowRef& owner);

// A window that Qt made in this program, as another program may be told of it;
// empty where it cannot. Under any application object.
[[nodiscard]] WindowRef refOf(QWindow& window);

}  // namespace platform
