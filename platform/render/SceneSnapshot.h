// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QSize>
#include <QSizeF>
#include <memory>
#include <string>

#include "platform/render/SceneQuality.h"
#include "platform/render/gl/SceneRenderer.h"

namespace platform {

struct DrawList;
class EglDisplay;
class GlContext;

// Draws scenes into pictures, without any display server. Belongs to the thread
// that made it, on which its context becomes current with every picture.
class SceneSnapshot {
  public:
    // None where there is no OpenGL that can draw scenes.
    [[nodiscard]] static std::unique_ptr<SceneSnapshot> create(
        const SceneRenderer::Options& options);
    [[nodiscard]] static std::unique_ptr<SceneSnapshot> create() {
        return create(SceneRenderer::Options{});
    }
    ~SceneSnapshot();
    SceneSnapshot(const SceneSnapshot&) = delete;
    SceneSnapshot& operator=(const SceneSnapshot&) = delete;

    // As ARGB32_Premultiplied of `points` × `scale` pixels, rounded; a null image
    // if that is none or more than the driver can draw into.
    [[nodiscard]] QImage picture(const DrawList& list, QSizeF points, double scale = 1.0,
                                 const SceneQuality& quality = {});

    // The two halves of it, for measuring: draws, waiting until all is drawn, and
    // reads. The first is false where picture() gives none.
    bool render(const DrawList& list, QSize size, double scale, const SceneQuality& quality);
    [[nodiscard]] QImage lastPicture();

    [[nodiscard]] SceneRenderer& renderer() { return *renderer_; }
    [[nodiscard]] const std::string& rendererName() const;
    [[nodiscard]] bool isSoftware() const;
    // How many errors OpenGL has reported so far (strict builds).
    [[nodiscard]] int errors() const;

  private:
    SceneSnapshot(std::unique_ptr<GlContext> context, std::unique_ptr<SceneRenderer> renderer);
    struct Target;

    std::unique_ptr<GlContext> context_;
    std::unique_ptr<SceneRenderer> renderer_;
    std::unique_ptr<Target> target_;
};

}  // namespace platform
