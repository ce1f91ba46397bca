// SPDX-License-Identifier: MIT
#include "platform/window/systems/WindowSystems.h"

#include <QGuiApplication>

#include "platform/window/systems/Kinds.h"

namespace platform {

namespace {

// The kind that answered last; the first until one is asked.
const WindowSystemKind*& answering() {
    static const WindowSystemKind* kind = windowSystemKinds().front();
    return kind;
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
    for (const WindowSystemKind* kind : windowSystemKinds()) {
        hold_ = kind->reach();
        if (!hold_) continue;
        answering() = kind;
        return;
    }
}

void chooseQtScreens(QtScreens screens) {
    const bool none = screens == QtScreens::None;
    qputenv("QT_QPA_PLATFORM", none ? QByteArrayLiteral("offscreen") : answering()->qtPlugin());
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
