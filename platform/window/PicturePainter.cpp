// SPDX-License-Identifier: MIT
#include "platform/window/PicturePainter.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {
// The most pictures that are painted in turn.
constexpr std::size_t kMostScenes = 4;
}  // namespace

bool PicturePainter::paint(const Frame& frame, std::span<const QRect> damage,
                           const PixelBuffer& picture) {
    const std::size_t first = firstVisiblePass(frame);
    const bool isAlone = first + 1 == frame.passes.size() && frame.passes[first].scene.isShown &&
                         frame.passes[first].layers.items.empty();
    const QRect place = isAlone ? frame.grid.snap(frame.passes[first].scene.frame) : QRect();
    const bool isSamePlace = std::exchange(sceneAlone_, place) == place;
    const bool isSameSize = std::exchange(size_, picture.size) == picture.size;
    if (!isAlone || !isSamePlace || !isSameSize) scenes_.clear();
    const auto known = std::find(scenes_.begin(), scenes_.end(), picture.pixels);
    const bool isKept = known != scenes_.end();
    const bool follows = !scenes_.empty();
    showsScene_ = false;
    bool whole = true;
    forEachVisiblePart(
        frame,
        [&](const SceneFrame& scene) {
            whole = paintScene(frame, scene, picture, isKept) && whole;
        },
        [&](const DisplayList& layers, std::optional<Rgba> background) {
            layers_.draw(layers, frame.grid, damage, background, picture);
        });
    const bool isScene = isAlone && whole && stage_;
    if (!isScene) scenes_.clear();
    if (isScene && !isKept) remember(picture.pixels);
    tellsScene_ = isScene && follows;
    return whole;
}

void PicturePainter::remember(const std::uint32_t* pixels) {
    if (scenes_.size() == kMostScenes) scenes_.erase(scenes_.begin());
    scenes_.push_back(pixels);
}

bool PicturePainter::paintScene(const Frame& frame, const SceneFrame& scene,
                                const PixelBuffer& picture, bool isKept) {
    showsScene_ = scene.hasScene;
    if (scene.hasScene && !stage_) stage_ = SceneStage::inMemory(options_.still);
    const bool drawn = stage_ && stage_->draw(scene, frame.grid, picture, isKept);
    if (scene.hasScene) failsScenes_ = !drawn;
    if (drawn) return true;
    const QRect rect = frame.grid.snap(scene.frame) & QRect(QPoint(0, 0), picture.size);
    layers_.draw(DisplayList(), frame.grid, {&rect, 1}, scene.background, picture);
    return false;
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
