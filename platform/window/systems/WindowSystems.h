// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <memory>
#include <optional>

#include "platform/time/MediaClock.h"
#include "platform/window/WindowSystem.h"

namespace platform {

// The window systems' names as a user writes them, in the order in which the session
// is asked for them. Any thread.
[[nodiscard]] QStringList windowSystemNames();

// Lets the session be asked for the window system of that name alone; an empty
// name: for each, in their order. Before all else here but windowSystemNames().
// Main thread.
void useOnly(const QString& name);
// The same for the first that adopts hosts' windows.
void useOnlyForHosts();

// The address that the environment gives for the first window system that may be
// asked; empty for none. Any thread.
[[nodiscard]] QString sessionAddress();

// Whether the session has a window system that answers; Qt would end the program
// with a crash where none does. To be kept until Qt has connected. Main thread.
class DisplayCheck {
  public:
    DisplayCheck();

    [[nodiscard]] bool isReachable() const { return hold_ != nullptr; }

  private:
    std::shared_ptr<void> hold_;
};

enum class QtScreens {
    Session,  // Qt shows windows of its own making, such as dialogs
    Windows,  // the program has platform windows alone
    None,     // nothing is shown: pictures alone
};

// Makes Qt show windows on the session's window system, the one that a DisplayCheck
// found, or nowhere, where it need not. Before the application object. Main thread.
void chooseQtScreens(QtScreens screens);

// The window system that a DisplayCheck found, or else the one that Qt
// shows windows on, or the last there is where Qt shows none. The clock outlives
// the system. Main thread.
[[nodiscard]] std::unique_ptr<WindowSystem> openWindowSystem(MediaClock& clock);

// Reads a window's name from a command line or the environment; none for a text that names
// no window. Any thread, before the application object too.
[[nodiscard]] std::optional<HostRef> readHost(const QString& text);
[[nodiscard]] std::optional<WindowRef> readWindow(const QString& text);

}  // namespace platform
