// SPDX-License-Identifier: MIT
#include "platform/window/wayland/WaylandSystem.h"

#include <algorithm>
#include <utility>

#include "platform/window/wayland/WaylandIdle.h"
#include "platform/window/wayland/WaylandWindow.h"

namespace platform::wayland {

WaylandSystem::WaylandSystem(MediaClock& clock, const QString& address)
    : connection_(clock, address), found_(connection_.isAlive()), workspace_(*this) {
    outputs_ = connection_.outputs().observe([this] { outputsChanged(); });
    focus_ = connection_.toplevels().observe([this] { focusChanged(); });
}

WaylandSystem::~WaylandSystem() = default;

Capabilities WaylandSystem::capabilities() const {
    return {.liesAboveAll = connection_.layers() != nullptr,
            .passesClicks = true,
            .drawsOnGpu = connection_.sharesGpu(),
            .knowsIdle = WaylandIdle::canWatch(connection_)};
}

std::unique_ptr<IdleWatch> WaylandSystem::watchIdle(double seconds, IdleAction action) {
    if (!WaylandIdle::canWatch(connection_)) return nullptr;
    return std::make_unique<WaylandIdle>(connection_, seconds, std::move(action));
}

std::unique_ptr<NativeWindow> WaylandSystem::makeWindow(const NativeWindowOptions& options,
                                                        NativeWindowDelegate& delegate) {
    return std::make_unique<WaylandWindow>(*this, options, delegate);
}

void WaylandSystem::added(WaylandWindow& window) {
    windows_.push_back(&window);
}

void WaylandSystem::removed(WaylandWindow& window) {
    std::erase(windows_, &window);
    windowsChanged();
}

void WaylandSystem::windowsChanged() {
    // A window that is kept down tells its delegate, which may show or hide other windows.
    const std::vector<WaylandWindow*> all = windows_;
    for (WaylandWindow* const window : all) {
        if (std::find(windows_.begin(), windows_.end(), window) == windows_.end()) continue;
        const bool under = std::any_of(windows_.begin(), windows_.end(), [&](const auto* other) {
            return other->hidesOverlays() && other->level() > window->level() &&
                   other->outputName() == window->outputName();
        });
        window->setKeptDown(window->isOverlay() && (covered_ || under));
    }
}

void WaylandSystem::setCovered(bool covered) {
    if (std::exchange(covered_, covered) != covered) windowsChanged();
}

void WaylandSystem::outputsChanged() {
    const std::vector<WaylandWindow*> all = windows_;
    for (WaylandWindow* const window : all)
        if (std::find(windows_.begin(), windows_.end(), window) != windows_.end())
            window->outputsChanged();
}

void WaylandSystem::focusChanged() {
    if (!connection_.locksAreOverlays()) return;
    const std::vector<WaylandWindow*> all = windows_;
    for (WaylandWindow* const window : all)
        if (std::find(windows_.begin(), windows_.end(), window) != windows_.end())
            window->focusChanged();
}

void WaylandSystem::restingChanged() {
    const bool any = std::any_of(windows_.begin(), windows_.end(),
                                 [](const WaylandWindow* window) { return window->isResting(); });
    if (std::exchange(lockLikely_, any) != any) workspace_.tell(Workspace::Change::Saver);
}

void WaylandSystem::keyboardMoved() {
    focusChanged();
    workspace_.tell(Workspace::Change::FrontmostApplication);
}

void WaylandSystem::cursorChanged() {
    for (WaylandWindow* const window : windows_)
        window->cursorChanged();
}

QPointF WaylandSystem::pointerPlace() const {
    for (const WaylandWindow* const window : windows_)
        if (connection_.seat().pointerTarget() == window)
            pointerPlace_ = window->onScreen(connection_.seat().pointerPlace());
    return pointerPlace_;
}

}  // namespace platform::wayland
