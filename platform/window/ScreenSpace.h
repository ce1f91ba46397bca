// SPDX-License-Identifier: MIT
// Conversions from Qt's places on screens to Screen's; for platform/window and the window
// systems. Main thread.
#pragma once

#include <QRectF>
#include <optional>

#include "platform/window/Screen.h"

class QScreen;

namespace platform {

[[nodiscard]] Screen screenFrom(const QScreen& screen);

// Converts Qt's points, y down, to the space of Screen::frame.
[[nodiscard]] QRectF fromQt(const QRectF& rect);
[[nodiscard]] QPointF fromQt(QPointF point);
[[nodiscard]] QRectF toQt(const QRectF& rect);

// The screen with most of a rectangle; nullptr without screens. The main screen for a
// rectangle outside all screens. `area` gives a screen's place, in the units of the
// rectangle. Qt owns the result.
[[nodiscard]] QScreen* screenWithMost(const QRectF& rect, QRectF (*area)(const QScreen& screen));
// The screen with most of a rectangle in Qt's points.
[[nodiscard]] QScreen* screenUnderQt(const QRectF& rect);

}  // namespace platform
