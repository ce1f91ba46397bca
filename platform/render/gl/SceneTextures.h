// SPDX-License-Identifier: MIT
// Pictures that a scene's drawer keeps in video memory; private to
// platform/render.
#pragma once

#include <QImage>
#include <cstdint>
#include <unordered_map>

#include "platform/render/gl/GlObjects.h"
#include "platform/scene/DrawList.h"

namespace platform {

// Mipmapped textures, cached by the pictures' cache keys.
class SceneTextures {
  public:
    explicit SceneTextures(int keepDraws);

    // Binds the material's picture to texture unit 0, with the material's
    // wrapping; uploads a new picture.
    void bind(const DrawMaterial& material);

    // Ends a draw: drops textures unused for a while.
    void endDraw();
    [[nodiscard]] int count() const { return static_cast<int>(kept_.size()); }

  private:
    struct Kept {
        GlTexture texture;
        WrapMode wrapS = WrapMode::Clamp;
        WrapMode wrapT = WrapMode::Clamp;
        std::uint64_t lastDraw = 0;
    };

    Kept upload(const QImage& picture) const;
    static void setUp(Kept& kept, const DrawMaterial& material);

    std::uint64_t keepDraws_;
    std::uint64_t draw_ = 1;
    int maxSize_ = 0;
    std::unordered_map<qint64, Kept> kept_;
};

}  // namespace platform
