// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <functional>
#include <memory>

namespace platform {

// Whether the user's session is locked, by the hint that lockers leave with logind
// (LockedHint of org.freedesktop.login1.Session, on the system bus). GNOME, KDE and xss-lock
// leave one, swaylock leaves none. Believed from the owner of logind's name alone. The
// session is the one that XDG_SESSION_ID names, else the one that logind finds for this
// program. Asked in the background; not locked where there is no bus, no logind or no
// session. Owns its connection. Main thread.
class SessionLock {
  public:
    // Calls the action each time it changes; the session is not locked at first.
    SessionLock(const QString& systemBusAddress, std::function<void(bool locked)> action);
    ~SessionLock();
    SessionLock(const SessionLock&) = delete;
    SessionLock& operator=(const SessionLock&) = delete;

    // That of the running system; empty where there is none.
    [[nodiscard]] static QString systemBusAddress();

  private:
    class Link;
    std::unique_ptr<Link> link_;
};

}  // namespace platform
