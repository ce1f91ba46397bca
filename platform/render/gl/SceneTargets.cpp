// SPDX-License-Identifier: MIT
#include "platform/render/gl/SceneTargets.h"

#include <algorithm>

namespace platform {

namespace {

bool isTooLarge(QSize size) {
    GLint most = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &most);
    return size.isEmpty() || std::max(size.width(), size.height()) > most;
}

bool isComplete() {
    return glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
}

}  // namespace

bool GlImage::fit(QSize size, GLenum format) {
    if (size == size_ && format == format_) return true;
    size_ = {};
    if (isTooLarge(size)) return false;
    texture_ = GlTexture::make();
    framebuffer_ = GlFramebuffer::make();
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, texture_.name());
    glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(format), size.width(), size.height(), 0,
                 GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer_.name());
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, texture_.name(), 0);
    if (!isComplete()) return false;
    size_ = size;
    format_ = format;
    return true;
}

void GlImage::target() const {
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer());
    glViewport(0, 0, size_.width(), size_.height());
}

bool SceneCanvas::fit(const Options& options) {
    const bool same = complete_ && options.size == options_.size &&
                      options.format.format == options_.format.format &&
                      options.samples == options_.samples && options.depth == options_.depth;
    if (same) return true;
    options_ = options;
    complete_ = image_.fit(options.size, options.format.format) && fitSamples();
    return complete_;
}

bool SceneCanvas::fitSamples() {
    const int samples = options_.samples > 1 ? options_.samples : 0;
    const auto width = options_.size.width();
    const auto height = options_.size.height();
    framebuffer_ = GlFramebuffer::make();
    colour_ = {};
    depth_ = {};
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer_.name());
    if (samples > 0) {
        colour_ = GlRenderbuffer::make();
        glBindRenderbuffer(GL_RENDERBUFFER, colour_.name());
        glRenderbufferStorageMultisample(GL_RENDERBUFFER, samples, options_.format.format, width,
                                         height);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER,
                                  colour_.name());
    } else {
        glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D,
                               image_.texture(), 0);
    }
    if (options_.depth) {
        depth_ = GlRenderbuffer::make();
        glBindRenderbuffer(GL_RENDERBUFFER, depth_.name());
        glRenderbufferStorageMultisample(GL_RENDERBUFFER, samples, GL_DEPTH_COMPONENT24, width,
                                         height);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER,
                                  depth_.name());
    }
    return isComplete();
}

void SceneCanvas::target() const {
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer_.name());
    glViewport(0, 0, options_.size.width(), options_.size.height());
    if (options_.format.format == GL_SRGB8_ALPHA8) glEnable(GL_FRAMEBUFFER_SRGB);
}

int SceneCanvas::resolve() const {
    glDisable(GL_FRAMEBUFFER_SRGB);
    if (options_.samples <= 1) return 0;
    glBindFramebuffer(GL_READ_FRAMEBUFFER, framebuffer_.name());
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, image_.framebuffer());
    const auto width = options_.size.width();
    const auto height = options_.size.height();
    glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
    return 1;
}

}  // namespace platform
