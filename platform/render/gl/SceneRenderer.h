// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QSize>
#include <memory>
#include <optional>

#include "platform/render/SceneQuality.h"

namespace platform {

struct DrawList;

// Where a scene's picture goes: a rectangle of a framebuffer, which the picture
// replaces. Pixels, the origin being the rectangle's lower left corner.
struct SceneTarget {
    unsigned framebuffer = 0;
    QPoint origin{0, 0};
    QSize size;
    double scale = 1.0;  // pixels per point
};

// Draws a scene's draw lists with OpenGL 3.3, in linear light with bloom, as
// platform/scene/Shading.h says. Meshes and pictures are uploaded once, known
// again by their ids, and dropped when no list has shown them for a while. A list
// of the same make as the one before allocates nothing.
//
// Every member, the destructor included, wants the context current in which it
// was created: it belongs to one thread. Leaves bindings, viewport, blending and
// depth state changed. It knows nothing of windows.
class SceneRenderer {
  public:
    struct Options {
        // Draws without showing a mesh or picture before it is dropped.
        int keepDraws = 120;
        // What the driver is taken to offer at most: for trying what is drawn on
        // lesser ones.
        int maxSamples = 16;
        bool floatTargets = true;
        // Measures the time that the GPU takes; see gpuSeconds().
        bool timed = false;
    };

    // None if the driver refuses the shaders or every kind of target; it says
    // why on standard error.
    [[nodiscard]] static std::unique_ptr<SceneRenderer> create(const Options& options);
    [[nodiscard]] static std::unique_ptr<SceneRenderer> create() { return create(Options{}); }
    ~SceneRenderer();
    SceneRenderer(const SceneRenderer&) = delete;
    SceneRenderer& operator=(const SceneRenderer&) = delete;

    // False if nothing could be drawn: the size is empty or more than the driver
    // can draw into, or the context is lost. Then another context may do.
    bool draw(const DrawList& list, const SceneTarget& target, const SceneQuality& quality);

    // Of the last draw: everything that makes the driver draw, resolving the
    // samples included, clearing not.
    [[nodiscard]] int drawCalls() const;

    // What the last draw really had, where the driver offers less than asked.
    [[nodiscard]] const SceneQuality& quality() const;

    // What the GPU took for a draw some frames ago; none while none is known.
    [[nodiscard]] std::optional<double> gpuSeconds() const;

    // Kept at this moment.
    [[nodiscard]] int meshCount() const;
    [[nodiscard]] int pictureCount() const;

  private:
    struct Parts;
    explicit SceneRenderer(std::unique_ptr<Parts> parts);

    std::unique_ptr<Parts> parts_;
};

}  // namespace platform
