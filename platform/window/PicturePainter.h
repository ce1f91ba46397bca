// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <memory>
#include <span>
#include <vector>

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
    // background. Some pictures may be painted in turn. Memory must still hold the last
    // painting into it, unless a picture of another size came between; see forget().
    bool paint(const Frame& frame, std::span<const QRect> damage, const PixelBuffer& picture);
    // Reports that no memory holds a painting any longer.
    void forget() { scenes_.clear(); }
    // The parts in which the last frame may differ from the frame painted before, whichever
    // picture that went into. At most `damage`, which is the last frame's, or the whole place
    // of its scene; valid until the next frame.
    [[nodiscard]] std::span<const QRect> changed(std::span<const QRect> damage) const {
        return tellsScene_ ? stage_->changed() : damage;
    }

    // The drawer of the last frame, as in Surface.
    [[nodiscard]] const QString& drawer() const;
    [[nodiscard]] int rung() const;
    [[nodiscard]] bool failsScenes() const { return showsScene_ && failsScenes_; }
    void frameTook(double seconds);

  private:
    bool paintScene(const Frame& frame, const SceneFrame& scene, const PixelBuffer& picture,
                    bool isKept);

    void remember(const std::uint32_t* pixels);

    const Options options_;
    CpuDrawer layers_;
    std::unique_ptr<SceneStage> stage_;  // made for the first scene
    bool failsScenes_ = false;
    bool showsScene_ = false;
    // The last paintings' scene, if they had no other part: its place, their size, and the
    // memory that holds such a painting.
    QRect sceneAlone_;
    QSize size_;
    std::vector<const std::uint32_t*> scenes_;
    bool tellsScene_ = false;  // changed() is the scene's
};

}  // namespace platform
