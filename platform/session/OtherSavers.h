// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <functional>
#include <memory>

namespace platform {

// Whether another screen saver or lock of a desktop runs on the session bus and starts by
// itself. Its names are those of GNOME, MATE, Cinnamon and Xfce. The name that all desktops
// share, org.freedesktop.ScreenSaver, does not count: it exists without a saver too.
// Owns its connection. Main thread.
class OtherSavers {
  public:
    // Calls the action at each change; there is none at first.
    OtherSavers(const QString& busAddress, std::function<void(bool any)> action);
    ~OtherSavers();
    OtherSavers(const OtherSavers&) = delete;
    OtherSavers& operator=(const OtherSavers&) = delete;

  private:
    class Link;
    std::unique_ptr<Link> link_;
};

}  // namespace platform
