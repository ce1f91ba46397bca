// SPDX-License-Identifier: MIT
#include "platform/window/DesktopIdle.h"

#include <utility>

#include "platform/time/Require.h"
#include "platform/window/WindowServer.h"
#include "platform/window/WindowSystem.h"

namespace platform {

DesktopIdle::DesktopIdle(WindowServer& server, const DesktopIdleOptions& options,
                         std::function<void()> action)
    : server_(server),
      options_(options),
      action_(std::move(action)),
      inhibitors_(server.clock(), options.busAddress, [this](bool any) { setInhibited(any); }) {
    require(options_.seconds > 0.0);
    WindowSystem& system = server_.system();
    if (system.capabilities().knowsIdle) {
        watch_ = system.watchIdle(options_.seconds, [this](bool idle) { setIdle(idle); });
        tellWatching(watch_ != nullptr);
        return;
    }
    bus_ = std::make_unique<MutterIdle>(
        options_.busAddress, options_.seconds,
        MutterIdle::Actions{.idle = [this](bool idle) { setIdle(idle); },
                            .present = [this](bool present) { setBusWatches(present); }});
}

DesktopIdle::~DesktopIdle() = default;

void DesktopIdle::tellWatching(bool watching) const {
    if (options_.watching) options_.watching(watching);
}

void DesktopIdle::setBusWatches(bool watches) {
    watch_.reset();
    savers_.reset();
    otherSaver_ = false;
    setIdle(false);
    if (watches) return tellWatching(true);
    watch_ = server_.system().watchIdle(options_.seconds, [this](bool idle) { setIdle(idle); });
    tellWatching(watch_ != nullptr);
    if (!watch_) return;
    savers_ =
        std::make_unique<OtherSavers>(options_.busAddress, [this](bool any) { otherSaver_ = any; });
}

void DesktopIdle::setIdle(bool idle) {
    if (std::exchange(idle_, idle) == idle) return;
    afterInhibitors_ = Timer();
    if (idle) tellIfFree();
}

void DesktopIdle::setInhibited(bool inhibited) {
    inhibited_ = inhibited;
    afterInhibitors_ = Timer();
    if (inhibited_ || !idle_) return;
    afterInhibitors_ =
        Timer(server_.clock(), {.interval = options_.seconds}, [this] { tellIfFree(); });
}

void DesktopIdle::tellIfFree() {
    if (inhibited_ || otherSaver_) return;
    // The action may drop this.
    const auto action = action_;
    action();
}

}  // namespace platform
