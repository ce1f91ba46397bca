// SPDX-License-Identifier: MIT
#include "platform/window/DesktopWorkspace.h"

#include <QGuiApplication>
#include <utility>

#include "platform/session/NotificationNames.h"
#include "platform/time/Require.h"
#include "platform/window/Window.h"
#include "platform/window/WindowSystem.h"

namespace platform {

DesktopWorkspace::DesktopWorkspace(WindowServer& server,
                                   DistributedNotificationCenter& notifications)
    : server_(server), native_(server.system().workspace()), notifications_(notifications) {
    changes_ = native_.observe([this](Change change) { observers_.tell(change); });
    notifications_.addObserver(this, QLatin1String(kSaverDidStart),
                               [this] { setSaverSaysActive(true); });
    notifications_.addObserver(this, QLatin1String(kSaverWillStop),
                               [this] { setSaverSaysActive(false); });
}

DesktopWorkspace::~DesktopWorkspace() {
    notifications_.removeObserver(this);
}

void DesktopWorkspace::setSaverSaysActive(bool active) {
    const bool before = isCovered();
    saverSaysActive_ = active;
    covered(before);
}

void DesktopWorkspace::setLocked(bool locked) {
    const bool before = isCovered();
    locked_ = locked;
    covered(before);
}

void DesktopWorkspace::covered(bool before) {
    if (isCovered() == before) return;
    native_.setSaverCovers(isCovered());
    observers_.tell(Change::Saver);
}

std::optional<RunningApplication> DesktopWorkspace::frontmostApplication() {
    return native_.frontmostApplication();
}

void DesktopWorkspace::activate(const RunningApplication& application) {
    native_.activate(application);
}

void DesktopWorkspace::activateIgnoringOthers() {
    require(qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr);
    if (Window* const key = server_.keyWindow()) key->takeKeyboard();
}

void DesktopWorkspace::hideCursor() {
    native_.hideCursor();
}

void DesktopWorkspace::unhideCursor() {
    native_.unhideCursor();
}

QPointF DesktopWorkspace::mouseLocation() const {
    return native_.mouseLocation();
}

bool DesktopWorkspace::isComposited() const {
    return native_.isComposited();
}

bool DesktopWorkspace::isSaverActive() const {
    return isCovered() || native_.isSaverActive();
}

Observation DesktopWorkspace::observe(std::function<void(Change)> action) {
    return observers_.add(std::move(action));
}

}  // namespace platform
