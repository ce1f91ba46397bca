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

// Draws scenes into pictures, without a display server. Owns its context. One
// thread: the one that made it, on which every picture makes the context current.
class SceneSnapshot {
  public:
    // Null where no OpenGL can draw scenes.
    [[nodiscard]] static std::unique_ptr<SceneSnapshot> create(
        const SceneRenderer::Options& options);
    [[nodiscard]] static std::unique_ptr<SceneSnapshot> create() {
        return create(SceneRenderer::Options{});
    }
    ~SceneSnapshot();
    SceneSnapshot(const SceneSnapshot&) = delete;
    SceneSnapshot& operator=(const SceneSnapshot&) = delete;

    // A picture as ARGB32_Premultiplied of `points` × `scale` pixels, rounded;
    // a null image if that is empty or exceeds what the driver can draw into.
    [[nodiscard]] QImage picture(const DrawList& list, QSizeF points, double scale = 1.0,
                                 const SceneQuality& quality = {});

    // The two halves of picture(), for measuring: render() draws and waits until
    // drawing ends, false where picture() gives a null image; lastPicture() reads.
    bool render(const DrawList& list, QSize size, double scale, const SceneQuality& quality);
    [[nodiscard]] QImage lastPicture();

    [[nodiscard]] SceneRenderer& renderer() { return *renderer_; }
    [[nodiscard]] const std::string& rendererName() const;
    [[nodiscard]] bool isSoftware() const;
    // The number of errors that OpenGL has reported so far (strict builds).
    [[nodiscard]] int errors() const;

  private:
    SceneSnapshot(std::unique_ptr<GlContext> context, std::unique_ptr<SceneRenderer> renderer);
    struct Target;

    std::unique_ptr<GlContext> context_;
    std::unique_ptr<SceneRenderer> renderer_;
    std::unique_ptr<Target> target_;
};

}  // namespace platform
