// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include <QString>

namespace platform {

// The user's wish for less movement on screen, as the desktop's settings have
// it: those of the settings portal, of GNOME and of KDE. Asked for in the
// background, so that nobody waits for it; no wish where there is no bus or no
// portal on it. Owns its connection. Main thread.
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
