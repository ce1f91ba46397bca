// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <memory>

#include "platform/layers/PixelGrid.h"
#include "platform/render/QualityLadder.h"
#include "platform/render/SceneDrawer.h"
#include "platform/render/cpu/CpuDrawer.h"
#include "platform/render/gl/SceneRenderer.h"
#include "platform/view/SceneFrame.h"

namespace platform {

// Draws scenes with the present drawer, at the highest quality that holds the frame rate,
// or the best for a still. Made, used and dropped on one thread, a window's render thread;
// owned by the surface or painter that draws the frames.
class SceneStage {
  public:
    // Makes a stage for pictures in memory, with the machine's best drawer. None where the
    // machine cannot draw scenes.
    [[nodiscard]] static std::unique_ptr<SceneStage> inMemory(const SceneDrawerOptions& options);
    // Makes a stage in the current context, which stays current.
    [[nodiscard]] static std::unique_ptr<SceneStage> onContext(const GlContext& context);
    ~SceneStage();
    SceneStage(const SceneStage&) = delete;
    SceneStage& operator=(const SceneStage&) = delete;

    // Draws the scene at its place in the picture. False where that failed.
    bool draw(const SceneFrame& scene, const PixelGrid& grid, const PixelBuffer& picture);
    bool draw(const SceneFrame& scene, const PixelGrid& grid);

    // Reports the seconds it took to draw and show the last frame.
    void frameTook(double seconds);

    // The rung of the quality ladder, as in kQualityRungs.
    [[nodiscard]] int rung() const { return ladder_ ? ladder_->rung() : 0; }
    [[nodiscard]] const QString& rendererName() const { return name_; }
    // Whether the drawer in memory is lost for good; a new stage may draw again.
    [[nodiscard]] bool isLost() const { return memory_ && memory_->isLost(); }

  private:
    SceneStage(std::unique_ptr<SceneDrawer> memory, std::unique_ptr<SceneRenderer> renderer,
               const QString& name, bool software, bool still);
    SceneQuality quality(const SceneFrame& scene, QSize size);

    // The stage has one of the two drawers.
    const std::unique_ptr<SceneDrawer> memory_;
    const std::unique_ptr<SceneRenderer> renderer_;
    const QString name_;
    const bool software_;
    const bool still_;
    std::unique_ptr<QualityLadder> ladder_;
    double budget_ = 0.0;
    QSize size_;
};

}  // namespace platform
