// SPDX-License-Identifier: MIT
#pragma once

#include <QWindow>

namespace platform {

// Asks the window manager for a dark frame around an own window that has been
// made and not yet shown. Those that know no dark frames give the ordinary one.
void askForDarkFrame(QWindow& window);

}  // namespace platform
