// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <memory>

#include "platform/session/IdleWatch.h"

namespace platform {

// The watch that GNOME's compositor keeps on the session bus, org.gnome.Mutter.IdleMonitor.
// The compositor counts no inhibitors. It is asked in the background, and again each time it
// appears on the bus. Owns its connection. Main thread.
class MutterIdle final : public IdleWatch {
  public:
    struct Actions {
        IdleAction idle;
        // Called with whether the compositor watches, once the answer is known and then at each
        // change.
        std::function<void(bool present)> present;
    };
    // `busAddress` is empty without a bus; `seconds` is the time without input.
    MutterIdle(const QString& busAddress, double seconds, Actions actions);
    ~MutterIdle() override;

  private:
    class Link;
    std::unique_ptr<Link> link_;
};

}  // namespace platform
