// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <functional>
#include <memory>

namespace platform {

// Whether the user's session is locked, by the hint that lockers leave with logind
// (LockedHint of org.freedesktop.login1.Session, on the system bus). GNOME, KDE and xss-lock
// leave a hint, swaylock leaves none. Only the owner of logind's name is believed. The session
// is the one that XDG_SESSION_ID names, else the one that logind finds for this program. Logind
// is asked in the background. Without a bus, logind or a session nothing is locked. Owns its
// connection. Main thread.
class SessionLock {
  public:
    // Calls the action each time it changes; the session is not locked at first.
    SessionLock(const QString& systemBusAddress, std::function<void(bool locked)> action);
    ~SessionLock();
    SessionLock(const SessionLock&) = delete;
    SessionLock& operator=(const SessionLock&) = delete;

    // The address of the running system's bus; empty without one.
    [[nodiscard]] static QString systemBusAddress();

  private:
    class Link;
    std::unique_ptr<Link> link_;
};

}  // namespace platform
