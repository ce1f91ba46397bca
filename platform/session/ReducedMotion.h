// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include <QString>

namespace platform {

// The user's wish for less movement on screen, from the settings portal: the portal's own
// setting, GNOME's and KDE's. The portal is asked in the background, so that no caller waits.
// Without a bus, or without a portal on it, there is no wish. Owns its connection. Main
// thread.
class ReducedMotion {
  public:
    // Calls the action each time the wish changes; there is none at first.
    ReducedMotion(const QString& busAddress, std::function<void(bool wished)> action);
    ~ReducedMotion();
    ReducedMotion(const ReducedMotion&) = delete;
    ReducedMotion& operator=(const ReducedMotion&) = delete;

  private:
    class Link;
    std::unique_ptr<Link> link_;
};

}  // namespace platform
