// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <memory>
#include <optional>

#include "platform/time/MediaClock.h"
#include "platform/window/QtLoss.h"
#include "platform/window/WindowSystem.h"

namespace platform {

// The window systems' names as a user writes them, in the order in which the session is
// probed. Any thread.
[[nodiscard]] QStringList windowSystemNames();

// Restricts the session to the window system of that name; an empty name allows all. To be
// called before every other function here except windowSystemNames(). Main
// thread.
void useOnly(const QString& name);
// Restricts an unrestricted session to the first window system that hosts draw on. Main thread.
void useOnlyForHosts();

// The address that the environment gives for the first allowed window system; empty for
// none. Any thread, but not during useOnly() or useOnlyForHosts().
[[nodiscard]] QString sessionAddress();

// Whether the session has a window system that answers. Without one Qt would crash the
// program. The caller keeps the object until Qt has connected. Main thread.
class DisplayCheck {
  public:
    DisplayCheck();

    [[nodiscard]] bool isReachable() const { return hold_ != nullptr; }

  private:
    std::shared_ptr<void> hold_;
};

enum class QtScreens {
    Session,  // Qt shows windows of its own making, such as dialogs
    Windows,  // the program shows platform windows alone
    None,     // the program shows nothing: it makes pictures
};

// Chooses Qt's platform plugin: for the window system that the last DisplayCheck found, or
// off screen where Qt need show nothing. Before the application object. Main thread.
void chooseQtScreens(QtScreens screens);

// Opens the window system that the last DisplayCheck found; without a find, the one that Qt
// runs on; else the last one. The caller owns the system. The clock outlives the
// system. Main thread.
[[nodiscard]] std::unique_ptr<WindowSystem> openWindowSystem(MediaClock& clock);

// The loss that a message of Qt's tells of, on whichever window system. Any thread.
[[nodiscard]] QtLoss lossIn(const QString& message);

// Reads a window's name from a command line or the environment; none for a text that names
// no window. Any thread, before the application object too.
[[nodiscard]] std::optional<HostRef> readHost(const QString& text);
[[nodiscard]] std::optional<WindowRef> readWindow(const QString& text);

}  // namespace platform
