// SPDX-License-Identifier: MIT
#pragma once

#include "platform/render/SceneDrawer.h"

namespace platform {

class SceneRenderer;
class SceneSnapshot;

// Draws scenes into memory with OpenGL, in a context that the drawer owns and keeps
// current on its thread. One thread.
class GlSceneDrawer final : public SceneDrawer {
  public:
    // None where there is no OpenGL that can draw scenes.
    [[nodiscard]] static std::unique_ptr<GlSceneDrawer> create(ResetQuery resetStatus);
    ~GlSceneDrawer() override;

    bool draw(const DrawList& list, const PixelBuffer& picture, double scale,
              const SceneQuality& quality) override;
    [[nodiscard]] const QString& name() const override { return name_; }
    [[nodiscard]] bool isSoftware() const override { return context_->isSoftware(); }
    [[nodiscard]] bool isLost() const override;

  private:
    GlSceneDrawer(std::unique_ptr<GlContext> context, std::unique_ptr<SceneRenderer> renderer);

    const std::unique_ptr<GlContext> context_;
    std::unique_ptr<SceneRenderer> renderer_;
    const QString name_;
};

// The same through a framebuffer, which brings the finest bloom and a copy. One
// thread.
class GlStillDrawer final : public SceneDrawer {
  public:
    // None where there is no OpenGL that can draw scenes.
    [[nodiscard]] static std::unique_ptr<GlStillDrawer> create();
    ~GlStillDrawer() override;

    bool draw(const DrawList& list, const PixelBuffer& picture, double scale,
              const SceneQuality& quality) override;
    [[nodiscard]] const QString& name() const override { return name_; }
    [[nodiscard]] bool isSoftware() const override;

  private:
    explicit GlStillDrawer(std::unique_ptr<SceneSnapshot> snapshot);

    const std::unique_ptr<SceneSnapshot> snapshot_;
    const QString name_;
};

}  // namespace platform
