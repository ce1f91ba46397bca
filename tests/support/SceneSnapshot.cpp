// SPDX-License-Identifier: MIT
#include "tests/support/SceneSnapshot.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/render/egl/Egl.h"
#include "platform/render/gl/SceneTargets.h"

namespace platform {

struct SceneSnapshot::Target {
    GlImage image;
};

std::unique_ptr<SceneSnapshot> SceneSnapshot::create(const SceneRenderer::Options& options) {
    auto context = GlContext::create(EglDisplay::offscreen());
    if (!context || !context->makeCurrent()) return nullptr;
    auto renderer = SceneRenderer::create(options);
    if (!renderer) return nullptr;
    return std::unique_ptr<SceneSnapshot>(
        new SceneSnapshot(std::move(context), std::move(renderer)));
}

SceneSnapshot::SceneSnapshot(std::unique_ptr<GlContext> context,
                             std::unique_ptr<SceneRenderer> renderer)
    : context_(std::move(context)),
      renderer_(std::move(renderer)),
      target_(std::make_unique<Target>()) {}

SceneSnapshot::~SceneSnapshot() {
    if (!context_->makeCurrent()) return;
    target_.reset();
    renderer_.reset();
}

QImage SceneSnapshot::picture(const DrawList& list, QSizeF points, double scale,
                              const SceneQuality& quality) {
    const QSize size(static_cast<int>(std::lround(points.width() * scale)),
                     static_cast<int>(std::lround(points.height() * scale)));
    return render(list, size, scale, quality) ? lastPicture() : QImage();
}

bool SceneSnapshot::render(const DrawList& list, QSize size, double scale,
                           const SceneQuality& quality) {
    if (!context_->makeCurrent() || !target_->image.fit(size, GL_RGBA8)) return false;
    const SceneTarget target{
        .framebuffer = target_->image.framebuffer(), .size = size, .scale = scale};
    if (!renderer_->draw(list, target, quality)) return false;
    glFinish();
    return true;
}

QImage SceneSnapshot::lastPicture() {
    const QSize size = target_->image.size();
    QImage picture(size, QImage::Format_ARGB32_Premultiplied);
    if (picture.isNull() || !context_->makeCurrent()) return {};
    glBindFramebuffer(GL_FRAMEBUFFER, target_->image.framebuffer());
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(0, 0, size.width(), size.height(), GL_BGRA, GL_UNSIGNED_INT_8_8_8_8_REV,
                 picture.bits());
    return picture.mirrored(false, true);
}

const std::string& SceneSnapshot::rendererName() const {
    return context_->rendererName();
}

bool SceneSnapshot::isSoftware() const {
    return context_->isSoftware();
}

int SceneSnapshot::errors() const {
    return context_->errors();
}

}  // namespace platform
