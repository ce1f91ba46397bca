// SPDX-License-Identifier: MIT
#include "platform/render/gl/GlSceneDrawer.h"

#include <cstring>
#include <utility>

#include "platform/render/SceneSnapshot.h"
#include "platform/render/cpu/CpuDrawer.h"
#include "platform/render/gl/SceneRenderer.h"

namespace platform {

std::unique_ptr<GlSceneDrawer> GlSceneDrawer::create(ResetQuery resetStatus) {
    auto context = GlContext::create(EglDisplay::offscreen(), nullptr, std::move(resetStatus));
    if (!context || !context->makeCurrent()) return nullptr;
    SceneRenderer::Options options;
    options.memoryOnly = true;
    auto renderer = SceneRenderer::create(options);
    if (!renderer) return nullptr;
    return std::unique_ptr<GlSceneDrawer>(
        new GlSceneDrawer(std::move(context), std::move(renderer)));
}

GlSceneDrawer::GlSceneDrawer(std::unique_ptr<GlContext> context,
                             std::unique_ptr<SceneRenderer> renderer)
    : context_(std::move(context)),
      renderer_(std::move(renderer)),
      name_(QString::fromStdString(context_->rendererName())) {}

GlSceneDrawer::~GlSceneDrawer() {
    renderer_.reset();
    context_->doneCurrent();
}

bool GlSceneDrawer::draw(const DrawList& list, const PixelBuffer& picture, double scale,
                         const SceneQuality& quality) {
    return renderer_->draw(list, picture, scale, quality);
}

bool GlSceneDrawer::isLost() const {
    return context_->isLost();
}

std::unique_ptr<GlStillDrawer> GlStillDrawer::create() {
    auto snapshot = SceneSnapshot::create();
    if (!snapshot) return nullptr;
    return std::unique_ptr<GlStillDrawer>(new GlStillDrawer(std::move(snapshot)));
}

GlStillDrawer::GlStillDrawer(std::unique_ptr<SceneSnapshot> snapshot)
    : snapshot_(std::move(snapshot)), name_(QString::fromStdString(snapshot_->rendererName())) {}

GlStillDrawer::~GlStillDrawer() = default;

bool GlStillDrawer::draw(const DrawList& list, const PixelBuffer& picture, double scale,
                         const SceneQuality& quality) {
    if (!snapshot_->render(list, picture.size, scale, quality)) return false;
    const QImage drawn = snapshot_->lastPicture();
    if (drawn.isNull()) return false;
    for (int y = 0; y < picture.size.height(); ++y)
        std::memcpy(picture.pixels + static_cast<std::ptrdiff_t>(y) * picture.stride,
                    drawn.constScanLine(y),
                    static_cast<std::size_t>(picture.size.width()) * sizeof(std::uint32_t));
    return true;
}

bool GlStillDrawer::isSoftware() const {
    return snapshot_->isSoftware();
}

}  // namespace platform
