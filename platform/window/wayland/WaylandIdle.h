// SPDX-License-Identifier: MIT
#pragma once

#include "platform/session/IdleWatch.h"
#include "platform/window/wayland/Connection.h"

namespace platform::wayland {

// The compositor's own watch on the input of its seat, with the inhibitors that the
// compositor knows: by ext-idle-notify-v1, else by org_kde_kwin_idle. The connection
// outlives it. Main thread.
class WaylandIdle final : public IdleWatch {
  public:
    // Whether the compositor offers a watch.
    [[nodiscard]] static bool canWatch(const Connection& connection);

    // Only where canWatch(). `seconds` is the time without input.
    WaylandIdle(Connection& connection, double seconds, IdleAction action);
    ~WaylandIdle() override;

  private:
    struct Listeners;
    friend struct Listeners;
    void tell(bool idle);

    Connection& connection_;
    const IdleAction action_;
    bool idle_ = false;
    Proxy<ext_idle_notification_v1> notification_;
    Proxy<org_kde_kwin_idle_timeout> timeout_;
};

}  // namespace platform::wayland
