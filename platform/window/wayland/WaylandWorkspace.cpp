// SPDX-License-Identifier: MIT
#include "platform/window/wayland/WaylandWorkspace.h"

#include <utility>

#include "platform/window/wayland/WaylandSystem.h"

namespace platform::wayland {

void WaylandWorkspace::hideCursor() {
    if (hidings_++ == 0) system_.cursorChanged();
}

void WaylandWorkspace::unhideCursor() {
    if (hidings_ > 0 && --hidings_ == 0) system_.cursorChanged();
}

QPointF WaylandWorkspace::mouseLocation() const {
    return system_.pointerPlace();
}

bool WaylandWorkspace::isComposited() const {
    return system_.isConnected();
}

bool WaylandWorkspace::isSaverActive() const {
    return system_.isLockLikely();
}

void WaylandWorkspace::setSaverCovers(bool covers) {
    system_.setCovered(covers);
}

Observation WaylandWorkspace::observe(std::function<void(Workspace::Change)> action) {
    return observers_.add(std::move(action));
}

}  // namespace platform::wayland
