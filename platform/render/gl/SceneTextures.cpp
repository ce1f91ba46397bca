// SPDX-License-Identifier: MIT
#include "platform/render/gl/SceneTextures.h"

#include <algorithm>

#include "platform/render/cpu/LinearPixels.h"

namespace platform {

namespace {

GLint wrapOf(WrapMode mode) {
    return mode == WrapMode::Repeat ? GL_REPEAT : GL_CLAMP_TO_EDGE;
}

// Computes the levels on the processor. A software driver would compile shaders
// for them, which takes longer than everything else of a scene's first picture.
void putLevels(const QImage& picture) {
    std::vector<std::uint16_t> pixels = linearPixels(picture);
    QSize size = picture.size();
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    for (GLint level = 0;; ++level) {
        glTexImage2D(GL_TEXTURE_2D, level, GL_RGBA16, size.width(), size.height(), 0, GL_RGBA,
                     GL_UNSIGNED_SHORT, pixels.data());
        const QSize half = halvedSize(size);
        if (half == size) break;
        pixels = halvedPixels(pixels, size);
        size = half;
    }
}

}  // namespace

SceneTextures::SceneTextures(int keepDraws)
    : keepDraws_(static_cast<std::uint64_t>(std::max(1, keepDraws))) {
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &maxSize_);
}

void SceneTextures::bind(const DrawMaterial& material) {
    glActiveTexture(GL_TEXTURE0);
    auto found = kept_.find(material.pictureKey);
    if (found == kept_.end()) {
        found = kept_.emplace(material.pictureKey, upload(material.picture)).first;
    } else {
        glBindTexture(GL_TEXTURE_2D, found->second.texture.name());
    }
    found->second.lastDraw = draw_;
    setUp(found->second, material);
}

SceneTextures::Kept SceneTextures::upload(const QImage& picture) const {
    QImage source = picture;
    if (std::max(source.width(), source.height()) > maxSize_)
        source = source.scaled(maxSize_, maxSize_, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    Kept kept;
    kept.texture = GlTexture::make();
    glBindTexture(GL_TEXTURE_2D, kept.texture.name());
    putLevels(source);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    return kept;
}

void SceneTextures::setUp(Kept& kept, const DrawMaterial& material) {
    if (kept.wrapS != material.wrapS)
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, wrapOf(material.wrapS));
    if (kept.wrapT != material.wrapT)
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, wrapOf(material.wrapT));
    kept.wrapS = material.wrapS;
    kept.wrapT = material.wrapT;
}

void SceneTextures::endDraw() {
    std::erase_if(kept_,
                  [&](const auto& entry) { return draw_ - entry.second.lastDraw >= keepDraws_; });
    ++draw_;
}

}  // namespace platform
