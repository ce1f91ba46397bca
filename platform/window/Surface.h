// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <memory>
#include <span>

#include "platform/render/egl/Egl.h"
#include "platform/view/Frame.h"

namespace platform {

// The drawer that shows layers in windows. Auto takes the CPU where OpenGL would
// be software: a full-screen swap alone costs that more than the CPU's drawing
// of what changed.
enum class DrawerChoice { Auto, OpenGl, Cpu };

// How a surface is to be drawn on. Plain values.
struct SurfaceOptions {
    DrawerChoice drawer = DrawerChoice::Auto;
    ResetQuery resetStatus{};  // asked, on render threads, in OpenGL's place
};

// The ground that a window's picture is drawn on, with one way of drawing. Made, used and
// dropped on the window's render thread, which owns it.
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

    // The drawer of the last frame, and its rung of the quality ladder, as in
    // WindowStatistics.
    [[nodiscard]] virtual const QString& drawer() const = 0;
    [[nodiscard]] virtual int rung() const { return 0; }

    // Whether the last frame had a scene in it and there was no means to draw it.
    [[nodiscard]] virtual bool failsScenes() const { return false; }

    // The frame took this long, from being handed over to being shown.
    virtual void frameTook(double) {}
};

}  // namespace platform
