// SPDX-License-Identifier: MIT
#include "platform/render/SceneTextures.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "platform/scene/Shading.h"

namespace platform {

namespace {

std::array<std::uint16_t, 256> makeDecoding() {
    std::array<std::uint16_t, 256> table{};
    for (std::size_t i = 0; i < table.size(); ++i)
        table[i] = static_cast<std::uint16_t>(
            std::lround(65535.0 * srgbDecode(static_cast<double>(i) / 255.0)));
    return table;
}

GLint wrapOf(WrapMode mode) {
    return mode == WrapMode::Repeat ? GL_REPEAT : GL_CLAMP_TO_EDGE;
}

}  // namespace

std::vector<std::uint16_t> linearPixels(const QImage& picture) {
    static const std::array<std::uint16_t, 256> kDecoding = makeDecoding();
    const QImage source = picture.convertToFormat(QImage::Format_RGBA8888);
    std::vector<std::uint16_t> pixels;
    pixels.reserve(4 * static_cast<std::size_t>(source.width()) *
                   static_cast<std::size_t>(source.height()));
    for (int y = 0; y < source.height(); ++y) {
        const uchar* const row = source.constScanLine(y);
        for (int x = 0; x < source.width(); ++x) {
            const std::uint32_t alpha = row[4 * x + 3];
            for (int i = 0; i < 3; ++i)
                pixels.push_back(
                    static_cast<std::uint16_t>((kDecoding[row[4 * x + i]] * alpha + 127) / 255));
            pixels.push_back(static_cast<std::uint16_t>(alpha * 257));
        }
    }
    return pixels;
}

SceneTextures::SceneTextures(int keepDraws)
    : keepDraws_(static_cast<std::uint64_t>(std::max(1, keepDraws))) {
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &maxSize_);
    if (!epoxy_has_gl_extension("GL_EXT_texture_filter_anisotropic")) return;
    glGetIntegerv(GL_MAX_TEXTURE_MAX_ANISOTROPY_EXT, &maxAnisotropy_);
}

void SceneTextures::bind(const DrawMaterial& material, int anisotropy) {
    glActiveTexture(GL_TEXTURE0);
    auto found = kept_.find(material.pictureKey);
    if (found == kept_.end()) {
        found = kept_.emplace(material.pictureKey, upload(material.picture)).first;
    } else {
        glBindTexture(GL_TEXTURE_2D, found->second.texture.name());
    }
    found->second.lastDraw = draw_;
    setUp(found->second, material, anisotropy);
}

SceneTextures::Kept SceneTextures::upload(const QImage& picture) const {
    QImage source = picture;
    if (std::max(source.width(), source.height()) > maxSize_)
        source = source.scaled(maxSize_, maxSize_, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    const std::vector<std::uint16_t> pixels = linearPixels(source);
    Kept kept;
    kept.texture = GlTexture::make();
    glBindTexture(GL_TEXTURE_2D, kept.texture.name());
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA16, source.width(), source.height(), 0, GL_RGBA,
                 GL_UNSIGNED_SHORT, pixels.data());
    glGenerateMipmap(GL_TEXTURE_2D);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    return kept;
}

void SceneTextures::setUp(Kept& kept, const DrawMaterial& material, int anisotropy) const {
    if (kept.wrapS != material.wrapS)
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, wrapOf(material.wrapS));
    if (kept.wrapT != material.wrapT)
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, wrapOf(material.wrapT));
    kept.wrapS = material.wrapS;
    kept.wrapT = material.wrapT;
    const int samples = std::clamp(anisotropy, 1, maxAnisotropy_);
    if (std::exchange(kept.anisotropy, samples) != samples)
        glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAX_ANISOTROPY_EXT, static_cast<float>(samples));
}

void SceneTextures::endDraw() {
    std::erase_if(kept_,
                  [&](const auto& entry) { return draw_ - entry.second.lastDraw >= keepDraws_; });
    ++draw_;
}

}  // namespace platform
