// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <QString>
#include <memory>
#include <span>
#include <vector>

#include "platform/layers/PixelGrid.h"
#include "platform/render/QualityLadder.h"
#include "platform/render/cpu/CpuSceneDrawer.h"
#include "platform/render/egl/Egl.h"
#include "platform/render/gl/SceneRenderer.h"
#include "platform/view/SceneFrame.h"

namespace platform {

// Draws scenes with the present drawer, at the highest quality that holds the frame rate,
// or the best for a still. Made, used and dropped on one thread, a window's render thread;
// owned by the surface or painter that draws the frames.
class SceneStage {
  public:
    // For pictures in memory, drawn by the processor. A still has full quality, however
    // long it takes.
    [[nodiscard]] static std::unique_ptr<SceneStage> inMemory(bool still);
    // For OpenGL, in the current context, which stays current.
    [[nodiscard]] static std::unique_ptr<SceneStage> onContext(const GlContext& context);
    ~SceneStage();
    SceneStage(const SceneStage&) = delete;
    SceneStage& operator=(const SceneStage&) = delete;

    // Draws the scene at its place in the picture; false if the scene could not be drawn.
    // `isKept`: the picture still holds the scene's last drawing.
    bool draw(const SceneFrame& scene, const PixelGrid& grid, const PixelBuffer& picture,
              bool isKept);
    // The parts of the picture that the last draw in memory may have changed, in its
    // pixels.
    [[nodiscard]] std::span<const QRect> changed() const { return changed_; }
    bool draw(const SceneFrame& scene, const PixelGrid& grid);

    // Reports the seconds it took to draw and show the last frame.
    void frameTook(double seconds);

    // The rung of the quality ladder, as in kQualityRungs. In memory every full resolution is
    // rung 0, since its edges are smooth.
    [[nodiscard]] int rung() const;
    [[nodiscard]] const QString& rendererName() const { return name_; }

  private:
    SceneStage(std::unique_ptr<CpuSceneDrawer> memory, std::unique_ptr<SceneRenderer> renderer,
               const QString& name, bool software, bool still);
    SceneQuality quality(const SceneFrame& scene, QSize size);

    // Exactly one of the two exists.
    const std::unique_ptr<CpuSceneDrawer> memory_;
    const std::unique_ptr<SceneRenderer> renderer_;
    const QString name_;
    const bool software_;
    const bool still_;
    std::unique_ptr<QualityLadder> ladder_;
    double budget_ = 0.0;
    QSize size_;
    std::vector<QRect> changed_;
};

}  // namespace platform
