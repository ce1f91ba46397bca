// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <memory>
#include <span>

#include "platform/render/cpu/CpuDrawer.h"
#include "platform/view/Frame.h"
#include "platform/window/SceneStage.h"

namespace platform {

// Paints frames into a picture in memory: layers with the processor, scenes with the drawer
// of makeSceneDrawer(). Made, used and dropped on one thread; owned by the surface or the
// still of that picture. Allocates nothing per frame once the frames have grown.
class PicturePainter {
  public:
    explicit PicturePainter(SceneDrawerOptions options = {}) : options_(std::move(options)) {}

    // Makes the picture show the frame within `damage` (pixels, y down, inside the
    // picture), and a scene wholly. False if a scene could not be drawn: its place shows
    // its background.
    bool paint(const Frame& frame, std::span<const QRect> damage, const PixelBuffer& picture);

    // The drawer of the last frame, as in Surface.
    [[nodiscard]] const QString& drawer() const;
    [[nodiscard]] int rung() const;
    [[nodiscard]] bool failsScenes() const { return showsScene_ && failsScenes_; }
    void frameTook(double seconds);

  private:
    bool paintScene(const Frame& frame, const SceneFrame& scene, const PixelBuffer& picture);
    // Makes a new stage in place of a lost one; once.
    bool renewStage();

    const SceneDrawerOptions options_;
    CpuDrawer layers_;
    std::unique_ptr<SceneStage> stage_;  // made for the first scene
    bool failsScenes_ = false;
    bool renewed_ = false;
    bool showsScene_ = false;
};

}  // namespace platform
