// SPDX-License-Identifier: MIT
#include "platform/window/systems/WindowSystems.h"

#include <QGuiApplication>

#include "platform/window/systems/Kinds.h"

namespace platform {

namespace {

// The choices last for the process, as Qt's own choice does.
const WindowSystemKind* onlyKind = nullptr;   // the only kind to be probed; null for all
const WindowSystemKind* answering = nullptr;  // the kind that answered last; null before

const WindowSystemKind* kindOf(const QString& name) {
    for (const WindowSystemKind* kind : windowSystemKinds())
        if (QLatin1String(kind->name()) == name) return kind;
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
    for (const WindowSystemKind* kind : windowSystemKinds()) {
        if (onlyKind && kind != onlyKind) continue;
        hold_ = kind->reach();
        if (!hold_) continue;
        answering = kind;
        return;
    }
}

QStringList windowSystemNames() {
    QStringList names;
    for (const WindowSystemKind* kind : windowSystemKinds())
        names << QString::fromLatin1(kind->name());
    return names;
}

QString sessionAddress() {
    for (const WindowSystemKind* kind : windowSystemKinds()) {
        if (onlyKind && kind != onlyKind) continue;
        if (QString address = kind->address(); !address.isEmpty()) return address;
    }
    return {};
}

void useOnly(const QString& name) {
    onlyKind = kindOf(name);
}

void useOnlyForHosts() {
    for (const WindowSystemKind* kind : windowSystemKinds())
        if (kind->hasHosts() && !onlyKind) onlyKind = kind;
}

void chooseQtScreens(QtScreens screens) {
    const WindowSystemKind& kind = answering ? *answering : *windowSystemKinds().back();
    const bool shows =
        screens == QtScreens::Session || (screens == QtScreens::Windows && kind.needsQt());
    qputenv("QT_QPA_PLATFORM", shows ? kind.qtPlugin() : QByteArrayLiteral("offscreen"));
}

const WindowSystemKind* qtsKind() {
    const QByteArray plugin = QGuiApplication::platformName().toLatin1();
    for (const WindowSystemKind* kind : windowSystemKinds())
        if (kind->qtPlugin() == plugin) return kind;
    return nullptr;
}

const WindowSystemKind& programsKind() {
    if (answering) return *answering;
    const WindowSystemKind* const kind = qtsKind();
    return kind ? *kind : *windowSystemKinds().back();
}

std::unique_ptr<WindowSystem> openWindowSystem(MediaClock& clock) {
    return programsKind().open(clock);
}

QtLoss lossIn(const QString& message) {
    for (const WindowSystemKind* const kind : windowSystemKinds())
        if (const QtLoss loss = kind->lossIn(message); loss != QtLoss::None) return loss;
    return QtLoss::None;
}

std::optional<HostRef> readHost(const QString& text) {
    return read(text, &WindowSystemKind::readHost);
}

std::optional<WindowRef> readWindow(const QString& text) {
    return read(text, &WindowSystemKind::readWindow);
}

}  // namespace platform
