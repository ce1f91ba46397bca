// SPDX-License-Identifier: MIT
// From Qt's way of placing things on screens to Screen's; for platform/window and
// the window systems. Main thread.
#pragma once

#include <QRectF>
#include <optional>

#include "platform/window/Screen.h"

class QScreen;

namespace platform {

[[nodiscard]] Screen screenFrom(const QScreen& screen);

// Qt's points are y down; the result is as Screen::frame.
[[nodiscard]] QRectF fromQt(const QRectF& rect);
[[nodiscard]] QPointF fromQt(QPointF point);
[[nodiscard]] QRectF toQt(const QRectF& rect);

// The screen with most of a rectangle; nullptr without screens. The main screen
// for a rectangle that lies on none. `area` says where a screen lies, in the
// units of the rectangle. Qt owns the result.
[[nodiscard]] QScreen* screenWithMost(const QRectF& rect, QRectF (*area)(const QScreen& screen));
// The same for Qt's points.
[[nodiscard]] QScreen* screenUnderQt(const QRectF& rect);

}  // namespace platform
