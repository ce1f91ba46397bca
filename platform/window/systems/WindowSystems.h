// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <memory>
#include <optional>

#include "platform/time/MediaClock.h"
#include "platform/window/WindowSystem.h"

namespace platform {

// Whether the session has a window system that answers; without one Qt would crash the
// program. The owner keeps the check until Qt has connected. Main thread.
class DisplayCheck {
  public:
    DisplayCheck();

    [[nodiscard]] bool isReachable() const { return hold_ != nullptr; }

  private:
    std::shared_ptr<void> hold_;
};

enum class QtScreens { Session, None };

// Makes Qt show windows on the window system that a DisplayCheck found, or nowhere, for
// pictures alone. To be called before the application object is made. Main thread.
void chooseQtScreens(QtScreens screens);

// Opens the window system that Qt shows windows on, or the first one where Qt shows none.
// The clock outlives the system, which the caller owns. Main thread.
[[nodiscard]] std::unique_ptr<WindowSystem> openWindowSystem(MediaClock& clock);

// Reads a window's name from a command line or the environment; none for a text that names
// no window. Any thread, before the application object too.
[[nodiscard]] std::optional<HostRef> readHost(const QString& text);
[[nodiscard]] std::optional<WindowRef> readWindow(const QString& text);

}  // namespace platform
