// SPDX-License-Identifier: MIT
// Services of Qt's window system for dialogs that Qt draws. A call does nothing where the system
// lacks the service. The caller owns the windows. Main thread, under a QGuiApplication.
#pragma once

#include <QRect>
#include <memory>
#include <optional>

#include "platform/view/WindowRef.h"

class QWindow;

namespace platform {

// Asks for a dark frame around an own window that has been made and not yet shown. A system
// without dark frames gives the ordinary one.
void askForDarkFrame(QWindow& window);

// Asks for a frame with a title bar alone around such a window: the user can move it, but
// not close, shrink, grow or resize it. Some window managers show their buttons anyway.
void askForTitleOnly(QWindow& window);

// The place of a window's content on screen, in Qt's points; for any program's window. None
// if there is no such window, or the system does not report it.
[[nodiscard]] std::optional<QRect> placeOf(const WindowRef& window);

// Attaches a dialog, not yet shown, to a window of any program, and above it, until the
// result is dropped. Null where the system cannot.
[[nodiscard]] std::shared_ptr<void> attach(QWindow& dialog, const WindowRef& owner);

// A reference for other programs to a window that Qt made in this program; empty without
// one. Under any application object.
[[nodiscard]] WindowRef refOf(QWindow& window);

}  // namespace platform
