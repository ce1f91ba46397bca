// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QSize>
#include <memory>
#include <optional>

#include "platform/render/SceneQuality.h"

namespace platform {

struct DrawList;

// The target of a scene's picture: a rectangle of a framebuffer, which the
// picture replaces. Pixels; `origin` is the rectangle's lower left corner.
struct SceneTarget {
    unsigned framebuffer = 0;
    QPoint origin{0, 0};
    QSize size;
    double scale = 1.0;  // pixels per point
};

// Draws draw lists with OpenGL 3.3, in linear light with bloom, by the formulas
// of platform/scene/Shading.h. Uploads each mesh and picture once, by id, and
// drops those that no list has shown for a while. Allocates nothing for a list
// of the same structure as the one before.
//
// Owns its OpenGL objects. Every member, the destructor included, needs the context
// current in which the renderer was created. One thread: the context's. Changes
// bindings, viewport, blending and depth state. Knows nothing of windows.
class SceneRenderer {
  public:
    struct Options {
        // The number of draws after which an unused mesh or picture is dropped.
        int keepDraws = 120;
        // The most that the driver counts as offering; lets tests try lesser
        // drivers.
        int maxSamples = 16;
        bool floatTargets = true;
        // Measures the GPU's time; see gpuSeconds().
        bool timed = false;
    };

    // Null if the driver refuses the shaders or every kind of target; standard
    // error says why.
    [[nodiscard]] static std::unique_ptr<SceneRenderer> create(const Options& options);
    [[nodiscard]] static std::unique_ptr<SceneRenderer> create() { return create(Options{}); }
    ~SceneRenderer();
    SceneRenderer(const SceneRenderer&) = delete;
    SceneRenderer& operator=(const SceneRenderer&) = delete;

    // False if nothing was drawn: the size is empty or exceeds the driver's
    // limit, or the context is lost. Another context may then succeed.
    bool draw(const DrawList& list, const SceneTarget& target, const SceneQuality& quality);

    // The draw calls of the last draw, resolving the samples included, clearing
    // excluded.
    [[nodiscard]] int drawCalls() const;

    // The quality of the last draw, which the driver's limits can lower.
    [[nodiscard]] const SceneQuality& quality() const;

    // The GPU's time for a draw some frames ago; none until known.
    [[nodiscard]] std::optional<double> gpuSeconds() const;

    // The number of stored objects.
    [[nodiscard]] int meshCount() const;
    [[nodiscard]] int pictureCount() const;

  private:
    struct Parts;
    explicit SceneRenderer(std::unique_ptr<Parts> parts);

    std::unique_ptr<Parts> parts_;
};

}  // namespace platform
