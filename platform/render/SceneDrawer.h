// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <memory>

#include "platform/render/SceneQuality.h"
#include "platform/render/egl/Egl.h"

namespace platform {

struct DrawList;
struct PixelBuffer;

// Draws scenes into pictures in memory, with whatever the machine has. Made, used
// and dropped on one thread; its owner is whoever asked for it.
class SceneDrawer {
  public:
    virtual ~SceneDrawer() = default;

    // Replaces the whole picture; every pixel becomes opaque. `scale` is pixels
    // per point, > 0. False if nothing could be drawn: the picture is empty or
    // larger than the drawer can draw, or the drawer is lost.
    virtual bool draw(const DrawList& list, const PixelBuffer& picture, double scale,
                      const SceneQuality& quality) = 0;

    // For people.
    [[nodiscard]] virtual const QString& name() const = 0;
    // Whether the processor does the drawing.
    [[nodiscard]] virtual bool isSoftware() const = 0;
    // Whether the drawer will never draw again, and a new one may.
    [[nodiscard]] virtual bool isLost() const { return false; }
};

struct SceneDrawerOptions {
    // For a picture that is looked at for long: the finest bloom, at any cost.
    bool still = false;
    ResetQuery resetStatus{};  // asked in OpenGL's place
};

// The machine's best drawer of scenes, and the one place that chooses. None where
// the machine cannot draw scenes. Any thread.
[[nodiscard]] std::unique_ptr<SceneDrawer> makeSceneDrawer(const SceneDrawerOptions& options);

}  // namespace platform
