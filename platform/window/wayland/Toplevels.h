// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <memory>
#include <vector>

#include "platform/time/Observers.h"
#include "platform/window/wayland/Protocols.h"

namespace platform::wayland {

// Whether any program's window has the focus, by wlr-foreign-toplevel-management. Under a lock,
// a launcher or an empty desktop no window has it. The connection owns it. Main thread.
class Toplevels {
  public:
    Toplevels();
    ~Toplevels();
    Toplevels(const Toplevels&) = delete;
    Toplevels& operator=(const Toplevels&) = delete;

    // Follows the windows from now on.
    void bind(Proxy<zwlr_foreign_toplevel_manager_v1> manager);

    // Whether any window has the focus; false where no windows are followed.
    [[nodiscard]] bool isAnyActive() const { return anyActive_; }
    // Calls the action at each change, in a later turn of the event loop. A focus that goes
    // from one window to another is no change.
    [[nodiscard]] Observation observe(std::function<void()> action);

  private:
    struct Toplevel;
    struct Listeners;
    friend struct Listeners;
    void changed();
    void settle();

    Proxy<zwlr_foreign_toplevel_manager_v1> manager_;
    std::vector<std::unique_ptr<Toplevel>> all_;
    bool anyActive_ = false;
    bool waiting_ = false;
    QObject context_;
    Observers<> observers_;
};

}  // namespace platform::wayland
