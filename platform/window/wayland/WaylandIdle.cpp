// SPDX-License-Identifier: MIT
#include "platform/window/wayland/WaylandIdle.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace platform::wayland {

// The compositor's events, passed to the watch in the data pointer.
struct WaylandIdle::Listeners {
    static WaylandIdle& of(void* data) { return *static_cast<WaylandIdle*>(data); }
    static const ext_idle_notification_v1_listener kNotification;
    static const org_kde_kwin_idle_timeout_listener kTimeout;
};

const ext_idle_notification_v1_listener WaylandIdle::Listeners::kNotification = {
    .idled = [](void* data, ext_idle_notification_v1*) { of(data).tell(true); },
    .resumed = [](void* data, ext_idle_notification_v1*) { of(data).tell(false); },
};

const org_kde_kwin_idle_timeout_listener WaylandIdle::Listeners::kTimeout = {
    .idle = [](void* data, org_kde_kwin_idle_timeout*) { of(data).tell(true); },
    .resumed = [](void* data, org_kde_kwin_idle_timeout*) { of(data).tell(false); },
};

bool WaylandIdle::canWatch(const Connection& connection) {
    return connection.isAlive() && connection.seat().get() &&
           (connection.idleNotifier() || connection.kdeIdle());
}

WaylandIdle::WaylandIdle(Connection& connection, double seconds, IdleAction action)
    : connection_(connection), action_(std::move(action)) {
    constexpr double kLongest = std::numeric_limits<std::int32_t>::max();
    const auto milliseconds =
        static_cast<std::uint32_t>(std::llround(std::clamp(seconds * 1000.0, 0.0, kLongest)));
    wl_seat* const seat = connection.seat().get();
    if (connection.idleNotifier()) {
        notification_.reset(ext_idle_notifier_v1_get_idle_notification(connection.idleNotifier(),
                                                                       milliseconds, seat));
        ext_idle_notification_v1_add_listener(notification_.get(), &Listeners::kNotification, this);
    } else {
        timeout_.reset(
            org_kde_kwin_idle_get_idle_timeout(connection.kdeIdle(), seat, milliseconds));
        org_kde_kwin_idle_timeout_add_listener(timeout_.get(), &Listeners::kTimeout, this);
    }
    connection.flush();
}

WaylandIdle::~WaylandIdle() {
    notification_.reset();
    timeout_.reset();
    connection_.flush();
}

void WaylandIdle::tell(bool idle) {
    if (std::exchange(idle_, idle) != idle) action_(idle);
}

}  // namespace platform::wayland
