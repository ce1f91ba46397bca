// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <memory>
#include <span>

#include "platform/render/cpu/CpuDrawer.h"
#include "platform/view/Frame.h"
#include "platform/window/SceneStage.h"

namespace platform {

// Paints frames into a picture in memory with the processor. Made, used and dropped on one thread;
// owned by the surface or the still that the picture is for. Allocates nothing per frame once the
// frames have grown.
class PicturePainter {
  public:
    struct Options {
        bool still = false;  // scenes at full quality, however long they take
    };
    explicit PicturePainter(const Options& options) : options_(options) {}
    PicturePainter() : PicturePainter(Options{}) {}

    // Makes the picture show the frame within `damage` (pixels, y down, inside the picture),
    // and a scene wholly. False if a scene could not be drawn: its place shows its
    // background. A picture with the memory and size of the last picture must still hold the
    // last painting; see forget().
    bool paint(const Frame& frame, std::span<const QRect> damage, const PixelBuffer& picture);
    // Reports that the picture no longer holds the last painting.
    void forget() { pixels_ = nullptr; }
    // The parts of the picture that the last frame may have changed, at most its damage;
    // valid until the next frame.
    [[nodiscard]] std::span<const QRect> changed() const { return changed_; }

    // The drawer of the last frame, as in Surface.
    [[nodiscard]] const QString& drawer() const;
    [[nodiscard]] int rung() const;
    [[nodiscard]] bool failsScenes() const { return showsScene_ && failsScenes_; }
    void frameTook(double seconds);

  private:
    bool paintScene(const Frame& frame, const SceneFrame& scene, const PixelBuffer& picture,
                    bool isKept);

    const Options options_;
    CpuDrawer layers_;
    std::unique_ptr<SceneStage> stage_;  // made for the first scene
    bool failsScenes_ = false;
    bool showsScene_ = false;
    // The last painting's scene, if it had no other part: its place; and the picture's memory.
    QRect sceneAlone_;
    const std::uint32_t* pixels_ = nullptr;
    QSize size_;
    std::span<const QRect> changed_;
};

}  // namespace platform
