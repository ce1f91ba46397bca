// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <span>

#include "platform/render/egl/Egl.h"
#include "platform/view/Frame.h"

namespace platform {

// The drawer that shows layers in windows. Auto takes the CPU where OpenGL would be
// software, since a software full-screen swap alone costs more than the CPU's drawing of
// the changes.
enum class DrawerChoice { Auto, OpenGl, Cpu };

// The options of a surface. Plain values.
struct SurfaceOptions {
    DrawerChoice drawer = DrawerChoice::Auto;
    ResetQuery resetStatus{};  // asked on render threads, in OpenGL's place
    // Called on the render thread where OpenGL was asked for by name, and the processor
    // draws because there is none.
    std::function<void()> withoutOpenGl{};
};

// A window's picture with one way of drawing it. Made, used and dropped on the window's
// render thread, which owns it.
class Surface {
  public:
    enum class Result { Drawn, WindowGone, ServerGone };

    virtual ~Surface() = default;

    // Makes the window show the frame. `damage` is the difference from the previous frame;
    // everything for the first.
    virtual Result draw(const Frame& frame, std::span<const QRect> damage) = 0;

    // Shows the last frame again in `lost`, where the window lost its picture.
    virtual Result repair(const Frame& frame, std::span<const QRect> lost) = 0;

    // Waits until the window shows the last frame.
    virtual Result finish() = 0;

    // The last frame's drawer and rung of the quality ladder, as in WindowStatistics.
    [[nodiscard]] virtual const QString& drawer() const = 0;
    [[nodiscard]] virtual int rung() const { return 0; }

    // Whether the processor does the drawing.
    [[nodiscard]] virtual bool isSoftware() const { return true; }

    // Whether the last frame had a scene that could not be drawn.
    [[nodiscard]] virtual bool failsScenes() const { return false; }

    // Reports the seconds from handing the last frame over to showing it.
    virtual void frameTook(double) {}
};

}  // namespace platform
