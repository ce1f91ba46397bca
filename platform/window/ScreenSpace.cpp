// SPDX-License-Identifier: MIT
#include "platform/window/ScreenSpace.h"

#include <QGuiApplication>
#include <QScreen>

namespace platform {

namespace {

QRect mainGeometry() {
    const QScreen* const primary = QGuiApplication::primaryScreen();
    return primary ? primary->geometry() : QRect();
}

}  // namespace

Screen screenFrom(const QScreen& screen) {
    // A display that reports no rate counts as one of 60 Hz.
    const double rate = screen.refreshRate();
    return {.name = screen.name(),
            .frame = fromQt(QRectF(screen.geometry())),
            .scale = screen.devicePixelRatio(),
            .refreshRate = rate >= 1.0 ? rate : 60.0};
}

QRectF fromQt(const QRectF& rect) {
    const QRect main = mainGeometry();
    return {rect.x() - main.x(), main.y() + main.height() - rect.y() - rect.height(), rect.width(),
            rect.height()};
}

QPointF fromQt(QPointF point) {
    return fromQt(QRectF(point, QSizeF(0, 0))).topLeft();
}

QRectF toQt(const QRectF& rect) {
    const QRect main = mainGeometry();
    return {rect.x() + main.x(), main.y() + main.height() - rect.y() - rect.height(), rect.width(),
            rect.height()};
}

QScreen* screenWithMost(const QRectF& rect, QRectF (*area)(const QScreen&)) {
    QScreen* best = QGuiApplication::primaryScreen();
    double most = 0.0;
    for (QScreen* screen : QGuiApplication::screens()) {
        const QRectF shared = area(*screen) & rect;
        const double size = shared.width() * shared.height();
        if (size <= most) continue;
        most = size;
        best = screen;
    }
    return best;
}

QScreen* screenUnderQt(const QRectF& rect) {
    return screenWithMost(rect, [](const QScreen& s) { return QRectF(s.geometry()); });
}

}  // namespace platform
