// SPDX-License-Identifier: MIT
#include "platform/window/systems/WindowSystems.h"

#include <QGuiApplication>

#include "platform/window/systems/Kinds.h"

namespace platform {

namespace {

// The first that answers, kept in `hold`; null where none does.
const WindowSystemKind* reachable(std::shared_ptr<void>& hold) {
    for (const WindowSystemKind* kind : windowSystemKinds())
        if ((hold = kind->reach())) return kind;
    return nullptr;
}

template <typename Ref>
std::optional<Ref> read(const QString& text,
                        std::optional<Ref> (WindowSystemKind::*reader)(const QString&) const) {
    for (const WindowSystemKind* kind : windowSystemKinds())
        if (auto found = (kind->*reader)(text)) return found;
    return std::nullopt;
}

}  // namespace

DisplayCheck::DisplayCheck() {
    reachable(hold_);
}

void chooseQtScreens(QtScreens screens) {
    std::shared_ptr<void> hold;
    const WindowSystemKind* kind = screens == QtScreens::Session ? reachable(hold) : nullptr;
    if (!kind && screens == QtScreens::Session) kind = windowSystemKinds().front();
    qputenv("QT_QPA_PLATFORM", kind ? kind->qtPlugin() : QByteArrayLiteral("offscreen"));
}

const WindowSystemKind* qtsKind() {
    const QByteArray plugin = QGuiApplication::platformName().toLatin1();
    for (const WindowSystemKind* kind : windowSystemKinds())
        if (kind->qtPlugin() == plugin) return kind;
    return nullptr;
}

const WindowSystemKind& programsKind() {
    const WindowSystemKind* const kind = qtsKind();
    return kind ? *kind : *windowSystemKinds().front();
}

std::unique_ptr<WindowSystem> openWindowSystem(MediaClock& clock) {
    return programsKind().open(clock);
}

std::optional<HostRef> readHost(const QString& text) {
    return read(text, &WindowSystemKind::readHost);
}

std::optional<WindowRef> readWindow(const QString& text) {
    return read(text, &WindowSystemKind::readWindow);
}

}  // namespace platform
