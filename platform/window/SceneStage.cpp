// SPDX-License-Identifier: MIT
#include "platform/window/SceneStage.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

// A display's own rhythm, for a scene that wants no other.
constexpr double kDisplayInterval = 1.0 / 60.0;
// On the processor a few more frames are not worth a coarser picture.
constexpr double kSoftwareInterval = 1.0 / 48.0;

}  // namespace

std::unique_ptr<SceneStage> SceneStage::inMemory(ResetQuery resetStatus) {
    auto context = GlContext::create(EglDisplay::offscreen(), nullptr, std::move(resetStatus));
    if (!context || !context->makeCurrent()) return nullptr;
    SceneRenderer::Options options;
    options.memoryOnly = true;
    auto renderer = SceneRenderer::create(options);
    if (!renderer) return nullptr;
    const QString name = QString::fromStdString(context->rendererName());
    const bool software = context->isSoftware();
    return std::unique_ptr<SceneStage>(
        new SceneStage(std::move(context), std::move(renderer), name, software));
}

std::unique_ptr<SceneStage> SceneStage::onContext(const GlContext& context) {
    SceneRenderer::Options options;
    options.timed = !context.isSoftware();
    auto renderer = SceneRenderer::create(options);
    if (!renderer) return nullptr;
    return std::unique_ptr<SceneStage>(
        new SceneStage(nullptr, std::move(renderer), QString::fromStdString(context.rendererName()),
                       context.isSoftware()));
}

SceneStage::SceneStage(std::unique_ptr<GlContext> own, std::unique_ptr<SceneRenderer> renderer,
                       const QString& name, bool software)
    : own_(std::move(own)), renderer_(std::move(renderer)), name_(name), software_(software) {}

SceneStage::~SceneStage() {
    renderer_.reset();
    if (own_) own_->doneCurrent();
}

SceneQuality SceneStage::quality(const SceneFrame& scene) {
    double budget = scene.interval > 0.0 ? scene.interval : kDisplayInterval;
    if (software_) budget = std::max(budget, kSoftwareInterval);
    if (!ladder_ || budget != budget_) {
        budget_ = budget;
        ladder_ = std::make_unique<QualityLadder>(
            QualityLadder::Options{.budget = budget,
                                   .firstRung = software_ ? kFirstSoftwareRung : 0,
                                   .bestRung = software_ ? kBestSoftwareRung : 0});
    }
    SceneQuality quality = ladder_->quality();
    quality.samples = std::min(quality.samples, scene.sampleCount);
    return quality;
}

bool SceneStage::draw(const SceneFrame& scene, const PixelGrid& grid, const PixelBuffer& picture) {
    if (!scene.hasScene) return false;
    const QRect rect = grid.snap(scene.frame) & QRect(QPoint(0, 0), picture.size);
    if (rect.isEmpty()) return true;
    const SceneQuality wanted = quality(scene);
    if (std::exchange(size_, rect.size()) != rect.size()) ladder_->sizeChanged();
    return renderer_->draw(scene.list,
                           {.pixels = picture.pixels + rect.top() * picture.stride + rect.left(),
                            .stride = picture.stride,
                            .size = rect.size()},
                           grid.scale, wanted);
}

bool SceneStage::draw(const SceneFrame& scene, const PixelGrid& grid) {
    if (!scene.hasScene) return false;
    const QRect rect = grid.snap(scene.frame) & QRect(QPoint(0, 0), grid.size);
    if (rect.isEmpty()) return true;
    const SceneQuality wanted = quality(scene);
    if (std::exchange(size_, rect.size()) != rect.size()) ladder_->sizeChanged();
    return renderer_->draw(scene.list,
                           {.framebuffer = 0,
                            .origin = {rect.left(), grid.size.height() - rect.bottom() - 1},
                            .size = rect.size(),
                            .scale = grid.scale},
                           wanted);
}

void SceneStage::frameTook(double seconds) {
    if (!ladder_) return;
    // A GPU works on while its commands have long been given; it tells later, but
    // where the picture was read back, it had to be waited for.
    if (software_ || own_)
        ladder_->frameCost(seconds);
    else if (const auto gpu = renderer_->gpuSeconds())
        ladder_->frameCost(*gpu);
}

}  // namespace platform
