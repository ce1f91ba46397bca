// SPDX-License-Identifier: MIT
#include "platform/window/PicturePainter.h"

#include <utility>

namespace platform {

bool PicturePainter::paint(const Frame& frame, std::span<const QRect> damage,
                           const PixelBuffer& picture) {
    showsScene_ = false;
    bool whole = true;
    forEachVisiblePart(
        frame, [&](const SceneFrame& scene) { whole = paintScene(frame, scene, picture) && whole; },
        [&](const DisplayList& layers, std::optional<Rgba> background) {
            layers_.draw(layers, frame.grid, damage, background, picture);
        });
    return whole;
}

bool PicturePainter::paintScene(const Frame& frame, const SceneFrame& scene,
                                const PixelBuffer& picture) {
    showsScene_ = scene.hasScene;
    if (scene.hasScene && !stage_ && !failsScenes_) stage_ = SceneStage::inMemory(options_);
    const auto draws = [&] { return stage_ && stage_->draw(scene, frame.grid, picture); };
    const bool drawn = draws() || (renewStage() && draws());
    if (scene.hasScene) failsScenes_ = !drawn;
    if (drawn) return true;
    const QRect rect = frame.grid.snap(scene.frame) & QRect(QPoint(0, 0), picture.size);
    layers_.draw(DisplayList(), frame.grid, {&rect, 1}, scene.background, picture);
    return false;
}

bool PicturePainter::renewStage() {
    if (!stage_ || !stage_->isLost() || std::exchange(renewed_, true)) return false;
    stage_.reset();
    stage_ = SceneStage::inMemory(options_);
    return stage_ != nullptr;
}

const QString& PicturePainter::drawer() const {
    static const QString own = QStringLiteral("cpu");
    return showsScene_ && stage_ ? stage_->rendererName() : own;
}

int PicturePainter::rung() const {
    return showsScene_ && stage_ ? stage_->rung() : 0;
}

void PicturePainter::frameTook(double seconds) {
    if (showsScene_ && stage_) stage_->frameTook(seconds);
}

}  // namespace platform
