// SPDX-License-Identifier: MIT
// From Qt's and X's ways of placing things on screens to ours; private to
// platform/window/x11.
#pragma once

#include <QRect>
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

// The screen with most of a rectangle; nullptr without screens. The first for
// one that lies on none.
[[nodiscard]] QScreen* screenUnderQt(const QRectF& rect);
// The same for pixels of the root window.
[[nodiscard]] QScreen* screenUnderPixels(const QRect& rect);

}  // namespace platform
