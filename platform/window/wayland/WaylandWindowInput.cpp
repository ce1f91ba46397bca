// SPDX-License-Identifier: MIT
// A window's keyboard and pointer, and what the keyboard and the focus tell of locks.
#include <utility>

#include "platform/window/wayland/WaylandSystem.h"
#include "platform/window/wayland/WaylandWindow.h"

namespace platform::wayland {

const wl_callback_listener WaylandWindow::kSettled = {
    .done = [](void* data, wl_callback*, std::uint32_t) {
        auto& self = *static_cast<WaylandWindow*>(data);
        self.settling_.reset();
        self.hadChance_ = self.hadChance_ || self.hasExclusive_;
        self.focusChanged();
    }};

bool WaylandWindow::wantsKeyboard() const {
    if (!takesKeyboard_ || !isOverlay()) return takesKeyboard_;
    if (connection_.hidesUnderLocks()) return !mayBeLocked_;
    return !connection_.locksAreOverlays() || connection_.seat().hasAnyKeyboard();
}

void WaylandWindow::followKeyboard() {
    if (!surface_ || std::exchange(hasExclusive_, wantsKeyboard()) == wantsKeyboard()) return;
    surface_->setTakesKeyboard(hasExclusive_);
    // Until the compositor has acted, the keyboard and the focus tell nothing.
    hadChance_ = false;
    settling_.reset(wl_display_sync(connection_.display()));
    wl_callback_add_listener(settling_.get(), &kSettled, this);
}

bool WaylandWindow::isSurelyUnlocked() const {
    if (!isOverlay() || !connection_.locksAreOverlays()) return true;
    if (!wantsKeyboard()) return connection_.toplevels().isAnyActive();
    return connection_.seat().keyTarget() != nullptr;
}

void WaylandWindow::focusChanged() {
    if (!surface_) return;
    followKeyboard();
    const bool unlocked = isSurelyUnlocked();
    surface_->setAboveAll(unlocked);
    hadChance_ = hadChance_ || unlocked;
    setResting(takesKeyboard_ && ((hadChance_ && !unlocked) || (hidden_ && mayBeLocked_)));
}

void WaylandWindow::surfaceOnDisplay(bool isThere) {
    if (!isOverlay() || !connection_.hidesUnderLocks()) return;
    hidden_ = !isThere;
    // A display that sleeps leaves the keyboard where it is, and a lock takes the keyboard first.
    mayBeLocked_ = !isThere && !connection_.seat().keyTarget();
    focusChanged();
    delegate_.visibilityChanged();
}

void WaylandWindow::setResting(bool resting) {
    if (std::exchange(resting_, resting) == resting) return;
    delegate_.visibilityChanged();
    system_.restingChanged();
}

void WaylandWindow::takeKeyboard() {
    if (!std::exchange(takesKeyboard_, true)) followKeyboard();
}

bool WaylandWindow::hasKeyboard() const {
    return connection_.seat().hasKeyboard(*this);
}

void WaylandWindow::setIgnoresMouse(bool ignores) {
    options_.ignoresMouse = ignores;
    if (surface_) surface_->setTakesInput(!ignores);
}

void WaylandWindow::setCursorHidden(bool hidden) {
    if (std::exchange(options_.cursorHidden, hidden) != hidden) cursorChanged();
}

void WaylandWindow::cursorChanged() {
    connection_.seat().cursorChanged(*this);
}

bool WaylandWindow::hidesCursor() const {
    return options_.cursorHidden || system_.hidesCursor();
}

QPointF WaylandWindow::onScreen(QPointF at) const {
    const QRectF place = frame();
    return place.topLeft() + QPointF(at.x(), points().height() - at.y());
}

MouseEvent WaylandWindow::eventAt(QPointF at) const {
    return {.location = {at.x(), points().height() - at.y()}, .screenLocation = onScreen(at)};
}

void WaylandWindow::keyPressed(const KeyEvent& event) {
    delegate_.keyDown(event);
}

void WaylandWindow::pointerMoved(QPointF at) {
    delegate_.mouse(NativeWindowDelegate::Mouse::Moved, eventAt(at));
}

void WaylandWindow::buttonPressed(Button button, QPointF at) {
    using Mouse = NativeWindowDelegate::Mouse;
    const Mouse what = button == Button::Left    ? Mouse::LeftDown
                       : button == Button::Right ? Mouse::RightDown
                                                 : Mouse::OtherDown;
    delegate_.mouse(what, eventAt(at));
}

void WaylandWindow::keyboardChanged() {
    system_.keyboardMoved();
}

}  // namespace platform::wayland
