// SPDX-License-Identifier: MIT
#include "platform/window/SceneStage.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

// The frame interval of a usual display, for a scene without one of its own.
constexpr double kDisplayInterval = 1.0 / 60.0;
// On the processor a higher frame rate is not worth a coarser picture.
constexpr double kSoftwareInterval = 1.0 / 48.0;

// A still always has smooth edges.
constexpr int kStillSamples = 4;

}  // namespace

std::unique_ptr<SceneStage> SceneStage::inMemory(bool still) {
    return std::unique_ptr<SceneStage>(new SceneStage(std::make_unique<CpuSceneDrawer>(), nullptr,
                                                      QStringLiteral("cpu"), true, still));
}

std::unique_ptr<SceneStage> SceneStage::onContext(const GlContext& context) {
    SceneRenderer::Options options;
    options.timed = !context.isSoftware();
    auto renderer = SceneRenderer::create(options);
    if (!renderer) return nullptr;
    return std::unique_ptr<SceneStage>(
        new SceneStage(nullptr, std::move(renderer), QString::fromStdString(context.rendererName()),
                       context.isSoftware(), false));
}

SceneStage::SceneStage(std::unique_ptr<CpuSceneDrawer> memory,
                       std::unique_ptr<SceneRenderer> renderer, const QString& name, bool software,
                       bool still)
    : memory_(std::move(memory)),
      renderer_(std::move(renderer)),
      name_(name),
      software_(software),
      still_(still) {}

SceneStage::~SceneStage() = default;

int SceneStage::rung() const {
    if (!ladder_ || (memory_ && ladder_->quality().resolution >= 1.0)) return 0;
    return ladder_->rung();
}

SceneQuality SceneStage::quality(const SceneFrame& scene, QSize size) {
    if (still_) return {.samples = std::max(scene.sampleCount, kStillSamples)};
    double budget = scene.interval > 0.0 ? scene.interval : kDisplayInterval;
    if (software_) budget = std::max(budget, kSoftwareInterval);
    if (!ladder_ || budget != budget_) {
        budget_ = budget;
        ladder_ = std::make_unique<QualityLadder>(
            QualityLadder::Options{.budget = budget,
                                   .firstRung = memory_     ? kBestSoftwareRung
                                                : software_ ? kFirstSoftwareRung
                                                            : 0,
                                   .bestRung = software_ ? kBestSoftwareRung : 0});
    }
    if (std::exchange(size_, size) != size) ladder_->sizeChanged();
    SceneQuality quality = ladder_->quality();
    quality.samples = std::min(quality.samples, scene.sampleCount);
    return quality;
}

bool SceneStage::draw(const SceneFrame& scene, const PixelGrid& grid, const PixelBuffer& picture,
                      bool isKept) {
    changed_.clear();
    if (!scene.hasScene) return false;
    const QRect rect = grid.snap(scene.frame) & QRect(QPoint(0, 0), picture.size);
    if (rect.isEmpty()) return true;
    const PixelBuffer part{
        .pixels =
            picture.pixels + static_cast<std::ptrdiff_t>(rect.top()) * picture.stride + rect.left(),
        .stride = picture.stride,
        .size = rect.size()};
    const auto changed = memory_->draw(scene.list, part,
                                       {.scale = grid.scale,
                                        .resolution = quality(scene, rect.size()).resolution,
                                        .isKept = isKept});
    for (const QRect& tiles : changed)
        changed_.push_back(tiles.translated(rect.topLeft()));
    return true;
}

bool SceneStage::draw(const SceneFrame& scene, const PixelGrid& grid) {
    if (!scene.hasScene) return false;
    const QRect rect = grid.snap(scene.frame) & QRect(QPoint(0, 0), grid.size);
    if (rect.isEmpty()) return true;
    return renderer_->draw(scene.list,
                           {.framebuffer = 0,
                            .origin = {rect.left(), grid.size.height() - rect.bottom() - 1},
                            .size = rect.size(),
                            .scale = grid.scale},
                           quality(scene, rect.size()));
}

void SceneStage::frameTook(double seconds) {
    if (!ladder_) return;
    // A GPU finishes a frame after its commands are given, and reports the cost later.
    if (software_)
        ladder_->frameCost(seconds);
    else if (const auto gpu = renderer_->gpuSeconds())
        ladder_->frameCost(*gpu);
}

}  // namespace platform
