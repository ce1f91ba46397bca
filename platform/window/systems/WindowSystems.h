// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <memory>
#include <optional>

#include "platform/time/MediaClock.h"
#include "platform/window/WindowSystem.h"

namespace platform {

// Whether the session has a window system that answers; Qt would end the program
// with a crash where none does. To be kept until Qt has connected. Main thread.
class DisplayCheck {
  public:
    DisplayCheck();

    [[nodiscard]] bool isReachable() const { return hold_ != nullptr; }

  private:
    std::shared_ptr<void> hold_;
};

enum class QtScreens { Session, None };

// Makes Qt show windows on the session's window system, or nowhere, for pictures
// alone. Before the application object. Main thread.
void chooseQtScreens(QtScreens screens);

// The window system that Qt shows windows on, or the first there is where Qt shows
// none. The clock outlives the system. Main thread.
[[nodiscard]] std::unique_ptr<WindowSystem> openWindowSystem(MediaClock& clock);

// Windows as a command line or the environment names them; none for a text that
// names no window. Any thread, before the application object too.
[[nodiscard]] std::optional<HostRef> readHost(const QString& text);
[[nodiscard]] std::optional<WindowRef> readWindow(const QString& text);

}  // namespace platform
