// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <memory>
#include <span>

#include "platform/desktop/Frame.h"

namespace platform {

// What a window's picture is drawn on, with one way of drawing. Made, used and
// dropped on the window's render thread.
class Surface {
  public:
    enum class Result { Drawn, WindowGone, ServerGone };

    virtual ~Surface() = default;

    // Makes the window show the frame. `damage` is where it differs from the one
    // before; everything for the first.
    virtual Result draw(const Frame& frame, std::span<const QRect> damage) = 0;

    // Shows the frame drawn last again where the window has lost it.
    virtual Result repair(const Frame& frame, std::span<const QRect> lost) = 0;

    // Waits until the window shows it.
    virtual Result finish() = 0;

    // As WindowStatistics has it.
    [[nodiscard]] virtual QString drawer() const = 0;
};

}  // namespace platform
