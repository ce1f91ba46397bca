// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <functional>
#include <memory>

#include "platform/time/MediaClock.h"

namespace platform {

// Whether any program on the session bus asks that no saver starts: a film, a call. The
// requests are those of org.freedesktop.ScreenSaver, of the portal, and of GNOME's session
// manager. A monitor of the bus reads these calls, and no others, on their way to the program
// that serves them. A request made before the monitor started is not known.
//
// Where no program has the name org.freedesktop.ScreenSaver half a minute after the start,
// requests to that name are answered here, until a program takes the name. Owns its
// connections to the bus; the clock outlives it. Main thread.
class IdleInhibitors {
  public:
    // Calls the action at each change; there are none at first.
    IdleInhibitors(MediaClock& clock, const QString& busAddress,
                   std::function<void(bool any)> action);
    ~IdleInhibitors();
    IdleInhibitors(const IdleInhibitors&) = delete;
    IdleInhibitors& operator=(const IdleInhibitors&) = delete;

    // Seconds until the name is taken where it is free: a desktop's own service comes first.
    static constexpr double kPatience = 30.0;

  private:
    class Link;
    std::unique_ptr<Link> link_;
};

}  // namespace platform
