// SPDX-License-Identifier: MIT
#include "platform/window/systems/WindowSystems.h"

#include <QGuiApplication>

#include "platform/window/systems/Kinds.h"

namespace platform {

namespace {

// For the life of the process, as Qt's own choice is.
const WindowSystemKind* onlyKind = nullptr;
const WindowSystemKind* chosenKind = nullptr;

const WindowSystemKind* kindOf(const QString& name) {
    for (const WindowSystemKind* kind : windowSystemKinds())
        if (QLatin1String(kind->name()) == name) return kind;
    return nullptr;
}

// The first that answers, kept in `hold`; null where none does.
const WindowSystemKind* reachable(std::shared_ptr<void>& hold) {
    for (const WindowSystemKind* kind : windowSystemKinds())
        if ((!onlyKind || kind == onlyKind) && (hold = kind->reach())) return kind;
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

bool isWindowSystemName(const QString& name) {
    return kindOf(name) != nullptr;
}

void useOnly(const QString& name) {
    onlyKind = kindOf(name);
}

void useOnlyForHosts() {
    for (const WindowSystemKind* kind : windowSystemKinds())
        if (kind->hasHosts() && !onlyKind) onlyKind = kind;
}

void chooseQtScreens(QtScreens screens) {
    std::shared_ptr<void> hold;
    chosenKind = screens == QtScreens::None ? nullptr : reachable(hold);
    if (screens != QtScreens::None && !chosenKind) chosenKind = windowSystemKinds().back();
    const bool shows = chosenKind && (screens == QtScreens::Session || chosenKind->needsQt());
    qputenv("QT_QPA_PLATFORM", shows ? chosenKind->qtPlugin() : QByteArrayLiteral("offscreen"));
}

const WindowSystemKind* qtsKind() {
    const QByteArray plugin = QGuiApplication::platformName().toLatin1();
    for (const WindowSystemKind* kind : windowSystemKinds())
        if (kind->qtPlugin() == plugin) return kind;
    return nullptr;
}

const WindowSystemKind& programsKind() {
    if (chosenKind) return *chosenKind;
    const WindowSystemKind* const kind = qtsKind();
    return kind ? *kind : *windowSystemKinds().back();
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
