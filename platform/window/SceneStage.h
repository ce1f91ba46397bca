// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <memory>

#include "platform/layers/PixelGrid.h"
#include "platform/render/QualityLadder.h"
#include "platform/render/cpu/CpuDrawer.h"
#include "platform/render/egl/Egl.h"
#include "platform/render/gl/SceneRenderer.h"
#include "platform/view/SceneFrame.h"

namespace platform {

// Draws a window's scenes, and picks the quality that holds the frame rate.
// Made, used, owned and dropped on the window's render thread.
class SceneStage {
  public:
    // With a context of its own, for pictures in memory. None where there is no
    // OpenGL that can draw scenes.
    [[nodiscard]] static std::unique_ptr<SceneStage> inMemory(ResetQuery resetStatus = {});
    // In the context that is current, and stays so.
    [[nodiscard]] static std::unique_ptr<SceneStage> onContext(const GlContext& context);
    ~SceneStage();
    SceneStage(const SceneStage&) = delete;
    SceneStage& operator=(const SceneStage&) = delete;

    // Draws the scene where it belongs in the picture. False if it could not be.
    bool draw(const SceneFrame& scene, const PixelGrid& grid, const PixelBuffer& picture);
    bool draw(const SceneFrame& scene, const PixelGrid& grid);

    // The frame that these were part of took this long to draw and show.
    void frameTook(double seconds);

    // As in kQualityRungs.
    [[nodiscard]] int rung() const { return ladder_ ? ladder_->rung() : 0; }
    [[nodiscard]] const QString& rendererName() const { return name_; }

  private:
    SceneStage(std::unique_ptr<GlContext> own, std::unique_ptr<SceneRenderer> renderer,
               const QString& name, bool software);
    SceneQuality quality(const SceneFrame& scene);

    const std::unique_ptr<GlContext> own_;
    std::unique_ptr<SceneRenderer> renderer_;
    const QString name_;
    const bool software_;
    std::unique_ptr<QualityLadder> ladder_;
    double budget_ = 0.0;
    QSize size_;
};

}  // namespace platform
