// SPDX-License-Identifier: MIT
#include "platform/render/gl/OffscreenPicture.h"

#include <algorithm>
#include <utility>

#include "platform/render/egl/Egl.h"
#include "platform/render/gl/GlCalls.h"

namespace platform {

std::unique_ptr<OffscreenPicture> OffscreenPicture::create(const GlDrawer::Options& options) {
    auto context = GlContext::create(EglDisplay::offscreen());
    if (!context || !context->makeCurrent()) return nullptr;
    auto drawer = GlDrawer::create(options);
    if (!drawer) return nullptr;
    return std::unique_ptr<OffscreenPicture>(
        new OffscreenPicture(std::move(context), std::move(drawer)));
}

OffscreenPicture::OffscreenPicture(std::unique_ptr<GlContext> context,
                                   std::unique_ptr<GlDrawer> drawer)
    : context_(std::move(context)), drawer_(std::move(drawer)) {
    glGenFramebuffers(1, &framebuffer_);
    glGenRenderbuffers(1, &renderbuffer_);
}

OffscreenPicture::~OffscreenPicture() {
    if (!context_->makeCurrent()) return;
    drawer_.reset();
    glDeleteFramebuffers(1, &framebuffer_);
    glDeleteRenderbuffers(1, &renderbuffer_);
}

bool OffscreenPicture::resize(QSize size) {
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer_);
    if (size == size_) return true;
    GLint most = 0;
    glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &most);
    if (size.isEmpty() || std::max(size.width(), size.height()) > most) return false;
    glBindRenderbuffer(GL_RENDERBUFFER, renderbuffer_);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, size.width(), size.height());
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, renderbuffer_);
    size_ = size;
    return glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
}

QImage OffscreenPicture::draw(const DisplayList& list, const PixelGrid& grid, Rgba background) {
    if (!context_->makeCurrent() || !resize(grid.size)) return {};
    drawer_->draw(list, grid, background);
    QImage picture(grid.size, QImage::Format_ARGB32_Premultiplied);
    if (picture.isNull()) return {};
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(0, 0, grid.size.width(), grid.size.height(), GL_BGRA, GL_UNSIGNED_INT_8_8_8_8_REV,
                 picture.bits());
    return picture.mirrored(false, true);
}

const std::string& OffscreenPicture::rendererName() const {
    return context_->rendererName();
}

bool OffscreenPicture::isSoftware() const {
    return context_->isSoftware();
}

int OffscreenPicture::errors() const {
    return context_->errors();
}

}  // namespace platform
